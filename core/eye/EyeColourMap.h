#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/chart/AxisMapping.h"
#include "core/eye/EyeFold.h"
#include "core/ports/Canvas.h"

// The eye's density as the pixels of a plot: which cells each pixel shows, the colour of a
// count, and the picture of a whole view with the mask's hits marked on it.

namespace kv {

// Colours as the plot's image holds them (0xAARRGGBB, see ArgbImage).
namespace eye_pixels {
inline constexpr uint32_t kEmpty = 0x00000000u;  // no point: the grid shows through
inline constexpr uint32_t kHit = 0xFFFF00FFu;    // magenta, in no count's colour
}  // namespace eye_pixels

// A count's colour on a logarithmic scale from the fewest points to the most, so that a trace
// crossed once in ten thousand intervals still shows beside the levels every interval
// crosses: dark blue through cyan, green and yellow to red. 0 is kEmpty, every other count
// opaque.
class DensityPalette {
public:
    // For densities whose largest count is `maximum` (counts above it take its colour).
    explicit DensityPalette(uint32_t maximum);
    uint32_t Colour(uint32_t count) const {
        return count < m_table.size() ? m_table[count] : Compute(count);
    }

private:
    uint32_t Compute(uint32_t count) const;

    uint32_t m_maximum;
    std::vector<uint32_t> m_table;  // the colours of the counts up to a limit, looked up
};

// The cells one pixel shows along an axis: first to last, both included; none when first >
// last.
struct CellSpan {
    int32_t first = 0;
    int32_t last = -1;
    bool Empty() const { return first > last; }
};

// For `pixelCount` pixels from `firstPixel` on, the cells of `cells` cells, cell i covering
// [origin + i * size, origin + (i + 1) * size) of the axis' values: a pixel shows the cells
// whose centres lie inside it, or, when it lies inside one cell (a view zoomed in), the cell
// under its centre. So every cell is shown by one pixel at least, however far the view is
// zoomed out, and no pixel of a view zoomed in is left empty.
std::vector<CellSpan> CellsOfPixels(const AxisMapping& mapping, int firstPixel, int pixelCount,
                                    double origin, double size, int32_t cells);

struct DensityPicture {
    std::span<const uint32_t> density;  // grid.height rows of grid.width counts, row 0 at vMin
    std::span<const uint32_t> hits;     // the same cells' mask hits; empty: none marked
    EyeGrid grid;
    double window = 0.0;  // seconds the grid's columns span, from time 0
    const DensityPalette* palette = nullptr;
};

// Work space of one picture, kept between pictures so a new view allocates nothing.
struct DensityScratch {
    std::vector<uint32_t> columnMaxima;
};

// The image of `plot` (its left and top pixel at the image's origin) under the axis mappings:
// each pixel in the colour of the largest count among the cells it shows, kEmpty where it
// shows none; each cell with a hit marked by a square of three pixels on a side at its centre.
void PaintDensity(const DensityPicture& picture, const AxisMapping& x, const AxisMapping& y,
                  const Rect& plot, DensityScratch& scratch, std::vector<uint32_t>& pixels);

}  // namespace kv
