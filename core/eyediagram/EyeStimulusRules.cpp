#include "core/eyediagram/EyeStimulusRules.h"

#include <algorithm>

#include "core/stimulus/PageMessages.h"

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

std::optional<std::string_view> CheckCycles(double cycles) {
    if (cycles >= 1 && cycles <= 2048 && cycles == static_cast<double>(static_cast<int>(cycles))) {
        return std::nullopt;
    }
    return page_message::kCycleCount;
}

std::optional<std::string_view> CheckSkipBits(double skip, int cycles, int bitCount) {
    const double total = static_cast<double>(cycles) * std::max(bitCount, 1);
    if (skip >= 0 && skip <= total && skip == static_cast<double>(static_cast<int64_t>(skip))) {
        return std::nullopt;
    }
    return page_message::kSkipRange;
}

std::optional<std::string_view> CheckSimpleJitter(double jitterNs, double periodNs,
                                                  double dutyPercent) {
    const double shorterPart = std::min(dutyPercent, 100.0 - dutyPercent) * 0.01 * periodNs;
    if (jitterNs >= 0 && jitterNs < shorterPart) {
        return std::nullopt;
    }
    return page_message::kMaxJitterHalfPeriod;
}

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
