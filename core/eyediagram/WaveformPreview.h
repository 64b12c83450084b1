#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "kvcomctl/IEyeDiagramStimAdaptor.h"

// The waveform the eye-diagram stimulus page previews: the stimulus adaptor's
// piecewise-linear signal for the values the page shows, with levels and
// ramps of the page's own choosing, since the host picks the real ones only
// when it simulates.

namespace kv {

// 0 V and 5 V: the levels the default eye mask is drawn around.
inline constexpr double kPreviewLowLevel = 0.0;
inline constexpr double kPreviewHighLevel = 5.0;
// Each ramp takes a tenth of the bit interval, visible as a slope; for the
// kinds shaped by the duty cycle at most half of the shorter phase, so that
// even a 1 % pulse reaches its level.
inline constexpr double kPreviewRampFraction = 0.1;
// At most this many bit intervals are previewed: whole cycles up to this
// count, and always at least one cycle, so the preview stays quick to draw
// however many cycles are simulated.
inline constexpr int64_t kPreviewBitLimit = 65536;

struct PreviewInput {
    std::span<const uint8_t> bits;  // one cycle, one byte (0 or 1) per bit
    int32_t cycleCount = 1;
    int32_t seqType = 0;
    double periodNs = 0.0;
    double dutyPercent = 50.0;
};

// How many of the cycles the preview shows, for cycles of `periodsPerCycle`
// bit intervals.
int32_t PreviewCycleCount(int32_t cycleCount, std::size_t periodsPerCycle);

// The ramp, in seconds, the preview gives each change of level.
double PreviewRampTime(int32_t seqType, double periodNs, double dutyPercent);

// The preview's corner points in seconds and volts; empty when the values
// describe no waveform (no bits, no cycles, a period of 0 or less...).
std::vector<STIMPOINT> BuildWaveformPreview(const PreviewInput& input);

}  // namespace kv
