#pragma once

#include <cstdint>
#include <optional>

// The displacement of each stimulus edge by the stimulus's jitter, as the
// adaptor's BuildJittered describes it to hosts (include/kvcomctl/
// IEyeDiagramStimAdaptor.h): the parts it adds up, the draws it makes per
// edge, and the seed it starts from.

class IEyeDiagramData;

namespace kv {

// The jitter's parts in SI units: seconds, hertz, radians. A part that is
// zero draws nothing.
struct EdgeJitterSettings {
    double gaussianSigma = 0.0;
    bool uniform = false;
    double uniformWidth = 0.0;  // peak to peak
    double uniformMean = 0.0;
    double sineAmplitude = 0.0;
    double sineFrequency = 0.0;
    double sinePhase = 0.0;

    // Whether any edge moves at all.
    bool MovesEdges() const;
};

// The jitter the stimulus describes, or none when it describes none a
// waveform can take: a period that is not a positive finite number, a used
// value that is not finite (or is once converted), a negative magnitude, or
// a simple jitter type outside 0 to 2. Reads only the values in use.
std::optional<EdgeJitterSettings> EdgeJitterFromData(const IEyeDiagramData& data);

// The generator's seed word for one build: minus the stored jitter seed when
// the jitter is repeatable (the generator restarts from it), else minus a
// seed made from the clock and a count of builds.
int32_t EdgeJitterSeedWord(bool repeatable);

// Displacements of successive edges, asked in time order.
class EdgeJitter {
public:
    EdgeJitter(const EdgeJitterSettings& settings, int32_t seedWord)
        : m_settings(settings), m_seedWord(seedWord) {}

    // Seconds by which the edge that nominally starts at `time` (seconds)
    // moves; not finite only when the sine's phase overflows.
    double Next(double time);

private:
    EdgeJitterSettings m_settings;
    int32_t m_seedWord;
};

}  // namespace kv
