#include "core/chart/CurveReduction.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kv {
namespace {

int Sign(int value) {
    return (value > 0) - (value < 0);
}

// Whether a pixel lies between the mapping's first and last.
bool Inside(const AxisMapping& axis, int pixel) {
    return pixel >= std::min(axis.From(), axis.To()) && pixel <= std::max(axis.From(), axis.To());
}

// After a run's first point, the lines of the run to its last one in
// `column`, if two or three points leave the first point and reach the
// last in the directions (+1 down, -1 up) the run's own lines take: one
// line, or a turn at the far end of the stretch `rows` (top, bottom) the
// run covers. False, with nothing added, when neither does.
bool AddRunLines(std::vector<Point>& polyline, int column, int firstRow, int lastRow, int leaving,
                 int arriving, std::pair<int, int> rows) {
    if (leaving == arriving && Sign(lastRow - firstRow) == leaving) {
        polyline.push_back({column, lastRow});
        return true;
    }
    if (leaving != arriving) {
        // Down to the lowest row and back up, or up to the highest and down.
        polyline.push_back({column, leaving > 0 ? rows.second : rows.first});
        polyline.push_back({column, lastRow});
        return true;
    }
    return false;
}

// The first point after `begin` whose x reaches `edge`, with x rising:
// looked for outward from `hint`, so a good hint costs two points, which
// lie next to each other.
size_t FirstReaching(std::span<const VEC2> points, size_t begin, size_t hint, double edge) {
    const auto reaches = [&](size_t k) { return points[k].x >= edge; };
    size_t below = begin;          // the last point known not to reach it
    size_t above = points.size();  // the first point known to reach it
    hint = std::clamp(hint, begin + 1, points.size());
    size_t step = 1;
    if (hint < points.size() && !reaches(hint)) {
        below = hint;
        while (below + step < points.size()) {
            if (reaches(below + step)) {
                above = below + step;
                break;
            }
            below += step;
            step *= 2;
        }
    } else {
        above = hint;
        while (above - below > step) {
            if (!reaches(above - step)) {
                below = above - step;
                break;
            }
            above -= step;
            step *= 2;
        }
    }
    while (above - below > 1) {
        const size_t middle = below + (above - below) / 2;
        (reaches(middle) ? above : below) = middle;
    }
    return above;
}

// The end of the run of points from `begin` on that share `column`, on a
// curve with rising x (so a column's points follow each other), expected
// `guess` points long. The value at the column's far edge finds it among
// the values alone; the mapping then confirms the points on either side,
// since rounding may put the edge a point off. Only when it does not is
// the search made with the mapping itself.
size_t RunEnd(std::span<const VEC2> points, size_t begin, size_t guess, const AxisMapping& x,
              int column) {
    const auto inColumn = [&](size_t k) { return x.ToPixel(points[k].x) == column; };
    const size_t count = points.size();
    if (x.To() > x.From()) {
        const size_t end = FirstReaching(points, begin, begin + guess, x.ToValue(column + 0.5));
        if (inColumn(end - 1) && (end == count || !inColumn(end))) {
            return end;
        }
    }
    size_t inside = begin;  // the last point known to be in the column
    size_t step = 1;
    size_t outside = count;  // the first point known to be past it
    while (step < count - begin) {
        if (!inColumn(begin + step)) {
            outside = begin + step;
            break;
        }
        inside = begin + step;
        step *= 2;
    }
    while (outside - inside > 1) {
        const size_t middle = inside + (outside - inside) / 2;
        (inColumn(middle) ? inside : outside) = middle;
    }
    return outside;
}

// The rows points[first..last] reach, top row first.
std::pair<int, int> RowSpan(std::span<const VEC2> points, size_t first, size_t last,
                            const CurveIndex& index, const AxisMapping& y) {
    if (index.HasNaNY()) {
        // NaN has a row of its own that no comparison of values finds.
        int top = y.ToPixel(points[first].y);
        int bottom = top;
        for (size_t k = first + 1; k <= last; ++k) {
            const int row = y.ToPixel(points[k].y);
            top = std::min(top, row);
            bottom = std::max(bottom, row);
        }
        return {top, bottom};
    }
    // The mapping keeps order, so the extreme values give the extreme rows.
    const Range values = index.YRange(points, first, last);
    const int a = y.ToPixel(values.lo);
    const int b = y.ToPixel(values.hi);
    return {std::min(a, b), std::max(a, b)};
}

}  // namespace

bool HasRisingX(std::span<const VEC2> points) {
    return std::adjacent_find(points.begin(), points.end(), [](const VEC2& a, const VEC2& b) {
               return !(b.x >= a.x);
           }) == points.end();
}

CurveIndex::CurveIndex(std::span<const VEC2> points)
    : m_risingX(HasRisingX(points)),
      m_nanY(std::any_of(points.begin(), points.end(),
                         [](const VEC2& point) { return std::isnan(point.y); })) {
    if (m_nanY) {
        return;
    }
    for (const size_t size : {kBlockSize, kGroupSize}) {
        Extremes& level = size == kBlockSize ? m_blocks : m_groups;
        level.lowest.reserve(points.size() / size + 1);
        level.highest.reserve(points.size() / size + 1);
        for (size_t begin = 0; begin < points.size(); begin += size) {
            const auto part = points.subspan(begin, std::min(size, points.size() - begin));
            double lowest = part[0].y;
            double highest = part[0].y;
            for (const VEC2& point : part) {
                lowest = std::min(lowest, point.y);
                highest = std::max(highest, point.y);
            }
            level.lowest.push_back(lowest);
            level.highest.push_back(highest);
        }
    }
}

Range CurveIndex::YRange(std::span<const VEC2> points, size_t first, size_t last) const {
    Range range{points[first].y, points[first].y};
    size_t k = first;
    // Point by point up to a block boundary, block by block up to a group
    // boundary, group by group while whole groups fit, then back down.
    const auto single = [&](size_t until) {
        for (; k <= last && k < until; ++k) {
            range.lo = std::min(range.lo, points[k].y);
            range.hi = std::max(range.hi, points[k].y);
        }
    };
    const auto whole = [&](const Extremes& level, size_t size, size_t until) {
        for (; k + size - 1 <= last && k < until && k / size < level.lowest.size(); k += size) {
            range.lo = std::min(range.lo, level.lowest[k / size]);
            range.hi = std::max(range.hi, level.highest[k / size]);
        }
    };
    const auto roundUp = [&k](size_t size) { return (k + size - 1) / size * size; };
    constexpr size_t kAll = std::numeric_limits<size_t>::max();
    single(roundUp(kBlockSize));
    whole(m_blocks, kBlockSize, roundUp(kGroupSize));
    whole(m_groups, kGroupSize, kAll);
    whole(m_blocks, kBlockSize, kAll);
    single(kAll);
    return range;
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
    // Two after: a polyline's last line is drawn to its very end, which on
    // a device of more than one pixel to the pixel lies inside the last
    // column; a line that goes on from there leaves that end to the next.
    range.end = std::min(points.size(), range.end + 2);
    return range;
}

void MapAllPoints(std::span<const VEC2> points, const AxisMapping& x, const AxisMapping& y,
                  CurvePicture& out) {
    out.polyline.clear();
    out.stretches.clear();
    out.polyline.reserve(points.size());
    for (const VEC2& point : points) {
        out.polyline.push_back({x.ToPixel(point.x), y.ToPixel(point.y)});
    }
}

void MapReducedPoints(std::span<const VEC2> points, IndexRange range, const CurveIndex& index,
                      const AxisMapping& x, const AxisMapping& y, CurvePicture& out) {
    out.polyline.clear();
    out.stretches.clear();
    const auto row = [&](size_t k) { return y.ToPixel(points[k].y); };
    points = points.first(range.end);
    size_t i = range.begin;
    size_t runLength = 1;
    while (i < points.size()) {
        // One run: the points from i on that share i's column.
        const int column = x.ToPixel(points[i].x);
        size_t end = i + 1;
        if (index.RisingX()) {
            end = RunEnd(points, i, runLength, x, column);
            runLength = end - i;
        } else {
            while (end < points.size() && x.ToPixel(points[end].x) == column) {
                ++end;
            }
        }
        if (end - i <= 4) {
            for (size_t k = i; k < end; ++k) {
                out.polyline.push_back({column, row(k)});
            }
            i = end;
            continue;
        }
        // The rasteriser decides the pixel where two lines meet from both
        // lines. Where no line is cut at the edge of the picture (which
        // makes the rasteriser forget the line before), a vertical line's
        // pixels and what it leaves for the next line follow from its
        // direction and where it ends, not from its length. So each end of
        // the run keeps its point, and the line that leaves the first point
        // and the one that reaches the last keep their directions. Between
        // those every line is vertical in this column, and together they
        // cover every row from the lowest to the highest point there: other
        // lines that do the same, with one line over that stretch, paint the
        // same.
        const size_t last = end - 1;
        const int firstRow = row(i);
        const int lastRow = row(last);
        size_t leave = i + 1;
        int leaveRow = row(leave);
        while (leave < last && leaveRow == firstRow) {
            leaveRow = row(++leave);
        }
        size_t arrive = last - 1;
        int arriveRow = row(arrive);
        while (arrive > leave && arriveRow == lastRow) {
            arriveRow = row(--arrive);
        }
        out.polyline.push_back({column, firstRow});
        bool drawn = false;
        if (leave <= arrive) {
            // Every point before `leave` is on the first row, every one
            // after `arrive` on the last.
            const auto [top, bottom] = RowSpan(points, leave, arrive, index, y);
            out.stretches.push_back({{column, top}, {column, bottom}});
            const bool inPlot = Inside(x, column) && Inside(y, firstRow) && Inside(y, lastRow) &&
                                Inside(y, top) && Inside(y, bottom);
            const int leaving = Sign(leaveRow - firstRow);
            const int arriving = arriveRow != lastRow ? Sign(lastRow - arriveRow) : leaving;
            drawn = inPlot && AddRunLines(out.polyline, column, firstRow, lastRow, leaving,
                                          arriving, {top, bottom});
        }
        if (!drawn) {
            // The points where the rows change, with a repeat of the first
            // and last place if there is one.
            const std::pair<size_t, int> kept[] = {{leave - 1, firstRow},
                                                   {leave, leaveRow},
                                                   {arrive, arriveRow},
                                                   {arrive + 1, lastRow},
                                                   {last, lastRow}};
            size_t added = i;
            for (const auto& [k, keptRow] : kept) {
                if (k > added) {
                    out.polyline.push_back({column, keptRow});
                    added = k;
                }
            }
        }
        i = end;
    }
}

}  // namespace kv
