#include "core/shared/CompactExponent.h"

#include <cmath>
#include <string_view>

#include "core/shared/BoundedCopy.h"
#include "core/shared/NumberText.h"
#include "core/shared/TextArgument.h"

namespace kv {

std::string FormatCompactExponentText(double value) {
    if (value == 0.0) {
        return "0.000000";
    }
    if (!std::isfinite(value)) {
        return std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
    }
    // Scientific printing rounds in decimal, so 9.9999996 becomes "1.000000e+01" and the
    // carry into the next decade is already in the exponent.
    const std::string scientific = PrintNumber(std::fabs(value), NumberStyle::Scientific, 6);
    const std::string_view digits = scientific;  // "d.dddddde[+-]xx"
    const std::size_t e = digits.find('e');
    const int exponent = ParseIntPrefix(digits.substr(e + 1)).value_or(0);

    std::string text = value < 0 ? "-" : "";
    text.append(digits.substr(0, e));
    if (exponent != 0) {
        text += 'e';
        text += std::to_string(exponent);
    }
    return text;
}

char* FormatCompactExponent(double value, char* destination) {
    KV_ASSERT_TEXT(destination);
    const std::string text = FormatCompactExponentText(value);
    return destination + CopyBounded(destination, text.c_str(), kCompactExponentSize - 1);
}

}  // namespace kv
