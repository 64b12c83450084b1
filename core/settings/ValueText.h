#pragma once

#include <optional>
#include <string>
#include <string_view>

// Numbers as stored text, independent of the process locale: the host may
// set LC_NUMERIC, and a stored "3.3" must read as 3.3 everywhere.

namespace kv {

// A base-10 integer prefix as strtol reads it (leading white space, an
// optional sign, digits), saturated to the 32-bit range; none when no digit
// was consumed.
std::optional<int> ParseIntPrefix(std::string_view text);

// A real prefix as strtod reads it in the C locale (leading white space, an
// optional sign, decimal or hexadecimal digits, exponent, inf, nan); none
// when nothing was consumed.
std::optional<double> ParseRealPrefix(std::string_view text);

// atof: the real prefix, or 0 when there is none.
inline double ParseRealOrZero(std::string_view text) {
    return ParseRealPrefix(text).value_or(0.0);
}

// "%.15g" in the C locale.
std::string FormatReal(double value);

}  // namespace kv
