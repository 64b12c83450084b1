#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "core/eye/EyeFold.h"
#include "core/eye/EyeTrace.h"
#include "kvcomctl/EyeMask.h"

class IEyeDiagramData;

// The eye of a waveform: folded onto a grid of counts and measured.
//
// 1. The folded range runs from skipIntervals intervals after the first
//    sample to the last sample.
// 2. The mid level is first half way between the lowest and highest level in
//    that range. The ideal clock (nominal interval, phase from the circular
//    mean of the crossings of the mid level, see RecoverClock) places the
//    eye centres half an interval after its crossings, and the levels are
//    read about those centres (MeasureLevels). The mid level then becomes
//    (level0 + level1) / 2, and the clock and the levels are found once more
//    with it: these are the results. A trace that never crosses the mid
//    level has its clock at the start of the folded range and no jitter.
// 3. The trace is folded (see EyeFold.h) with its windows starting at the
//    first mean crossing at or after the start of the range, so the grid's
//    x = 0 is a mean crossing and the eye centres lie at x = (k + 1/2) *
//    interval. With a mask it is tested as EyeMaskTest describes.

namespace kv {

// Members as the host's eye measurement record names them. Levels in volts,
// times in seconds; a value that cannot be measured is not a number.
struct EyeMeasure {
    // Folded samples: points at which the fold read the trace, one per grid
    // column in every window (see EyeFold.h), also those outside the grid's
    // voltage range.
    int64_t samples = 0;
    // Unit intervals whose centre lies in the folded range.
    int32_t unitIntervals = 0;
    // Mean and standard deviation of the points read about the eye centres
    // (within 5 % of the interval of each centre, 1 % apart), below and at or
    // above the mid level.
    double level0 = std::numeric_limits<double>::quiet_NaN();
    double level1 = std::numeric_limits<double>::quiet_NaN();
    double noise0 = std::numeric_limits<double>::quiet_NaN();
    double noise1 = std::numeric_limits<double>::quiet_NaN();
    // (level1 - 3 noise1) - (level0 + 3 noise0); negative for a closed eye.
    double eyeHeight = std::numeric_limits<double>::quiet_NaN();
    // At the mid level, between the crossings that bound an eye: (second
    // crossing mean - 3 sigma) - (first crossing mean + 3 sigma), the means
    // one interval apart and sigma the RMS crossing jitter; interval - 6 sigma.
    double eyeWidth = std::numeric_limits<double>::quiet_NaN();
    // The first eye centre in the folded range, on the waveform's time axis:
    // the centres lie at eyeCentreTime + k * interval.
    double eyeCentreTime = std::numeric_limits<double>::quiet_NaN();
    // Deviation of the mid-level crossings from the ideal clock: root mean
    // square, and from the earliest to the latest.
    double crossingJitterRms = std::numeric_limits<double>::quiet_NaN();
    double crossingJitterPeakToPeak = std::numeric_limits<double>::quiet_NaN();
    // Folded samples inside the mask's opening or beyond its level limits;
    // -1 when no mask was tested (none given, or one EyeMaskTest refuses).
    int64_t maskHits = -1;
    // How many percent the opening can grow (or, negative, must shrink)
    // about its centre before the first hit; not a number without a test or
    // without points.
    double maskMarginPercent = std::numeric_limits<double>::quiet_NaN();
};

struct EyeTiming {
    double interval = 0.0;      // seconds
    int32_t eyes = 1;           // intervals shown side by side, 1 to 3
    int32_t skipIntervals = 0;  // intervals left out at the start
};

// The stimulus's bit interval (its period is in nanoseconds), eye count and
// skipped bits.
EyeTiming EyeTimingOf(const IEyeDiagramData& data);

struct EyeRequest {
    EyeTiming timing;
    int32_t width = 1000;
    int32_t height = 600;
    // The grid's voltage range; when either is not a number, the range of the
    // folded trace with a twentieth of its span added on each side (half a
    // volt for a flat trace), so that every point lands in a cell.
    double vMin = std::numeric_limits<double>::quiet_NaN();
    double vMax = std::numeric_limits<double>::quiet_NaN();
    std::optional<EYEMASK> mask;
};

struct EyeResult {
    // Why there is no eye: empty when the analysis ran.
    std::string refusal;
    EyeMeasure measure;
    EyeGrid grid;  // as folded, the voltage range resolved
    // grid.height rows of grid.width counts, row 0 at vMin.
    std::vector<uint32_t> density;
    // With a tested mask, the hits among them in the same cells (a hit
    // beyond the voltage range in the nearest row); empty without.
    std::vector<uint32_t> hits;
    // The time the grid's x = 0 stands for: the first mean crossing at or
    // after the start of the folded range.
    double origin = 0.0;
};

// The eye of `trace`; a refusal (with its reason, nothing measured) for a
// trace FindTraceError finds fault with, a skip that leaves no waveform, a
// negative skip, or a request FindFoldError refuses.
EyeResult AnalyseEye(const EyeTrace& trace, const EyeRequest& request);

}  // namespace kv
