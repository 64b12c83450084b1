#include "core/chart/CurveReduction.h"

#include <algorithm>
#include <cmath>

namespace kv {

bool HasRisingX(std::span<const VEC2> points) {
    return std::adjacent_find(points.begin(), points.end(), [](const VEC2& a, const VEC2& b) {
               return !(b.x >= a.x);
           }) == points.end();
}

CurveIndex::CurveIndex(std::span<const VEC2> points) : m_risingX(HasRisingX(points)) {
    const auto byY = [](const VEC2& a, const VEC2& b) { return a.y < b.y; };
    for (size_t begin = 0; begin < points.size(); begin += kBlockSize) {
        const auto block = points.subspan(begin, std::min(kBlockSize, points.size() - begin));
        const auto [low, high] = std::minmax_element(block.begin(), block.end(), byY);
        m_blockLowest.push_back(begin + static_cast<size_t>(low - block.begin()));
        m_blockHighest.push_back(begin + static_cast<size_t>(high - block.begin()));
    }
}

std::pair<size_t, size_t> CurveIndex::Extremes(std::span<const VEC2> points, size_t first,
                                               size_t last) const {
    size_t lowest = first;
    size_t highest = first;
    const auto consider = [&](size_t low, size_t high) {
        lowest = points[low].y < points[lowest].y ? low : lowest;
        highest = points[high].y > points[highest].y ? high : highest;
    };
    size_t k = first;
    // Point by point up to a block boundary, block by block while whole
    // blocks fit, then point by point again.
    for (; k <= last && k % kBlockSize != 0; ++k) {
        consider(k, k);
    }
    for (; k + kBlockSize - 1 <= last && k / kBlockSize < m_blockLowest.size(); k += kBlockSize) {
        consider(m_blockLowest[k / kBlockSize], m_blockHighest[k / kBlockSize]);
    }
    for (; k <= last; ++k) {
        consider(k, k);
    }
    return {lowest, highest};
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

void MapReducedPoints(std::span<const VEC2> points, IndexRange range, const CurveIndex& index,
                      const AxisMapping& x, const AxisMapping& y, std::vector<Point>& out) {
    out.clear();
    const auto add = [&](size_t index) {
        out.push_back({x.ToPixel(points[index].x), y.ToPixel(points[index].y)});
    };
    const bool risingX = index.RisingX();
    points = points.first(range.end);
    size_t i = range.begin;
    while (i < points.size()) {
        // One run: the points from i on that share i's column.
        const int column = x.ToPixel(points[i].x);
        const auto inColumn = [&](const VEC2& point) { return x.ToPixel(point.x) == column; };
        size_t end = i + 1;
        if (risingX) {
            // The run is where the column is reached: a search, not a walk.
            end = static_cast<size_t>(
                std::partition_point(points.begin() + static_cast<std::ptrdiff_t>(end),
                                     points.end(), inColumn) -
                points.begin());
        } else {
            while (end < points.size() && inColumn(points[end])) {
                ++end;
            }
        }
        if (end - i <= 4) {
            for (size_t k = i; k < end; ++k) {
                add(k);
            }
            i = end;
            continue;
        }
        // The rasteriser decides the pixel where two lines meet from both
        // lines, looking past lines of no length. So each end of the run
        // keeps its point, a repeat of that place if there is one, and the
        // nearest point elsewhere, as they are. Between those every line is
        // vertical in this column; of them only the lowest and highest
        // turning points matter, and they turn there in the reduced line as
        // they did in the whole one. The mapping keeps order, so they are
        // found in data units.
        const size_t last = end - 1;
        const int firstRow = y.ToPixel(points[i].y);
        const int lastRow = y.ToPixel(points[last].y);
        size_t leave = i + 1;
        while (leave < last && y.ToPixel(points[leave].y) == firstRow) {
            ++leave;
        }
        size_t arrive = last - 1;
        while (arrive > leave && y.ToPixel(points[arrive].y) == lastRow) {
            --arrive;
        }
        const auto [lowest, highest] = index.Extremes(points, leave, arrive);
        const size_t kept[] = {
            i,      leave - 1,  leave, std::min(lowest, highest), std::max(lowest, highest),
            arrive, arrive + 1, last};
        for (size_t k = 0; k < std::size(kept); ++k) {
            if (k == 0 || kept[k] > kept[k - 1]) {
                add(kept[k]);
            }
        }
        i = end;
    }
}

}  // namespace kv
