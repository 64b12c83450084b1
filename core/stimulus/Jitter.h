#pragma once

#include <cstdint>
#include <string_view>

// The page's working record of one jitter component, the conversions of its
// magnitude between time and percent of the bit interval, and the bound on a
// component's magnitude.

namespace kv {

class CJitter {
public:
    CJitter() = default;
    CJitter(const CJitter&) = default;
    CJitter& operator=(const CJitter&) = default;
    virtual ~CJitter() = default;

    bool m_enabled = false;
    double m_magnitude = 0.0;  // percent of the bit interval, or a time when m_asTime
    double m_value2 = 0.0;
    double m_value3 = 0.0;
    int32_t m_asTime = 0;
    int32_t m_freqMeasured = 0;
    double m_value4 = 0.0;
};

// The magnitude in percent of the bit interval `period` (> 0, in the unit of
// a time magnitude).
double MagnitudeInPercent(const CJitter& jitter, double period);
// A value in percent as the component's own unit.
double MagnitudeFromPercent(const CJitter& jitter, double percent, double period);

inline constexpr std::string_view kJitterMagnitudeTooLarge =
    "The jitter magnitude must be less that 0.5 of the bit interval.";

// Whether a switched-on component stays below half the bit interval; a
// switched-off one always passes.
bool IsJitterMagnitudeAllowed(const CJitter& jitter, double period);
// The same, telling the user when it does not.
bool CheckJitterMagnitude(const CJitter& jitter, double period);

}  // namespace kv
