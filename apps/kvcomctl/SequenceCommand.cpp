#include <iostream>
#include <string>

#include "Command.h"
#include "stimulus/SequenceType.h"
#include "stimulus/StimulusData.h"

// kvcomctl sequence KIND [options]: prints the bits of one generated cycle.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl sequence prbs --degree D [--init 0|1]\n"
    "\n"
    "Prints the bits of one cycle of a generated sequence as 0 and 1 characters\n"
    "followed by a newline.\n"
    "\n"
    "  prbs            the maximal-length shift-register sequence of 2^D - 1 bits\n"
    "  --degree D      polynomial degree, 3 to 30 (the register clamps below 3)\n"
    "  --init 0|1      the first bit of the sequence (default 0); the rest\n"
    "                  follows the register, inverted when needed\n";

void PrintBits(const BitVector& bits, std::ostream& out) {
    std::string text(bits.size(), '0');
    for (std::size_t i = 0; i < bits.size(); ++i) {
        text[i] = static_cast<char>('0' + bits[i]);
    }
    out << text << '\n';
}

int RunPrbs(Arguments args, std::ostream& out) {
    long long degree = -1;
    long long init = 0;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--degree") {
            degree = ParseInteger(OptionValue(args, i), "--degree");
        } else if (args[i] == "--init") {
            init = ParseInteger(OptionValue(args, i), "--init");
        } else {
            throw UsageError{"unknown option '" + std::string(args[i]) + "'"};
        }
    }
    if (degree < 1 || degree > 30) {
        throw UsageError{"--degree must be given, from 1 to 30"};
    }
    if (init != 0 && init != 1) {
        throw UsageError{"--init must be 0 or 1"};
    }
    CStimulusData data;
    data.SetSeqType(seq::kPrbs);
    data.SetPolyDegree(static_cast<int>(degree));
    BitVector bits;
    data.GenerateSequence(static_cast<int>(init), bits);
    PrintBits(bits, out);
    return kExitOk;
}

int Run(Arguments args, std::ostream& out, std::ostream& /*err*/) {
    if (args.empty()) {
        throw UsageError{"which sequence? (prbs)"};
    }
    if (args[0] == "prbs") {
        return RunPrbs(args.subspan(1), out);
    }
    throw UsageError{"unknown sequence kind '" + std::string(args[0]) + "'"};
}

const CommandRegistration kRegistration{
    {"sequence", "print the bits of a generated sequence", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
