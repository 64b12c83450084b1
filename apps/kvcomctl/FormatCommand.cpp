#include <algorithm>
#include <ostream>
#include <span>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/shared/UnitFormat.h"

// kvcomctl format QUANTITY VALUE [--metric]: one engineering formatter.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl format QUANTITY VALUE [--metric]\n"
    "\n"
    "Prints VALUE (in SI base units: metres, farads, henries, ohms, hertz,\n"
    "seconds, volts) as number, blank and unit, followed by a newline.\n"
    "\n"
    "  QUANTITY   length, capacitance, inductance, resistance, frequency,\n"
    "             time or voltage\n"
    "  VALUE      a plain number such as 2.54e-5 or -0.25\n"
    "  --metric   lengths in um, mm, cm or m instead of mils and inches\n"
    "\n"
    "Exit status: 0 when the value was in range, 1 when it was too large and\n"
    "printed as 999 with the largest unit, 2 for a usage error (a VALUE that\n"
    "is not a finite number: nan, inf or too large to read).\n";

int Run(Arguments args, std::ostream& out, std::ostream& /*err*/) {
    const ParsedArguments parsed(args, {"--metric"});
    const bool metric = parsed.Has("--metric");
    const auto& positional = parsed.Positional(2, "QUANTITY and VALUE");
    const bool length = positional[0] == "length";
    const std::span<const UnitQuantity> quantities = UnitQuantities();
    const auto quantity =
        std::find_if(quantities.begin(), quantities.end(),
                     [&](const UnitQuantity& q) { return q.name == positional[0]; });
    if (!length && quantity == quantities.end()) {
        throw UsageError{"unknown quantity '" + std::string(positional[0]) + "'"};
    }
    if (metric && !length) {
        throw UsageError{"--metric applies to lengths only"};
    }
    const double value = ParseReal(positional[1], "VALUE");
    bool inRange = false;
    out << (length ? LengthText(value, metric, &inRange)
                   : UnitText(quantity->format, value, &inRange))
        << '\n';
    return inRange ? kExitOk : kExitFailure;
}

const CommandRegistration kRegistration{
    {"format", "print a quantity with its engineering unit", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
