#pragma once

#include <span>
#include <vector>

#include "core/chart/AxisMapping.h"
#include "core/ports/Canvas.h"
#include "kvcomctl/Vec2.h"

// A curve of many points drawn as the few a screen can show. Consecutive
// points that land in the same pixel column are joined by vertical lines
// in that column only, so a run of them draws what its two first and two
// last points and its lowest and highest points between draw: the run is
// replaced by those. Across a million points this leaves at most eight per
// column, and the picture stays the same pixel for pixel.

namespace kv {

// True when x never falls from one point to the next.
bool HasRisingX(std::span<const VEC2> points);

// What the reduction learns of a curve once, when it is added: whether its
// x rises (so a binary search finds each column's run), and the lowest and
// highest point of each block of points (so a run's extremes come from
// whole blocks rather than from every point).
class CurveIndex {
public:
    static constexpr size_t kBlockSize = 64;

    CurveIndex() = default;
    explicit CurveIndex(std::span<const VEC2> points);

    bool RisingX() const { return m_risingX; }
    // A lowest and a highest point among points[first..last] (the points
    // the index was made of).
    std::pair<size_t, size_t> Extremes(std::span<const VEC2> points, size_t first,
                                       size_t last) const;

private:
    bool m_risingX = false;
    std::vector<size_t> m_blockLowest;
    std::vector<size_t> m_blockHighest;
};

// The index range [begin, end) of points whose lines can reach the pixel
// columns [firstColumn, lastColumn] of a curve with rising x: the points in
// those columns and one beyond each side.
struct IndexRange {
    size_t begin = 0;
    size_t end = 0;
};
IndexRange VisibleIndexRange(std::span<const VEC2> points, const AxisMapping& x, int firstColumn,
                             int lastColumn);

// Every point mapped to its pixel: the naive polyline.
void MapAllPoints(std::span<const VEC2> points, const AxisMapping& x, const AxisMapping& y,
                  std::vector<Point>& out);

// The points [range.begin, range.end) of a curve, mapped and reduced to at
// most eight per run in one column, with the curve's index.
void MapReducedPoints(std::span<const VEC2> points, IndexRange range, const CurveIndex& index,
                      const AxisMapping& x, const AxisMapping& y, std::vector<Point>& out);

}  // namespace kv
