#include "core/stimulus/StreamCheck.h"

#include <array>
#include <cstring>

#include "core/stimulus/SymbolSource.h"

// The block form checks one ten-symbol period per table look-up. A period is
// reduced to ten bits (bit i set for a -1 symbol at i); two small state
// machines, one per rule, each move by one table entry per period. An entry
// is the next state, or kFailed plus the position of the symbol at which the
// rule broke, so that an error is reported at exactly the symbol where the
// stepwise rules report it.

namespace kv {
namespace {

constexpr uint8_t kFailed = 0x80;
constexpr int kRunStates = 11;  // 0: no symbol yet; 1-5 runs of +1; 6-10 runs of -1
constexpr int kSignStates = 3;  // 0: no non-zero sum yet; 1 last positive; 2 last negative

int SymbolAt(unsigned period, int i) {
    return (period >> i) & 1u ? -1 : 1;
}

struct RunTable {
    std::array<std::array<uint8_t, 1024>, kRunStates> next;
};

const RunTable& Runs() {
    static const RunTable table = [] {
        RunTable t{};
        for (int state = 0; state < kRunStates; ++state) {
            for (unsigned period = 0; period < 1024; ++period) {
                int previous = state == 0 ? 0 : (state <= 5 ? 1 : -1);
                int run = state == 0 ? 0 : (state <= 5 ? state : state - 5);
                uint8_t result = 0;
                bool failed = false;
                for (int i = 0; i < 10 && !failed; ++i) {
                    const int symbol = SymbolAt(period, i);
                    run = symbol == previous ? run + 1 : 1;
                    previous = symbol;
                    if (run > 5) {
                        result = static_cast<uint8_t>(kFailed | i);
                        failed = true;
                    }
                }
                if (!failed) {
                    result = static_cast<uint8_t>(previous > 0 ? run : run + 5);
                }
                t.next[static_cast<std::size_t>(state)][period] = result;
            }
        }
        return t;
    }();
    return table;
}

struct SignTable {
    std::array<std::array<uint8_t, 1024>, kSignStates> next;
};

SignTable MakeSignTable(int startSize) {
    SignTable t{};
    for (int state = 0; state < kSignStates; ++state) {
        for (unsigned period = 0; period < 1024; ++period) {
            int lastSign = state == 0 ? 0 : (state == 1 ? 1 : -1);
            uint8_t result = 0;
            bool failed = false;
            int begin = 0;
            for (int size : {startSize, 10 - startSize}) {
                int sum = 0;
                for (int i = begin; i < begin + size; ++i) {
                    sum += SymbolAt(period, i);
                }
                const int last = begin + size - 1;
                begin += size;
                const int sign = sum > 0 ? 1 : (sum < 0 ? -1 : 0);
                if (sum > 2 || sum < -2 || (sign != 0 && sign == lastSign)) {
                    result = static_cast<uint8_t>(kFailed | last);
                    failed = true;
                    break;
                }
                if (sign != 0) {
                    lastSign = sign;
                }
            }
            if (!failed) {
                result = static_cast<uint8_t>(lastSign == 0 ? 0 : (lastSign > 0 ? 1 : 2));
            }
            t.next[static_cast<std::size_t>(state)][period] = result;
        }
    }
    return t;
}

const SignTable& Signs(int startSize) {
    static const SignTable four = MakeSignTable(4);
    static const SignTable six = MakeSignTable(6);
    return startSize == 4 ? four : six;
}

// The sign bits of eight symbols as eight bits, symbol i at bit i.
inline unsigned NegativeBits8(const int8_t* symbols) {
    uint64_t word;
    std::memcpy(&word, symbols, 8);
    const uint64_t signs = (word >> 7) & 0x0101010101010101ull;
    return static_cast<unsigned>((signs * 0x0102040810204080ull) >> 56);
}

// Ten symbols as ten bits, symbol i at bit i set when it is -1.
inline unsigned PeriodBits(const int8_t* symbols) {
    return NegativeBits8(symbols) | (symbols[8] < 0 ? 0x100u : 0u) | (symbols[9] < 0 ? 0x200u : 0u);
}

}  // namespace

int StreamRules::Feed(int symbol) {
    m_run = symbol == m_previous ? m_run + 1 : 1;
    m_previous = symbol;
    if (m_run > 5) {
        return symbol_error::kRunLength;
    }
    m_sum += symbol;
    if (++m_position < m_groupSize) {
        return 0;
    }
    const int sum = m_sum;
    m_sum = 0;
    m_position = 0;
    m_groupSize = 10 - m_groupSize;
    if (sum > 2 || sum < -2) {
        return symbol_error::kParity;
    }
    if (sum != 0) {
        const int sign = sum > 0 ? 1 : -1;
        if (sign == m_lastSign) {
            return symbol_error::kParity;
        }
        m_lastSign = sign;
    }
    return 0;
}

int StreamRules::FeedPeriods(std::span<const int8_t> symbols, std::size_t& errorIndex) {
    const RunTable& runs = Runs();
    const SignTable& signs = Signs(m_startSize);
    unsigned runState =
        m_previous == 0 ? 0u : static_cast<unsigned>(m_previous > 0 ? m_run : m_run + 5);
    unsigned signState = m_lastSign == 0 ? 0u : (m_lastSign > 0 ? 1u : 2u);
    const std::size_t periods = symbols.size() / 10;
    const int8_t* data = symbols.data();
    for (std::size_t p = 0; p < periods; ++p) {
        const unsigned bits = PeriodBits(data + 10 * p);
        const uint8_t run = runs.next[runState][bits];
        const uint8_t sign = signs.next[signState][bits];
        if (((run | sign) & kFailed) != 0) {
            const unsigned runAt = run & kFailed ? run & 0x0fu : 10u;
            const unsigned signAt = sign & kFailed ? sign & 0x0fu : 10u;
            const bool runFirst = runAt <= signAt;
            errorIndex = 10 * p + (runFirst ? runAt : signAt);
            return runFirst ? symbol_error::kRunLength : symbol_error::kParity;
        }
        runState = run;
        signState = sign;
    }
    // Back to the stepwise form, so that a tail can be fed symbol by symbol.
    m_previous = runState == 0 ? 0 : (runState <= 5 ? 1 : -1);
    m_run = runState <= 5 ? static_cast<int>(runState) : static_cast<int>(runState) - 5;
    m_lastSign = signState == 0 ? 0 : (signState == 1 ? 1 : -1);
    return 0;
}

}  // namespace kv
