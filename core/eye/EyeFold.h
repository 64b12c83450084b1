#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "core/eye/EyeMaskTest.h"
#include "core/eye/EyeTrace.h"

// Folding a waveform onto the eye's grid of counts.
//
// Time. The eye shows `eyes` unit intervals side by side: the grid's x axis
// covers eyes * interval seconds, from a crossing of the ideal clock to the
// crossing `eyes` intervals later, so with one eye the crossings lie on its
// left and right edge and the eye centre in the middle. The waveform is cut
// into windows of that length starting at `origin` (one of the clock's
// crossings) and every window is laid over the first; a window cut short by
// the start or end of the folded time range covers part of the grid.
//
// Sampling. The trace is read as straight lines between its samples and
// sampled anew at the centre of every grid column in every window (times
// origin + (m * width + j + 0.5) * pitch, pitch = eyes * interval / width,
// from `from` up to but not including `to`). Each such point adds one count
// to the cell of its column and of the row its level falls in. Every column
// of every window therefore gets exactly one point wherever the trace exists,
// whatever the spacing of the samples: a waveform given only by its corners
// draws a continuous trace, a densely sampled one is not weighted by its
// density, and a column's counts are the distribution of the level at that
// time of the interval. These points are the folded samples that the eye's
// measurements count.
//
// Levels. Row i covers [vMin + i * step, vMin + (i + 1) * step), step =
// (vMax - vMin) / height, row 0 at the bottom. A point outside [vMin, vMax)
// is folded and counted but lands in no cell.

namespace kv {

struct EyeGrid {
    int32_t width = 0;   // columns
    int32_t height = 0;  // rows
    double vMin = 0.0;
    double vMax = 0.0;
};

// The largest grid a fold takes, each way and in all.
inline constexpr int32_t kMaxEyeGridSide = 16384;
inline constexpr int64_t kMaxEyeGridCells = int64_t{1} << 26;

struct EyeFrame {
    double interval = 0.0;  // seconds
    int32_t eyes = 1;       // intervals per window, 1 to 3
    double origin = 0.0;    // a time at which a window starts
    double from = 0.0;      // the folded time range
    double to = 0.0;
};

// The most points one fold makes: a few seconds of work, so that no
// combination of a tiny interval and a long waveform keeps it busy for hours.
inline constexpr int64_t kMaxFoldPoints = int64_t{1} << 33;

// Why the frame and grid cannot be folded, or none: an interval that is not
// a positive finite number, eyes outside 1 to 3, a grid outside 1 to
// kMaxEyeGridSide each way or larger than kMaxEyeGridCells, a voltage range
// that is not finite or not increasing, times that are not finite, an empty
// range (to not after from), or more than kMaxFoldPoints points.
std::optional<std::string_view> FindFoldError(const EyeFrame& frame, const EyeGrid& grid);

struct FoldCounts {
    int64_t samples = 0;  // points folded
    int64_t maskHits = 0;
};

// Adds the trace (a valid one, see FindTraceError) between frame.from and
// frame.to to `density` (grid.height rows of grid.width counts; a count
// wraps after 2^32 - 1). With a mask test placed for the same interval, eyes
// and grid width, also counts the points that hit the mask and keeps each
// column's nearest points for the margin; given `hitCells` (a grid of the
// density's size), adds each hit to its cell there too, one beyond the
// grid's voltage range to the nearest row, so that every hit can be shown.
// None, and nothing added, when FindFoldError finds fault or `density`, the
// mask's columns or a non-empty `hitCells` have another size.
std::optional<FoldCounts> FoldEye(const EyeTrace& trace, const EyeFrame& frame, const EyeGrid& grid,
                                  std::span<uint32_t> density, EyeMaskTest* mask = nullptr,
                                  std::span<uint32_t> hitCells = {});

}  // namespace kv
