#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/chart/AxisMapping.h"
#include "core/chart/AxisScale.h"
#include "core/chart/Curve.h"
#include "core/chart/CurveReduction.h"
#include "core/ports/Canvas.h"
#include "core/shared/ColorRef.h"

// The chart control without its window: the curves and their names, the
// state of both axes, the plot's place in the control, zooming, panning,
// tracking the curve under the pointer, and the whole picture. The widget
// hands it events and paints what it draws.

namespace kv {

// How far an axis tick reaches out of the plot, in pixels: the layout leaves
// room for it and the painting draws it.
inline constexpr int kChartTickLength = 4;

namespace chart_colors {
inline constexpr uint32_t kBackground = MakeColorRef(255, 255, 255);
inline constexpr uint32_t kText = MakeColorRef(0, 0, 0);
inline constexpr uint32_t kFrame = MakeColorRef(0, 0, 0);
inline constexpr uint32_t kMajorGrid = MakeColorRef(200, 200, 200);
inline constexpr uint32_t kDecadeGrid = MakeColorRef(232, 232, 232);
inline constexpr uint32_t kRubberBand = MakeColorRef(64, 64, 160);
inline constexpr uint32_t kTrackMarker = MakeColorRef(255, 0, 255);
}  // namespace chart_colors

enum class ChartAxis { X = 0, Y = 1 };

enum class ChartKey { Home, Plus, Minus, Left, Right, Up, Down, Other };

// What the chart keeps for each axis.
struct ChartAxisState {
    Range visible{0.0, 1.0};
    double majorStep = 0.1;  // one decade (1 in exponent space) when logarithmic
    bool logarithmic = false;
    std::string unit;
    int minLabelSpacing = 0;  // pixels; the y axis' rule doubles it
};

// The minimum label spacings derived from the label font: an x label needs
// room for eight digits (a sign, four digits, a point, a prefix and a
// blank), y labels stand a text line apart (twice that by the y rule).
struct LabelSpacing {
    int x = 0;
    int y = 0;
};
LabelSpacing LabelSpacingFromFont(int digitWidth, int textHeight);
// The metric of the control's default font (9-point sans serif on a
// Debian desktop: digits 8 pixels wide, lines 14 high); the command line
// scales with it, having no font of its own.
inline constexpr int kNominalDigitWidth = 8;
inline constexpr int kNominalTextHeight = 14;

// The point the pointer tracks: the nearest place on a curve.
struct TrackedPoint {
    size_t curve = 0;  // index into Curves()
    VEC2 value{0.0, 0.0};
    Point pixel;
};

class Chart;

// What a view built on the chart draws inside the plot besides the curves (the eye view's
// density and mask): the chart paints it over the grid and under the curves, clipped to the
// plot, and fits its axes to it as to a curve.
class IChartLayer {
public:
    virtual ~IChartLayer() = default;
    // The smallest and the largest x and y the layer covers; none while it shows nothing.
    virtual std::optional<std::pair<VEC2, VEC2>> Extent() const = 0;
    virtual void PaintPlot(ICanvas& canvas, const Chart& chart) const = 0;
};

class Chart {
public:
    static constexpr double kWheelZoom = 0.8;  // range kept per wheel notch in
    static constexpr int kRubberBandMinimum = 4;

    Chart();

    // Curves and the (identifier, name) pairs the legend and readout use.
    void AddCurve(Curve curve);
    void RemoveAllCurves();
    const std::vector<Curve>& Curves() const { return m_curves; }
    void SetCurveName(uint32_t identifier, std::string name);
    // The name listed for `identifier`, or nothing.
    std::optional<std::string_view> CurveName(uint32_t identifier) const;

    const ChartAxisState& Axis(ChartAxis axis) const { return m_axes[Index(axis)]; }
    void SetUnit(ChartAxis axis, std::string unit);
    // Switching fits that axis again: the old range may not suit the new scale.
    void SetLogarithmic(ChartAxis axis, bool logarithmic);
    void SetPrefixes(bool prefixes);
    bool Prefixes() const { return m_prefixes; }
    void SetTextColor(uint32_t color) { m_textColor = color; }
    // Reduce every curve to what each pixel column shows (the default), or
    // draw every point (for measuring what the reduction saves).
    void SetReduceCurves(bool reduce) { m_reduceCurves = reduce; }

    // The layer drawn under the curves (not owned; null for none).
    void SetLayer(const IChartLayer* layer) { m_layer = layer; }

    // Size of a digit and height of a line in the label font; sets the
    // label spacings and lays the plot out again.
    void SetTextMetrics(int digitWidth, int textHeight);
    int DigitWidth() const { return m_digitWidth; }
    int TextHeight() const { return m_textHeight; }
    void SetClientRect(const Rect& client);
    const Rect& ClientRect() const { return m_client; }
    const Rect& PlotRect() const { return m_plot; }
    // The scale of an axis as drawn now; nothing when no step fits.
    const std::optional<AxisScale>& Scale(ChartAxis axis) const { return m_scales[Index(axis)]; }

    // The view.
    void Fit();
    void FitAxis(ChartAxis axis);
    void SetVisibleRange(ChartAxis axis, Range range);
    // Keeps `factor` of each axis' range around the point (in the plot).
    void ZoomAbout(Point at, double factor);
    void ZoomToPixels(const Rect& band);
    void PanPixels(int dx, int dy);

    // The pointer, in client coordinates. A press with `pan` drags the view;
    // any other press inside the plot sweeps a rubber band to zoom into.
    void OnMouseDown(Point at, bool pan);
    void OnMouseMove(Point at);
    void OnMouseUp(Point at);
    void OnMouseLeave();
    void OnWheel(Point at, double notches);
    void OnDoubleClick(Point at);
    bool OnKey(ChartKey key);

    bool IsPanning() const { return m_panning; }
    bool HasRubberBand() const { return m_bandActive; }
    Rect RubberBand() const;
    const std::optional<TrackedPoint>& Tracked() const { return m_tracked; }
    // The readout while the pointer is in the plot and not panning; else empty.
    std::string Readout() const;

    // The whole picture in client coordinates.
    void Paint(ICanvas& canvas) const;

    // How an axis maps data to pixels in the current view: x from the
    // plot's left column to its right one, y from its bottom row up.
    AxisMapping Mapping(ChartAxis axis) const;
    // Data to pixel and back with the current view.
    Point ToPixel(const VEC2& value) const;
    VEC2 ToValue(Point pixel) const;

private:
    static size_t Index(ChartAxis axis) { return static_cast<size_t>(axis); }
    void LayOut();
    void UpdateScales();
    std::optional<Range> DataRange(ChartAxis axis) const;
    void Track(Point at);
    void PaintGrid(ICanvas& canvas) const;
    void PaintCurves(ICanvas& canvas) const;
    void PaintLabels(ICanvas& canvas) const;
    void PaintLegend(ICanvas& canvas) const;
    void PaintPointer(ICanvas& canvas) const;

    std::vector<Curve> m_curves;
    std::vector<CurveIndex> m_indexes;
    std::vector<std::pair<uint32_t, std::string>> m_names;
    const IChartLayer* m_layer = nullptr;
    ChartAxisState m_axes[2];
    std::optional<AxisScale> m_scales[2];
    bool m_prefixes = true;
    bool m_reduceCurves = true;
    uint32_t m_textColor = chart_colors::kText;
    int m_digitWidth = kNominalDigitWidth;
    int m_textHeight = kNominalTextHeight;
    Rect m_client;
    Rect m_plot;

    std::optional<Point> m_pointer;  // inside the plot
    std::optional<TrackedPoint> m_tracked;
    bool m_panning = false;
    Point m_panFrom;
    Range m_panStart[2];
    bool m_bandActive = false;
    Point m_bandFrom;
    Point m_bandTo;
    mutable CurvePicture m_scratch;
};

}  // namespace kv
