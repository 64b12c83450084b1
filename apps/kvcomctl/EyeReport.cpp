#include "apps/kvcomctl/EyeReport.h"

#include <cmath>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "core/shared/NumberText.h"
#include "core/shared/UnitFormat.h"

namespace kv::cli {
namespace {

constexpr std::string_view kNotMeasured = "not measured";

// The value as the views show it; beyond the formatter's largest unit, six
// significant digits and the SI unit rather than its "999".
std::string Quantity(double value, UnitFormatter format, std::string_view siUnit) {
    if (!std::isfinite(value)) {
        return std::string(kNotMeasured);
    }
    bool inRange = false;
    std::string text = UnitText(format, value, &inRange);
    return inRange ? text : FormatSignificant(value, 6) + " " + std::string(siUnit);
}

std::string Volts(double value) {
    return Quantity(value, FormatVoltage, "V");
}

std::string Seconds(double value) {
    return Quantity(value, FormatTime, "s");
}

void Line(std::ostream& out, std::string_view label, const std::string& value) {
    constexpr std::size_t kLabelWidth = 30;
    out << label << std::string(kLabelWidth - label.size(), ' ') << value << '\n';
}

std::string JsonReal(double value) {
    return std::isfinite(value) ? PrintNumber(value, NumberStyle::Significant, 17) : "null";
}

}  // namespace

void WriteEyeText(const EyeMeasure& m, bool maskTested, std::ostream& out) {
    Line(out, "folded samples", std::to_string(m.samples));
    Line(out, "unit intervals", std::to_string(m.unitIntervals));
    Line(out, "level 0", Volts(m.level0));
    Line(out, "level 1", Volts(m.level1));
    Line(out, "noise 0", Volts(m.noise0));
    Line(out, "noise 1", Volts(m.noise1));
    Line(out, "eye height", Volts(m.eyeHeight));
    Line(out, "eye width", Seconds(m.eyeWidth));
    Line(out, "eye centre time", Seconds(m.eyeCentreTime));
    Line(out, "crossing jitter rms", Seconds(m.crossingJitterRms));
    Line(out, "crossing jitter peak-to-peak", Seconds(m.crossingJitterPeakToPeak));
    if (!maskTested) {
        return;
    }
    if (m.maskHits < 0) {
        Line(out, "mask", "not tested");
        return;
    }
    Line(out, "mask hits", std::to_string(m.maskHits));
    Line(out, "mask margin",
         std::isfinite(m.maskMarginPercent) ? FormatFixed(m.maskMarginPercent, 1) + " %"
                                            : std::string(kNotMeasured));
    Line(out, "mask", m.maskHits == 0 ? "passed" : "failed");
}

void WriteEyeJson(const EyeMeasure& m, std::ostream& out) {
    const bool tested = m.maskHits >= 0;
    const std::pair<std::string_view, std::string> members[] = {
        {"samples", std::to_string(m.samples)},
        {"unit_intervals", std::to_string(m.unitIntervals)},
        {"level0", JsonReal(m.level0)},
        {"level1", JsonReal(m.level1)},
        {"noise0", JsonReal(m.noise0)},
        {"noise1", JsonReal(m.noise1)},
        {"eye_height", JsonReal(m.eyeHeight)},
        {"eye_width", JsonReal(m.eyeWidth)},
        {"eye_centre_time", JsonReal(m.eyeCentreTime)},
        {"crossing_jitter_rms", JsonReal(m.crossingJitterRms)},
        {"crossing_jitter_peak_to_peak", JsonReal(m.crossingJitterPeakToPeak)},
        {"mask_hits", tested ? std::to_string(m.maskHits) : "null"},
        {"mask_margin_percent", tested ? JsonReal(m.maskMarginPercent) : "null"},
    };
    out << "{\n";
    for (std::size_t i = 0; i < std::size(members); ++i) {
        out << "  \"" << members[i].first << "\": " << members[i].second
            << (i + 1 < std::size(members) ? ",\n" : "\n");
    }
    out << "}\n";
}

}  // namespace kv::cli
