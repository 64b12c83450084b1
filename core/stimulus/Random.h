#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// The module's one uniform random generator: a multiplicative congruential
// generator (multiplier 16807, modulus 2^31 - 1) whose outputs pass through a
// 32-entry shuffle table. The table and the last output are shared by every
// caller in the module; each caller keeps only its own seed word. A seed word
// of zero or below (or a table that was never filled) restarts the generator
// from the seed's absolute value, so a caller that stores minus its seed
// always begins from a known state.

namespace kv {

// The next uniform number in (0, 1), capped at 0.99999988.
double Ran1(int32_t& seedWord);

// Fills `out` with the raw shuffled outputs (1 to 2^31 - 2) of as many
// successive Ran1 calls, leaving the shared state exactly as those calls
// would. Ran1 is RawToUniform of each.
void Ran1Raw(int32_t& seedWord, std::span<int32_t> out);

inline double RawToUniform(int32_t raw) {
    constexpr double kScale = 4.656612875245797e-10;
    constexpr double kCap = 0.99999988;
    const double value = kScale * raw;
    return value > kCap ? kCap : value;
}

// The whole shared state, so that a reader that ran ahead can be put back.
struct Ran1State {
    int32_t last;
    int32_t table[32];
};
Ran1State SaveRan1State();
void RestoreRan1State(const Ran1State& state);

}  // namespace kv
