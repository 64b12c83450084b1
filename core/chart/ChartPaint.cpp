// The picture of the chart: background, grid, the layer, curves, frame, labels,
// legend, and what follows the pointer (rubber band, tracked point and
// readout).

#include <algorithm>
#include <cmath>

#include "core/chart/AxisMapping.h"
#include "core/chart/Chart.h"
#include "core/chart/CurveReduction.h"

namespace kv {
namespace {

constexpr int kLegendSwatch = 20;
constexpr int kLegendPadding = 4;
constexpr int kMarkerHalfSide = 3;
// A decade narrower than this many pixels gets no lines inside; one
// narrower than kNinthsPixels gets the line at 5 only.
constexpr int kHalvesPixels = 8;
constexpr int kNinthsPixels = 30;

// The decade step of a logarithmic axis whose decades are `pixels` wide.
double DecadeStep(int pixels) {
    if (pixels >= kNinthsPixels) {
        return 0.1;
    }
    return pixels >= kHalvesPixels ? 0.5 : 0.0;
}

void Outline(ICanvas& canvas, const Rect& rect) {
    canvas.MoveTo({rect.left, rect.top});
    canvas.LineTo({rect.right - 1, rect.top});
    canvas.LineTo({rect.right - 1, rect.bottom - 1});
    canvas.LineTo({rect.left, rect.bottom - 1});
    canvas.LineTo({rect.left, rect.top});
}

}  // namespace

void Chart::Paint(ICanvas& canvas) const {
    canvas.FillRect(m_client, chart_colors::kBackground);
    canvas.SetTransparentBackground(true);
    canvas.SetClipRect(m_plot);
    PaintGrid(canvas);
    if (m_layer != nullptr) {
        m_layer->PaintPlot(canvas, *this);
    }
    PaintCurves(canvas);
    canvas.ResetClip();
    canvas.SelectPen(chart_colors::kFrame, 0);
    Outline(canvas, m_plot);
    PaintLabels(canvas);
    PaintLegend(canvas);
    PaintPointer(canvas);
}

void Chart::PaintGrid(ICanvas& canvas) const {
    const AxisMapping x = Mapping(ChartAxis::X);
    const AxisMapping y = Mapping(ChartAxis::Y);
    const auto vertical = [&](int px) {
        if (px >= m_plot.left && px < m_plot.right) {
            canvas.MoveTo({px, m_plot.top});
            canvas.LineTo({px, m_plot.bottom});
        }
    };
    const auto horizontal = [&](int py) {
        if (py >= m_plot.top && py < m_plot.bottom) {
            canvas.MoveTo({m_plot.left, py});
            canvas.LineTo({m_plot.right, py});
        }
    };
    // Decade lines first, so the major lines stay on top.
    canvas.SelectPen(chart_colors::kDecadeGrid, 0);
    for (const ChartAxis axis : {ChartAxis::X, ChartAxis::Y}) {
        const auto& scale = m_scales[Index(axis)];
        if (!scale || !m_axes[Index(axis)].logarithmic || scale->lines.size() < 2) {
            continue;
        }
        const AxisMapping& mapping = axis == ChartAxis::X ? x : y;
        const int decadePixels = std::abs(mapping.ToPixel(scale->lines[1].value) -
                                          mapping.ToPixel(scale->lines[0].value));
        const double step = DecadeStep(decadePixels);
        for (size_t i = 1; i < scale->lines.size(); ++i) {
            for (const double value : DecadeLineValues(scale->lines[i].value, step)) {
                const int pixel = mapping.ToPixel(value);
                axis == ChartAxis::X ? vertical(pixel) : horizontal(pixel);
            }
        }
    }
    canvas.SelectPen(chart_colors::kMajorGrid, 0);
    if (const auto& scale = m_scales[0]) {
        for (const GridLine& line : scale->lines) {
            vertical(x.ToPixel(line.value));
        }
    }
    if (const auto& scale = m_scales[1]) {
        for (const GridLine& line : scale->lines) {
            horizontal(y.ToPixel(line.value));
        }
    }
}

void Chart::PaintCurves(ICanvas& canvas) const {
    const AxisMapping x = Mapping(ChartAxis::X);
    const AxisMapping y = Mapping(ChartAxis::Y);
    for (size_t c = 0; c < m_curves.size(); ++c) {
        const std::span<const VEC2> points = m_curves[c].m_points;
        if (m_reduceCurves) {
            // Points beyond the neighbours of the plot's columns draw only
            // outside it.
            const IndexRange range =
                m_indexes[c].RisingX() ? VisibleIndexRange(points, x, m_plot.left, m_plot.right - 1)
                                       : IndexRange{0, points.size()};
            MapReducedPoints(points, range, m_indexes[c], x, y, m_scratch);
        } else {
            MapAllPoints(points, x, y, m_scratch);
        }
        const std::vector<Point>& polyline = m_scratch.polyline;
        canvas.SelectPen(m_curves[c].m_colour, 0);
        canvas.Lines(m_scratch.stretches);
        if (polyline.size() == 1) {
            canvas.FillRect({polyline[0].x, polyline[0].y, polyline[0].x + 1, polyline[0].y + 1},
                            m_curves[c].m_colour);
        } else if (polyline.size() > 1) {
            canvas.Polyline(polyline);
        }
    }
}

void Chart::PaintLabels(ICanvas& canvas) const {
    const AxisMapping x = Mapping(ChartAxis::X);
    const AxisMapping y = Mapping(ChartAxis::Y);
    canvas.SetTextColor(m_textColor);
    canvas.SelectPen(chart_colors::kFrame, 0);
    if (const auto& scale = m_scales[0]) {
        for (const GridLine& line : scale->lines) {
            const int px = x.ToPixel(line.value);
            if (line.label.empty() || px < m_plot.left || px >= m_plot.right) {
                continue;
            }
            canvas.MoveTo({px, m_plot.bottom});
            canvas.LineTo({px, m_plot.bottom + kChartTickLength});
            const Extent extent = canvas.TextExtent(line.label);
            canvas.TextOut({px - extent.width / 2, m_plot.bottom + kChartTickLength}, line.label);
        }
    }
    if (const auto& scale = m_scales[1]) {
        for (const GridLine& line : scale->lines) {
            const int py = y.ToPixel(line.value);
            if (line.label.empty() || py < m_plot.top || py >= m_plot.bottom) {
                continue;
            }
            canvas.MoveTo({m_plot.left - kChartTickLength, py});
            canvas.LineTo({m_plot.left, py});
            const Extent extent = canvas.TextExtent(line.label);
            canvas.TextOut({m_plot.left - kChartTickLength - extent.width, py - extent.height / 2},
                           line.label);
        }
    }
}

void Chart::PaintLegend(ICanvas& canvas) const {
    // One line per named curve, in the order the names were given, in a
    // box at the plot's top right corner.
    std::vector<std::pair<const Curve*, const std::string*>> entries;
    int textWidth = 0;
    for (const auto& [id, name] : m_names) {
        const auto curve =
            std::find_if(m_curves.begin(), m_curves.end(),
                         [&id = id](const Curve& c) { return c.m_identifier == id; });
        if (curve != m_curves.end()) {
            entries.emplace_back(&*curve, &name);
            textWidth = std::max(textWidth, canvas.TextExtent(name).width);
        }
    }
    if (entries.empty()) {
        return;
    }
    const int line = m_textHeight;
    const int width = kLegendPadding * 3 + kLegendSwatch + textWidth;
    const Rect box{m_plot.right - 1 - kLegendPadding - width, m_plot.top + 1 + kLegendPadding,
                   m_plot.right - 1 - kLegendPadding,
                   m_plot.top + 1 + kLegendPadding + kLegendPadding * 2 +
                       line * static_cast<int>(entries.size())};
    canvas.FillRect(box, chart_colors::kBackground);
    canvas.SelectPen(chart_colors::kFrame, 0);
    Outline(canvas, box);
    canvas.SetTextColor(m_textColor);
    int top = box.top + kLegendPadding;
    for (const auto& [curve, name] : entries) {
        const int middle = top + line / 2;
        canvas.SelectPen(curve->m_colour, 2);
        canvas.MoveTo({box.left + kLegendPadding, middle});
        canvas.LineTo({box.left + kLegendPadding + kLegendSwatch, middle});
        canvas.TextOut({box.left + kLegendPadding * 2 + kLegendSwatch, top}, *name);
        top += line;
    }
}

void Chart::PaintPointer(ICanvas& canvas) const {
    if (m_bandActive) {
        canvas.SelectPen(chart_colors::kRubberBand, 0);
        Outline(canvas, RubberBand());
    }
    if (m_tracked && m_pointer && !m_panning) {
        const Point at = m_tracked->pixel;
        canvas.SelectPen(chart_colors::kTrackMarker, 0);
        Outline(canvas, {at.x - kMarkerHalfSide, at.y - kMarkerHalfSide, at.x + kMarkerHalfSide + 1,
                         at.y + kMarkerHalfSide + 1});
    }
    const std::string readout = Readout();
    if (!readout.empty()) {
        // Right-aligned at the plot's right edge, three lines below it.
        const Extent extent = canvas.TextExtent(readout);
        canvas.SetTextColor(m_textColor);
        canvas.TextOut({m_plot.right - extent.width, m_plot.bottom + 3 * m_textHeight}, readout);
    }
}

}  // namespace kv
