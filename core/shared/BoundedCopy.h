#pragma once

#include <cstddef>

// Copies into caller buffers given as (pointer, capacity): capacity counts the
// characters that may be written without the terminating NUL, so the caller
// provides capacity + 1 bytes. A null text ends the process with a report.

namespace kv {

// Copies `source` until its end or until `capacity` characters, then writes a NUL.
// Returns the number of characters copied.
std::size_t CopyBounded(char* destination, const char* source, std::size_t capacity);

// Appends `source` to the text in `destination` while the total stays within `capacity`
// characters. A destination already `capacity` or more characters long is left as it is.
// Returns the resulting length.
std::size_t AppendBounded(char* destination, const char* source, std::size_t capacity);

}  // namespace kv
