#include <algorithm>
#include <vector>

#include "core/stimulus/Random.h"
#include "core/stimulus/StreamCheck.h"
#include "core/stimulus/SymbolSource.h"

namespace kv {
namespace {

// A stream is examined up to this many symbols; an endless generator passes
// once it got that far.
constexpr int64_t kSymbolLimit = 1'000'000'000;

// Symbols per block: whole ten-symbol periods, small enough for the cache.
constexpr std::size_t kBlockSymbols = 16000;

}  // namespace

int SymbolSource::CheckStreamStepwise(bool& ok, int startGroupSize) {
    ok = false;
    if (m_config.protocol == 0) {
        ok = true;
        return 1;  // plain bits follow no line rule
    }
    if (m_config.protocol != 1) {
        return SetError(symbol_error::kUnknownProtocol);
    }
    if (startGroupSize == 0) {
        startGroupSize = 6;
    }
    if (startGroupSize != 4 && startGroupSize != 6) {
        return SetError(symbol_error::kStartGroupSize);
    }
    StreamRules rules(startGroupSize);
    for (int64_t examined = 0; examined < kSymbolLimit; ++examined) {
        int symbol = 0;
        if (NextSymbol(symbol) < 1) {
            break;  // the end, or a read error whose text the source keeps
        }
        if (const int error = rules.Feed(symbol); error != 0) {
            return SetError(error);
        }
    }
    ok = true;
    return 1;
}

int SymbolSource::CheckStream(bool& ok, int startGroupSize) {
    // A file is read one character at a time anyway, and cannot be wound
    // back cheaply; the preliminary checks are the same for both forms.
    if (HasFile() || m_config.protocol != 1 ||
        (startGroupSize != 0 && startGroupSize != 4 && startGroupSize != 6)) {
        return CheckStreamStepwise(ok, startGroupSize);
    }
    return CheckBlocks(ok, startGroupSize == 0 ? 6 : startGroupSize);
}

int SymbolSource::CheckBlocks(bool& ok, int startGroupSize) {
    ok = false;
    StreamRules rules(startGroupSize);
    std::vector<int8_t> block(kBlockSymbols);
    int64_t examined = 0;
    while (examined < kSymbolLimit) {
        const std::size_t wanted =
            static_cast<std::size_t>(std::min<int64_t>(kBlockSymbols, kSymbolLimit - examined));
        // A block reads ahead of the symbol that may break a rule; keep what
        // is needed to put the stream back to just after that symbol.
        const Cursor cursor = m_cursor;
        const std::optional<ShiftRegister> shiftRegister = m_register;
        const Ran1State random = SaveRan1State();

        int status = 1;
        const std::span<int8_t> symbols(block.data(), wanted);
        const std::size_t got = ReadSymbols(symbols, status);
        const std::size_t whole = got - got % 10;
        std::size_t errorIndex = 0;
        int error = rules.FeedPeriods(symbols.first(whole), errorIndex);
        for (std::size_t i = whole; error == 0 && i < got; ++i) {
            error = rules.Feed(block[i]);
            errorIndex = i;
        }
        if (error != 0) {
            m_cursor = cursor;
            m_register = shiftRegister;
            RestoreRan1State(random);
            ReadSymbols(symbols.first(errorIndex + 1), status);
            return SetError(error);
        }
        examined += static_cast<int64_t>(got);
        if (got < wanted) {
            break;  // the stream ended or failed to read
        }
    }
    ok = true;
    return 1;
}

}  // namespace kv
