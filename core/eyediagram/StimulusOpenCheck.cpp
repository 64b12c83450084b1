#include "core/eyediagram/StimulusOpenCheck.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

// Keeps `value` when `usable` says so, else takes `fallback`; true when it
// was replaced.
template <class T>
bool Keep(T& value, bool usable, const T& fallback) {
    if (usable) {
        return false;
    }
    value = fallback;
    return true;
}

bool InRange(int32_t value, int32_t low, int32_t high) {
    return value >= low && value <= high;
}

}  // namespace

bool ReplaceValuesPagesCannotUse(CStimulusData& data) {
    const CStimulusData defaults;
    bool replaced = false;
    replaced |=
        Keep(data.m_cycleCount, InRange(data.m_cycleCount, 1, 32768), defaults.m_cycleCount);
    const int64_t bits = std::max<int64_t>(1, static_cast<int64_t>(data.m_bits.size()));
    replaced |= Keep(data.m_skipBits,
                     data.m_skipBits >= 0 && data.m_skipBits <= int64_t{data.m_cycleCount} * bits,
                     defaults.m_skipBits);
    replaced |= Keep(data.m_eyeCount, InRange(data.m_eyeCount, 1, 3), defaults.m_eyeCount);
    replaced |=
        Keep(data.m_period, std::isfinite(data.m_period) && data.m_period > 0, defaults.m_period);
    replaced |= Keep(data.m_dutyCycle, data.m_dutyCycle > 0 && data.m_dutyCycle < 100,
                     defaults.m_dutyCycle);
    replaced |= Keep(data.m_jitterType, InRange(data.m_jitterType, 0, 2), defaults.m_jitterType);
    replaced |= Keep(data.m_seqType, InRange(data.m_seqType, 0, 9), defaults.m_seqType);
    replaced |= Keep(data.m_initState, InRange(data.m_initState, 0, 1), defaults.m_initState);
    replaced |= Keep(data.m_polyDegree, InRange(data.m_polyDegree, 3, 16), defaults.m_polyDegree);
    for (double StimulusValues::*real :
         {&StimulusValues::m_maxJitter, &StimulusValues::m_randomFreq, &StimulusValues::m_sineMag,
          &StimulusValues::m_sineFreq, &StimulusValues::m_sineInit, &StimulusValues::m_uniformMag,
          &StimulusValues::m_uniformMean}) {
        replaced |= Keep(data.*real, std::isfinite(data.*real), defaults.*real);
    }
    return replaced;
}

}  // namespace kv
