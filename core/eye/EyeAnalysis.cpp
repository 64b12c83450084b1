#include "core/eye/EyeAnalysis.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/eye/EyeClock.h"
#include "core/eye/EyeLevels.h"
#include "kvcomctl/IEyeDiagramData.h"

namespace kv {
namespace {

struct LevelRange {
    double lo;
    double hi;
};

// Lowest and highest level of the trace over [from, to]: the level at
// `from` and every sample after it.
LevelRange RangeOf(const EyeTrace& trace, double from) {
    const double start = TraceCursor(trace).At(from);
    // Four of each, to keep four comparisons under way at once.
    std::array<double, 4> lo{start, start, start, start};
    std::array<double, 4> hi = lo;
    const std::span<const double> after = trace.volts.subspan(FindSegment(trace.time, from) + 1);
    std::size_t i = 0;
    for (; i + 4 <= after.size(); i += 4) {
        for (std::size_t k = 0; k < 4; ++k) {
            lo[k] = std::min(lo[k], after[i + k]);
            hi[k] = std::max(hi[k], after[i + k]);
        }
    }
    for (; i < after.size(); ++i) {
        lo[0] = std::min(lo[0], after[i]);
        hi[0] = std::max(hi[0], after[i]);
    }
    return {*std::min_element(lo.begin(), lo.end()), *std::max_element(hi.begin(), hi.end())};
}

// The first of the times t + k * interval at or after `from`.
double FirstAtOrAfter(double t, double from, double interval) {
    return t + std::ceil((from - t) / interval) * interval;
}

struct ClockAndLevels {
    EyeClock clock;
    EyeLevels levels;
    double firstCentre = 0.0;
};

ClockAndLevels MeasureAt(const EyeTrace& trace, double mid, double interval, double from,
                         double to) {
    ClockAndLevels found;
    found.clock = RecoverClock(trace, mid, interval, from, to);
    found.firstCentre = FirstAtOrAfter(found.clock.meanCrossing + interval / 2.0, from, interval);
    found.levels = MeasureLevels(trace, found.firstCentre, interval, from, to, mid);
    return found;
}

}  // namespace

EyeTiming EyeTimingOf(const IEyeDiagramData& data) {
    return {data.GetPeriod() * 1e-9, data.GetEyeCount(), data.GetSkipBits()};
}

EyeResult AnalyseEye(const EyeTrace& trace, const EyeRequest& request) {
    EyeResult result;
    const auto refuse = [&result](std::string_view why) {
        result.refusal = why;
        return result;
    };
    if (const auto error = FindTraceError(trace)) {
        return refuse(*error);
    }
    const EyeTiming& timing = request.timing;
    if (timing.skipIntervals < 0) {
        return refuse("Skipped bit intervals cannot be negative");
    }
    const double interval = timing.interval;
    const double from = trace.time.front() + timing.skipIntervals * interval;
    const double to = trace.time.back();
    const bool automaticRange = std::isnan(request.vMin) || std::isnan(request.vMax);
    EyeGrid grid{request.width, request.height, request.vMin, request.vMax};
    EyeFrame frame{interval, timing.eyes, from, from, to};
    // The automatic range is checked once it is known.
    if (const auto error = FindFoldError(
            frame, automaticRange ? EyeGrid{grid.width, grid.height, 0.0, 1.0} : grid)) {
        return refuse(*error);
    }
    if (!((to - from) / interval < static_cast<double>(std::numeric_limits<int32_t>::max()))) {
        return refuse("The waveform spans too many bit intervals for the eye grid");
    }

    const LevelRange range = RangeOf(trace, from);
    ClockAndLevels found = MeasureAt(trace, (range.lo + range.hi) / 2.0, interval, from, to);
    if (found.levels.count0 > 0 && found.levels.count1 > 0) {
        const double mid = (found.levels.level0 + found.levels.level1) / 2.0;
        ClockAndLevels again = MeasureAt(trace, mid, interval, from, to);
        if (again.clock.crossings > 0) {
            found = again;
        }
    }

    if (automaticRange) {
        const double span = range.hi - range.lo;
        const double pad = span > 0.0 ? span / 20.0 : 0.5;
        grid.vMin = range.lo - pad;
        grid.vMax = range.hi + pad;
    }
    frame.origin = FirstAtOrAfter(found.clock.meanCrossing, from, interval);
    std::optional<EyeMaskTest> mask;
    if (request.mask) {
        mask = EyeMaskTest::Place(*request.mask, interval, timing.eyes, grid.width);
    }
    if (const auto error = FindFoldError(frame, grid)) {
        return refuse(*error);
    }
    result.density.assign(static_cast<std::size_t>(grid.width) * grid.height, 0);
    if (mask) {
        result.hits.assign(result.density.size(), 0);
    }
    // The frame and grid have passed and the sizes match, so the fold runs.
    const FoldCounts counts =
        FoldEye(trace, frame, grid, result.density, mask ? &*mask : nullptr, result.hits)
            .value_or(FoldCounts{});

    EyeMeasure& m = result.measure;
    m.samples = counts.samples;
    m.unitIntervals =
        found.firstCentre <= to
            ? static_cast<int32_t>(std::floor((to - found.firstCentre) / interval)) + 1
            : 0;
    m.level0 = found.levels.level0;
    m.level1 = found.levels.level1;
    m.noise0 = found.levels.noise0;
    m.noise1 = found.levels.noise1;
    m.eyeHeight = (m.level1 - 3.0 * m.noise1) - (m.level0 + 3.0 * m.noise0);
    m.crossingJitterRms = found.clock.jitterRms;
    m.crossingJitterPeakToPeak = found.clock.jitterPeakToPeak;
    m.eyeWidth = interval - 6.0 * m.crossingJitterRms;
    m.eyeCentreTime = found.firstCentre;
    if (mask) {
        m.maskHits = counts.maskHits;
        m.maskMarginPercent = mask->MarginPercent();
    }
    result.grid = grid;
    result.origin = frame.origin;
    return result;
}

}  // namespace kv
