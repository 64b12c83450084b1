#include "core/eye/EyeFold.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

// Where the fold's points lie: point g (counted from 0 at the window start
// `base`, at or before the folded range) sits at column position u = g, a
// sample at u = (t - base) * columnsPerSecond - 0.5.
struct PointAxis {
    double base = 0.0;
    double columnsPerSecond = 0.0;

    double Position(double t) const { return (t - base) * columnsPerSecond - 0.5; }
    // The first point at or after position u (u > -1, below 2^62).
    static int64_t FirstAtOrAfter(double u) {
        const auto whole = static_cast<int64_t>(u);  // toward 0, so the floor for u >= 0
        return whole + (u > static_cast<double>(whole) ? 1 : 0);
    }
};

PointAxis AxisOf(const EyeFrame& frame, const EyeGrid& grid) {
    const double window = frame.interval * frame.eyes;
    PointAxis axis;
    axis.base = frame.origin - std::ceil((frame.origin - frame.from) / window) * window;
    axis.columnsPerSecond = grid.width / window;
    return axis;
}

// With or without the mask test, so that the plain fold carries none of its
// work.
template <bool kMask>
FoldCounts FoldPoints(const EyeTrace& trace, const EyeFrame& frame, const EyeGrid& grid,
                      uint32_t* density, MaskColumn* mask, double crossingLevel,
                      uint32_t* hitCells) {
    const std::span<const double> time = trace.time;
    const std::span<const double> volts = trace.volts;
    const PointAxis axis = AxisOf(frame, grid);
    // No point before the trace's first sample, where there is no line to read.
    const double from = std::min(std::max(frame.from, time.front()), frame.to);
    const int64_t firstPoint = std::max<int64_t>(0, PointAxis::FirstAtOrAfter(axis.Position(from)));
    // Points are counted in doubles, exact below 2^53, so that a segment's
    // points are bounded by its end's position without a conversion.
    const auto first = static_cast<double>(firstPoint);
    const auto end = static_cast<double>(PointAxis::FirstAtOrAfter(axis.Position(frame.to)));
    const int32_t width = grid.width;
    const auto height = static_cast<double>(grid.height);
    // Levels are interpolated in rows, the mask compares volts.
    const double rowsPerVolt = grid.height / (grid.vMax - grid.vMin);
    const double voltsPerRow = (grid.vMax - grid.vMin) / grid.height;
    const auto rowOf = [&](double v) { return (v - grid.vMin) * rowsPerVolt; };
    int64_t hits = 0;

    double point = first;
    int32_t column = static_cast<int32_t>(firstPoint % width);
    std::size_t i = FindSegment(time, from);
    double u0 = axis.Position(time[i]);
    double r0 = rowOf(volts[i]);
    for (; point < end && i + 1 < time.size(); ++i) {
        const double u1 = axis.Position(time[i + 1]);
        const double r1 = rowOf(volts[i + 1]);
        const double limit = std::min(u1, end);
        if (point < limit) {
            // point >= u0 and point < u1 here, so the segment has a length.
            const double slope = (r1 - r0) / (u1 - u0);
            do {
                const double row = r0 + (point - u0) * slope;
                if ((row >= 0.0) & (row < height)) {
                    ++density[static_cast<int64_t>(row) * width + column];
                }
                if constexpr (kMask) {
                    const double v = grid.vMin + row * voltsPerRow;
                    MaskColumn& c = mask[column];
                    const bool hit =
                        ((v > c.openBelow) & (v < c.openAbove)) | (v > c.top) | (v < c.bottom);
                    hits += hit;
                    if (hit && hitCells != nullptr) {
                        const double nearestRow = std::clamp(row, 0.0, height - 1.0);
                        ++hitCells[static_cast<int64_t>(nearestRow) * width + column];
                    }
                    const bool above = v >= crossingLevel;
                    c.nearestAbove = std::min(c.nearestAbove, above ? v : c.nearestAbove);
                    c.nearestBelow = std::max(c.nearestBelow, above ? c.nearestBelow : v);
                }
                point += 1.0;
                column = column + 1 == width ? 0 : column + 1;
            } while (point < limit);
        }
        u0 = u1;
        r0 = r1;
    }
    return {static_cast<int64_t>(point - first), hits};
}

}  // namespace

std::optional<std::string_view> FindFoldError(const EyeFrame& frame, const EyeGrid& grid) {
    if (!(std::isfinite(frame.interval) && frame.interval > 0.0)) {
        return "The bit interval must be a positive time";
    }
    if (frame.eyes < 1 || frame.eyes > 3) {
        return "The eye shows 1 to 3 bit intervals";
    }
    if (grid.width < 1 || grid.height < 1 || grid.width > kMaxEyeGridSide ||
        grid.height > kMaxEyeGridSide ||
        int64_t{grid.width} * int64_t{grid.height} > kMaxEyeGridCells) {
        return "The eye grid is too small or too large";
    }
    if (!(std::isfinite(grid.vMin) && std::isfinite(grid.vMax) && grid.vMax > grid.vMin &&
          std::isfinite(grid.vMax - grid.vMin))) {
        return "The eye's voltage range must be finite and not empty";
    }
    if (!(std::isfinite(frame.origin) && std::isfinite(frame.from) && std::isfinite(frame.to))) {
        return "The eye's times must be finite";
    }
    if (!(frame.to > frame.from)) {
        return "No waveform is left to fold";
    }
    // The origin lies at most a window from the range in the frames the
    // analysis makes; one far from it would make the positions lose their
    // fractions.
    const double window = frame.interval * frame.eyes;
    const double points = (frame.to - frame.from + std::abs(frame.origin - frame.from) + window) /
                          window * grid.width;
    if (!(points <= static_cast<double>(kMaxFoldPoints))) {
        return "The waveform spans too many bit intervals for the eye grid";
    }
    return std::nullopt;
}

std::optional<FoldCounts> FoldEye(const EyeTrace& trace, const EyeFrame& frame, const EyeGrid& grid,
                                  std::span<uint32_t> density, EyeMaskTest* mask,
                                  std::span<uint32_t> hitCells) {
    if (FindFoldError(frame, grid) ||
        density.size() != static_cast<std::size_t>(grid.width) * grid.height ||
        (mask != nullptr && mask->Columns().size() != static_cast<std::size_t>(grid.width)) ||
        (!hitCells.empty() && hitCells.size() != density.size())) {
        return std::nullopt;
    }
    if (mask == nullptr) {
        return FoldPoints<false>(trace, frame, grid, density.data(), nullptr, 0.0, nullptr);
    }
    return FoldPoints<true>(trace, frame, grid, density.data(), mask->Columns().data(),
                            mask->CrossingLevel(), hitCells.empty() ? nullptr : hitCells.data());
}

}  // namespace kv
