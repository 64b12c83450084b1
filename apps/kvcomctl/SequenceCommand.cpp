#include <iostream>
#include <optional>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/SymbolSource.h"

// kvcomctl sequence KIND [options] [-o FILE.bit]: the bits of one generated
// sequence, printed or written as a .bit file.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl sequence prbs --degree D [--init 0|1] [-o FILE.bit]\n"
    "       kvcomctl sequence 8b10b --cycles N [--seed S] [-o FILE.bit]\n"
    "       kvcomctl sequence usb [-o FILE.bit]\n"
    "       kvcomctl sequence toggle [--init 0|1] [-o FILE.bit]\n"
    "       kvcomctl sequence random --count N [--seed S] [-o FILE.bit]\n"
    "\n"
    "Prints the bits of a generated sequence as 0 and 1 characters followed by a\n"
    "newline, or writes them to a .bit file with -o.\n"
    "\n"
    "  prbs            the maximal-length shift-register sequence of 2^D - 1 bits\n"
    "  --degree D      polynomial degree, 1 to 30 (the register clamps below 3)\n"
    "  --init 0|1      the first bit (default 0); the rest follows the register,\n"
    "                  inverted when needed; for toggle, the starting state\n"
    "  8b10b           N random 8B/10B code groups, 10 bits each (N 1 to 10^8)\n"
    "  --seed S        seed of the random generator; for 8b10b a seed that is not\n"
    "                  positive means the fixed seed 91847437\n"
    "  usb             the 330-bit USB 2.0 compliance pattern\n"
    "  toggle          the two bits of the toggling sequence\n"
    "  random          N random bits (N 1 to 10^9)\n";

struct Options {
    std::optional<long long> degree;
    long long init = 0;
    std::optional<long long> cycles;
    std::optional<long long> count;
    long long seed = 0;
    std::optional<std::string> output;
};

Options ParseOptions(Arguments args) {
    const ParsedArguments parsed(args, {},
                                 {"--degree", "--init", "--cycles", "--count", "--seed", "-o"});
    parsed.Positional(0, "only options after the kind");
    Options options;
    options.degree = parsed.Integer("--degree");
    options.init = parsed.Integer("--init").value_or(0);
    options.cycles = parsed.Integer("--cycles");
    options.count = parsed.Integer("--count");
    options.seed = parsed.Integer("--seed").value_or(0);
    if (const auto output = parsed.Value("-o")) {
        options.output = std::string(*output);
    }
    if (options.init != 0 && options.init != 1) {
        throw UsageError{"--init must be 0 or 1"};
    }
    if (options.seed < INT32_MIN || options.seed > INT32_MAX) {
        throw UsageError{"--seed must fit 32 bits"};
    }
    return options;
}

// The source's symbols as bits, one for every +1.
BitVector BitsFromSource(const SymbolSourceConfig& config, std::size_t count) {
    SymbolSource source(config);
    BitVector bits(count);
    const std::span<int8_t> symbols(reinterpret_cast<int8_t*>(bits.data()), count);
    int status = 1;
    source.ReadSymbols(symbols, status);
    for (uint8_t& bit : bits) {
        bit = static_cast<int8_t>(bit) > 0 ? 1 : 0;
    }
    return bits;
}

BitVector Generate(std::string_view kind, const Options& options) {
    if (kind == "prbs") {
        if (!options.degree || *options.degree < 1 || *options.degree > 30) {
            throw UsageError{"--degree must be given, from 1 to 30"};
        }
        CStimulusData data;
        data.SetSeqType(seq::kPrbs);
        data.SetPolyDegree(static_cast<int>(*options.degree));
        BitVector bits;
        data.GenerateSequence(static_cast<int>(options.init), bits);
        return bits;
    }
    if (kind == "8b10b") {
        if (!options.cycles || *options.cycles < 1 || *options.cycles > 100'000'000) {
            throw UsageError{"--cycles must be given, from 1 to 100000000"};
        }
        return BitsFromSource(Code8b10bConfig(static_cast<int>(options.seed)),
                              static_cast<std::size_t>(*options.cycles) * 10);
    }
    if (kind == "random") {
        if (!options.count || *options.count < 1 || *options.count > 1'000'000'000) {
            throw UsageError{"--count must be given, from 1 to 1000000000"};
        }
        SymbolSourceConfig config;
        config.seed = static_cast<int32_t>(options.seed);
        return BitsFromSource(config, static_cast<std::size_t>(*options.count));
    }
    if (kind == "usb") {
        return UsbCompliancePattern();
    }
    if (kind == "toggle") {
        return TogglingBits(static_cast<int>(options.init));
    }
    throw UsageError{"unknown sequence kind '" + std::string(kind) + "'"};
}

int Run(Arguments args, std::ostream& out, std::ostream& /*err*/) {
    if (args.empty()) {
        throw UsageError{"which sequence? (prbs, 8b10b, usb, toggle, random)"};
    }
    const Options options = ParseOptions(args.subspan(1));
    const BitVector bits = Generate(args[0], options);
    if (options.output) {
        // Problems are told through the message port (standard error here).
        return WriteBitFile(*options.output, bits) ? kExitOk : kExitFailure;
    }
    out << BitText(bits) << '\n';
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"sequence", "print or write the bits of a generated sequence", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
