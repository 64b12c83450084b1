#pragma once

#include <string>

// Lengths are held in metres and shown in mils or, with the metric flag, millimetres, always
// with two decimals. Angles are shown as they are.

namespace kv {

inline constexpr double kMilsPerMetre = 39370.07874015748;
inline constexpr double kMillimetresPerMetre = 1000.0;

class DisplayUnits {
public:
    explicit DisplayUnits(bool metric) : m_metric(metric) {}

    bool Metric() const { return m_metric; }
    double Scale() const { return m_metric ? kMillimetresPerMetre : kMilsPerMetre; }
    // "%.2f" of the length in display units.
    std::string ShowLength(double metres) const;
    double ToMetres(double typed) const { return typed / Scale(); }

private:
    bool m_metric;
};

// "%.2f" of an angle, unscaled.
std::string ShowAngle(double degrees);

}  // namespace kv
