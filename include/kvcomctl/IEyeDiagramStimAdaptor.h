#pragma once

#include <cstdint>

// The stimulus adaptor: turns a stimulus data object into the piecewise-linear
// waveform a host's simulator is driven with. Operation order is the
// virtual-table order the host binds to.

class IEyeDiagramData;

struct STIMPOINT {
    double time;
    double level;
};  // seconds, volts

class IEyeDiagramStimAdaptor {
public:
    virtual int32_t Build(IEyeDiagramData* data, double lowLevel, double highLevel, double riseTime,
                          double fallTime) = 0;      // 0
    virtual int32_t GetPointCount() const = 0;       // 1
    virtual const STIMPOINT* GetPoints() const = 0;  // 2
    virtual double GetDuration() const = 0;          // 3
    virtual void Clear() = 0;                        // 4
    virtual bool WritePwl(const char* path, const char* sourceName,
                          const char* node) const = 0;  // 5
protected:
    ~IEyeDiagramStimAdaptor() = default;
};
