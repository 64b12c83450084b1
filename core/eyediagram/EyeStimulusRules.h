#pragma once

#include "core/stimulus/Jitter.h"
#include "core/stimulus/StimulusData.h"

// How the eye-diagram stimulus page's jitter components map onto the stimulus data: component 0
// Gaussian (magnitude in the maximum jitter, value2 its frequency), 1 uniform (magnitude, value2
// its mean), 2 sine (magnitude, value2 its frequency, value3 its initial phase).

namespace kv::eye_stimulus {

// The simple maximum jitter and the Gaussian magnitude are one stored value
// (the maximum jitter): the page keeps it in this component's record alone,
// so that whichever field was typed last is what the data gets.
inline constexpr int kSimpleMaximumComponent = 0;

CJitter JitterFromData(const CStimulusData& data, int component);
void StoreJitter(CStimulusData& data, int component, const CJitter& jitter);

}  // namespace kv::eye_stimulus
