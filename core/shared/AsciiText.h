#pragma once

#include <string_view>

// The character rules every reader of a stored or typed text shares: the
// initialisation files, the number texts, the waveform files, the command
// line and the name collation. They are the "C" locale's, on purpose: a host
// may switch the locale, and a file must read the same wherever it is read.

namespace kv {

// Blank, tab, line feed, carriage return, form feed and vertical tab.
constexpr bool IsAsciiSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

constexpr bool IsAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool IsAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// "A"-"Z" to "a"-"z"; every other byte as it is.
constexpr char FoldAsciiCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Case-insensitive comparison of ASCII names.
bool EqualNoCase(std::string_view a, std::string_view b);

// `text` without the white space (IsAsciiSpace) at either end.
std::string_view TrimSpace(std::string_view text);

}  // namespace kv
