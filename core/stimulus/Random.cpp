#include "core/stimulus/Random.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "core/shared/WideClones.h"

// Single draws follow the described steps literally (Schrage's method, the
// restart, the shuffle) and are the reference. The block form must leave
// every number and the shared state exactly where as many single draws
// would. It computes the seeds of the whole block first, in independent
// vector lanes that each take a multiplication and a fold instead of a
// division, so that what is left per draw is the shuffle, the one serial
// part, which the caller's own loop runs (Ran1Block::Run) to overlap its work
// with it.

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

// Schrage's method: 16807 * seed mod (2^31 - 1) without a product wider than
// the seed. Wide enough for the magnitude 2^31 of the most negative seed
// word, whose first step is then that of seed 1 (2^31 is 1 modulo the
// modulus).
inline int64_t Advance(int64_t seed) {
    const int64_t high = seed / kQuotient;
    int64_t next = kMultiplier * (seed - high * kQuotient) - kRemainder * high;
    if (next < 0) {
        next += kModulus;
    }
    return next;
}

// The steps of a restart taken literally: the seed's magnitude (at least 1)
// without any reduction, eight values discarded, the next 32 into the table.
// A magnitude equal to the modulus therefore steps to 0 and fills the table
// with zeros; the draw that follows yields 0 and leaves a zero seed word, so
// the draw after it restarts from 1.
void Restart(int32_t& seedWord) {
    const int64_t magnitude = std::llabs(static_cast<int64_t>(seedWord));
    int64_t seed = magnitude < 1 ? 1 : magnitude;
    for (int j = kTableSize + 7; j >= 0; --j) {
        seed = Advance(seed);
        if (j < kTableSize) {
            g_state.table[j] = static_cast<int32_t>(seed);
        }
    }
    seedWord = static_cast<int32_t>(seed);
    g_state.last = g_state.table[0];
}

// Whether the next draw starts with a restart.
bool RestartDue(int32_t seedWord) {
    return seedWord <= 0 || g_state.last == 0;
}

// One draw exactly as described, restart included: the reference for the
// block form and the way through states the block form does not take on.
int32_t Draw(int32_t& seedWord) {
    if (RestartDue(seedWord)) {
        Restart(seedWord);
    }
    seedWord = static_cast<int32_t>(Advance(seedWord));
    const int j = g_state.last / kTableDivisor;
    g_state.last = g_state.table[j];
    g_state.table[j] = seedWord;
    return g_state.last;
}

// x * factor mod (2^31 - 1) for x and factor below the modulus: the high
// part folds onto the low one because 2^31 is 1 modulo it.
inline uint32_t MulMod(uint32_t x, uint32_t factor) {
    const uint64_t product = uint64_t{factor} * x;
    uint64_t folded = (product & 0x7fffffffu) + (product >> 31);
    folded = (folded & 0x7fffffffu) + (folded >> 31);
    // Below 2^31, and never the modulus itself: a product of two numbers
    // that the prime modulus does not divide is not a multiple of it.
    return static_cast<uint32_t>(folded);
}

// Seeds are made in rounds of kLanes * kVectors, one seed per 64-bit lane
// of a few vectors: one vector multiplication steps a whole vector, and the
// vectors are independent of each other, so their steps overlap.
constexpr std::size_t kLanes = 8;
constexpr std::size_t kVectors = 4;
constexpr std::size_t kRound = kLanes * kVectors;
using SeedLanes = uint64_t __attribute__((vector_size(kLanes * sizeof(uint64_t))));
using SeedWords = int32_t __attribute__((vector_size(kLanes * sizeof(int32_t))));

// 16807^k mod (2^31 - 1) for k = 0 to kRound.
constexpr std::array<uint32_t, kRound + 1> MultiplierPowers() {
    std::array<uint32_t, kRound + 1> powers{};
    uint64_t power = 1;
    for (std::size_t k = 0; k <= kRound; ++k) {
        powers[k] = static_cast<uint32_t>(power);
        power = power * kMultiplier % kModulus;
    }
    return powers;
}
constexpr std::array<uint32_t, kRound + 1> kPowers = MultiplierPowers();

// out[i] = the seed after i + 1 steps from `seed` (1 to 2^31 - 2): lane c of
// vector v holds step v * kLanes + c + 1, and every round moves all lanes
// kRound steps on with the same fold as MulMod.
KV_WIDE_CLONES void FillSeeds(uint32_t seed, int32_t* out, std::size_t count) {
    SeedLanes lanes[kVectors];
    for (std::size_t v = 0; v < kVectors; ++v) {
        for (std::size_t c = 0; c < kLanes; ++c) {
            lanes[v][c] = MulMod(seed, kPowers[v * kLanes + c + 1]);
        }
    }
    const SeedLanes low31 = SeedLanes{} + uint64_t{0x7fffffff};
    const SeedLanes stride = SeedLanes{} + uint64_t{kPowers[kRound]};
    std::size_t i = 0;
    for (; i + kRound <= count; i += kRound) {
        for (std::size_t v = 0; v < kVectors; ++v) {
            const SeedWords words = __builtin_convertvector(lanes[v], SeedWords);
            std::memcpy(out + i + v * kLanes, &words, sizeof words);
            SeedLanes folded = lanes[v] * stride;
            folded = (folded & low31) + (folded >> 31);
            lanes[v] = (folded & low31) + (folded >> 31);
        }
    }
    for (std::size_t k = 0; i < count; ++k, ++i) {
        out[i] = static_cast<int32_t>(lanes[k / kLanes][k % kLanes]);
    }
}

}  // namespace

double Ran1(int32_t& seedWord) {
    return RawToUniform(Draw(seedWord));
}

Ran1Block::Ran1Block(int32_t& seedWord, std::size_t count) : m_count(count) {
    // A restart, or a seed word the congruence cannot continue from, goes
    // one draw at a time until the generator is in its usual state.
    while (m_drawnAhead < count && (RestartDue(seedWord) || seedWord >= kModulus)) {
        m_values[m_drawnAhead++] = Draw(seedWord);
    }
    std::copy(std::begin(g_state.table), std::end(g_state.table), m_table.begin());
    for (std::size_t k = 0; k < m_table.size(); ++k) {
        m_nextIndex[k] = static_cast<uint8_t>(static_cast<uint32_t>(m_table[k]) >> kIndexShift);
    }
    m_last = g_state.last;
    m_index = static_cast<uint32_t>(m_last) >> kIndexShift;
    if (m_drawnAhead < count) {
        FillSeeds(static_cast<uint32_t>(seedWord), m_values.data() + m_drawnAhead,
                  count - m_drawnAhead);
        seedWord = m_values[count - 1];
    }
}

Ran1Block::~Ran1Block() {
    std::copy(m_table.begin(), m_table.end(), std::begin(g_state.table));
    g_state.last = m_last;
}

void Ran1Raw(int32_t& seedWord, std::span<int32_t> out) {
    while (!out.empty()) {
        const std::size_t count = std::min(out.size(), Ran1Block::kMaxCount);
        int32_t* to = out.data();
        Ran1Block block(seedWord, count);
        block.Run<1>([&to](const std::array<int32_t, 1>& draw) { *to++ = draw[0]; });
        out = out.subspan(count);
    }
}

Ran1State SaveRan1State() {
    return g_state;
}

void RestoreRan1State(const Ran1State& state) {
    g_state = state;
}

}  // namespace kv
