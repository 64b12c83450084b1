#include "core/shared/UnitFormat.h"

#include <array>
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

// The bound under which a prefix is taken and the factor from the value to its number.
struct PrefixStep {
    double below;
    double scale;
};

// Femto up to the base unit, for the small quantities.
constexpr PrefixStep kFemtoToBase[] = {{1e-12, 1e15}, {1e-9, 1e12}, {1e-6, 1e9},
                                       {1e-3, 1e6},   {1, 1000},    {1000, 1}};
// Milli up to giga, for the large ones.
constexpr PrefixStep kMilliToGiga[] = {
    {1, 1000}, {1000, 1}, {1e6, 0.001}, {1e9, 1e-6}, {1e12, 1e-9}};

// A table that climbs `steps` with `units`, one per step, after the row for (near) zero; beyond
// the last step lies only "999" in the last unit.
template <std::size_t N>
constexpr std::array<UnitRange, N + 2> Ladder(UnitRange zero, const PrefixStep (&steps)[N],
                                              int decimals, const char* const (&units)[N]) {
    std::array<UnitRange, N + 2> rows{};
    rows[0] = zero;
    for (std::size_t i = 0; i < N; ++i) {
        rows[i + 1] = {steps[i].below, steps[i].scale, decimals, units[i]};
    }
    rows[N + 1] = {kRest, 0, kOutOfRange, units[N - 1]};
    return rows;
}

// A vanishing capacitance reads "0.0 pF" but a vanishing inductance "0.0 nH": the two tables
// differ in their first row on purpose.
constexpr auto kCapacitanceRanges =
    Ladder({1e-18, kShowZero, 1, "pF"}, kFemtoToBase, 1, {"fF", "pF", "nF", "uF", "mF", "F"});
constexpr auto kInductanceRanges =
    Ladder({1e-18, kShowZero, 1, "nH"}, kFemtoToBase, 1, {"fH", "pH", "nH", "uH", "mH", "H"});
constexpr auto kTimeRanges =
    Ladder({kOnlyZero, kShowZero, 3, "s"}, kFemtoToBase, 3, {"fs", "ps", "ns", "us", "ms", "s"});
constexpr auto kResistanceRanges = Ladder({kOnlyZero, kShowZero, 1, "ohms"}, kMilliToGiga, 1,
                                          {"milliohms", "ohms", "K ohms", "M ohms", "G ohms"});
constexpr auto kFrequencyRanges =
    Ladder({kOnlyZero, kShowZero, 1, "Hz"}, kMilliToGiga, 1, {"mHz", "Hz", "KHz", "MHz", "GHz"});

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
