#include "core/shared/UnitFormat.h"

#include <cmath>
#include <limits>
#include <span>
#include <string>

#include "core/shared/BoundedCopy.h"
#include "core/shared/NumberText.h"
#include "core/shared/TextArgument.h"

namespace kv {
namespace {

// One row of a unit table. Rows are tried in order and the first whose bound lies above the
// measured magnitude is taken; the last row takes whatever is left, including infinities and
// NaN, which is why out-of-range rows sit last.
struct UnitRange {
    double below;
    double scale;  // factor from the value to the printed number; 0 prints zero
    int decimals;  // digits after the point, or kOutOfRange for the text "999"
    const char* unit;
};

constexpr int kOutOfRange = -1;
// Below the smallest positive double lies only zero: rows with this bound catch exact zero.
constexpr double kOnlyZero = std::numeric_limits<double>::denorm_min();
constexpr double kRest = std::numeric_limits<double>::infinity();
// A scale of zero prints the value as zero: both the near-zero rows and the rows for exact
// zero, where it also keeps a negative zero from showing as "-0.0".
constexpr double kShowZero = 0.0;

// clang-format off
constexpr UnitRange kInchRanges[] = {
    {0.1,       1000,      1, "mils"},
    {kRest,     1,         2, "in"},
};

constexpr UnitRange kMetricRanges[] = {
    {0.0001,    1e6,       0, "um"},
    {0.01,      1000,      3, "mm"},
    {0.1,       100,       3, "cm"},
    {kRest,     1,         2, "m"},
};

// A vanishing capacitance reads "0.0 pF" but a vanishing inductance "0.0 nH": the two tables
// differ in their first row on purpose.
constexpr UnitRange kCapacitanceRanges[] = {
    {1e-18,     kShowZero, 1, "pF"},
    {1e-12,     1e15,      1, "fF"},
    {1e-9,      1e12,      1, "pF"},
    {1e-6,      1e9,       1, "nF"},
    {1e-3,      1e6,       1, "uF"},
    {1,         1000,      1, "mF"},
    {1000,      1,         1, "F"},
    {kRest,     0,         kOutOfRange, "F"},
};

constexpr UnitRange kInductanceRanges[] = {
    {1e-18,     kShowZero, 1, "nH"},
    {1e-12,     1e15,      1, "fH"},
    {1e-9,      1e12,      1, "pH"},
    {1e-6,      1e9,       1, "nH"},
    {1e-3,      1e6,       1, "uH"},
    {1,         1000,      1, "mH"},
    {1000,      1,         1, "H"},
    {kRest,     0,         kOutOfRange, "H"},
};

constexpr UnitRange kResistanceRanges[] = {
    {kOnlyZero, kShowZero, 1, "ohms"},
    {1,         1000,      1, "milliohms"},
    {1000,      1,         1, "ohms"},
    {1e6,       0.001,     1, "K ohms"},
    {1e9,       1e-6,      1, "M ohms"},
    {1e12,      1e-9,      1, "G ohms"},
    {kRest,     0,         kOutOfRange, "G ohms"},
};

constexpr UnitRange kFrequencyRanges[] = {
    {kOnlyZero, kShowZero, 1, "Hz"},
    {1,         1000,      1, "mHz"},
    {1000,      1,         1, "Hz"},
    {1e6,       0.001,     1, "KHz"},
    {1e9,       1e-6,      1, "MHz"},
    {1e12,      1e-9,      1, "GHz"},
    {kRest,     0,         kOutOfRange, "GHz"},
};

constexpr UnitRange kTimeRanges[] = {
    {kOnlyZero, kShowZero, 3, "s"},
    {1e-12,     1e15,      3, "fs"},
    {1e-9,      1e12,      3, "ps"},
    {1e-6,      1e9,       3, "ns"},
    {1e-3,      1e6,       3, "us"},
    {1,         1000,      3, "ms"},
    {1000,      1,         3, "s"},
    {kRest,     0,         kOutOfRange, "s"},
};

// From 100 V up the number gets three decimals again; that is intended, not a slip, and
// there is no out-of-range row.
constexpr UnitRange kVoltageRanges[] = {
    {kOnlyZero, kShowZero, 1, "V"},
    {0.001,     1e6,       3, "uV"},
    {0.1,       1000,      2, "mV"},
    {1,         1000,      1, "mV"},
    {10,        1,         2, "V"},
    {100,       1,         1, "V"},
    {kRest,     1,         3, "V"},
};
// clang-format on

// A formatted quantity before it is delivered into the caller's buffers.
struct Reading {
    std::string number;
    const char* unit;
    bool inRange;

    std::string Text() const { return number + ' ' + unit; }
};

// Picks the row for `measure` and prints `value` with it.
Reading Measure(std::span<const UnitRange> table, double measure, double value) {
    const UnitRange* row = &table.back();
    for (const UnitRange& candidate : table.first(table.size() - 1)) {
        if (measure < candidate.below) {
            row = &candidate;
            break;
        }
    }
    // A number text too long to show (or no number at all) is out of range
    // too, whatever the table says: "999" with the largest unit.
    const auto outOfRange = [&table] { return Reading{"999", table.back().unit, false}; };
    if (row->decimals == kOutOfRange) {
        return outOfRange();
    }
    const double shown = row->scale == kShowZero ? 0.0 : value * row->scale;
    if (!std::isfinite(shown)) {
        return outOfRange();
    }
    std::string number = FormatFixed(shown, row->decimals);
    if (number.size() > kNumberTextCapacity) {
        return outOfRange();
    }
    return {std::move(number), row->unit, true};
}

Reading MeasureLength(double value, bool metric) {
    if (metric) {
        return Measure(kMetricRanges, value, value);
    }
    // Through centimetres (x 100, then / 2.54) in that order: the rounding of this order is
    // what decides on which side of the 0.1 in threshold a borderline length lands.
    const double inches = value * 100 / 2.54;
    return Measure(kInchRanges, inches, inches);
}

Reading MeasureMagnitude(std::span<const UnitRange> table, double value) {
    return Measure(table, std::fabs(value), value);
}

bool Deliver(const Reading& reading, char* destination, std::size_t capacity, char* unit) {
    KV_ASSERT_TEXT(destination);
    if (unit != nullptr) {
        CopyBounded(destination, reading.number.c_str(), capacity);
        CopyBounded(unit, reading.unit, kUnitTextCapacity);
    } else {
        CopyBounded(destination, reading.Text().c_str(), capacity);
    }
    return reading.inRange;
}

}  // namespace

bool FormatLength(double value, char* destination, std::size_t capacity, bool metric, char* unit) {
    return Deliver(MeasureLength(value, metric), destination, capacity, unit);
}

bool FormatCapacitance(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kCapacitanceRanges, value), destination, capacity, unit);
}

bool FormatInductance(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kInductanceRanges, value), destination, capacity, unit);
}

bool FormatResistance(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kResistanceRanges, value), destination, capacity, unit);
}

bool FormatFrequency(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kFrequencyRanges, value), destination, capacity, unit);
}

bool FormatTime(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kTimeRanges, value), destination, capacity, unit);
}

bool FormatVoltage(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kVoltageRanges, value), destination, capacity, unit);
}

std::string LengthText(double metres, bool metric, bool* inRange) {
    const Reading reading = MeasureLength(metres, metric);
    if (inRange != nullptr) {
        *inRange = reading.inRange;
    }
    return reading.Text();
}

std::string UnitText(UnitFormatter format, double value, bool* inRange) {
    char text[kNumberTextCapacity + 1 + kUnitTextCapacity + 1];
    const bool shown = format(value, text, sizeof text - 1, nullptr);
    if (inRange != nullptr) {
        *inRange = shown;
    }
    return text;
}

std::span<const UnitQuantity> UnitQuantities() {
    static constexpr UnitQuantity kQuantities[] = {
        {"capacitance", "farads", FormatCapacitance},
        {"inductance", "henries", FormatInductance},
        {"resistance", "ohms", FormatResistance},
        {"frequency", "hertz", FormatFrequency},
        {"time", "seconds", FormatTime},
        {"voltage", "volts", FormatVoltage},
    };
    return kQuantities;
}

}  // namespace kv
