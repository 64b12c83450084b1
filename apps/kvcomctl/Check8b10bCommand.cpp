#include <cstring>
#include <iostream>
#include <limits>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/StreamCheck.h"
#include "core/stimulus/SymbolSource.h"

// kvcomctl check-8b10b FILE.bit [--start 4|6]: the 8B/10B line rules over the
// bits of a sequence file.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl check-8b10b FILE.bit [--start 4|6]\n"
    "\n"
    "Reads the file's 0 and 1 characters as a .bit file is loaded (blanks, tabs,\n"
    "',', ';', carriage returns and line feeds are skipped; any other character\n"
    "makes it no sequence file) and checks them against the 8B/10B run-length and\n"
    "disparity rules, with sub-blocks of 6 and 4 symbols (--start 4: 4 and 6;\n"
    "--start 0 means 6). Prints \"ok\" and exits 0, or prints the error text and\n"
    "exits 1. A file that cannot be read, is no sequence file or holds no bits is\n"
    "reported on standard error with exit status 1.\n";

int StartGroupSize(const ParsedArguments& parsed) {
    const std::optional<std::string_view> text = parsed.Value("--start");
    if (!text) {
        return 6;
    }
    const long long start = ParseInteger(*text, "--start");
    if (start != 0 && start != 4 && start != 6) {
        throw UsageError{"--start must be 4 or 6 (0 means 6), not '" + std::string(*text) + "'"};
    }
    return start == 0 ? 6 : static_cast<int>(start);
}

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    const ParsedArguments parsed(args, {}, {"--start"});
    const std::string path(parsed.Positional(1, "one FILE.bit")[0]);
    StreamRules rules(StartGroupSize(parsed));
    int broken = 0;
    std::size_t bits = 0;
    // The first problem met in reading order decides: a broken rule, or a
    // byte that makes the file no sequence file.
    const BitScan scan = ScanBitFile(path, std::numeric_limits<std::size_t>::max(),
                                     [&](std::span<const uint8_t> chunk) {
                                         bits += chunk.size();
                                         for (const uint8_t bit : chunk) {
                                             broken = rules.Feed(bit != 0 ? 1 : -1);
                                             if (broken != 0) {
                                                 return false;
                                             }
                                         }
                                         return true;
                                     });
    const std::string prefix = "kvcomctl check-8b10b: ";
    switch (scan.end) {
        case BitScanEnd::Unreadable:
            err << prefix << "cannot read \"" << path << "\": " << std::strerror(scan.error)
                << '\n';
            return kExitFailure;
        case BitScanEnd::NotSequence:
            err << prefix << "File " << path << " is not valid sequence file (byte " << scan.offset
                << " is neither 0, 1 nor a separator)\n";
            return kExitFailure;
        case BitScanEnd::Stopped:
            out << SymbolErrorText(broken) << '\n';
            return kExitFailure;
        case BitScanEnd::Complete:
        case BitScanEnd::Truncated:
            break;
    }
    if (bits == 0) {
        err << prefix << "File " << path << " is empty: it holds no 0 or 1 to check\n";
        return kExitFailure;
    }
    out << "ok\n";
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"check-8b10b", "check a sequence file against the 8B/10B line rules", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
