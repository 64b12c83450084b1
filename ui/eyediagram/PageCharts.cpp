#include "ui/eyediagram/PageCharts.h"

#include <QVBoxLayout>
#include <initializer_list>

#include "core/shared/ColorRef.h"
#include "ui/chart/ChartControl.h"

namespace kv::ui {
namespace {

enum CurveId : uint32_t {
    kWaveformCurve = 1,
    kMaskOpeningCurve = 2,
    kMaskLimitCurve = 3,
    kCrossingCurve = 4,
};

constexpr uint32_t kWaveformColour = MakeColorRef(0, 64, 192);
constexpr uint32_t kMaskOpeningColour = MakeColorRef(208, 0, 0);
constexpr uint32_t kMaskLimitColour = MakeColorRef(224, 128, 0);
constexpr uint32_t kCrossingColour = MakeColorRef(0, 144, 64);

CChartControl* MakeChart(QWidget* area) {
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* chart = new CChartControl(area);
    layout->addWidget(chart);
    chart->SetUnits("s", "V");
    return chart;
}

// A fitted view ends on the grid lines around the data, where a level or a
// mask corner would lie on the plot's frame; a twentieth of the span more
// on each side keeps them in sight.
constexpr double kViewMargin = 0.05;

void FitWithMargin(CChartControl& chart, std::initializer_list<ChartAxis> axes) {
    chart.Fit();
    for (const ChartAxis axis : axes) {
        const Range fitted = chart.GetChart().Axis(axis).visible;
        const double margin = (fitted.hi - fitted.lo) * kViewMargin;
        chart.GetChart().SetVisibleRange(axis, {fitted.lo - margin, fitted.hi + margin});
    }
    chart.update();
}

void AddPolyline(CChartControl& chart, const std::vector<VEC2>& points, uint32_t colour,
                 uint32_t identifier) {
    Curve curve(points.data(), static_cast<int>(points.size()), colour);
    curve.m_identifier = identifier;
    chart.AddCurve(std::move(curve));
}

}  // namespace

CChartControl* MakeWaveformChart(QWidget* area) {
    CChartControl* chart = MakeChart(area);
    chart->SetCurveName(kWaveformCurve, "Stimulus");
    return chart;
}

CChartControl* MakeMaskChart(QWidget* area) {
    CChartControl* chart = MakeChart(area);
    chart->SetCurveName(kMaskOpeningCurve, "Mask opening");
    chart->SetCurveName(kMaskLimitCurve, "Level limits");
    chart->SetCurveName(kCrossingCurve, "Crossing windows");
    return chart;
}

void ShowWaveform(CChartControl& chart, std::span<const STIMPOINT> points) {
    std::vector<VEC2> corners;
    corners.reserve(points.size());
    for (const STIMPOINT& point : points) {
        corners.push_back({point.time, point.level});
    }
    chart.RemoveAllCurves();
    if (!corners.empty()) {
        AddPolyline(chart, corners, kWaveformColour, kWaveformCurve);
    }
    // Time starts at 0 with the stimulus; only the levels need room.
    FitWithMargin(chart, {ChartAxis::Y});
}

void ShowMaskOutline(CChartControl& chart, const MaskOutline& outline) {
    chart.RemoveAllCurves();
    AddPolyline(chart, outline.opening, kMaskOpeningColour, kMaskOpeningCurve);
    AddPolyline(chart, outline.topLimit, kMaskLimitColour, kMaskLimitCurve);
    AddPolyline(chart, outline.baseLimit, kMaskLimitColour, kMaskLimitCurve);
    AddPolyline(chart, outline.firstCrossing, kCrossingColour, kCrossingCurve);
    AddPolyline(chart, outline.secondCrossing, kCrossingColour, kCrossingCurve);
    FitWithMargin(chart, {ChartAxis::X, ChartAxis::Y});
}

}  // namespace kv::ui
