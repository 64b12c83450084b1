#include "core/eye/EyeTrace.h"

#include <algorithm>
#include <cmath>

namespace kv {

std::optional<std::string_view> FindTraceError(const EyeTrace& trace) {
    if (trace.time.size() != trace.volts.size()) {
        return "The waveform's times and levels differ in number";
    }
    if (trace.time.size() < 2) {
        return "The waveform needs at least two samples";
    }
    // Without a branch per sample: x - x is 0 only for a finite x, and a
    // comparison with a NaN is false.
    // The flags are kept as numbers so that the and of two is a plain '&'.
    const auto isFinite = [](double x) -> unsigned { return x - x == 0.0; };
    unsigned finite = isFinite(trace.time[0]) & isFinite(trace.volts[0]);
    unsigned ordered = 1;
    for (std::size_t i = 1; i < trace.time.size(); ++i) {
        const double t = trace.time[i];
        finite &= isFinite(t) & isFinite(trace.volts[i]);
        ordered &= static_cast<unsigned>(t >= trace.time[i - 1]);
    }
    if (!finite) {
        return "The waveform holds a time or level that is not a finite number";
    }
    if (!ordered) {
        return "The waveform's times must not decrease";
    }
    return std::nullopt;
}

std::size_t FindSegment(std::span<const double> time, double t, std::size_t from) {
    const std::size_t last = time.size() - 2;  // the last segment
    if (from >= last) {
        return last;
    }
    // Double the step until a sample lies beyond t, then search the last step.
    std::size_t low = from;
    std::size_t step = 1;
    while (low + step <= last && time[low + step] <= t) {
        low += step;
        step *= 2;
    }
    const std::size_t high = std::min(low + step, last + 1);
    const auto beyond = std::upper_bound(time.begin() + static_cast<std::ptrdiff_t>(low) + 1,
                                         time.begin() + static_cast<std::ptrdiff_t>(high) + 1, t);
    return std::min(static_cast<std::size_t>(beyond - time.begin()) - 1, last);
}

TraceCursor::TraceCursor(const EyeTrace& trace)
    : m_trace(trace),
      m_samplesPerSecond(static_cast<double>(trace.time.size() - 1) /
                         (trace.time.back() - trace.time.front())) {}

double TraceCursor::At(double t) {
    const std::span<const double> time = m_trace.time;
    if (t >= time[m_segment + 1]) {
        // Far ahead the search starts where samples of the mean spacing would
        // put `t`: the very place for evenly spaced ones, so a jump across
        // a long stretch touches only the memory it lands on.
        const double ahead = (t - time[m_segment]) * m_samplesPerSecond;
        const std::size_t last = time.size() - 2;
        const std::size_t guess = ahead < static_cast<double>(last - m_segment)
                                      ? m_segment + static_cast<std::size_t>(ahead)
                                      : last;
        if (time[guess] <= t) {
            m_segment = FindSegment(time, t, guess);
        } else {
            const auto beyond =
                std::upper_bound(time.begin() + static_cast<std::ptrdiff_t>(m_segment) + 1,
                                 time.begin() + static_cast<std::ptrdiff_t>(guess), t);
            m_segment = static_cast<std::size_t>(beyond - time.begin()) - 1;
        }
    }
    const double t0 = m_trace.time[m_segment];
    const double t1 = m_trace.time[m_segment + 1];
    const double v0 = m_trace.volts[m_segment];
    const double v1 = m_trace.volts[m_segment + 1];
    if (t >= t1) {
        return v1;  // the trace's end, or a step at its last time
    }
    return v0 + (t - t0) * (v1 - v0) / (t1 - t0);
}

}  // namespace kv
