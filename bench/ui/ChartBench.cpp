// Cost of the chart control on a simulation result of a million points: a
// full repaint of a 1000 x 600 control, and a zoom step (a wheel notch about
// the pointer, in and out by turns, and the repaint). Each runs with every
// curve reduced to what its pixel columns show (argument 0) and with the
// plain polyline through every point (argument 1); both paint the same
// pixels.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWheelEvent>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "ui/chart/ChartControl.h"

namespace {

constexpr int kPoints = 1000000;

std::unique_ptr<kv::ui::CChartControl> MillionPointChart(bool everyPoint) {
    auto control = std::make_unique<kv::ui::CChartControl>();
    control->resize(1000, 600);
    control->show();
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
    const QPointF at(400, 250);
    int direction = 120;
    for (auto _ : state) {
        QWheelEvent wheel(at, control->mapToGlobal(at), QPoint(), QPoint(0, direction),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(control.get(), &wheel);
        control->repaint();
        direction = -direction;
    }
}

}  // namespace

BENCHMARK(BM_ChartFullRepaint)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ChartZoomStep)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
