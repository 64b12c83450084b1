#include "core/eye/EyeMaskTest.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "core/stimulus/EyeMask.h"

namespace kv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Where the mask's time 0 lies on the eye, in seconds from the mean crossing.
double MaskTimeShift(const EYEMASK& mask, double interval) {
    return -interval * (mask.TCross1Min + mask.TCross1Max) / 200.0;
}

bool AllFinite(const EYEMASK& m) {
    for (const double value : {m.PTopMax, m.PTopMin, m.PBaseMin, m.PBaseMax, m.PCross, m.TCross1Min,
                               m.TCross1Max, m.TRiseDelay, m.TCross2Max, m.TCross2Min, m.TFallDelay,
                               m.ScaleTime, m.ScaleVolt, m.OffsetTime, m.OffsetVolt}) {
        if (!std::isfinite(value)) {
            return false;
        }
    }
    return true;
}

// The two points offset + k * interval on either side of `target`: a concave
// (or convex) function of the offset has its largest (or smallest) value
// over all k at one of them.
struct Neighbours {
    double below;
    double above;
};
Neighbours Around(double offset, double target, double interval) {
    const double below = offset + std::floor((target - offset) / interval) * interval;
    return {below, below + interval};
}

}  // namespace

MaskOutline PlaceMaskOnEye(const EYEMASK& mask, double interval) {
    MaskOutline outline = BuildMaskOutline(mask, interval);
    const double shift = MaskTimeShift(mask, interval);
    for (std::vector<VEC2>* line : {&outline.opening, &outline.topLimit, &outline.baseLimit,
                                    &outline.firstCrossing, &outline.secondCrossing}) {
        for (VEC2& point : *line) {
            point.x += shift;
        }
    }
    return outline;
}

std::optional<EyeMaskTest> EyeMaskTest::Place(const EYEMASK& mask, double interval, int32_t eyes,
                                              int32_t columns) {
    if (!AllFinite(mask) || !(mask.ScaleTime > 0.0) || !(mask.ScaleVolt > 0.0) ||
        FindMaskOrderError(mask) || !(interval > 0.0) || eyes < 1 || columns < 1) {
        return std::nullopt;
    }
    const double shift = MaskTimeShift(mask, interval);
    const auto place = [&](double percent, double volts) {
        VEC2 point = PlaceMaskPoint(mask, interval, percent, volts);
        point.x += shift;
        return point;
    };
    const VEC2 left = place(mask.TCross1Max, mask.PCross);
    const VEC2 right = place(mask.TCross2Min, mask.PCross);
    const VEC2 riseTop = place(mask.TRiseDelay, mask.PTopMin);
    const VEC2 fallBase = place(mask.TFallDelay, mask.PBaseMax);
    const VEC2 topLimit = place(mask.TCross1Min, mask.PTopMax);
    const VEC2 baseLimit = place(mask.TCross2Max, mask.PBaseMin);

    EyeMaskTest test;
    test.m_interval = interval;
    test.m_centre = (left.x + right.x) / 2.0;
    test.m_halfWidth = (right.x - left.x) / 2.0;
    test.m_riseInset = riseTop.x - left.x;
    test.m_fallInset = right.x - fallBase.x;
    test.m_crossing = left.y;
    test.m_topHeight = riseTop.y - left.y;
    test.m_baseHeight = left.y - fallBase.y;
    if (!(test.m_halfWidth > 0.0) || !(test.m_topHeight > 0.0) || !(test.m_baseHeight > 0.0)) {
        return std::nullopt;
    }

    // The opening is deepest midway between rise and fall delay.
    const double deepest = (test.m_riseInset - test.m_fallInset) / 2.0;
    const double pitch = interval * eyes / columns;
    test.m_columns.resize(static_cast<std::size_t>(columns));
    test.m_columnOffsets.resize(static_cast<std::size_t>(columns));
    for (std::size_t j = 0; j < test.m_columns.size(); ++j) {
        const double time = (static_cast<double>(j) + 0.5) * pitch;
        const double offset = time - test.m_centre;
        test.m_columnOffsets[j] = offset;
        const Neighbours next = Around(offset, deepest, interval);
        const double depth = std::max(test.Depth(next.below), test.Depth(next.above));
        MaskColumn& column = test.m_columns[j];
        column.openBelow = column.openAbove = test.m_crossing;
        if (depth > 0.0) {
            column.openBelow = test.m_crossing - depth * test.m_baseHeight;
            column.openAbove = test.m_crossing + depth * test.m_topHeight;
        }
        // The first shifted copy of the column's time at or after the limits'
        // start decides whether they reach it.
        const double first = time + std::ceil((topLimit.x - time) / interval) * interval;
        if (first <= baseLimit.x) {
            column.top = topLimit.y;
            column.bottom = baseLimit.y;
        }
    }
    return test;
}

double EyeMaskTest::Depth(double offset) const {
    const auto side = [](double toCorner, double inset) {
        if (inset > 0.0) {
            return toCorner / inset;
        }
        return toCorner > 0.0 ? 1.0 : 0.0;  // an upright side
    };
    return std::min(
        {1.0, side(m_halfWidth + offset, m_riseInset), side(m_halfWidth - offset, m_fallInset)});
}

double EyeMaskTest::Gauge(double height, double offset) const {
    return std::max({height, (m_riseInset * height - offset) / m_halfWidth,
                     (m_fallInset * height + offset) / m_halfWidth});
}

double EyeMaskTest::MarginPercent() const {
    double scale = kInfinity;
    const auto reach = [&](double height, double offset) {
        // The gauge along the time axis is least where its two slanted sides
        // meet.
        const Neighbours next =
            Around(offset, (m_riseInset - m_fallInset) * height / 2.0, m_interval);
        scale = std::min({scale, Gauge(height, next.below), Gauge(height, next.above)});
    };
    for (std::size_t j = 0; j < m_columns.size(); ++j) {
        const MaskColumn& column = m_columns[j];
        if (column.nearestAbove < kInfinity) {
            reach((column.nearestAbove - m_crossing) / m_topHeight, m_columnOffsets[j]);
        }
        if (column.nearestBelow > -kInfinity) {
            reach((m_crossing - column.nearestBelow) / m_baseHeight, m_columnOffsets[j]);
        }
    }
    return scale < kInfinity ? (scale - 1.0) * 100.0 : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace kv
