#pragma once

#include <cstddef>
#include <string>

// Reals with seven significant digits in the short form of the runtime's
// exponent conversion, for the texts that compare and store numbers so.

namespace kv {

// Bytes FormatCompactExponent may write, NUL included: "-4.940656e-324" is the longest text.
inline constexpr std::size_t kCompactExponentSize = 15;

// Writes `value` rounded to seven significant digits as "d.dddddd" with "e<exponent>" when
// the exponent is not zero ("-1.234568e-5", "2.000000", "1.000000e3"); zero is "0.000000".
// `destination` must hold kCompactExponentSize bytes. Returns the terminating NUL.
char* FormatCompactExponent(double value, char* destination);
std::string FormatCompactExponentText(double value);

}  // namespace kv
