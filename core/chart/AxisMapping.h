#pragma once

#include <cmath>
#include <limits>

#include "core/chart/AxisArithmetic.h"

// Data values to pixels and back along one axis. The visible range [lo, hi]
// spans the pixels from `from` to `to` inclusive (for the y axis `from` is
// the bottom row and `to` the top one); a logarithmic axis is linear in the
// base-10 exponent. A pixel is the exact position rounded to the nearest
// whole pixel, an exact half toward `to`'s side of rising values (floor of
// position + 0.5). Positions beyond kPixelLimit either way are held there,
// so every value has a pixel a painter can draw to; values at or below 0 on
// a logarithmic axis go to the limit below lo.

namespace kv {

inline constexpr double kPixelLimit = 1 << 20;

class AxisMapping {
public:
    AxisMapping() = default;
    AxisMapping(Range visible, bool logarithmic, int from, int to)
        : m_logarithmic(logarithmic), m_from(from), m_to(to) {
        m_origin = Exponent(visible.lo);
        const double length = Exponent(visible.hi) - m_origin;
        m_scale = length != 0.0 && std::isfinite(length) ? (to - from) / length : 0.0;
        m_offset = from + 0.5;
    }

    bool Logarithmic() const { return m_logarithmic; }
    int From() const { return m_from; }
    int To() const { return m_to; }

    // The value on the axis' own linear scale: the exponent on a
    // logarithmic axis (minus infinity for values not above 0).
    double Exponent(double value) const {
        if (!m_logarithmic) {
            return value;
        }
        return value > 0.0 ? std::log10(value) : -std::numeric_limits<double>::infinity();
    }

    int ToPixel(double value) const {
        const double position = (Exponent(value) - m_origin) * m_scale + m_offset;
        // Held at the limits first (NaN below), so the floor is a
        // truncation and a correction: this runs for every point a curve
        // draws, and std::floor is a call on the oldest processors.
        if (!(position >= -kPixelLimit)) {
            return static_cast<int>(-kPixelLimit);
        }
        if (position > kPixelLimit) {
            return static_cast<int>(kPixelLimit);
        }
        const int truncated = static_cast<int>(position);
        return truncated - (position < truncated ? 1 : 0);
    }

    double ToValue(double pixel) const {
        if (m_scale == 0.0) {
            return m_logarithmic ? std::pow(10.0, m_origin) : m_origin;
        }
        const double exponent = m_origin + (pixel - m_from) / m_scale;
        return m_logarithmic ? std::pow(10.0, exponent) : exponent;
    }

private:
    bool m_logarithmic = false;
    int m_from = 0;
    int m_to = 0;
    double m_origin = 0.0;
    double m_scale = 0.0;
    double m_offset = 0.0;
};

}  // namespace kv
