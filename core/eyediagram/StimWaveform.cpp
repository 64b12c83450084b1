#include "core/eyediagram/StimWaveform.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/shared/NumberText.h"
#include "core/stimulus/SequenceType.h"

namespace kv {
namespace {

// Collects corner points: a point at the time of the last one replaces
// nothing (two ramps meeting at a boundary share their corner), and a point
// that only continues a flat run or a straight ramp is never asked for.
//
// With a displacement, each ramp is held back until the next ramp or point
// is asked for, whose nominal time bounds how late the held one may end; the
// last point placed bounds how early it may start.
class CornerList {
public:
    CornerList(std::size_t reserve, const EdgeDisplacement& displacement)
        : m_displacement(displacement) {
        m_points.reserve(reserve);
    }

    void Add(double time, double level) {
        PlaceHeldRamp(time);
        Put(time, level);
    }
    // A change of level starting at `time` and lasting `ramp`.
    void Ramp(double time, double ramp, double from, double to) {
        if (!m_displacement) {
            Put(time, from);
            Put(time + ramp, to);
            return;
        }
        PlaceHeldRamp(time);
        m_held = HeldRamp{time, ramp, from, to};
    }
    // None when a displacement was not a finite number.
    std::optional<std::vector<STIMPOINT>> Take() {
        PlaceHeldRamp(std::numeric_limits<double>::infinity());
        if (m_refused) {
            return std::nullopt;
        }
        return std::move(m_points);
    }

private:
    struct HeldRamp {
        double time;
        double ramp;
        double from;
        double to;
    };

    void Put(double time, double level) {
        if (!m_points.empty() && m_points.back().time >= time) {
            return;
        }
        m_points.push_back({time, level});
    }
    void PlaceHeldRamp(double nextTime) {
        if (!m_held) {
            return;
        }
        const HeldRamp held = *m_held;
        m_held.reset();
        const double shift = m_displacement(held.time);
        if (!std::isfinite(shift)) {
            m_refused = true;
            return;
        }
        const double earliest = m_points.empty() ? 0.0 : m_points.back().time;
        const double latest = nextTime - held.ramp;
        const double start = std::max(earliest, std::min(held.time + shift, latest));
        Put(start, held.from);
        Put(start + held.ramp, held.to);
    }

    const EdgeDisplacement& m_displacement;
    std::vector<STIMPOINT> m_points;
    std::optional<HeldRamp> m_held;
    bool m_refused = false;
};

bool IsPositiveRamp(double ramp, double limit) {
    return ramp > 0.0 && ramp <= limit;
}

std::optional<std::vector<STIMPOINT>> BuildDataWaveform(const WaveformInput& in) {
    if (!IsPositiveRamp(in.riseTime, in.period) || !IsPositiveRamp(in.fallTime, in.period)) {
        return std::nullopt;
    }
    const auto bitAt = [&in](std::size_t i) -> uint8_t { return in.bits[i] != 0 ? 1 : 0; };
    const std::size_t bitCount = in.bits.size();
    // Where the level changes within one cycle; the wrap from the last bit to
    // the first is a change at index 0 of every cycle after the first.
    std::vector<std::size_t> changes;
    for (std::size_t i = 1; i < bitCount; ++i) {
        if (bitAt(i) != bitAt(i - 1)) {
            changes.push_back(i);
        }
    }
    const bool wraps = bitAt(0) != bitAt(bitCount - 1);
    const int64_t perCycle = static_cast<int64_t>(changes.size()) + (wraps ? 1 : 0);
    if (perCycle > 0 && in.cycleCount > kMaxWaveformPoints / (2 * perCycle)) {
        return std::nullopt;
    }
    const int64_t total = perCycle * in.cycleCount * 2 + 2;
    const auto level = [&in](uint8_t bit) { return bit != 0 ? in.highLevel : in.lowLevel; };
    CornerList corners(static_cast<std::size_t>(total), in.edgeDisplacement);
    corners.Add(0.0, level(bitAt(0)));
    const auto rampAt = [&](int64_t boundary, uint8_t bit) {
        // Each boundary's time from its index, so that no rounding adds up.
        corners.Ramp(static_cast<double>(boundary) * in.period, bit ? in.riseTime : in.fallTime,
                     level(bit ? 0 : 1), level(bit));
    };
    // A level that never changes has its two ends only, over however many cycles a host asks.
    for (int64_t cycle = 0; perCycle > 0 && cycle < in.cycleCount; ++cycle) {
        const int64_t first = cycle * static_cast<int64_t>(bitCount);
        if (cycle > 0 && wraps) {
            rampAt(first, bitAt(0));
        }
        for (const std::size_t i : changes) {
            rampAt(first + static_cast<int64_t>(i), bitAt(i));
        }
    }
    const int64_t length = static_cast<int64_t>(bitCount) * in.cycleCount;
    corners.Add(static_cast<double>(length) * in.period, level(bitAt(bitCount - 1)));
    return corners.Take();
}

std::optional<std::vector<STIMPOINT>> BuildDutyWaveform(const WaveformInput& in) {
    if (!(in.dutyCycle > 0.0 && in.dutyCycle < 1.0)) {
        return std::nullopt;
    }
    const double highTime = in.dutyCycle * in.period;
    if (!IsPositiveRamp(in.fallTime, in.period - highTime) ||
        !IsPositiveRamp(in.riseTime, highTime)) {
        return std::nullopt;
    }
    const int64_t total = int64_t{in.cycleCount} * 4;
    if (total > kMaxWaveformPoints) {
        return std::nullopt;
    }
    CornerList corners(static_cast<std::size_t>(total), in.edgeDisplacement);
    corners.Add(0.0, in.highLevel);
    for (int64_t k = 0; k < in.cycleCount; ++k) {
        const double start = static_cast<double>(k) * in.period;
        if (k > 0) {
            corners.Ramp(start, in.riseTime, in.lowLevel, in.highLevel);
        }
        corners.Ramp(start + highTime, in.fallTime, in.highLevel, in.lowLevel);
    }
    corners.Add(static_cast<double>(in.cycleCount) * in.period, in.lowLevel);
    return corners.Take();
}

std::optional<std::vector<STIMPOINT>> BuildEdgeWaveform(const WaveformInput& in) {
    const bool rising = in.bits.front() != 0;
    const double ramp = rising ? in.riseTime : in.fallTime;
    const double end = static_cast<double>(in.cycleCount) * in.period;
    if (!IsPositiveRamp(ramp, in.period)) {
        return std::nullopt;
    }
    CornerList corners(3, in.edgeDisplacement);
    // The starting level at time 0 even when jitter delays the ramp.
    corners.Add(0.0, rising ? in.lowLevel : in.highLevel);
    corners.Ramp(0.0, ramp, rising ? in.lowLevel : in.highLevel,
                 rising ? in.highLevel : in.lowLevel);
    corners.Add(end, rising ? in.highLevel : in.lowLevel);
    return corners.Take();
}

}  // namespace

std::optional<std::vector<STIMPOINT>> BuildStimulusWaveform(const WaveformInput& input) {
    if (!(input.period > 0.0) || input.bits.empty() || input.cycleCount < 1) {
        return std::nullopt;
    }
    switch (input.seqType) {
        case seq::kToggling:
        case seq::kPulse:
            return BuildDutyWaveform(input);
        case seq::kEdge:
            return BuildEdgeWaveform(input);
        default:
            return BuildDataWaveform(input);
    }
}

std::string NoWaveformMessage(bool withJitter) {
    std::string text =
        "the stimulus makes no waveform with these ramps: the period must be above 0, each ramp "
        "above 0 s and no longer than the bit interval (for Oscillator and Pulse: than the part "
        "of the period it starts), the waveform at most " +
        std::to_string(kMaxWaveformPoints) + " points";
    if (withJitter) {
        text +=
            ", and the jitter values finite numbers, magnitudes not negative and the simple "
            "jitter type 0 to 2";
    }
    return text;
}

bool IsSpiceToken(std::string_view name) {
    if (name.empty()) {
        return false;
    }
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= ' ' || byte == 0x7f || c == '(' || c == ')' || c == '=' || c == ',') {
            return false;
        }
    }
    return true;
}

std::string PwlSourceText(std::span<const STIMPOINT> points, std::string_view sourceName,
                          std::string_view node) {
    constexpr std::size_t kPairsPerLine = 4;
    std::string text = "* Stimulus waveform, ";
    text.append(std::to_string(points.size())).append(" points\nV");
    text.append(sourceName).append(" ").append(node).append(" 0 PWL(");
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i % kPairsPerLine == 0) {
            text += "\n+";
        }
        text.append(" ").append(FormatReal(points[i].time));
        text.append(" ").append(FormatReal(points[i].level));
    }
    text += "\n+ )\n";
    return text;
}

}  // namespace kv
