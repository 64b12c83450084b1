#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

// A waveform as the eye reads it: times in seconds and levels in volts, two
// arrays of the same length, read as straight lines between samples. The
// spacing may vary from sample to sample (an adaptive simulator's output, or a
// stimulus given by its corners alone); two samples at the same time are a
// step.

namespace kv {

struct EyeTrace {
    std::span<const double> time;
    std::span<const double> volts;
};

// Why the trace cannot be read, or none: fewer than two samples, arrays of
// different lengths, a time or level that is not a finite number, or a time
// earlier than the one before it.
std::optional<std::string_view> FindTraceError(const EyeTrace& trace);

// Index of the segment [i, i + 1] that holds `t` (the last one whose start is
// at or before it), searched from `from` on by doubling steps and then
// halving: cheap both for the next segment and for one far ahead.
std::size_t FindSegment(std::span<const double> time, double t, std::size_t from = 0);

// Reads a valid trace at times that never decrease, each search starting where
// the last one ended, so a sweep over the whole trace costs one pass whatever
// the spacing of the samples and of the times asked for.
class TraceCursor {
public:
    explicit TraceCursor(const EyeTrace& trace);

    // The level at `t`, which must lie within the trace; at a step, the
    // level after it.
    double At(double t);

private:
    EyeTrace m_trace;
    double m_samplesPerSecond;  // over the whole trace; infinite when it lasts no time
    std::size_t m_segment = 0;
};

}  // namespace kv
