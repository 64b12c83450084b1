// The chart without a window: curves and their boxes, the column
// reduction against the plain polyline, the view under zoom, pan and fit,
// tracking with its readout, and what the picture draws.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <stdexcept>

#include "core/chart/Chart.h"
#include "core/chart/CurveReduction.h"
#include "tests/support/RecordingCanvas.h"

using namespace kv;
using kv::test::RecordingCanvas;

namespace {

constexpr uint32_t kRed = MakeColorRef(255, 0, 0);
constexpr uint32_t kBlue = MakeColorRef(0, 0, 255);

Curve Sine(int count, double amplitude, uint32_t colour, uint32_t identifier) {
    std::vector<double> x(static_cast<size_t>(count));
    std::vector<double> y(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        x[static_cast<size_t>(i)] = i * 1e-9;
        y[static_cast<size_t>(i)] = amplitude * std::sin(i * 0.01);
    }
    Curve curve(x.data(), y.data(), count, colour);
    curve.m_identifier = identifier;
    return curve;
}

// A chart of 600 x 400 pixels with text 7 x 15 (the nominal metric).
Chart MakeChart() {
    Chart chart;
    chart.SetClientRect({0, 0, 600, 400});
    return chart;
}

TEST(ChartCurveTest, BoxFromBothConstructorsAndItsEqualValueRule) {
    const double x[] = {0.0, -0.0, 2.0, -1.0};
    const double y[] = {3.0, 5.0, -2.0, 4.0};
    const Curve arrays(x, y, 4, kRed);
    EXPECT_EQ(arrays.m_minimum.x, -1.0);
    EXPECT_EQ(arrays.m_maximum.x, 2.0);
    EXPECT_EQ(arrays.m_minimum.y, -2.0);
    EXPECT_EQ(arrays.m_maximum.y, 5.0);

    // -0.0 equals the minimum 0.0 and so leaves it, sign and all.
    const VEC2 points[] = {{0.0, 1.0}, {-0.0, 1.0}};
    const Curve vectors(points, 2, kBlue);
    EXPECT_FALSE(std::signbit(vectors.m_minimum.x));
    EXPECT_EQ(vectors.m_points[1].x, 0.0);
    EXPECT_TRUE(std::signbit(vectors.m_points[1].x));

    EXPECT_TRUE(Curve(points, 0, kBlue).m_points.empty());
    EXPECT_THROW(Curve(points, -1, kBlue), std::invalid_argument);
    EXPECT_THROW(Curve(x, nullptr, 3, kBlue), std::invalid_argument);
}

// What a curve's picture puts in each column: the vertical extent of its
// points and stretches there, and the segments that cross from one column
// to another.
struct ColumnPicture {
    std::map<int, std::pair<int, int>> extent;
    std::vector<std::pair<Point, Point>> crossings;
    friend bool operator==(const ColumnPicture&, const ColumnPicture&) = default;
};

ColumnPicture PictureOf(const CurvePicture& curve) {
    ColumnPicture picture;
    const auto reach = [&picture](int column, int top, int bottom) {
        auto [it, added] = picture.extent.try_emplace(column, std::pair{top, bottom});
        it->second.first = std::min(it->second.first, top);
        it->second.second = std::max(it->second.second, bottom);
    };
    const std::vector<Point>& points = curve.polyline;
    for (size_t i = 0; i < points.size(); ++i) {
        reach(points[i].x, points[i].y, points[i].y);
        if (i > 0 && points[i - 1].x != points[i].x) {
            picture.crossings.emplace_back(points[i - 1], points[i]);
        }
    }
    for (const auto& [from, to] : curve.stretches) {
        EXPECT_EQ(from.x, to.x);
        reach(from.x, std::min(from.y, to.y), std::max(from.y, to.y));
    }
    return picture;
}

TEST(ChartReductionTest, ReducedCurveDrawsWhatEveryPointDraws) {
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0.0, 0.3);
    std::vector<VEC2> points;
    for (int i = 0; i < 200000; ++i) {
        points.push_back({i * 1e-3, std::sin(i * 1e-3) + noise(random)});
    }
    const CurveIndex index(points);
    ASSERT_TRUE(index.RisingX());
    for (const bool logarithmicY : {false, true}) {
        const AxisMapping x({0.0, 200.0}, false, 50, 849);
        const AxisMapping y(logarithmicY ? Range{0.01, 10.0} : Range{-2.0, 2.0}, logarithmicY, 499,
                            100);
        CurvePicture all;
        CurvePicture reduced;
        MapAllPoints(points, x, y, all);
        MapReducedPoints(points, {0, points.size()}, index, x, y, reduced);
        EXPECT_LE(reduced.polyline.size(), 6u * 800u);
        EXPECT_LE(reduced.stretches.size(), 800u);
        EXPECT_EQ(PictureOf(reduced), PictureOf(all));
        EXPECT_EQ(reduced.polyline.front(), all.polyline.front());
        EXPECT_EQ(reduced.polyline.back(), all.polyline.back());
    }

    // A zoomed view: only the points near the plot's columns are needed.
    ASSERT_TRUE(HasRisingX(points));
    const AxisMapping x({100.0, 100.5}, false, 0, 599);
    const AxisMapping y({-2.0, 2.0}, false, 399, 0);
    const IndexRange window = VisibleIndexRange(points, x, 0, 599);
    EXPECT_EQ(window.begin, 99999u);
    EXPECT_EQ(window.end, 100503u);
    // An x that falls back anywhere rules the search out, and a NaN the
    // blocks' extremes; the walk through every point finds the same runs.
    CurvePicture searched;
    MapReducedPoints(points, window, index, x, y, searched);
    points[window.begin - 5].x = -1.0;
    points[window.begin - 4].y = std::nan("");
    const CurveIndex walked(points);
    EXPECT_FALSE(walked.RisingX());
    EXPECT_TRUE(walked.HasNaNY());
    CurvePicture walkedPicture;
    MapReducedPoints(points, window, walked, x, y, walkedPicture);
    EXPECT_EQ(walkedPicture.polyline, searched.polyline);
    EXPECT_EQ(walkedPicture.stretches, searched.stretches);
    // Extremes from whole blocks are those of the points themselves.
    const Range range = index.YRange(points, 1000, 5000);
    const auto byY = [](const VEC2& a, const VEC2& b) { return a.y < b.y; };
    EXPECT_EQ(range.lo, std::min_element(&points[1000], &points[5001], byY)->y);
    EXPECT_EQ(range.hi, std::max_element(&points[1000], &points[5001], byY)->y);
}

TEST(ChartReductionTest, PixelsRoundHalfUpAndHoldAtTheLimit) {
    const AxisMapping x({0.0, 10.0}, false, 0, 100);
    EXPECT_EQ(x.ToPixel(10.0), 100);
    EXPECT_EQ(x.ToPixel(0.05), 1);  // 0.5 pixels rounds up
    EXPECT_EQ(x.ToPixel(0.049), 0);
    EXPECT_EQ(x.ToPixel(1e300), static_cast<int>(kPixelLimit));
    const AxisMapping y({1.0, 1000.0}, true, 300, 0);
    EXPECT_EQ(y.ToPixel(10.0), 200);
    EXPECT_EQ(y.ToPixel(0.0), static_cast<int>(kPixelLimit));  // below the axis
    EXPECT_DOUBLE_EQ(y.ToValue(100.0), 100.0);
}

TEST(ChartViewTest, FitEndsOnGridLinesAndZoomKeepsThePointUnderThePointer) {
    Chart chart = MakeChart();
    chart.AddCurve(Sine(1000, 0.93, kRed, 1));
    chart.Fit();
    const Range x = chart.Axis(ChartAxis::X).visible;
    const Range y = chart.Axis(ChartAxis::Y).visible;
    EXPECT_GE(x.hi, 999e-9);
    EXPECT_DOUBLE_EQ(x.lo, chart.Scale(ChartAxis::X)->lines.front().value);
    EXPECT_DOUBLE_EQ(x.hi, chart.Scale(ChartAxis::X)->lines.back().value);
    EXPECT_LE(y.lo, -0.93);
    EXPECT_GE(y.hi, 0.93);

    const Rect plot = chart.PlotRect();
    const Point at{plot.left + plot.Width() / 4, plot.top + plot.Height() / 3};
    const VEC2 before = chart.ToValue(at);
    chart.OnWheel(at, 1.0);
    const Range zoomed = chart.Axis(ChartAxis::X).visible;
    EXPECT_NEAR(zoomed.hi - zoomed.lo, 0.8 * (x.hi - x.lo), 1e-15);
    EXPECT_NEAR(chart.ToValue(at).x, before.x, 1e-12);
    EXPECT_NEAR(chart.ToValue(at).y, before.y, 1e-12);
    chart.OnWheel(at, -1.0);
    EXPECT_NEAR(chart.Axis(ChartAxis::X).visible.hi, x.hi, 1e-15);

    // A rubber band zooms into what it covers; a click does not.
    const Point from{plot.left + 100, plot.top + 50};
    const Point to{plot.left + 300, plot.top + 150};
    const VEC2 corner = chart.ToValue(from);
    chart.OnMouseDown(from, false);
    chart.OnMouseMove(to);
    EXPECT_TRUE(chart.HasRubberBand());
    chart.OnMouseUp(to);
    EXPECT_FALSE(chart.HasRubberBand());
    EXPECT_NEAR(chart.Axis(ChartAxis::X).visible.lo, corner.x, 1e-12);
    EXPECT_NEAR(chart.Axis(ChartAxis::Y).visible.hi, corner.y, 1e-9);
    const Range band = chart.Axis(ChartAxis::X).visible;
    chart.OnMouseDown(from, false);
    chart.OnMouseUp({from.x + 2, from.y + 2});
    EXPECT_EQ(chart.Axis(ChartAxis::X).visible, band);

    // Dragging in pan mode moves the data with the pointer.
    const Point grab{plot.left + 200, plot.top + 100};
    const VEC2 held = chart.ToValue(grab);
    chart.OnMouseDown(grab, true);
    chart.OnMouseMove({grab.x + 40, grab.y - 30});
    EXPECT_TRUE(chart.IsPanning());
    EXPECT_EQ(chart.Readout(), "");
    chart.OnMouseUp({grab.x + 40, grab.y - 30});
    const VEC2 moved = chart.ToValue({grab.x + 40, grab.y - 30});
    EXPECT_NEAR(moved.x, held.x, 1e-12);
    EXPECT_NEAR(moved.y, held.y, 1e-6);

    EXPECT_TRUE(chart.OnKey(ChartKey::Home));
    EXPECT_EQ(chart.Axis(ChartAxis::X).visible, x);
    EXPECT_EQ(chart.Axis(ChartAxis::Y).visible, y);
}

TEST(ChartViewTest, LogarithmicAxesFitThePositiveValuesInWholeDecades) {
    Chart chart = MakeChart();
    const VEC2 points[] = {{-1.0, 0.0}, {20.0, 3e-3}, {3e5, 7.0}};
    chart.AddCurve(Curve(points, 3, kRed));
    chart.SetLogarithmic(ChartAxis::X, true);
    chart.SetLogarithmic(ChartAxis::Y, true);
    EXPECT_EQ(chart.Axis(ChartAxis::X).visible, (Range{10.0, 1e6}));
    EXPECT_EQ(chart.Axis(ChartAxis::Y).visible, (Range{1e-3, 10.0}));
    EXPECT_EQ(chart.Axis(ChartAxis::X).majorStep, 1.0);
    chart.SetLogarithmic(ChartAxis::X, false);
    const Range linear = chart.Axis(ChartAxis::X).visible;
    EXPECT_LE(linear.lo, -1.0);
    EXPECT_GE(linear.hi, 3e5);

    // Decade lines between the major ones of the logarithmic y axis.
    RecordingCanvas canvas;
    chart.Paint(canvas);
    EXPECT_EQ(canvas.Of(RecordingCanvas::Kind::Line, chart_colors::kDecadeGrid).size(), 4u * 8u);
}

TEST(ChartPaintTest, GridLabelsCurvesLegendAndReadout) {
    Chart chart = MakeChart();
    chart.SetUnit(ChartAxis::X, "s");
    chart.SetUnit(ChartAxis::Y, "V");
    chart.AddCurve(Sine(2000, 0.5, kRed, 7));
    chart.AddCurve(Sine(10, 0.25, kBlue, 8));
    chart.SetCurveName(8, "short");
    chart.SetCurveName(7, "sine");
    chart.SetCurveName(9, "absent");
    chart.Fit();
    RecordingCanvas canvas;
    chart.Paint(canvas);
    const Rect plot = chart.PlotRect();

    // One grid line per major line inside the plot, labels as the scale says.
    const AxisScale& x = *chart.Scale(ChartAxis::X);
    const AxisScale& y = *chart.Scale(ChartAxis::Y);
    const auto grid = canvas.Of(RecordingCanvas::Kind::Line, chart_colors::kMajorGrid);
    EXPECT_EQ(grid.size(), x.lines.size() + y.lines.size());
    const std::vector<std::string> texts = canvas.Texts();
    for (const AxisScale* scale : {&x, &y}) {
        for (const GridLine& line : scale->lines) {
            if (!line.label.empty()) {
                EXPECT_NE(std::find(texts.begin(), texts.end(), line.label), texts.end())
                    << line.label;
            }
        }
    }
    EXPECT_NE(std::find(texts.begin(), texts.end(), " 0us "), texts.end());

    // The curves in their colours, the long one reduced to its columns.
    const auto red = canvas.Of(RecordingCanvas::Kind::Polyline, kRed);
    const auto blue = canvas.Of(RecordingCanvas::Kind::Polyline, kBlue);
    EXPECT_FALSE(blue.empty());
    EXPECT_LE(red.size(), 8u * static_cast<size_t>(plot.Width()));
    EXPECT_GT(red.size(), static_cast<size_t>(plot.Width()) / 2);

    // The legend in the order of the names, only for curves that exist.
    const auto sine = std::find(texts.begin(), texts.end(), "sine");
    const auto shortName = std::find(texts.begin(), texts.end(), "short");
    ASSERT_NE(sine, texts.end());
    ASSERT_NE(shortName, texts.end());
    EXPECT_LT(shortName, sine);
    EXPECT_EQ(std::find(texts.begin(), texts.end(), "absent"), texts.end());

    // Pointing at the sine tracks it; the readout stands right-aligned three
    // lines below the plot.
    const Point on = chart.ToPixel({500e-9, 0.5 * std::sin(5.0)});
    chart.OnMouseMove({on.x, on.y + 3});
    ASSERT_TRUE(chart.Tracked());
    EXPECT_EQ(chart.Tracked()->curve, 0u);
    const std::string readout = chart.Readout();
    EXPECT_EQ(readout.rfind("sine   ", 0), 0u) << readout;
    EXPECT_NE(readout.find("ns ,"), std::string::npos);
    RecordingCanvas pointed;
    chart.Paint(pointed);
    const auto text = std::find_if(pointed.primitives.begin(), pointed.primitives.end(),
                                   [&](const auto& p) { return p.text == readout; });
    ASSERT_NE(text, pointed.primitives.end());
    EXPECT_EQ(text->from.x + static_cast<int>(readout.size()) * RecordingCanvas::kCharWidth,
              plot.right);
    EXPECT_EQ(text->from.y, plot.bottom + 3 * kNominalTextHeight);

    // Away from every curve the readout gives the pointer's place, no name.
    chart.OnMouseMove({plot.left + 2, plot.top + 2});
    EXPECT_FALSE(chart.Tracked());
    EXPECT_EQ(chart.Readout().rfind("   ", 0), 0u);
    chart.OnMouseLeave();
    EXPECT_EQ(chart.Readout(), "");
}

}  // namespace

// A layer over a box of data that marks where in the picture it is painted.
class BoxLayer final : public IChartLayer {
public:
    static constexpr uint32_t kMarker = MakeColorRef(1, 2, 3);
    std::optional<std::pair<VEC2, VEC2>> Extent() const override {
        return std::pair{VEC2{2e-6, -3.0}, VEC2{3e-6, 20.0}};
    }
    void PaintPlot(ICanvas& canvas, const Chart& /*chart*/) const override {
        canvas.FillRect({1, 1, 2, 2}, kMarker);
    }
};

TEST(ChartPaintTest, LayerIsFittedLikeACurveAndPaintedBetweenGridAndCurves) {
    Chart chart = MakeChart();
    const BoxLayer layer;
    chart.SetLayer(&layer);
    chart.AddCurve(Sine(1000, 0.5, kRed, 1));
    chart.Fit();
    const Range x = chart.Axis(ChartAxis::X).visible;
    const Range y = chart.Axis(ChartAxis::Y).visible;
    EXPECT_LE(x.lo, 0.0);
    EXPECT_GE(x.hi, 3e-6);
    EXPECT_LE(y.lo, -3.0);
    EXPECT_GE(y.hi, 20.0);

    RecordingCanvas canvas;
    chart.Paint(canvas);
    const auto& all = canvas.primitives;
    const auto at = [&all](RecordingCanvas::Kind kind, uint32_t color, bool last) {
        const auto match = [&](const auto& p) { return p.kind == kind && p.color == color; };
        return last ? all.rend() - std::find_if(all.rbegin(), all.rend(), match) - 1
                    : std::find_if(all.begin(), all.end(), match) - all.begin();
    };
    const auto marker = at(RecordingCanvas::Kind::FillRect, BoxLayer::kMarker, false);
    ASSERT_LT(marker, static_cast<std::ptrdiff_t>(all.size()));
    EXPECT_LT(at(RecordingCanvas::Kind::Line, chart_colors::kMajorGrid, true), marker);
    EXPECT_GT(at(RecordingCanvas::Kind::Polyline, kRed, false), marker);
}
