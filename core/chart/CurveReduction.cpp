#include "core/chart/CurveReduction.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

// The end of the run of points from `begin` on that share `column`, on a
// curve with rising x (so a column's points follow each other). The search
// starts where a run of `guess` points would end and widens from there:
// evenly spaced points, whose runs are as long as the one before, cost two
// probes a column however many points each holds.
size_t RunEnd(std::span<const VEC2> points, size_t begin, size_t guess, const AxisMapping& x,
              int column) {
    const auto inColumn = [&](size_t k) { return x.ToPixel(points[k].x) == column; };
    size_t inside = begin;  // the last point known to be in the column
    size_t step = std::max<size_t>(guess, 1);
    size_t outside = points.size();  // the first point known to be past it
    while (step < points.size() - begin) {
        if (!inColumn(begin + step)) {
            outside = begin + step;
            break;
        }
        inside = begin + step;
        step *= 2;
    }
    if (outside - inside > 1 && !inColumn(outside - 1)) {
        size_t lo = inside + 1;
        size_t hi = outside - 1;
        while (lo < hi) {
            const size_t middle = lo + (hi - lo) / 2;
            if (inColumn(middle)) {
                lo = middle + 1;
            } else {
                hi = middle;
            }
        }
        return lo;
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
    m_blockLowest.reserve(points.size() / kBlockSize + 1);
    m_blockHighest.reserve(points.size() / kBlockSize + 1);
    for (size_t begin = 0; begin < points.size(); begin += kBlockSize) {
        const auto block = points.subspan(begin, std::min(kBlockSize, points.size() - begin));
        double lowest = block[0].y;
        double highest = block[0].y;
        for (const VEC2& point : block) {
            lowest = std::min(lowest, point.y);
            highest = std::max(highest, point.y);
        }
        m_blockLowest.push_back(lowest);
        m_blockHighest.push_back(highest);
    }
}

Range CurveIndex::YRange(std::span<const VEC2> points, size_t first, size_t last) const {
    Range range{points[first].y, points[first].y};
    const auto consider = [&range](double low, double high) {
        range.lo = std::min(range.lo, low);
        range.hi = std::max(range.hi, high);
    };
    size_t k = first;
    // Point by point up to a block boundary, block by block while whole
    // blocks fit, then point by point again.
    for (; k <= last && k % kBlockSize != 0; ++k) {
        consider(points[k].y, points[k].y);
    }
    for (; k + kBlockSize - 1 <= last && k / kBlockSize < m_blockLowest.size(); k += kBlockSize) {
        consider(m_blockLowest[k / kBlockSize], m_blockHighest[k / kBlockSize]);
    }
    for (; k <= last; ++k) {
        consider(points[k].y, points[k].y);
    }
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
    if (range.end < points.size()) {
        ++range.end;
    }
    return range;
}

void MapAllPoints(std::span<const VEC2> points, const AxisMapping& x, const AxisMapping& y,
                  CurvePicture& out) {
    out.polyline.clear();
    out.columns.clear();
    out.polyline.reserve(points.size());
    for (const VEC2& point : points) {
        out.polyline.push_back({x.ToPixel(point.x), y.ToPixel(point.y)});
    }
}

void MapReducedPoints(std::span<const VEC2> points, IndexRange range, const CurveIndex& index,
                      const AxisMapping& x, const AxisMapping& y, CurvePicture& out) {
    out.polyline.clear();
    out.columns.clear();
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
        // lines, looking past lines of no length. So each end of the run
        // keeps its point, a repeat of that place if there is one, and the
        // nearest point elsewhere, as they are. Between those every line is
        // vertical in this column, and together they cover every row from
        // the lowest to the highest point there: one line from the first of
        // them to the last, and a rectangle over that stretch, paint the
        // same.
        const size_t last = end - 1;
        const int firstRow = row(i);
        const int lastRow = row(last);
        size_t leave = i + 1;
        while (leave < last && row(leave) == firstRow) {
            ++leave;
        }
        size_t arrive = last - 1;
        while (arrive > leave && row(arrive) == lastRow) {
            --arrive;
        }
        size_t added = i;
        out.polyline.push_back({column, firstRow});
        for (const size_t k : {leave - 1, leave, arrive, arrive + 1, last}) {
            if (k > added) {
                out.polyline.push_back({column, row(k)});
                added = k;
            }
        }
        if (leave <= arrive) {
            const auto [top, bottom] = RowSpan(points, leave, arrive, index, y);
            out.columns.push_back({column, top, column + 1, bottom + 1});
        }
        i = end;
    }
}

}  // namespace kv
