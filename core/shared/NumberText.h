#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Numbers as text, whatever the process locale is: the host may switch
// LC_NUMERIC to a locale with a decimal comma, while stored settings, SPICE
// files and the engineering texts must keep a "." that every reader
// understands. Every number the library prints or reads goes through here.

namespace kv {

enum class NumberStyle {
    Fixed,        // "%.<precision>f"
    Significant,  // "%.<precision>g"
    Scientific,   // "%.<precision>e"
};

// The one number printer: `value` as printf prints it in the "C" locale.
std::string PrintNumber(double value, NumberStyle style, int precision);

inline std::string FormatFixed(double value, int decimals) {
    return PrintNumber(value, NumberStyle::Fixed, decimals);
}
inline std::string FormatSignificant(double value, int digits) {
    return PrintNumber(value, NumberStyle::Significant, digits);
}
// "%.15g": how the stimulus settings store their reals.
inline std::string FormatReal(double value) {
    return FormatSignificant(value, 15);
}

// A number at the start of a text, as strtod reads it in the "C" locale.
struct NumberPrefix {
    double value = 0.0;       // +-HUGE_VAL on overflow, 0 on underflow
    std::size_t length = 0;   // characters read, leading white space included
    bool outOfRange = false;  // strtod's ERANGE: overflow, or a result below the normal range
};

// The one number reader: leading white space, an optional sign, decimal
// digits with point and exponent, "0x" hexadecimal, "inf" and "nan". None
// when no number starts the text.
std::optional<NumberPrefix> ReadNumberPrefix(std::string_view text);

// strtod and atof in the "C" locale: the real prefix, overflow as infinity.
std::optional<double> ParseRealPrefix(std::string_view text);
inline double ParseRealOrZero(std::string_view text) {
    return ParseRealPrefix(text).value_or(0.0);
}

// strtol's base-10 prefix (leading white space, an optional sign, digits),
// saturated to the 32-bit range; none when no digit was read.
std::optional<int> ParseIntPrefix(std::string_view text);

// Values a person typed: the whole text must be the number, with nothing
// before or after it. A real must be finite ("nan", "inf" and numbers too
// large to read are refused); an integer must fit `long long`.
std::optional<double> ParseFiniteNumber(std::string_view text);
std::optional<long long> ParseWholeInteger(std::string_view text);

}  // namespace kv
