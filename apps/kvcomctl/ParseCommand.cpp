#include <ostream>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/shared/EngineeringParse.h"
#include "core/shared/NumberText.h"

// kvcomctl parse TEXT [--ampere] [--spice] [--farad]: the engineering parser.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl parse TEXT [--ampere] [--spice] [--farad]\n"
    "\n"
    "Reads an engineering value such as \"1.5 n\", \"3M\" or \"47p\" and prints it\n"
    "with 17 significant digits, followed by a newline. Blanks anywhere are\n"
    "ignored; the one character after the number scales it:\n"
    "a 1e-18, f 1e-15, F 1e-15, p/P 1e-12, n/N 1e-9, u/U 1e-6, m 1e-3, M 1e6,\n"
    "k/K 1e3, G 1e9, T 1e12.\n"
    "\n"
    "  --ampere   'a' and 'A' mean amperes: the value is taken unscaled\n"
    "  --spice    SPICE suffixes: 'M' is milli and 'X' is mega\n"
    "  --farad    'F' means farads: the value is taken unscaled\n"
    "\n"
    "Exit status: 0 when parsed, 1 when not (0 is printed), 2 for a usage error.\n";

int Run(Arguments args, std::ostream& out, std::ostream& /*err*/) {
    const ParsedArguments parsed(args, {"--ampere", "--spice", "--farad"});
    const std::string text(parsed.Positional(1, "one TEXT (quote a text with blanks)")[0]);
    double value = 0;
    const bool ok = ParseEngineeringValue(text.c_str(), value, parsed.Has("--ampere"),
                                          parsed.Has("--spice"), parsed.Has("--farad"));
    out << FormatSignificant(value, 17) << '\n';
    return ok ? kExitOk : kExitFailure;
}

const CommandRegistration kRegistration{
    {"parse", "read an engineering value such as \"1.5 n\"", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
