#pragma once

#include <cstdint>
#include <limits>

#include "core/eye/EyeTrace.h"

// The two levels of an eye and their noise, read at the eye centres.

namespace kv {

struct EyeLevels {
    int64_t count0 = 0;
    int64_t count1 = 0;
    // Mean and standard deviation (of the population) of each level; not a
    // number when no sample fell on that side.
    double level0 = std::numeric_limits<double>::quiet_NaN();
    double level1 = std::numeric_limits<double>::quiet_NaN();
    double noise0 = std::numeric_limits<double>::quiet_NaN();
    double noise1 = std::numeric_limits<double>::quiet_NaN();
};

// One percent of the interval between the points read about each centre,
// and five of those steps on either side of it: eleven points spanning a
// tenth of the interval.
inline constexpr double kCentreStep = 0.01;
inline constexpr int kCentreSteps = 5;

// Reads the trace (a valid one) at every eye centre firstCentre + k *
// interval that lies between `from` and `to`, and at kCentreSteps steps of
// kCentreStep intervals on either side of it (points outside [from, to] are
// left out). The points are fixed in time rather than taken from the
// samples, so a waveform given only by its corners is read as well as a
// densely sampled one. A point at or above `mid` belongs to the one level,
// below it to the zero level.
EyeLevels MeasureLevels(const EyeTrace& trace, double firstCentre, double interval, double from,
                        double to, double mid);

}  // namespace kv
