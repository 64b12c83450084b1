#include "core/eye/EyeColourMap.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kv {
namespace {

struct Anchor {
    double level;
    double red, green, blue;
};

constexpr std::array<Anchor, 5> kAnchors{{
    {0.00, 20, 40, 200},
    {0.25, 0, 150, 230},
    {0.50, 0, 190, 60},
    {0.75, 240, 200, 0},
    {1.00, 220, 20, 0},
}};

// Counts up to this one are looked up; the few cells above it compute their colour.
constexpr uint32_t kTableLimit = 65535;

uint32_t ColourAt(double level) {
    std::size_t i = 1;
    while (i + 1 < kAnchors.size() && level > kAnchors[i].level) {
        ++i;
    }
    const Anchor& a = kAnchors[i - 1];
    const Anchor& b = kAnchors[i];
    const double t = std::clamp((level - a.level) / (b.level - a.level), 0.0, 1.0);
    const auto channel = [t](double from, double to) {
        return static_cast<uint32_t>(std::lround(from + t * (to - from)));
    };
    return kOpaqueAlpha | channel(a.red, b.red) << 16 | channel(a.green, b.green) << 8 |
           channel(a.blue, b.blue);
}

// A pixel position clamped into [-1, cells] before it becomes an integer, so a view far from
// the grid (or a position that is not a number) lands just outside it.
int32_t ClampedCell(double position, int32_t cells) {
    return static_cast<int32_t>(std::fmax(std::fmin(position, cells), -1.0));
}

}  // namespace

DensityPalette::DensityPalette(uint32_t maximum) : m_maximum(std::max<uint32_t>(maximum, 1)) {
    m_table.resize(std::min(m_maximum, kTableLimit) + std::size_t{1});
    m_table[0] = eye_pixels::kEmpty;
    for (uint32_t count = 1; count < m_table.size(); ++count) {
        m_table[count] = Compute(count);
    }
}

uint32_t DensityPalette::Compute(uint32_t count) const {
    if (count == 0) {
        return eye_pixels::kEmpty;
    }
    const double level =
        m_maximum > 1 ? std::log(std::min(count, m_maximum)) / std::log(m_maximum) : 1.0;
    return ColourAt(level);
}

std::vector<CellSpan> CellsOfPixels(const AxisMapping& mapping, int firstPixel, int pixelCount,
                                    double origin, double size, int32_t cells) {
    std::vector<CellSpan> spans(static_cast<std::size_t>(std::max(pixelCount, 0)));
    const auto position = [&](double pixel) { return (mapping.ToValue(pixel) - origin) / size; };
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const double pixel = firstPixel + static_cast<double>(i);
        const double a = position(pixel - 0.5);
        const double b = position(pixel + 0.5);
        // Cell c's centre c + 1/2 lies in [lo, hi).
        CellSpan span{ClampedCell(std::ceil(std::fmin(a, b) - 0.5), cells),
                      ClampedCell(std::ceil(std::fmax(a, b) - 0.5), cells) - 1};
        if (span.Empty()) {
            const int32_t under = ClampedCell(std::floor(position(pixel)), cells);
            span = {under, under};
        }
        span.first = std::max(span.first, 0);
        span.last = std::min(span.last, cells - 1);
        spans[i] = span;
    }
    return spans;
}

void PaintDensity(const DensityPicture& picture, const AxisMapping& x, const AxisMapping& y,
                  const Rect& plot, DensityScratch& scratch, std::vector<uint32_t>& pixels) {
    const int width = std::max(plot.Width(), 0);
    const int height = std::max(plot.Height(), 0);
    pixels.assign(static_cast<std::size_t>(width) * height, eye_pixels::kEmpty);
    const EyeGrid& grid = picture.grid;
    const auto cellCount = static_cast<std::size_t>(grid.width) * grid.height;
    if (pixels.empty() || picture.palette == nullptr || picture.density.size() != cellCount ||
        cellCount == 0) {
        return;
    }
    const double cellWidth = picture.window / grid.width;
    const double cellHeight = (grid.vMax - grid.vMin) / grid.height;
    const std::vector<CellSpan> columns =
        CellsOfPixels(x, plot.left, width, 0.0, cellWidth, grid.width);
    const std::vector<CellSpan> rows =
        CellsOfPixels(y, plot.top, height, grid.vMin, cellHeight, grid.height);

    int32_t rowLo = grid.height;
    int32_t rowHi = -1;
    for (const CellSpan& span : rows) {
        if (!span.Empty()) {
            rowLo = std::min(rowLo, span.first);
            rowHi = std::max(rowHi, span.last);
        }
    }
    // First each grid row's largest count under each pixel column, then each pixel row's
    // largest among its grid rows: two passes of one dimension each.
    if (rowLo <= rowHi) {
        std::vector<uint32_t>& maxima = scratch.columnMaxima;
        maxima.assign(static_cast<std::size_t>(rowHi - rowLo + 1) * width, 0);
        for (int32_t r = rowLo; r <= rowHi; ++r) {
            const uint32_t* counts =
                picture.density.data() + static_cast<std::size_t>(r) * grid.width;
            uint32_t* out = maxima.data() + static_cast<std::size_t>(r - rowLo) * width;
            for (int px = 0; px < width; ++px) {
                const CellSpan span = columns[px];
                if (!span.Empty()) {
                    out[px] = *std::max_element(counts + span.first, counts + span.last + 1);
                }
            }
        }
        for (int py = 0; py < height; ++py) {
            const CellSpan span = rows[py];
            if (span.Empty()) {
                continue;
            }
            uint32_t* out = pixels.data() + static_cast<std::size_t>(py) * width;
            const uint32_t* first =
                maxima.data() + static_cast<std::size_t>(span.first - rowLo) * width;
            for (int px = 0; px < width; ++px) {
                uint32_t count = first[px];
                for (int32_t r = span.first + 1; r <= span.last; ++r) {
                    count =
                        std::max(count, maxima[static_cast<std::size_t>(r - rowLo) * width + px]);
                }
                out[px] = picture.palette->Colour(count);
            }
        }
    }

    if (picture.hits.size() != cellCount) {
        return;
    }
    for (int32_t r = 0; r < grid.height; ++r) {
        for (int32_t j = 0; j < grid.width; ++j) {
            if (picture.hits[static_cast<std::size_t>(r) * grid.width + j] == 0) {
                continue;
            }
            const int cx = x.ToPixel((j + 0.5) * cellWidth) - plot.left;
            const int cy = y.ToPixel(grid.vMin + (r + 0.5) * cellHeight) - plot.top;
            for (int py = std::max(cy - 1, 0); py <= std::min(cy + 1, height - 1); ++py) {
                for (int px = std::max(cx - 1, 0); px <= std::min(cx + 1, width - 1); ++px) {
                    pixels[static_cast<std::size_t>(py) * width + px] = eye_pixels::kHit;
                }
            }
        }
    }
}

}  // namespace kv
