#pragma once

#include <string>
#include <string_view>

// The texts the chart writes: grid line labels with the axis' SI prefix
// and unit, and the cursor readout.

namespace kv {

// The label of a grid line at `value` on an axis whose prefix row is
// `prefixRow` (see ChoosePrefixRow): " %.4g%s%s " of the scaled value,
// prefix and unit; " %.2e%s " of the value and unit when that text holds a
// lower-case "e" or the prefix lies outside pico to tera.
std::string LabelText(double value, int prefixRow, std::string_view unit);

// One value of the readout with the prefix chosen for it alone: "%.5g%s%s"
// of the scaled value, prefix and unit, or "%.3e%s" of the value and unit
// when the prefix lies outside pico to tera.
std::string ReadoutValueText(double value, bool prefixes, std::string_view unit);

struct ReadoutRequest {
    double x = 0.0;
    double y = 0.0;
    std::string_view xUnit;
    std::string_view yUnit;
    bool prefixes = true;
    std::string_view curveName;  // empty when no named curve is tracked
};

// The curve name (possibly empty), three blanks, the x value and " ,",
// then the y value.
std::string ReadoutText(const ReadoutRequest& request);

}  // namespace kv
