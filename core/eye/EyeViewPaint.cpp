// The eye view's picture: the chart with the density and the mask in its plot, and the panel.

#include <algorithm>

#include "core/eye/EyeView.h"

namespace kv {
namespace {

constexpr int kMaskPenWidth = 2;

void PaintPolyline(ICanvas& canvas, const Chart& chart, const std::vector<VEC2>& line, double shift,
                   std::vector<Point>& pixels) {
    pixels.clear();
    for (const VEC2& point : line) {
        pixels.push_back(chart.ToPixel({point.x + shift, point.y}));
    }
    canvas.Polyline(pixels);
}

}  // namespace

void EyeView::Paint(ICanvas& canvas) const {
    m_chart.Paint(canvas);
    PaintPanel(canvas);
}

void EyeView::PaintPlot(ICanvas& canvas, const Chart& chart) const {
    const Rect& plot = chart.PlotRect();
    if (!m_eye) {
        canvas.SetTextColor(eye_view_colors::kStatusText);
        canvas.DrawTextCentered(plot, m_status);
        return;
    }
    const ImageKey key{m_eyeNumber,
                       chart.Axis(ChartAxis::X).visible,
                       chart.Axis(ChartAxis::Y).visible,
                       chart.Axis(ChartAxis::X).logarithmic,
                       chart.Axis(ChartAxis::Y).logarithmic,
                       plot,
                       MaskDrawn()};
    if (m_imageKey != key) {
        const DensityPicture picture{m_eye->density,
                                     key.hits ? m_eye->hits : std::span<const uint32_t>{},
                                     m_eye->grid, m_timing->interval * m_timing->eyes, &*m_palette};
        PaintDensity(picture, chart.Mapping(ChartAxis::X), chart.Mapping(ChartAxis::Y), plot,
                     m_scratch, m_image);
        m_imageKey = key;
        ++m_builds;
    }
    canvas.DrawImage({plot.left, plot.top}, {plot.Width(), plot.Height(), m_image});
    if (MaskDrawn()) {
        PaintMask(canvas, chart);
    }
}

void EyeView::PaintMask(ICanvas& canvas, const Chart& chart) const {
    // The mask holds for every unit interval: one copy in each interval the eye shows.
    std::vector<Point> pixels;
    for (int32_t k = 0; k < m_timing->eyes; ++k) {
        const double shift = k * m_timing->interval;
        canvas.SelectPen(eye_view_colors::kMaskLimit, kMaskPenWidth);
        PaintPolyline(canvas, chart, m_outline->topLimit, shift, pixels);
        PaintPolyline(canvas, chart, m_outline->baseLimit, shift, pixels);
        canvas.SelectPen(eye_view_colors::kMaskOpening, kMaskPenWidth);
        PaintPolyline(canvas, chart, m_outline->opening, shift, pixels);
    }
}

void EyeView::PaintPanel(ICanvas& canvas) const {
    canvas.FillRect(m_panel, chart_colors::kBackground);
    canvas.SetTransparentBackground(true);
    canvas.SetTextColor(eye_view_colors::kPanelText);
    const int padding = m_chart.DigitWidth();
    int top = m_chart.PlotRect().top;
    for (const auto& [label, value] : PanelLines()) {
        canvas.TextOut({m_panel.left + padding, top}, label);
        const int valueWidth = canvas.TextExtent(value).width;
        canvas.TextOut({m_panel.right - padding - valueWidth, top}, value);
        top += m_chart.TextHeight();
    }
}

}  // namespace kv
