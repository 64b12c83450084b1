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
    double previous = trace.time.front();
    for (std::size_t i = 0; i < trace.time.size(); ++i) {
        const double t = trace.time[i];
        if (!std::isfinite(t) || !std::isfinite(trace.volts[i])) {
            return "The waveform holds a time or level that is not a finite number";
        }
        if (t < previous) {
            return "The waveform's times must not decrease";
        }
        previous = t;
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

double TraceCursor::At(double t) {
    m_segment = FindSegment(m_trace.time, t, m_segment);
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
