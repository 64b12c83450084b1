#include <iostream>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/stimulus/SymbolSource.h"

// kvcomctl check-8b10b FILE.bit [--start 4|6]: the 8B/10B line rules over the
// symbols of a sequence file.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl check-8b10b FILE.bit [--start 4|6]\n"
    "\n"
    "Reads the file's 0 and 1 characters (blanks, tabs, line feeds, ',' and '+'\n"
    "are skipped) and checks them against the 8B/10B run-length and disparity\n"
    "rules, with sub-blocks of 6 and 4 symbols (--start 4: 4 and 6). Prints \"ok\"\n"
    "and exits 0, or prints the error text and exits 1.\n";

int Run(Arguments args, std::ostream& out, std::ostream& /*err*/) {
    const ParsedArguments parsed(args, {}, {"--start"});
    const std::string path(parsed.Positional(1, "one FILE.bit")[0]);
    const long long start = parsed.Integer("--start").value_or(6);
    SymbolSourceConfig config;
    config.protocol = 1;
    config.path = path;
    SymbolSource source(config);
    bool ok = false;
    source.CheckStream(ok, static_cast<int>(start));
    // A file that cannot be read ends the check without a rule broken; it
    // is still no pass.
    if (source.Error()) {
        out << *source.Error() << '\n';
        return kExitFailure;
    }
    out << "ok\n";
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"check-8b10b", "check a sequence file against the 8B/10B line rules", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
