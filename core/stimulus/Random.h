#pragma once

#include <array>
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

// The next uniform number in (0, 1), capped at 0.99999988; 0 only for the
// one draw that follows a restart from the modulus itself.
double Ran1(int32_t& seedWord);

// Fills `out` with the raw shuffled outputs (0 to 2^31 - 2) of as many
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

// A block of raw draws for loops that work on each draw as it comes: the
// work then overlaps the table look-up of the next draw, which is the one
// step that cannot be done ahead. The block takes the shared state when it
// is made and gives it back when it goes; in between, Run must be called
// once and no other draw may be made.
class Ran1Block {
public:
    static constexpr std::size_t kMaxCount = 512;

    // `count` is at most kMaxCount.
    Ran1Block(int32_t& seedWord, std::size_t count);
    ~Ran1Block();
    Ran1Block(const Ran1Block&) = delete;
    Ran1Block& operator=(const Ran1Block&) = delete;

    // Hands the block's draws, the same as Ran1Raw's, to `use` `Arity` at a
    // time as a std::array, in order; the count must be a multiple of Arity.
    template <std::size_t Arity, class Use>
    void Run(Use&& use);

private:
    static constexpr int kIndexShift = 26;  // 2^31 / 32 entries

    std::size_t m_count = 0;
    std::size_t m_drawnAhead = 0;  // draws that went one by one through a restart
    std::size_t m_index = 0;       // the entry the next draw takes
    int32_t m_last = 0;
    std::array<int32_t, 32> m_table{};
    std::array<uint8_t, 32> m_nextIndex{};
    // The outputs drawn ahead, then the seeds of the other draws.
    std::array<int32_t, kMaxCount> m_values;
};

template <std::size_t Arity, class Use>
void Ran1Block::Run(Use&& use) {
    // Locals rather than members, so that the caller's stores, which may
    // point anywhere, do not force them back to memory on every draw.
    std::size_t index = m_index;
    int32_t last = m_last;
    std::array<int32_t, Arity> draws;
    for (std::size_t i = 0; i < m_count; i += Arity) {
        for (std::size_t k = 0; k < Arity; ++k) {
            if (i + k < m_drawnAhead) {
                draws[k] = m_values[i + k];
                continue;
            }
            // Each output is the table entry its predecessor points at, and
            // that entry takes the new seed. Beside the table runs a table
            // of the entries' own top five bits, the index that entry leads
            // to, so the chain from one draw to the next is a single load.
            const int32_t seed = m_values[i + k];
            const std::size_t j = index;
            last = m_table[j];
            index = m_nextIndex[j];
            m_table[j] = seed;
            m_nextIndex[j] = static_cast<uint8_t>(static_cast<uint32_t>(seed) >> kIndexShift);
            draws[k] = last;
        }
        use(draws);
    }
    m_index = index;
    m_last = last;
}

}  // namespace kv
