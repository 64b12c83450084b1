#include <iostream>
#include <string>

#include "Command.h"
#include "ViaDescription.h"
#include "shared/FileIo.h"
#include "via/ViaSpiceExport.h"
#include "via/ViaSpiceWriter.h"

// kvcomctl spice VIA.json [-o FILE.cir] [--metric]: writes the SPICE subcircuit of a via or a
// differential via pair.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl spice VIA.json [-o FILE.cir] [--metric]\n"
    "\n"
    "Writes the SPICE subcircuit of the via or differential via pair described in\n"
    "VIA.json (format: see README.md).\n"
    "\n"
    "  -o FILE.cir     write to FILE.cir (replaced whole, never left half written)\n"
    "                  instead of standard output\n"
    "  --metric        lengths in the stackup table in um, mm, cm or m instead of\n"
    "                  inches and mils\n"
    "\n"
    "A description that cannot be read or does not hold together is reported with\n"
    "the name of the field, exit status 1, and no file is written.\n";

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    std::string input;
    std::string output;
    bool metric = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "-o") {
            output = OptionValue(args, i);
        } else if (args[i] == "--metric") {
            metric = true;
        } else if (!args[i].empty() && args[i][0] == '-') {
            throw UsageError{"unknown option '" + std::string(args[i]) + "'"};
        } else if (input.empty()) {
            input = args[i];
        } else {
            throw UsageError{"one description only, got '" + std::string(args[i]) + "' too"};
        }
    }
    if (input.empty()) {
        throw UsageError{"which via description? (VIA.json)"};
    }
    const ViaDescription description = ReadViaDescription(input);
    SpiceExportInput spice = description.SpiceInput(metric);
    spice.generated = LocalTimeNow();
    const std::string text = SpiceModelText(spice);
    if (output.empty()) {
        out << text;
        return kExitOk;
    }
    if (!ReplaceFileAtomically(output, text).ok) {
        err << "kvcomctl spice: Cannot open file \"" << output << "\"\n";
        return kExitFailure;
    }
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"spice", "write the SPICE subcircuit of a via or via pair", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
