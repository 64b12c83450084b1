#include "core/eyediagram/WaveformPreview.h"

#include <algorithm>

#include "core/eyediagram/StimWaveform.h"
#include "core/stimulus/SequenceType.h"

namespace kv {
namespace {

// Kinds whose every cycle is one bit interval shaped by the duty cycle or by
// one edge, whatever bits they hold.
bool IsOnePeriodPerCycle(int32_t seqType) {
    return seqType == seq::kToggling || seqType == seq::kPulse || seqType == seq::kEdge;
}

bool IsShapedByDutyCycle(int32_t seqType) {
    return seqType == seq::kToggling || seqType == seq::kPulse;
}

}  // namespace

int32_t PreviewCycleCount(int32_t cycleCount, std::size_t periodsPerCycle) {
    if (cycleCount < 1 || periodsPerCycle == 0) {
        return 0;
    }
    const int64_t fitting =
        std::max<int64_t>(1, kPreviewBitLimit / static_cast<int64_t>(periodsPerCycle));
    return static_cast<int32_t>(std::min<int64_t>(cycleCount, fitting));
}

double PreviewRampTime(int32_t seqType, double periodNs, double dutyPercent) {
    double fraction = kPreviewRampFraction;
    if (IsShapedByDutyCycle(seqType)) {
        const double duty = dutyPercent * 0.01;
        fraction = std::min({fraction, duty / 2, (1 - duty) / 2});
    }
    return periodNs * 1e-9 * fraction;
}

std::vector<STIMPOINT> BuildWaveformPreview(const PreviewInput& input) {
    const std::size_t periodsPerCycle = IsOnePeriodPerCycle(input.seqType)
                                            ? std::min<std::size_t>(input.bits.size(), 1)
                                            : input.bits.size();
    WaveformInput waveform;
    waveform.bits = input.bits;
    waveform.cycleCount = PreviewCycleCount(input.cycleCount, periodsPerCycle);
    waveform.seqType = input.seqType;
    waveform.period = input.periodNs * 1e-9;
    waveform.dutyCycle = input.dutyPercent * 0.01;
    waveform.lowLevel = kPreviewLowLevel;
    waveform.highLevel = kPreviewHighLevel;
    waveform.riseTime = PreviewRampTime(input.seqType, input.periodNs, input.dutyPercent);
    waveform.fallTime = waveform.riseTime;
    return BuildStimulusWaveform(waveform).value_or(std::vector<STIMPOINT>{});
}

}  // namespace kv
