#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The uuencoded form in which long custom bit sequences are stored: lines of
// at most 45 bytes, each led by its length character and ended by CR LF;
// a 6-bit value k is written as 32 + k, except 0, which is the grave accent.

namespace kv {

struct UuencodeOptions {
    // A "begin 666 <name>" line first (the name must be shorter than 260
    // characters, else the header is left out).
    std::optional<std::string> beginName;
    bool endLines = false;         // a closing "`" line and "end"
    bool doubleFullStops = false;  // a length character '.' written twice
};

std::string Uuencode(std::span<const uint8_t> bytes, const UuencodeOptions& options = {});

// Decodes into `out` (which keeps its size; bytes beyond the text stay as
// they are). Fails on a character outside the encoding's range or a line
// shorter than its length character says; a line of length 0 ends the data.
// Returns the number of bytes decoded, or none on failure.
std::optional<std::size_t> Uudecode(std::string_view text, std::span<uint8_t> out);

// Bits packed into (n / 8) + 2 bytes, bit i at byte i / 8, weight 2^(i % 8).
std::vector<uint8_t> PackBits(std::span<const uint8_t> bits);

}  // namespace kv
