// Folding 10^7 samples onto a 1000 x 600 eye grid, per sample, beside the
// whole analysis of the same waveform; bench/python/eye_bench.py times the
// NumPy fold of the same kind of waveform in its run.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <optional>
#include <random>
#include <vector>

#include "core/eye/EyeAnalysis.h"
#include "core/stimulus/EyeMask.h"

namespace {

constexpr double kInterval = 1e-9;
constexpr int kPerInterval = 1000;  // as many samples as the grid has columns per interval
constexpr int kIntervals = 10'000;
constexpr int64_t kSamples = int64_t{kPerInterval} * kIntervals;
constexpr int kWidth = 1000;
constexpr int kHeight = 600;

// Random bits with ramps of 30 % of the interval, 2 % edge jitter and 20 mV
// of noise, sampled every picosecond.
struct NoisyEye {
    std::vector<double> time;
    std::vector<double> volts;

    NoisyEye() {
        std::mt19937_64 random(7);
        std::bernoulli_distribution coin;
        std::normal_distribution<double> jitter(0.0, 0.02 * kInterval);
        std::normal_distribution<double> noise(0.0, 0.02);
        std::vector<double> cornerTime{0.0};
        std::vector<double> cornerVolts{0.0};
        bool level = false;
        for (int i = 1; i < kIntervals; ++i) {
            const bool next = coin(random);
            if (next != level) {
                const double edge = i * kInterval + jitter(random);
                cornerTime.insert(cornerTime.end(),
                                  {edge - 0.15 * kInterval, edge + 0.15 * kInterval});
                cornerVolts.insert(cornerVolts.end(), {level ? 1.0 : 0.0, next ? 1.0 : 0.0});
                level = next;
            }
        }
        cornerTime.push_back(kIntervals * kInterval);
        cornerVolts.push_back(level ? 1.0 : 0.0);
        kv::TraceCursor corners({cornerTime, cornerVolts});
        time.resize(kSamples);
        volts.resize(kSamples);
        for (int64_t i = 0; i < kSamples; ++i) {
            time[i] = static_cast<double>(i) * (kInterval / kPerInterval);
            volts[i] = corners.At(time[i]) + noise(random);
        }
    }
    kv::EyeTrace Trace() const { return {time, volts}; }
};

const NoisyEye& Eye() {
    static const NoisyEye eye;
    return eye;
}

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
