#include "core/stimulus/Random.h"

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

// x * factor mod (2^31 - 1) for x below the modulus and a factor below
// 2^31: the high part folds onto the low one because 2^31 is 1 modulo it.
inline uint32_t MulMod(uint32_t x, uint64_t factor) {
    const uint64_t product = factor * x;
    uint64_t folded = (product & 0x7fffffffu) + (product >> 31);
    folded = (folded & 0x7fffffffu) + (folded >> 31);
    return static_cast<uint32_t>(folded >= static_cast<uint64_t>(kModulus) ? folded - kModulus
                                                                           : folded);
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
    // The congruence runs as two interleaved chains (multiplier 16807^2 mod
    // (2^31 - 1) two steps apart), so only the shuffle-table look-up is left
    // as a chain of dependent steps. The table stays in memory because it is
    // indexed by data; the rest lives in registers.
    constexpr uint64_t kSquared = 282475249;  // 16807^2 mod (2^31 - 1)
    uint32_t even = MulMod(static_cast<uint32_t>(seedWord), kMultiplier);
    uint32_t odd = MulMod(even, kMultiplier);
    int32_t last = g_state.last;
    int32_t* table = g_state.table;
    const std::size_t pairs = out.size() / 2;
    uint32_t lastOdd = 0;
    for (std::size_t p = 0; p < pairs; ++p) {
        int j = last >> 26;
        last = table[j];
        table[j] = static_cast<int32_t>(even);
        out[2 * p] = last;
        j = last >> 26;
        last = table[j];
        table[j] = static_cast<int32_t>(odd);
        out[2 * p + 1] = last;
        lastOdd = odd;
        even = MulMod(even, kSquared);
        odd = MulMod(odd, kSquared);
    }
    // `even` is now the seed that follows the last one used.
    uint32_t seed = pairs > 0 ? lastOdd : static_cast<uint32_t>(seedWord);
    if (out.size() % 2 != 0) {
        seed = even;
        const int j = last >> 26;
        last = table[j];
        table[j] = static_cast<int32_t>(seed);
        out[out.size() - 1] = last;
    }
    seedWord = static_cast<int32_t>(seed);
    g_state.last = last;
}

Ran1State SaveRan1State() {
    return g_state;
}

void RestoreRan1State(const Ran1State& state) {
    g_state = state;
}

}  // namespace kv
