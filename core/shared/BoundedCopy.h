#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

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

// A fixed-size text field of a record up to its NUL, or all of its bytes when the writer (a
// host, a file) filled every one of them.
template <std::size_t N>
std::string_view FieldText(const char (&field)[N]) {
    return {field, static_cast<std::size_t>(std::find(field, field + N, '\0') - field)};
}

// Puts `text`, cut to N - 1 bytes, into a fixed-size text field and clears the bytes after it.
// Returns false when it had to cut, so readers of outside data can refuse a name that does not
// fit.
template <std::size_t N>
bool SetFieldText(char (&field)[N], std::string_view text) {
    const std::size_t kept = std::min(text.size(), N - 1);
    std::copy_n(text.data(), kept, field);
    std::fill(field + kept, field + N, '\0');
    return kept == text.size();
}

}  // namespace kv
