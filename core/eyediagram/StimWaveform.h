#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kvcomctl/IEyeDiagramStimAdaptor.h"

// The waveform a stimulus drives a simulator with: corner points of a
// piecewise-linear signal in seconds and volts.

namespace kv {

// Seconds by which the edge (ramp) that nominally starts at the given time
// moves; asked once per edge, in time order.
using EdgeDisplacement = std::function<double(double nominalStart)>;

// Everything the waveform depends on, in SI units.
struct WaveformInput {
    std::span<const uint8_t> bits;  // one cycle, one byte (0 or 1) per bit
    int32_t cycleCount = 1;
    int32_t seqType = 0;
    double period = 0.0;     // seconds
    double dutyCycle = 0.5;  // fraction of the period that is high (Oscillator, Pulse)
    double lowLevel = 0.0;
    double highLevel = 1.0;
    double riseTime = 0.0;
    double fallTime = 0.0;
    // None: every edge at its nominal time.
    EdgeDisplacement edgeDisplacement;
};

// A waveform longer than this many points is refused rather than allocated:
// 32768 cycles of 32768 toggling bits would need tens of gigabytes.
inline constexpr int64_t kMaxWaveformPoints = int64_t{1} << 24;

// The corner points, or none when the input describes no waveform: a period of
// 0 or less, a ramp of 0 or less or longer than the period (for Oscillator and
// Pulse: longer than the phase it starts), a duty cycle outside (0, 1) for
// those two, fewer than one cycle, no bits, or more than kMaxWaveformPoints.
//
// Data kinds are non-return-to-zero, one bit per period, each change a ramp
// starting at the bit boundary. Oscillator (2) and Pulse (9) are high for the
// duty cycle at the start of each of the cycleCount periods. Edge (8) starts
// at the level opposite its one bit, ramps to it at time 0 and holds it for
// cycleCount periods.
//
// A displacement moves each ramp, clamped so that it starts no earlier than
// the point before it (the previous ramp's end, or time 0) and ends no later
// than the next ramp's nominal start (or the end of the waveform): edges keep
// their order and times stay increasing. A displacement that is not a finite
// number refuses the waveform.
std::optional<std::vector<STIMPOINT>> BuildStimulusWaveform(const WaveformInput& input);

// What a waveform that was refused needed, for a person who asked for it
// (with `withJitter`, the jitter's own conditions too).
std::string NoWaveformMessage(bool withJitter);

// The SPICE voltage source "V<sourceName> <node> 0 PWL(...)" with one
// continuation line per four points, after a comment line, so that the text
// serves both as an included file and as a netlist of its own. Times and
// levels with 15 significant digits.
std::string PwlSourceText(std::span<const STIMPOINT> points, std::string_view sourceName,
                          std::string_view node);

// Whether a name can stand in a SPICE card as one token.
bool IsSpiceToken(std::string_view name);

}  // namespace kv
