#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// The two line rules of 8B/10B applied to a symbol stream: no run of more
// than five equal symbols, and sub-block sums (groups alternating between
// the start size and ten minus it) of at most 2 in magnitude whose non-zero
// values alternate in sign.

namespace kv {

class StreamRules {
public:
    explicit StreamRules(int startGroupSize)
        : m_groupSize(startGroupSize), m_startSize(startGroupSize) {}

    // Takes one symbol; 0 while the rules hold, else the error code (run
    // length before disparity when one symbol breaks both).
    int Feed(int symbol);

    // Takes whole ten-symbol periods; the stream must be at a period
    // boundary. Returns the error code and sets `errorIndex` to the symbol
    // that broke a rule, or returns 0 when all of them pass.
    int FeedPeriods(std::span<const int8_t> symbols, std::size_t& errorIndex);

private:
    int m_previous = 0;  // no symbol yet
    int m_run = 0;
    int m_sum = 0;
    int m_position = 0;
    int m_groupSize;
    int m_startSize;
    int m_lastSign = 0;  // of the last non-zero group sum
};

}  // namespace kv
