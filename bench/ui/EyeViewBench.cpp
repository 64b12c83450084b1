// Cost of the eye view of 10^7 folded samples at 1000 x 600: a repaint that changes nothing
// (the pointer moving over it, a window uncovered), which draws the colour image kept from the
// last view, and a zoom step (a wheel notch, in and out by turns), which colours the density
// anew for the new view. The counter colour_map_builds says how many colour images each
// repaint built: 0 and 1.

#include <QApplication>

#include "bench/NoisyEye.h"
#include "bench/ui/WidgetBench.h"
#include "core/stimulus/StimulusData.h"
#include "ui/eye/EyeViewCtrl.h"

namespace {

std::unique_ptr<kv::ui::CEyeViewCtrl> FoldedEyeView() {
    auto control = kv::bench::ShownControl<kv::ui::CEyeViewCtrl>(1000, 600);
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
    kv::bench::RunZoomSteps(state, *control, QPointF(300, 250));
    CountBuilds(state, *control, before);
}

}  // namespace

BENCHMARK(BM_EyeViewRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EyeViewZoomStep)->Unit(benchmark::kMillisecond);
