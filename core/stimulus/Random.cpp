#include "stimulus/Random.h"

#include <cstdlib>

namespace kv {
namespace {

constexpr int32_t kMultiplier = 16807;
constexpr int32_t kModulus = 2147483647;
constexpr int32_t kQuotient = 127773;  // kModulus / kMultiplier
constexpr int32_t kRemainder = 2836;   // kModulus % kMultiplier
constexpr int kTableSize = 32;
constexpr int32_t kTableDivisor = 67108864;  // 1 + (kModulus - 1) / kTableSize

// One module-wide state, as the generator has always been: every source
// draws from the same sequence unless it restarts it.
Ran1State g_state{};

// Schrage's method: 16807 * seed mod (2^31 - 1) without overflowing 32 bits.
inline int32_t Advance(int32_t seed) {
    const int32_t high = seed / kQuotient;
    int32_t next = kMultiplier * (seed - high * kQuotient) - kRemainder * high;
    if (next < 0) {
        next += kModulus;
    }
    return next;
}

void Restart(int32_t& seedWord) {
    // Magnitudes of the modulus or more are reduced first: the congruence
    // would otherwise collapse to zero and stay there.
    const int64_t magnitude = std::llabs(static_cast<int64_t>(seedWord)) % kModulus;
    seedWord = magnitude < 1 ? 1 : static_cast<int32_t>(magnitude);
    for (int j = kTableSize + 7; j >= 0; --j) {
        seedWord = Advance(seedWord);
        if (j < kTableSize) {
            g_state.table[j] = seedWord;
        }
    }
    g_state.last = g_state.table[0];
}

inline int32_t Step(int32_t& seedWord) {
    seedWord = Advance(seedWord);
    const int j = g_state.last / kTableDivisor;
    g_state.last = g_state.table[j];
    g_state.table[j] = seedWord;
    return g_state.last;
}

}  // namespace

double Ran1(int32_t& seedWord) {
    if (seedWord <= 0 || g_state.last == 0) {
        Restart(seedWord);
    }
    return RawToUniform(Step(seedWord));
}

void Ran1Raw(int32_t& seedWord, std::span<int32_t> out) {
    if (out.empty()) {
        return;
    }
    if (seedWord <= 0 || g_state.last == 0) {
        Restart(seedWord);
    }
    // Local copies let the compiler keep the chain in registers; the table
    // stays in memory because it is indexed by data.
    int32_t seed = seedWord;
    int32_t last = g_state.last;
    int32_t* table = g_state.table;
    for (int32_t& value : out) {
        const uint64_t product = uint64_t{kMultiplier} * static_cast<uint32_t>(seed);
        // Reduction modulo 2^31 - 1: the same residue as Schrage's method for
        // every seed in 0 .. 2^31 - 2, which is all a running seed can be.
        uint32_t next = static_cast<uint32_t>((product & 0x7fffffffu) + (product >> 31));
        if (next >= static_cast<uint32_t>(kModulus)) {
            next -= kModulus;
        }
        seed = static_cast<int32_t>(next);
        const int j = last >> 26;
        last = table[j];
        table[j] = seed;
        value = last;
    }
    seedWord = seed;
    g_state.last = last;
}

Ran1State SaveRan1State() {
    return g_state;
}

void RestoreRan1State(const Ran1State& state) {
    g_state = state;
}

}  // namespace kv
