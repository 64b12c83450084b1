#include "core/stimulus/FixedPatterns.h"

#include <array>

#include <string_view>
#include "core/stimulus/SequenceType.h"

namespace kv {
namespace {

constexpr std::array<std::string_view, 33> kUsbPattern{
    "0000111100", "0011110000", "1111000011", "1100001111", "0000111100", "0011110000",
    "1111000011", "1100001111", "0111101111", "0111101111", "0111101111", "0111101111",
    "0111100000", "1000010000", "1000010000", "1000010000", "1000010000", "1000010000",
    "1100110011", "0011001100", "1100110011", "0011001101", "1011011011", "0110110110",
    "1101101100", "1001001001", "0010010010", "0100100100", "1001010101", "0101010101",
    "0101010101", "0101010101", "0101010000",
};

}  // namespace

BitVector UsbCompliancePattern() {
    BitVector bits;
    bits.reserve(kUsbComplianceBits);
    for (std::string_view group : kUsbPattern) {
        for (char c : group) {
            bits.push_back(c == '1' ? 1 : 0);
        }
    }
    return bits;
}

BitVector TogglingBits(int initState) {
    return {static_cast<uint8_t>(initState == 0 ? 1 : 0),
            static_cast<uint8_t>(initState != 0 ? 1 : 0)};
}

std::optional<BitVector> FixedPattern(int seqType, int initState) {
    // The page's level list shows "High" first for state 1 and "Low" second
    // for state 0 (the Edge list: "Falling", "Rising"). The page builds
    // Oscillator and Pulse as 0 1 for "High" and 1 0 for "Low", which is the
    // toggling pair, and Edge as the one bit 1 for "Rising" and 0 for
    // "Falling", which is the toggling pair's first bit.
    switch (seqType) {
        case seq::kToggling:
        case seq::kPulse:
            return TogglingBits(initState);
        case seq::kEdge:
            return BitVector{TogglingBits(initState).front()};
        case seq::kUsbCompliance:
            return UsbCompliancePattern();
        default:
            return std::nullopt;
    }
}

}  // namespace kv
