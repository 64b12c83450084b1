// The stimulus adaptor's waveform of 10^5 bits, every one an edge, with and
// without its jitter: what moving each edge costs over building it.

#include <benchmark/benchmark.h>

#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"

namespace {

// 50000 cycles of "01" at 1 ns: 10^5 bits, an edge at every boundary, with
// all three jitter components on (repeatable: the seed is read, not written).
kv::CStimulusData ToggledBits() {
    kv::CStimulusData data;
    data.SetSeqType(kv::seq::kCustom);
    data.SetBitVector({0, 1});
    data.SetCycleCount(50'000);
    data.SetPeriod(1.0);
    data.SetAdvancedJitter(true);
    data.SetMaxJitter(3.0);
    data.SetUniformMag(10.0);
    data.SetSineMag(5.0);
    for (int component = 0; component < 3; ++component) {
        data.SetAddJitter(component, true);
    }
    return data;
}

template <bool Jittered>
void BM_StimulusWaveform(benchmark::State& state) {
    kv::CStimulusData data = ToggledBits();
    kv::CEyeStimAdaptor adaptor;
    for (auto _ : state) {
        const int32_t count = Jittered ? adaptor.BuildJittered(&data, 0, 1, 1e-10, 1e-10)
                                       : adaptor.Build(&data, 0, 1, 1e-10, 1e-10);
        benchmark::DoNotOptimize(count);
    }
    state.counters["edges_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * 99'999, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_StimulusWaveform<true>)
    ->Name("BM_BuildJittered100kBits")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StimulusWaveform<false>)->Name("BM_Build100kBits")->Unit(benchmark::kMillisecond);

}  // namespace
