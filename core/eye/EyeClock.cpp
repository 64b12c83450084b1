#include "core/eye/EyeClock.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace kv {
namespace {

// Phases of the crossings as fractions of the interval, from 0 up to 1.
std::vector<double> CrossingPhases(const EyeTrace& trace, double level, double interval,
                                   double from, double to) {
    std::vector<double> phases;
    const std::span<const double> time = trace.time;
    const std::span<const double> volts = trace.volts;
    const double perInterval = 1.0 / interval;
    // Only the levels are read until a crossing turns up.
    const std::size_t end = FindSegment(time, to) + 1;
    std::size_t i = FindSegment(time, from);
    bool above = volts[i] >= level;
    for (; i < end; ++i) {
        const bool nextAbove = volts[i + 1] >= level;
        if (nextAbove == above) {
            continue;
        }
        above = nextAbove;
        const double t0 = time[i];
        const double v0 = volts[i];
        const double v1 = volts[i + 1];
        const double crossing = t0 + (level - v0) / (v1 - v0) * (time[i + 1] - t0);
        if (crossing < from || crossing > to) {
            continue;
        }
        const double cycles = (crossing - from) * perInterval;
        phases.push_back(cycles - std::floor(cycles));
    }
    return phases;
}

}  // namespace

EyeClock RecoverClock(const EyeTrace& trace, double level, double interval, double from,
                      double to) {
    EyeClock clock;
    clock.meanCrossing = from;
    const std::vector<double> phases = CrossingPhases(trace, level, interval, from, to);
    if (phases.empty()) {
        return clock;
    }
    constexpr double kTurn = 2.0 * std::numbers::pi;
    double sumCos = 0.0;
    double sumSin = 0.0;
    for (const double phase : phases) {
        sumCos += std::cos(kTurn * phase);
        sumSin += std::sin(kTurn * phase);
    }
    double mean = std::atan2(sumSin, sumCos) / kTurn;
    mean -= std::floor(mean);
    double sumSquares = 0.0;
    double earliest = 0.5;
    double latest = -0.5;
    for (const double phase : phases) {
        double deviation = phase - mean;
        deviation -= std::floor(deviation + 0.5);  // into [-0.5, 0.5)
        sumSquares += deviation * deviation;
        earliest = std::min(earliest, deviation);
        latest = std::max(latest, deviation);
    }
    clock.crossings = phases.size();
    clock.meanCrossing = from + mean * interval;
    clock.jitterRms = std::sqrt(sumSquares / static_cast<double>(phases.size())) * interval;
    clock.jitterPeakToPeak = (latest - earliest) * interval;
    return clock;
}

}  // namespace kv
