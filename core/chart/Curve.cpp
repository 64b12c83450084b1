#include "core/chart/Curve.h"

#include <cmath>
#include <stdexcept>

namespace kv {
namespace {

void CheckArguments(bool hasData, int count) {
    if (count < 0) {
        throw std::invalid_argument("a curve cannot have a negative point count");
    }
    if (count > 0 && !hasData) {
        throw std::invalid_argument("a curve with points needs their values");
    }
}

// A value only moves the box when it lies strictly outside: one equal to
// the minimum (such as -0.0 against 0.0) leaves it as it is.
void Widen(double value, double& minimum, double& maximum) {
    if (value < minimum) {
        minimum = value;
    } else if (value > maximum) {
        maximum = value;
    }
}

}  // namespace

Curve::Curve(const double* x, const double* y, int count, uint32_t colour) : m_colour(colour) {
    CheckArguments(x != nullptr && y != nullptr, count);
    m_points.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        Include({x[i], y[i]});
    }
}

Curve::Curve(const VEC2* points, int count, uint32_t colour) : m_colour(colour) {
    CheckArguments(points != nullptr, count);
    m_points.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        Include(points[i]);
    }
}

std::optional<Curve> HostCurve(const double* x, const double* y, int32_t count, uint32_t colour,
                               uint32_t identifier) {
    if (x == nullptr || y == nullptr || count < 2) {
        return std::nullopt;
    }
    for (int32_t i = 0; i < count; ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) {
            return std::nullopt;
        }
    }
    Curve curve(x, y, count, colour);
    curve.m_identifier = identifier;
    return curve;
}

void Curve::Include(const VEC2& point) {
    if (m_points.empty()) {
        m_minimum = point;
        m_maximum = point;
    } else {
        Widen(point.x, m_minimum.x, m_maximum.x);
        Widen(point.y, m_minimum.y, m_maximum.y);
    }
    m_points.push_back(point);
}

}  // namespace kv
