#pragma once

#include <optional>
#include <string_view>

#include "core/stimulus/Jitter.h"
#include "core/stimulus/StimulusData.h"

// What the eye-diagram stimulus page checks and how its jitter components
// map onto the stimulus data: component 0 Gaussian (magnitude in the maximum
// jitter, value2 its frequency), 1 uniform (magnitude, value2 its mean), 2
// sine (magnitude, value2 its frequency, value3 its initial phase).

namespace kv::eye_stimulus {

std::optional<std::string_view> CheckCycles(double cycles);
// The skip must lie within the bits of all cycles.
std::optional<std::string_view> CheckSkipBits(double skip, int cycles, int bitCount);
// The maximum jitter (ns) must be below the shorter of the high and low parts
// of the period.
std::optional<std::string_view> CheckSimpleJitter(double jitterNs, double periodNs,
                                                  double dutyPercent);

// The simple maximum jitter and the Gaussian magnitude are one stored value
// (the maximum jitter): the page keeps it in this component's record alone,
// so that whichever field was typed last is what the data gets.
inline constexpr int kSimpleMaximumComponent = 0;

CJitter JitterFromData(const CStimulusData& data, int component);
void StoreJitter(CStimulusData& data, int component, const CJitter& jitter);

}  // namespace kv::eye_stimulus
