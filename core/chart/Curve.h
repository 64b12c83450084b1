#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "kvcomctl/Vec2.h"

// One drawn series of a chart: its points in the order given, their
// bounding box, the colour it is drawn in, and the identifier under which
// the legend finds its name.

namespace kv {

class Curve {
public:
    // From two parallel arrays of `count` values. A negative count, or a
    // null array with a positive count, is an invalid argument.
    Curve(const double* x, const double* y, int count, uint32_t colour);
    // From `count` points.
    Curve(const VEC2* points, int count, uint32_t colour);

    std::vector<VEC2> m_points;
    VEC2 m_minimum{0.0, 0.0};  // smallest x and smallest y (0, 0 without points)
    VEC2 m_maximum{0.0, 0.0};  // largest x and largest y
    uint32_t m_colour = 0;     // 0x00BBGGRR
    uint32_t m_identifier = 0;

private:
    void Include(const VEC2& point);
};

// A curve a host hands over: `count` (at least 2) points of x and y, every
// value a finite number. None for a null array, too few points or a value
// that is not finite.
std::optional<Curve> HostCurve(const double* x, const double* y, int32_t count, uint32_t colour,
                               uint32_t identifier);

}  // namespace kv
