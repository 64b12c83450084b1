#pragma once

#include <optional>
#include <string>
#include <string_view>

// The numeric fields of the eye-diagram pages: three decimals on screen,
// always with a decimal point, as the fields' range messages write their
// numbers, whatever the locale.

namespace kv {

std::string FormatFieldValue(double value);
// The number typed, or none for text that is no number. The decimal point is
// "." in every locale; a comma is no decimal point, so "1,5" is refused (and
// the field shows its range message) rather than read as 1 or as 1.5.
std::optional<double> ParseFieldValue(std::string_view text);

}  // namespace kv
