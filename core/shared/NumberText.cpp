#include "core/shared/NumberText.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

#include "core/shared/AsciiText.h"

namespace kv {
namespace {

bool IsHexDigit(char c) {
    return IsAsciiDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::chars_format CharsFormat(NumberStyle style) {
    switch (style) {
        case NumberStyle::Fixed:
            return std::chars_format::fixed;
        case NumberStyle::Scientific:
            return std::chars_format::scientific;
        case NumberStyle::Significant:
            break;
    }
    return std::chars_format::general;
}

// "0x" followed by a hexadecimal digit, or by a point and one: strtod reads
// the rest as hexadecimal; otherwise the "0" alone is the number.
bool StartsHexadecimal(std::string_view digits) {
    return digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X') &&
           (IsHexDigit(digits[2]) ||
            (digits[2] == '.' && digits.size() > 3 && IsHexDigit(digits[3])));
}

// Where a number's digits start: after leading blanks and at most one sign.
struct SignedStart {
    std::size_t at = 0;
    bool negative = false;
};
SignedStart SkipBlanksAndSign(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && IsAsciiSpace(text[at])) {
        ++at;
    }
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        ++at;
    }
    return {at, negative};
}

}  // namespace

std::string PrintNumber(double value, NumberStyle style, int precision) {
    precision = std::clamp(precision, 0, 100);
    // Sign, every integer digit of the largest double, point, the decimals and
    // an exponent: enough for any style.
    std::string text(
        static_cast<std::size_t>(std::numeric_limits<double>::max_exponent10 + precision + 16),
        '\0');
    const auto printed =
        std::to_chars(text.data(), text.data() + text.size(), value, CharsFormat(style), precision);
    text.resize(static_cast<std::size_t>(printed.ptr - text.data()));
    return text;
}

std::optional<NumberPrefix> ReadNumberPrefix(std::string_view text) {
    auto [at, negative] = SkipBlanksAndSign(text);
    // from_chars takes no plus sign and a minus of its own: a second sign is
    // no number for strtod.
    if (at >= text.size() || text[at] == '+' || text[at] == '-') {
        return std::nullopt;
    }
    const std::string_view digits = text.substr(at);
    const char* last = digits.data() + digits.size();
    double magnitude = 0.0;
    std::from_chars_result read{};
    if (StartsHexadecimal(digits)) {
        read = std::from_chars(digits.data() + 2, last, magnitude, std::chars_format::hex);
    } else {
        read = std::from_chars(digits.data(), last, magnitude);
    }
    if (read.ec == std::errc::invalid_argument) {
        return std::nullopt;
    }
    NumberPrefix number;
    number.length = static_cast<std::size_t>(read.ptr - text.data());
    if (read.ec == std::errc::result_out_of_range) {
        // from_chars leaves the value alone; strtod gives infinity for an
        // overflow and zero for an underflow.
        const std::string_view consumed(digits.data(),
                                        static_cast<std::size_t>(read.ptr - digits.data()));
        const std::size_t exponent = consumed.find_first_of("eEpP");
        const bool overflow = exponent == std::string_view::npos ||
                              exponent + 1 >= consumed.size() || consumed[exponent + 1] != '-';
        magnitude = overflow ? HUGE_VAL : 0.0;
        number.outOfRange = true;
    } else if (magnitude != 0.0 && std::isfinite(magnitude) &&
               magnitude < std::numeric_limits<double>::min()) {
        number.outOfRange = true;  // subnormal: strtod reports the underflow
    }
    number.value = negative ? -magnitude : magnitude;
    return number;
}

std::optional<double> ParseRealPrefix(std::string_view text) {
    const auto number = ReadNumberPrefix(text);
    return number ? std::optional<double>(number->value) : std::nullopt;
}

std::optional<int> ParseIntPrefix(std::string_view text) {
    auto [at, negative] = SkipBlanksAndSign(text);
    if (at >= text.size() || !IsAsciiDigit(text[at])) {
        return std::nullopt;
    }
    int64_t magnitude = 0;
    for (; at < text.size() && IsAsciiDigit(text[at]); ++at) {
        magnitude = std::min<int64_t>(magnitude * 10 + (text[at] - '0'), int64_t{INT_MAX} + 1);
    }
    const int64_t value = negative ? -magnitude : magnitude;
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

std::optional<double> ParseFiniteNumber(std::string_view text) {
    if (text.empty() || IsAsciiSpace(text.front())) {
        return std::nullopt;
    }
    const auto number = ReadNumberPrefix(text);
    // An underflow reads as the tiny value or zero, as a person means it.
    if (!number || number->length != text.size() || !std::isfinite(number->value)) {
        return std::nullopt;
    }
    return number->value;
}

std::optional<long long> ParseWholeInteger(std::string_view text) {
    const std::size_t sign = !text.empty() && text.front() == '+' ? 1 : 0;
    const std::string_view digits = text.substr(sign);
    if (digits.empty() || (sign == 1 && digits.front() == '-')) {
        return std::nullopt;
    }
    long long value = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return value;
}

}  // namespace kv
