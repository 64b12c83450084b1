#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/stimulus/ShiftRegister.h"

// A stream of symbols, +1 for a one and -1 for a zero, from one of: a shift
// register, a fixed pattern, random 8B/10B code groups, random bits, or a
// sequence file of '0' and '1' characters.

namespace kv {

struct SymbolSourceConfig {
    int32_t seed = 0;                  // of the random generator
    int32_t protocol = 0;              // 0 plain bits, 1 8B/10B code groups
    int32_t degree = 0;                // of the shift register; 0 for none
    std::optional<std::string> path;   // a sequence file
    const uint8_t* pattern = nullptr;  // non-zero bytes are ones; copied at creation
    int32_t patternLength = 0;
    int32_t repetitions = 1;  // plays of the pattern or file
};

// The shift register of `degree` (clamped to 3-32 by the register).
SymbolSourceConfig PseudoRandomConfig(int degree);
// Random 8B/10B code groups from `seed` when it is positive, else from a
// fixed seed, so a sequence without a seed of its own is still reproducible.
SymbolSourceConfig Code8b10bConfig(int seed);
inline constexpr int32_t kFixed8b10bSeed = 91847437;

namespace symbol_error {
inline constexpr int kNone = 0;
inline constexpr int kCannotRead = 1;
inline constexpr int kUnknownProtocol = 2;
inline constexpr int kRunLength = 3;
inline constexpr int kParity = 4;
inline constexpr int kStartGroupSize = 5;
}  // namespace symbol_error

// The fixed text of an error code; empty for 0 and unknown codes.
std::string_view SymbolErrorText(int code);

class SymbolSource {
public:
    explicit SymbolSource(const SymbolSourceConfig& config);

    // 1 and a symbol; -1 at the end of a finite source; 0 on error, with the
    // error text set.
    int NextSymbol(int& symbol);

    // Fills `out` as successive NextSymbol calls would and returns how many
    // symbols it produced; `status` is 1 when `out` was filled, else the
    // result of the call that ended the stream. Generated kinds work in
    // blocks; the stream and the shared random state end up exactly where the
    // calls one at a time would leave them.
    std::size_t ReadSymbols(std::span<int8_t> out, int& status);

    // One new code group into the pending buffer; updates the running
    // disparity.
    void MakeCodeGroup();

    // Checks the stream against the 8B/10B run-length and disparity rules:
    // 1 when nothing was broken (or there is nothing to check), 0 after an
    // error, whose text is set; `ok` says the same. Reads in blocks where the
    // source allows it.
    int CheckStream(bool& ok, int startGroupSize);
    // The same, one NextSymbol at a time: the reference for the block form.
    int CheckStreamStepwise(bool& ok, int startGroupSize);

    // Sets the text of `code` and returns 0; 0 or an unknown code clears the
    // text and returns 1.
    int SetError(int code);
    const std::optional<std::string>& Error() const { return m_error; }

    int RunningDisparity() const { return m_cursor.disparity; }

private:
    struct FileCloser {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

    // Everything a read changes, so that a block reader can put it back.
    struct Cursor {
        int32_t seedWord = 0;
        int disparity = 1;
        std::array<int8_t, 10> pending{};
        int pendingIndex = 10;  // all used: the first request makes a group
        std::size_t patternPosition = 0;
        std::size_t patternRemaining = 0;
        int32_t repetitions = 1;
    };

    bool HasFile() const { return m_config.path.has_value(); }
    bool HasPattern() const { return !m_pattern.empty(); }
    int NextFromFile(int& symbol);
    std::size_t FillCodeGroups(std::span<int8_t> out);
    std::size_t FillRandomBits(std::span<int8_t> out);
    std::size_t FillPattern(std::span<int8_t> out, int& status);
    int CheckBlocks(bool& ok, int startGroupSize);

    SymbolSourceConfig m_config;
    FileHandle m_file;
    std::string m_path;
    std::vector<uint8_t> m_pattern;
    Cursor m_cursor;
    std::optional<ShiftRegister> m_register;
    std::optional<std::string> m_error;
    // Symbols read from the file since it was last opened; a pass without
    // any ends the stream instead of reopening the file for ever.
    std::size_t m_symbolsThisPass = 0;
};

}  // namespace kv
