#include "core/settings/ValueText.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>

namespace kv {
namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size()) {
        return false;
    }
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        const char c =
            text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] - 'A' + 'a') : text[i];
        if (c != prefix[i]) {
            return false;
        }
    }
    return true;
}

// Skips leading white space and one sign, as strtol and strtod do; returns
// what follows and tells whether the sign was a minus.
std::string_view SkipSpaceAndSign(std::string_view text, bool& negative) {
    std::size_t i = 0;
    while (i < text.size() && IsSpace(text[i])) {
        ++i;
    }
    negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    return text.substr(i);
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

std::optional<int> ParseIntPrefix(std::string_view text) {
    bool negative = false;
    const std::string_view digits = SkipSpaceAndSign(text, negative);
    if (digits.empty() || !IsDigit(digits[0])) {
        return std::nullopt;
    }
    int64_t magnitude = 0;
    for (std::size_t i = 0; i < digits.size() && IsDigit(digits[i]); ++i) {
        magnitude = std::min<int64_t>(magnitude * 10 + (digits[i] - '0'), int64_t{INT_MAX} + 1);
    }
    const int64_t value = negative ? -magnitude : magnitude;
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

std::optional<double> ParseRealPrefix(std::string_view text) {
    bool negative = false;
    const std::string_view rest = SkipSpaceAndSign(text, negative);
    if (rest.empty() || rest[0] == '+' || rest[0] == '-') {
        return std::nullopt;  // from_chars would take a second sign
    }
    double value = 0.0;
    std::from_chars_result result{};
    if (StartsWithNoCase(rest, "0x")) {
        result = std::from_chars(rest.data() + 2, rest.data() + rest.size(), value,
                                 std::chars_format::hex);
        if (result.ec == std::errc::invalid_argument) {
            value = 0.0;  // "0x" without hex digits: the 0 alone is the number
        }
    } else {
        result = std::from_chars(rest.data(), rest.data() + rest.size(), value);
        if (result.ec == std::errc::invalid_argument) {
            return std::nullopt;
        }
    }
    if (result.ec == std::errc::result_out_of_range) {
        // strtod gives infinity for overflow and zero for underflow.
        const std::string_view consumed(rest.data(),
                                        static_cast<std::size_t>(result.ptr - rest.data()));
        const std::size_t exponent = consumed.find_first_of("eEpP");
        const bool overflow = exponent == std::string_view::npos ||
                              exponent + 1 >= consumed.size() || consumed[exponent + 1] != '-';
        value = overflow ? HUGE_VAL : 0.0;
    }
    return negative ? -value : value;
}

std::string FormatReal(double value) {
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    return std::string(buffer, result.ptr);
}

}  // namespace kv
