// Cost of the eye view of 10^7 folded samples at 1000 x 600: a repaint that changes nothing
// (the pointer moving over it, a window uncovered), which draws the colour image kept from the
// last view, and a zoom step (a wheel notch, in and out by turns), which colours the density
// anew for the new view. The counter colour_map_builds says how many colour images each
// repaint built: 0 and 1.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWheelEvent>
#include <memory>

#include "bench/NoisyEye.h"
#include "core/stimulus/StimulusData.h"
#include "ui/eye/EyeViewCtrl.h"

namespace {

std::unique_ptr<kv::ui::CEyeViewCtrl> FoldedEyeView() {
    auto control = std::make_unique<kv::ui::CEyeViewCtrl>();
    control->resize(1000, 600);
    control->show();
    const kv::bench::NoisyEye& eye = kv::bench::Eye();
    control->SetWaveform(eye.time.data(), eye.volts.data(), static_cast<int32_t>(eye.time.size()));
    kv::CStimulusData data;
    data.SetPeriod(kv::bench::kInterval * 1e9);
    data.GetMask()->ScaleVolt = 0.2;  // the default mask on the 1 V eye
    control->SetTiming(&data);
    QApplication::processEvents();
    control->repaint();
    return control;
}

void CountBuilds(benchmark::State& state, const kv::ui::CEyeViewCtrl& control, int64_t before) {
    state.counters["colour_map_builds"] =
        benchmark::Counter(static_cast<double>(control.Model().ColourMapBuilds() - before),
                           benchmark::Counter::kAvgIterations);
}

void BM_EyeViewRepaint(benchmark::State& state) {
    const auto control = FoldedEyeView();
    const int64_t before = control->Model().ColourMapBuilds();
    for (auto _ : state) {
        control->repaint();
    }
    CountBuilds(state, *control, before);
}

void BM_EyeViewZoomStep(benchmark::State& state) {
    const auto control = FoldedEyeView();
    const int64_t before = control->Model().ColourMapBuilds();
    const QPointF at(300, 250);
    int direction = 120;
    for (auto _ : state) {
        QWheelEvent wheel(at, control->mapToGlobal(at), QPoint(), QPoint(0, direction),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(control.get(), &wheel);
        control->repaint();
        direction = -direction;
    }
    CountBuilds(state, *control, before);
}

}  // namespace

BENCHMARK(BM_EyeViewRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EyeViewZoomStep)->Unit(benchmark::kMillisecond);
