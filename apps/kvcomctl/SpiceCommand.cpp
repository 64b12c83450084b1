#include <iostream>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "apps/viadescription/ViaDescription.h"
#include "apps/viadescription/ViaExportModel.h"
#include "core/shared/FileIo.h"
#include "core/shared/LocalTime.h"
#include "core/via/ViaSpiceExport.h"
#include "core/via/ViaSpiceWriter.h"

// kvcomctl spice VIA.json [-o FILE.cir] [--metric]: writes the SPICE subcircuit of a via or a
// differential via pair.

namespace kv::cli {
namespace {

using via_json::ReadViaDescription;
using via_json::ViaExportModel;

constexpr std::string_view kHelp =
    "Usage: kvcomctl spice VIA.json [-o FILE.cir] [--metric]\n"
    "\n"
    "Writes the SPICE subcircuit of the via or differential via pair described in\n"
    "VIA.json (format: see README.md).\n"
    "\n"
    "  -o FILE.cir     write to FILE.cir (replaced whole, never left half written)\n"
    "                  instead of standard output; a link is written through, a\n"
    "                  read-only file refused, a FIFO or device written directly\n"
    "  --metric        lengths in the stackup table in um, mm, cm or m instead of\n"
    "                  inches and mils\n"
    "\n"
    "A description that cannot be read or does not hold together is reported with\n"
    "the name of the field, exit status 1, and no file is written.\n";

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    const ParsedArguments parsed(args, {"--metric"}, {"-o"});
    const std::string input(parsed.Positional(1, "one via description (VIA.json)")[0]);
    const std::string output(parsed.Value("-o").value_or(""));
    const bool metric = parsed.Has("--metric");
    const ViaExportModel vias(ReadViaDescription(input));
    SpiceExportInput spice = vias.SpiceInput(metric);
    spice.generated = LocalTimeNow();
    const std::string text = SpiceModelText(spice);
    if (output.empty()) {
        out << text;
        return kExitOk;
    }
    if (const FileResult written = ReplaceFileAtomically(output, text); !written.ok) {
        err << "kvcomctl spice: Cannot open file \"" << output << "\": " << written.reason << '\n';
        return kExitFailure;
    }
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"spice", "write the SPICE subcircuit of a via or via pair", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
