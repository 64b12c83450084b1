#pragma once

#include <cstddef>
#include <limits>

#include "core/eye/EyeTrace.h"

// The ideal clock an eye is folded with: its interval is the nominal bit
// interval, its phase is found from where the trace crosses a level.

namespace kv {

struct EyeClock {
    // Crossings found between `from` and `to`.
    std::size_t crossings = 0;
    // A time of the mean crossing, within one interval from `from`: the ideal
    // clock crosses at meanCrossing + k * interval. `from` itself when the
    // trace never crosses the level.
    double meanCrossing = 0.0;
    // Deviations of the crossings from the nearest ideal crossing, in
    // seconds; not a number without crossings.
    double jitterRms = std::numeric_limits<double>::quiet_NaN();
    double jitterPeakToPeak = std::numeric_limits<double>::quiet_NaN();
};

// Every crossing of `level` by the trace (a valid one, see FindTraceError)
// between `from` and `to`: where a segment goes from below the level to at
// or above it, or back, at the time found by linear interpolation along the
// segment. A trace that only touches the level from below and returns
// crosses it twice at that point. There is no hysteresis: noise on a slow
// edge makes several crossings, and each counts.
//
// Each crossing has a phase, its time modulo the interval. The mean crossing
// is the circular mean of the phases (the direction of the sum of unit
// vectors at those angles), which is not pulled apart by crossings on both
// sides of the interval's end as an arithmetic mean would be. A crossing's
// deviation is its phase minus the mean phase, wrapped into half an interval
// on either side; the jitter is their root mean square and the spread from
// the earliest to the latest.
EyeClock RecoverClock(const EyeTrace& trace, double level, double interval, double from, double to);

}  // namespace kv
