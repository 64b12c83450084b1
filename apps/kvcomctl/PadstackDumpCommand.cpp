#include <filesystem>
#include <iostream>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "apps/viadescription/ViaDescription.h"
#include "apps/viadescription/ViaExportModel.h"
#include "core/shared/FileIo.h"
#include "core/via/PadstackDump.h"

// kvcomctl padstack-dump VIA.json [-o FILE]: lists the padstack of every via of a description
// as the padstack editor's diagnostic dump does.

namespace kv::cli {
namespace {

using via_json::ReadViaDescription;
using via_json::ViaExportModel;

constexpr std::string_view kHelp =
    "Usage: kvcomctl padstack-dump VIA.json [-o FILE]\n"
    "\n"
    "Lists the padstack of each via described in VIA.json (format: see README.md)\n"
    "in the padstack diagnostic dump format, on standard output.\n"
    "\n"
    "  -o FILE         append the listing to FILE instead; when FILE is a folder,\n"
    "                  to the file ViaVizData.dmp in it. A listing that cannot be\n"
    "                  written whole (a full disk) is taken back out of the file.\n";

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    const ParsedArguments parsed(args, {}, {"-o"});
    const std::string input(parsed.Positional(1, "one via description (VIA.json)")[0]);
    const std::string output(parsed.Value("-o").value_or(""));
    const std::string listing = ViaExportModel(ReadViaDescription(input)).PadstackDump();
    if (output.empty()) {
        out << listing;
        return kExitOk;
    }
    std::filesystem::path file = output;
    if (std::filesystem::is_directory(file)) {
        file /= kPadstackDumpFileName;
    }
    if (const FileResult written = AppendToFile(file, listing); !written.ok) {
        err << "kvcomctl padstack-dump: Cannot write file \"" << file.string()
            << "\": " << written.reason << '\n';
        return kExitFailure;
    }
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"padstack-dump", "list the padstacks of a via description as a diagnostic dump", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
