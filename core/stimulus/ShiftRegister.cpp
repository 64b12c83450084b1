#include "core/stimulus/ShiftRegister.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

struct TapSet {
    std::array<uint8_t, 4> taps;
    uint8_t count;
};

// Maximal-length tap sets from the published tables of LFSR taps, indexed by
// degree - 3.
constexpr std::array<TapSet, 30> kTapSets{{
    {{3, 2}, 2},        {{4, 3}, 2},           {{5, 3}, 2},        {{6, 5}, 2},
    {{7, 6}, 2},        {{8, 6, 5, 4}, 4},     {{9, 5}, 2},        {{10, 7}, 2},
    {{11, 9}, 2},       {{12, 6, 4, 1}, 4},    {{13, 4, 3, 1}, 4}, {{14, 5, 3, 1}, 4},
    {{15, 14}, 2},      {{16, 15, 13, 4}, 4},  {{17, 14}, 2},      {{18, 11}, 2},
    {{19, 6, 2, 1}, 4}, {{20, 17}, 2},         {{21, 19}, 2},      {{22, 21}, 2},
    {{23, 18}, 2},      {{24, 23, 22, 17}, 4}, {{25, 22}, 2},      {{26, 6, 2, 1}, 4},
    {{27, 5, 2, 1}, 4}, {{28, 25}, 2},         {{29, 27}, 2},      {{30, 6, 4, 1}, 4},
    {{31, 28}, 2},      {{32, 22, 2, 1}, 4},
}};

}  // namespace

int ClampRegisterDegree(int requestedDegree) {
    return std::clamp(requestedDegree, 3, 32);
}

std::span<const uint8_t> RegisterTaps(int degree) {
    const TapSet& set = kTapSets[static_cast<std::size_t>(ClampRegisterDegree(degree) - 3)];
    return {set.taps.data(), set.count};
}

ShiftRegister::ShiftRegister(int requestedDegree)
    : degree(static_cast<uint32_t>(ClampRegisterDegree(requestedDegree))),
      state((1u << (degree / 2)) - 1u),
      tapMask(0) {
    for (uint8_t tap : RegisterTaps(static_cast<int>(degree))) {
        tapMask |= 1u << (degree - tap);
    }
}

}  // namespace kv
