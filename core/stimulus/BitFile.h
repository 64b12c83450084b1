#pragma once

#include <optional>
#include <string>

#include "core/stimulus/StimulusData.h"

// ".bit" files: custom sequences as '0' and '1' characters, first bit first.
// Every problem is told to the user through the message port.

namespace kv {

inline constexpr std::size_t kMaxBitFileBits = 32768;
inline constexpr std::string_view kBitFileFilter =
    "Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|";
inline constexpr std::string_view kBitFileExtension = "bit";

// The bits of the file, at most 32768 of them (more are cut, with a
// message); none, after a message, when the file cannot be read or holds a
// character that is neither a digit 0/1 nor a separator (blank, tab, ',',
// ';', CR, LF).
std::optional<BitVector> ReadBitFile(const std::string& path);

// Writes the bits with no separators and no line end, replacing the file.
// False, after a message, when it cannot be written.
bool WriteBitFile(const std::string& path, const BitVector& bits);

}  // namespace kv
