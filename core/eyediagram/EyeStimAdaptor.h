#pragma once

#include <vector>

#include "core/eyediagram/StimWaveform.h"
#include "kvcomctl/IEyeDiagramStimAdaptor.h"

// The stimulus adaptor the factory hands out: it reads a stimulus only
// through IEyeDiagramData, so any implementation of it can be simulated, and
// keeps the waveform's corner points until the next Build or Clear.

namespace kv {

class CEyeStimAdaptor final : public IEyeDiagramStimAdaptor {
public:
    CEyeStimAdaptor() = default;
    ~CEyeStimAdaptor() = default;

    int32_t Build(IEyeDiagramData* data, double lowLevel, double highLevel, double riseTime,
                  double fallTime) override;
    int32_t GetPointCount() const override;
    const STIMPOINT* GetPoints() const override;
    double GetDuration() const override;
    void Clear() override;
    bool WritePwl(const char* path, const char* sourceName, const char* node) const override;
    int32_t BuildJittered(IEyeDiagramData* data, double lowLevel, double highLevel, double riseTime,
                          double fallTime) override;

private:
    struct Shape {
        double lowLevel;
        double highLevel;
        double riseTime;
        double fallTime;
    };
    int32_t BuildWaveform(IEyeDiagramData* data, const Shape& shape, EdgeDisplacement displacement);

    std::vector<STIMPOINT> m_points;
};

}  // namespace kv
