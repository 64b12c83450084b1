#include "core/eyediagram/EyeStimAdaptor.h"

#include "core/eyediagram/EdgeJitter.h"
#include "core/eyediagram/StimWaveform.h"
#include "core/shared/FileIo.h"
#include "kvcomctl/IEyeDiagramData.h"

namespace kv {

int32_t CEyeStimAdaptor::Build(IEyeDiagramData* data, double lowLevel, double highLevel,
                               double riseTime, double fallTime) {
    return BuildWaveform(data, {lowLevel, highLevel, riseTime, fallTime}, {});
}

int32_t CEyeStimAdaptor::BuildJittered(IEyeDiagramData* data, double lowLevel, double highLevel,
                                       double riseTime, double fallTime) {
    m_points.clear();
    if (data == nullptr) {
        return -1;
    }
    // Checked before any conversion: the jitter's own conversions take a
    // positive period for granted.
    const std::optional<EdgeJitterSettings> settings = EdgeJitterFromData(*data);
    if (!settings) {
        return -1;
    }
    const Shape shape{lowLevel, highLevel, riseTime, fallTime};
    if (!settings->MovesEdges()) {
        return BuildWaveform(data, shape, {});
    }
    EdgeJitter jitter(*settings, EdgeJitterSeedWord(data->GetJitterRepeatable()));
    return BuildWaveform(data, shape, [&jitter](double time) { return jitter.Next(time); });
}

int32_t CEyeStimAdaptor::BuildWaveform(IEyeDiagramData* data, const Shape& shape,
                                       EdgeDisplacement displacement) {
    m_points.clear();
    if (data == nullptr) {
        return -1;
    }
    const int bitCount = data->GetBitCount();
    std::vector<uint8_t> bits(static_cast<std::size_t>(bitCount > 0 ? bitCount : 0));
    for (std::size_t i = 0; i < bits.size(); ++i) {
        bits[i] = data->GetBit(static_cast<int>(i)) ? 1 : 0;
    }
    WaveformInput input;
    input.bits = bits;
    input.cycleCount = data->GetCycleCount();
    input.seqType = data->GetSeqType();
    input.period = data->GetPeriod() * 1e-9;
    input.dutyCycle = data->GetDutyCycle() * 0.01;
    input.lowLevel = shape.lowLevel;
    input.highLevel = shape.highLevel;
    input.riseTime = shape.riseTime;
    input.fallTime = shape.fallTime;
    input.edgeDisplacement = std::move(displacement);
    std::optional<std::vector<STIMPOINT>> points = BuildStimulusWaveform(input);
    if (!points) {
        return -1;
    }
    m_points = std::move(*points);
    return GetPointCount();
}

int32_t CEyeStimAdaptor::GetPointCount() const {
    return static_cast<int32_t>(m_points.size());
}

const STIMPOINT* CEyeStimAdaptor::GetPoints() const {
    return m_points.empty() ? nullptr : m_points.data();
}

double CEyeStimAdaptor::GetDuration() const {
    return m_points.empty() ? 0.0 : m_points.back().time;
}

void CEyeStimAdaptor::Clear() {
    m_points.clear();
}

bool CEyeStimAdaptor::WritePwl(const char* path, const char* sourceName, const char* node) const {
    if (path == nullptr || *path == '\0' || sourceName == nullptr || node == nullptr ||
        m_points.empty() || !IsSpiceToken(sourceName) || !IsSpiceToken(node)) {
        return false;
    }
    return ReplaceFileAtomically(path, PwlSourceText(m_points, sourceName, node)).ok;
}

}  // namespace kv
