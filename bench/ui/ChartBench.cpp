// Cost of the chart control on a simulation result of a million points: a
// full repaint of a 1000 x 600 control, and a zoom step (a wheel notch about
// the pointer, in and out by turns, and the repaint). Each runs with every
// curve reduced to what its pixel columns show (argument 0) and with the
// plain polyline through every point (argument 1); both paint the same
// pixels.

#include <QApplication>
#include <cmath>
#include <random>
#include <vector>

#include "bench/ui/WidgetBench.h"
#include "ui/chart/ChartControl.h"

namespace {

constexpr int kPoints = 1000000;

std::unique_ptr<kv::ui::CChartControl> MillionPointChart(bool everyPoint) {
    auto control = kv::bench::ShownControl<kv::ui::CChartControl>(1000, 600);
    std::mt19937 random(11);
    std::normal_distribution<double> noise(0.0, 0.05);
    std::vector<double> x(kPoints);
    std::vector<double> y(kPoints);
    for (int i = 0; i < kPoints; ++i) {
        x[static_cast<size_t>(i)] = i * 1e-12;
        y[static_cast<size_t>(i)] = std::sin(i * 2e-5 * M_PI) + noise(random);
    }
    control->AddCurve(x.data(), y.data(), kPoints, kv::MakeColorRef(200, 0, 0), 1);
    control->SetUnits("s", "V");
    control->Fit();
    control->GetChart().SetReduceCurves(!everyPoint);
    QApplication::processEvents();
    return control;
}

void BM_ChartFullRepaint(benchmark::State& state) {
    const auto control = MillionPointChart(state.range(0) != 0);
    for (auto _ : state) {
        control->repaint();
    }
}

void BM_ChartZoomStep(benchmark::State& state) {
    const auto control = MillionPointChart(state.range(0) != 0);
    kv::bench::RunZoomSteps(state, *control, QPointF(400, 250));
}

}  // namespace

BENCHMARK(BM_ChartFullRepaint)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ChartZoomStep)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
