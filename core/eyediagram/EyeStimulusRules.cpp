#include "core/eyediagram/EyeStimulusRules.h"

namespace kv::eye_stimulus {
namespace {

struct ComponentFields {
    double StimulusValues::*magnitude;
    double StimulusValues::*value2;
    double StimulusValues::*value3;  // null when the component has none
};

constexpr ComponentFields kComponents[3] = {
    {&StimulusValues::m_maxJitter, &StimulusValues::m_randomFreq, nullptr},
    {&StimulusValues::m_uniformMag, &StimulusValues::m_uniformMean, nullptr},
    {&StimulusValues::m_sineMag, &StimulusValues::m_sineFreq, &StimulusValues::m_sineInit},
};

}  // namespace

CJitter JitterFromData(const CStimulusData& data, int component) {
    const ComponentFields& fields = kComponents[component];
    const auto index = static_cast<std::size_t>(component);
    CJitter jitter;
    jitter.m_enabled = data.m_addJitter[index];
    jitter.m_magnitude = data.*fields.magnitude;
    jitter.m_value2 = data.*fields.value2;
    jitter.m_value3 = fields.value3 != nullptr ? data.*fields.value3 : 0.0;
    jitter.m_asTime = data.m_jitterAsTime[index] ? 1 : 0;
    jitter.m_freqMeasured = data.m_freqMeasured[index] ? 1 : 0;
    return jitter;
}

void StoreJitter(CStimulusData& data, int component, const CJitter& jitter) {
    const ComponentFields& fields = kComponents[component];
    const auto index = static_cast<std::size_t>(component);
    data.m_addJitter[index] = jitter.m_enabled;
    data.*fields.magnitude = jitter.m_magnitude;
    data.*fields.value2 = jitter.m_value2;
    if (fields.value3 != nullptr) {
        data.*fields.value3 = jitter.m_value3;
    }
    data.m_jitterAsTime[index] = jitter.m_asTime != 0;
    data.m_freqMeasured[index] = jitter.m_freqMeasured != 0;
}

}  // namespace kv::eye_stimulus
