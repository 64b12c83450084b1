// The 8B/10B line-rule check in blocks against the check one symbol at a
// time, on any bit pattern: the same verdict, the same error, and the stream
// left at the same place.

#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "core/stimulus/SymbolSource.h"

namespace {

using kv::SymbolSource;
using kv::fuzz::Expect;

std::string Show(const std::vector<uint8_t>& bits, int start, int repetitions) {
    std::string text =
        "start " + std::to_string(start) + ", " + std::to_string(repetitions) + " plays of ";
    for (const uint8_t bit : bits) {
        text += bit != 0 ? '1' : '0';
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    // Byte 0: the start group size (0, 4, 6, or the byte itself); byte 1:
    // plays of the pattern; the rest: the pattern, eight bits a byte.
    const int choice = data[0] % 4;
    const int start = choice == 0 ? 0 : choice == 1 ? 4 : choice == 2 ? 6 : data[0];
    const int repetitions = 1 + data[1] % 4;
    std::vector<uint8_t> bits;
    for (std::size_t i = 2; i < size; ++i) {
        for (int k = 0; k < 8; ++k) {
            bits.push_back((data[i] >> k) & 1u);
        }
    }
    kv::SymbolSourceConfig config;
    config.protocol = 1;
    config.pattern = bits.data();
    config.patternLength = static_cast<int32_t>(bits.size());
    config.repetitions = repetitions;

    SymbolSource blocks(config);
    SymbolSource stepwise(config);
    bool blocksOk = false;
    bool stepwiseOk = false;
    const int blocksResult = blocks.CheckStream(blocksOk, start);
    const int stepwiseResult = stepwise.CheckStreamStepwise(stepwiseOk, start);
    const std::string where = Show(bits, start, repetitions);
    Expect(blocksResult == stepwiseResult && blocksOk == stepwiseOk,
           "the verdicts differ (" + std::to_string(blocksResult) + " in blocks, " +
               std::to_string(stepwiseResult) + " stepwise) for " + where);
    Expect(blocks.Error() == stepwise.Error(), "the errors differ for " + where);
    for (int i = 0; i < 12; ++i) {
        int blockSymbol = 0;
        int stepSymbol = 0;
        const int blockStatus = blocks.NextSymbol(blockSymbol);
        const int stepStatus = stepwise.NextSymbol(stepSymbol);
        Expect(blockStatus == stepStatus && (blockStatus != 1 || blockSymbol == stepSymbol),
               "the streams are left at different places (symbol " + std::to_string(i) +
                   " after the check) for " + where);
    }
    return 0;
}
