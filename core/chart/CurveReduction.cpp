#include "core/chart/CurveReduction.h"

#include <algorithm>

namespace kv {

bool HasRisingX(std::span<const VEC2> points) {
    return std::adjacent_find(points.begin(), points.end(), [](const VEC2& a, const VEC2& b) {
               return !(b.x >= a.x);
           }) == points.end();
}

IndexRange VisibleIndexRange(std::span<const VEC2> points, const AxisMapping& x, int firstColumn,
                             int lastColumn) {
    // With x rising the columns rise too (the mapping never goes back), so
    // the columns split the points into runs a binary search finds.
    const bool rising = x.To() >= x.From();
    const auto before = [&](const VEC2& point, int column) {
        const int at = x.ToPixel(point.x);
        return rising ? at < column : at > column;
    };
    const int lowColumn = rising ? firstColumn : lastColumn;
    const int highColumn = rising ? lastColumn : firstColumn;
    const auto first = std::lower_bound(points.begin(), points.end(), lowColumn, before);
    const auto last = std::lower_bound(first, points.end(), highColumn + (rising ? 1 : -1), before);
    IndexRange range{static_cast<size_t>(first - points.begin()),
                     static_cast<size_t>(last - points.begin())};
    if (range.begin > 0) {
        --range.begin;
    }
    if (range.end < points.size()) {
        ++range.end;
    }
    return range;
}

void MapAllPoints(std::span<const VEC2> points, const AxisMapping& x, const AxisMapping& y,
                  std::vector<Point>& out) {
    out.clear();
    out.reserve(points.size());
    for (const VEC2& point : points) {
        out.push_back({x.ToPixel(point.x), y.ToPixel(point.y)});
    }
}

namespace {

// Adds a point unless it repeats the last one (a repeat draws nothing new).
void Append(std::vector<Point>& out, Point point) {
    if (out.empty() || !(out.back() == point)) {
        out.push_back(point);
    }
}

}  // namespace

void MapReducedPoints(std::span<const VEC2> points, const AxisMapping& x, const AxisMapping& y,
                      std::vector<Point>& out) {
    out.clear();
    size_t i = 0;
    while (i < points.size()) {
        // One run: the points from i on that share i's column. Its lowest
        // and highest values are tracked in data units; the mapping keeps
        // order, so they map to the run's extreme pixels.
        const int column = x.ToPixel(points[i].x);
        double low = points[i].y;
        double high = points[i].y;
        size_t end = i + 1;
        while (end < points.size() && x.ToPixel(points[end].x) == column) {
            low = std::fmin(low, points[end].y);
            high = std::fmax(high, points[end].y);
            ++end;
        }
        Append(out, {column, y.ToPixel(points[i].y)});
        if (end - i > 1) {
            Append(out, {column, y.ToPixel(low)});
            Append(out, {column, y.ToPixel(high)});
            Append(out, {column, y.ToPixel(points[end - 1].y)});
        }
        i = end;
    }
}

}  // namespace kv
