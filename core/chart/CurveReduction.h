#pragma once

#include <span>
#include <vector>

#include "core/chart/AxisArithmetic.h"
#include "core/chart/AxisMapping.h"
#include "core/ports/Canvas.h"
#include "kvcomctl/Vec2.h"

// A curve of many points drawn as the few a screen can show. Consecutive
// points that land in the same pixel column are joined by vertical lines
// in that column only, so a run of them paints one unbroken stretch of the
// column, from its lowest to its highest point, and where it enters and
// leaves the column. The run is drawn as its first and last points, with
// at most four between them where the lines turn, and one vertical line
// over that stretch: at most six points and one line per column across a
// million points, mostly two or three points, and the picture stays the
// same pixel for pixel at whole-number scales (at fractional ones some
// pixels differ).

namespace kv {

// True when x never falls from one point to the next.
bool HasRisingX(std::span<const VEC2> points);

// What the reduction learns of a curve once, when it is added: whether its
// x rises (so a search finds each column's run), and the lowest and highest
// y of each block and group of points (so a run's stretch comes from whole
// blocks rather than from every point).
class CurveIndex {
public:
    // Blocks of a few points for short runs, groups of many blocks for the
    // long runs of a large curve.
    static constexpr size_t kBlockSize = 16;
    static constexpr size_t kGroupSize = 1024;

    CurveIndex() = default;
    explicit CurveIndex(std::span<const VEC2> points);

    bool RisingX() const { return m_risingX; }
    // Whether some y is NaN, which no block extreme can stand for.
    bool HasNaNY() const { return m_nanY; }
    // The lowest and highest y among points[first..last] (the points the
    // index was made of), for a curve without NaN.
    Range YRange(std::span<const VEC2> points, size_t first, size_t last) const;

private:
    struct Extremes {
        std::vector<double> lowest;
        std::vector<double> highest;
    };
    bool m_risingX = false;
    bool m_nanY = false;
    Extremes m_blocks;
    Extremes m_groups;
};

// The index range [begin, end) of points whose lines can reach the pixel
// columns [firstColumn, lastColumn] of a curve with rising x: the points in
// those columns, one before them and two after.
struct IndexRange {
    size_t begin = 0;
    size_t end = 0;
};
IndexRange VisibleIndexRange(std::span<const VEC2> points, const AxisMapping& x, int firstColumn,
                             int lastColumn);

// A curve as it is drawn with its pen: a polyline, and vertical lines over
// the stretches of columns the polyline leaves out.
struct CurvePicture {
    std::vector<Point> polyline;
    std::vector<LineSegment> stretches;
};

// Every point mapped to its pixel: the naive polyline.
void MapAllPoints(std::span<const VEC2> points, const AxisMapping& x, const AxisMapping& y,
                  CurvePicture& out);

// The points [range.begin, range.end) of a curve, mapped and reduced to at
// most six per run in one column and that run's stretch, with the curve's
// index.
void MapReducedPoints(std::span<const VEC2> points, IndexRange range, const CurveIndex& index,
                      const AxisMapping& x, const AxisMapping& y, CurvePicture& out);

}  // namespace kv
