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
// replaced by those. Across a million points this leaves at most six per
// column, and the picture stays the same pixel for pixel.

namespace kv {

// True when x never falls from one point to the next.
bool HasRisingX(std::span<const VEC2> points);

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

// The points mapped and reduced to at most six per run in one column.
void MapReducedPoints(std::span<const VEC2> points, const AxisMapping& x, const AxisMapping& y,
                      std::vector<Point>& out);

}  // namespace kv
