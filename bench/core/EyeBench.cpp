// Folding 10^7 samples onto a 1000 x 600 eye grid, per sample, beside the
// whole analysis of the same waveform; bench/python/eye_bench.py times the
// NumPy fold of the same kind of waveform in its run.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "bench/NoisyEye.h"
#include "core/eye/EyeAnalysis.h"
#include "core/stimulus/EyeMask.h"

namespace {

using kv::bench::Eye;
using kv::bench::kHeight;
using kv::bench::kInterval;
using kv::bench::kSamples;
using kv::bench::kWidth;
using kv::bench::NoisyEye;

void PerSample(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * kSamples);
    state.counters["s_per_sample"] = benchmark::Counter(
        static_cast<double>(kSamples),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// The fold alone, clock and voltage range known, into a cleared grid; with
// range(1) the default mask is tested as it folds.
void BM_FoldEye(benchmark::State& state) {
    const NoisyEye& eye = Eye();
    const int eyes = static_cast<int>(state.range(0));
    const kv::EyeFrame frame{kInterval, eyes, 0.1 * kInterval, 0.0, eye.time.back()};
    const kv::EyeGrid grid{kWidth, kHeight, -0.2, 1.2};
    std::optional<kv::EyeMaskTest> mask;
    if (state.range(1) != 0) {
        EYEMASK scaled = kv::DefaultEyeMask();
        scaled.ScaleVolt = 0.2;  // on a 1 V eye
        mask = kv::EyeMaskTest::Place(scaled, kInterval, eyes, kWidth);
    }
    std::vector<uint32_t> density(static_cast<std::size_t>(kWidth) * kHeight);
    for (auto _ : state) {
        std::fill(density.begin(), density.end(), 0u);
        const auto counts = kv::FoldEye(eye.Trace(), frame, grid, density, mask ? &*mask : nullptr);
        benchmark::DoNotOptimize(counts);
        benchmark::ClobberMemory();
    }
    PerSample(state);
}
BENCHMARK(BM_FoldEye)->ArgsProduct({{1, 2}, {0, 1}})->Unit(benchmark::kMillisecond);

// Everything: range, clock and levels twice, the fold with the mask test.
void BM_AnalyseEye(benchmark::State& state) {
    const NoisyEye& eye = Eye();
    kv::EyeRequest request;
    request.timing = {kInterval, 1, 0};
    request.width = kWidth;
    request.height = kHeight;
    request.mask = kv::DefaultEyeMask();
    request.mask->ScaleVolt = 0.2;
    for (auto _ : state) {
        const kv::EyeResult result = kv::AnalyseEye(eye.Trace(), request);
        benchmark::DoNotOptimize(result.measure);
    }
    PerSample(state);
}
BENCHMARK(BM_AnalyseEye)->Unit(benchmark::kMillisecond);

}  // namespace
