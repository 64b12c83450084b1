#include "core/chart/AxisScale.h"

#include <cmath>
#include <stdexcept>

#include "core/chart/AxisText.h"
#include "core/chart/SiPrefix.h"

namespace kv {
namespace {

// A logarithmic axis steps one decade at a time.
constexpr double kDecade = 1.0;

IntervalCount CountOrThrow(double lo, double hi, double step) {
    const auto count = CountIntervals(lo, hi, step);
    if (!count) {
        throw std::invalid_argument("no grid step fits the range");
    }
    return *count;
}

}  // namespace

AxisScale ScaleAxis(const AxisRequest& request) {
    AxisScale scale;
    scale.range = WidenRange({request.lo, request.hi}, request.logarithmic);
    const Range& range = scale.range;
    IntervalCount count;
    if (request.logarithmic) {
        const double lo = std::log10(range.lo);
        const double hi = std::log10(range.hi);
        if (!std::isfinite(lo) || !std::isfinite(hi) || !(lo < hi)) {
            throw std::invalid_argument("a logarithmic axis needs a positive, rising range");
        }
        scale.step = kDecade;
        count = CountOrThrow(lo, hi, scale.step);
    } else {
        scale.step = ChooseLinearStep(range.lo, range.hi, request.pixels);
        count = CountOrThrow(range.lo, range.hi, scale.step);
    }
    scale.intervals = count.count;
    const int spacing = request.yAxis ? 2 * request.minLabelSpacing : request.minLabelSpacing;
    scale.labelInterval =
        LabelInterval(scale.step, scale.intervals, request.pixels, spacing, request.logarithmic);
    scale.prefixRow =
        ChoosePrefixRow(std::fmax(std::fabs(range.lo), std::fabs(range.hi)), request.prefixes);

    const double firstIndex = count.firstIndex;
    scale.lines.reserve(static_cast<size_t>(scale.intervals) + 1);
    for (int i = 0; i <= scale.intervals; ++i) {
        // Whole multiples of the step, each computed afresh so that no
        // rounding error builds up along the axis.
        const double at = (firstIndex + i) * scale.step;
        GridLine line;
        line.value = request.logarithmic ? std::pow(10.0, at) : at;
        if (i % scale.labelInterval == 0) {
            line.label = LabelText(line.value, scale.prefixRow, request.unit);
        }
        scale.lines.push_back(std::move(line));
    }
    return scale;
}

}  // namespace kv
