#include "core/stimulus/SymbolSource.h"

#include <algorithm>
#include <cstring>

#include "core/stimulus/Code8b10b.h"
#include "core/stimulus/Random.h"

namespace kv {
namespace {

// Code groups per block of random draws (two draws a group).
constexpr std::size_t kGroupBatch = Ran1Block::kMaxCount / 2;

}  // namespace

SymbolSourceConfig PseudoRandomConfig(int degree) {
    SymbolSourceConfig config;
    config.degree = degree;
    return config;
}

SymbolSourceConfig Code8b10bConfig(int seed) {
    SymbolSourceConfig config;
    config.seed = seed > 0 ? seed : kFixed8b10bSeed;
    config.protocol = 1;
    return config;
}

std::string_view SymbolErrorText(int code) {
    switch (code) {
        case symbol_error::kCannotRead:
            return "Cannot read from given PRBS file";
        case symbol_error::kUnknownProtocol:
            return "Unknown protocol type";
        case symbol_error::kRunLength:
            return "Running length exceeded";
        case symbol_error::kParity:
            return "Running parity rule violated";
        case symbol_error::kStartGroupSize:
            return "Invalid start group size: must be 4 or 6";
        default:
            return {};
    }
}

SymbolSource::SymbolSource(const SymbolSourceConfig& config) : m_config(config) {
    // The source keeps its own copy, so the caller's pattern may go away.
    if (config.pattern != nullptr && config.patternLength > 0) {
        m_pattern.assign(config.pattern, config.pattern + config.patternLength);
    }
    m_config.pattern = nullptr;
    // Minus the seed; the most negative seed has no opposite and stays as it
    // is (negated modulo 2^32), which the generator reads as magnitude 2^31.
    m_cursor.seedWord = static_cast<int32_t>(0u - static_cast<uint32_t>(config.seed));
    m_cursor.patternRemaining = m_pattern.size();
    m_cursor.repetitions = config.repetitions;
    if (config.degree != 0) {
        m_register.emplace(config.degree);
    }
    if (config.path) {
        m_path = *config.path;
        // A file that cannot be opened is reported by the first read.
        m_file.reset(std::fopen(m_path.c_str(), "r"));
    }
}

int SymbolSource::SetError(int code) {
    const std::string_view text = SymbolErrorText(code);
    if (text.empty()) {
        m_error.reset();
        return 1;
    }
    m_error = std::string(text);
    return 0;
}

void SymbolSource::MakeCodeGroup() {
    // Both numbers are drawn before encoding, the 6-bit row first.
    const double u1 = Ran1(m_cursor.seedWord);
    const double u2 = Ran1(m_cursor.seedWord);
    const EncodedGroup& group =
        EncodeGroup(m_cursor.disparity, Row6FromUniform(u1), Row4FromUniform(u2));
    std::copy_n(group.symbols.begin(), 10, m_cursor.pending.begin());
    m_cursor.disparity = group.disparityAfter;
    m_cursor.pendingIndex = 0;
}

int SymbolSource::NextSymbol(int& symbol) {
    if (HasFile() && !m_file) {
        return SetError(symbol_error::kCannotRead);
    }
    if (m_register) {
        symbol = m_register->Step() ? 1 : -1;
        return 1;
    }
    if (HasPattern()) {
        if (m_cursor.patternRemaining == 0) {
            if (--m_cursor.repetitions == 0) {
                return -1;
            }
            m_cursor.patternPosition = 0;
            m_cursor.patternRemaining = m_pattern.size();
        }
        symbol = m_pattern[m_cursor.patternPosition++] != 0 ? 1 : -1;
        --m_cursor.patternRemaining;
        return 1;
    }
    if (!HasFile() && m_config.protocol == 1) {
        if (m_cursor.pendingIndex >= 10) {
            MakeCodeGroup();
        }
        symbol = m_cursor.pending[static_cast<std::size_t>(m_cursor.pendingIndex++)];
        return 1;
    }
    if (!HasFile() && m_config.protocol == 0) {
        symbol = Ran1(m_cursor.seedWord) < 0.5 ? -1 : 1;
        return 1;
    }
    if (!HasFile()) {
        // No kind of source applies: an unknown protocol without a file.
        return SetError(symbol_error::kUnknownProtocol);
    }
    return NextFromFile(symbol);
}

int SymbolSource::NextFromFile(int& symbol) {
    for (;;) {
        const int c = std::getc(m_file.get());
        if (c == ' ' || c == '\t' || c == '\n' || c == ',' || c == '+') {
            continue;
        }
        if (c == '0' || c == '1') {
            symbol = c == '1' ? 1 : -1;
            ++m_symbolsThisPass;
            return 1;
        }
        if (c != EOF) {
            return SetError(symbol_error::kCannotRead);
        }
        if (std::ferror(m_file.get())) {
            return SetError(symbol_error::kCannotRead);
        }
        if (--m_cursor.repetitions == 0 || m_symbolsThisPass == 0) {
            return -1;
        }
        // Read on from the start; the file may have gone in the meantime.
        m_file.reset(std::fopen(m_path.c_str(), "r"));
        m_symbolsThisPass = 0;
        if (!m_file) {
            return SetError(symbol_error::kCannotRead);
        }
    }
}

std::size_t SymbolSource::ReadSymbols(std::span<int8_t> out, int& status) {
    status = 1;
    // The kinds that are generated rather than read go in blocks; the rest
    // (a register, a file, an error) one symbol at a time.
    const bool fileProblem = HasFile() && !m_file;
    if (!fileProblem && !m_register && HasPattern()) {
        return FillPattern(out, status);
    }
    if (!HasFile() && !m_register && !HasPattern() && m_config.protocol == 1) {
        return FillCodeGroups(out);
    }
    if (!HasFile() && !m_register && !HasPattern() && m_config.protocol == 0) {
        return FillRandomBits(out);
    }
    for (std::size_t i = 0; i < out.size(); ++i) {
        int symbol = 0;
        const int result = NextSymbol(symbol);
        if (result < 1) {
            status = result;
            return i;
        }
        out[i] = static_cast<int8_t>(symbol);
    }
    return out.size();
}

std::size_t SymbolSource::FillPattern(std::span<int8_t> out, int& status) {
    std::size_t written = 0;
    while (written < out.size()) {
        if (m_cursor.patternRemaining == 0) {
            if (--m_cursor.repetitions == 0) {
                status = -1;
                return written;
            }
            m_cursor.patternPosition = 0;
            m_cursor.patternRemaining = m_pattern.size();
        }
        const std::size_t count = std::min(out.size() - written, m_cursor.patternRemaining);
        const uint8_t* from = m_pattern.data() + m_cursor.patternPosition;
        int8_t* to = out.data() + written;
        for (std::size_t i = 0; i < count; ++i) {
            to[i] = from[i] != 0 ? 1 : -1;
        }
        m_cursor.patternPosition += count;
        m_cursor.patternRemaining -= count;
        written += count;
    }
    return written;
}

std::size_t SymbolSource::FillCodeGroups(std::span<int8_t> out) {
    std::size_t written = 0;
    // Symbols left over from the last group come first.
    while (written < out.size() && m_cursor.pendingIndex < 10) {
        out[written++] = m_cursor.pending[static_cast<std::size_t>(m_cursor.pendingIndex++)];
    }
    const EncodedGroup* table = EncodedGroupTable();
    // Whether a group flips the disparity does not depend on the disparity
    // it starts from, so the running disparity is a chain of XORs and the
    // table look-ups are independent of each other.
    unsigned positive = m_cursor.disparity > 0 ? 1u : 0u;
    while (out.size() - written >= 10) {
        const std::size_t groups = std::min(kGroupBatch, (out.size() - written) / 10);
        int8_t* to = out.data() + written;
        const int8_t* const end = out.data() + out.size();
        Ran1Block draws(m_cursor.seedWord, 2 * groups);
        // Both numbers are drawn before encoding, the 6-bit row first.
        draws.Run<2>([&](const std::array<int32_t, 2>& raw) {
            const auto r6 = static_cast<unsigned>(Row6FromUniform(RawToUniform(raw[0])));
            const auto r4 = static_cast<unsigned>(Row4FromUniform(RawToUniform(raw[1])));
            const unsigned row = r6 * 9 + r4;
            const EncodedGroup& group = table[positive * 297 + row];
            // A whole 16-byte copy is one move; the six bytes past the group
            // are written again by the next one.
            if (end - to >= static_cast<std::ptrdiff_t>(group.symbols.size())) {
                std::memcpy(to, group.symbols.data(), group.symbols.size());
            } else {
                std::memcpy(to, group.symbols.data(), 10);
            }
            to += 10;
            positive ^= table[row].disparityAfter < 0 ? 0u : 1u;
        });
        written += 10 * groups;
    }
    const int disparity = positive ? 1 : -1;
    m_cursor.disparity = disparity;
    if (written < out.size()) {
        MakeCodeGroup();
        while (written < out.size()) {
            out[written++] = m_cursor.pending[static_cast<std::size_t>(m_cursor.pendingIndex++)];
        }
    }
    return written;
}

std::size_t SymbolSource::FillRandomBits(std::span<int8_t> out) {
    std::array<int32_t, 1024> raw;
    std::size_t written = 0;
    while (written < out.size()) {
        const std::size_t count = std::min(raw.size(), out.size() - written);
        const std::span<int32_t> draws(raw.data(), count);
        Ran1Raw(m_cursor.seedWord, draws);
        for (std::size_t i = 0; i < count; ++i) {
            out[written + i] = RawToUniform(draws[i]) < 0.5 ? -1 : 1;
        }
        written += count;
    }
    return written;
}

}  // namespace kv
