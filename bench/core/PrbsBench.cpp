// Pseudo-random sequence generation in bits per second, beside memset of the
// same number of bytes, so the ratio can be read off one run.

#include <benchmark/benchmark.h>

#include <cstring>
#include <ctime>
#include <vector>

#include "core/stimulus/RegisterFill.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/ShiftRegister.h"
#include "core/stimulus/StimulusData.h"

namespace {

void BM_GenerateSequence(benchmark::State& state) {
    kv::CStimulusData data;
    data.SetSeqType(kv::seq::kPrbs);
    data.SetPolyDegree(static_cast<int>(state.range(0)));
    kv::BitVector bits;
    for (auto _ : state) {
        data.GenerateSequence(0, bits);
        benchmark::DoNotOptimize(bits.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(bits.size()));
    state.counters["bits_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * static_cast<double>(bits.size()),
        benchmark::Counter::kIsRate);
}
BENCHMARK(BM_GenerateSequence)->Arg(7)->Arg(15)->Arg(23)->Unit(benchmark::kMicrosecond);

// The same byte count written by memset, into a buffer already allocated.
void BM_Memset(benchmark::State& state) {
    const std::size_t bytes = (std::size_t{1} << state.range(0)) - 1;
    std::vector<uint8_t> buffer(bytes);
    for (auto _ : state) {
        std::memset(buffer.data(), 1, bytes);
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
    }
    state.counters["bits_per_s"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(bytes),
                           benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Memset)->Arg(7)->Arg(15)->Arg(23)->Arg(24)->Arg(31)->Unit(benchmark::kMicrosecond);

// The block fill into a buffer already allocated, without the allocation and
// zeroing that GenerateSequence's resize costs.
void BM_BlockFill(benchmark::State& state) {
    const int degree = static_cast<int>(state.range(0));
    std::vector<uint8_t> buffer((std::size_t{1} << degree) - 1);
    for (auto _ : state) {
        kv::FillRegisterOutput(degree, buffer, true);
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
    }
    state.counters["bits_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * static_cast<double>(buffer.size()),
        benchmark::Counter::kIsRate);
}
// 23 and 31 have two taps, 24 four; 31 (2 GiB) is far beyond every cache.
BENCHMARK(BM_BlockFill)->Arg(7)->Arg(15)->Arg(23)->Arg(24)->Arg(31)->Unit(benchmark::kMicrosecond);

// CPU time of this thread, as the library's own rates use: time spent
// waiting for a core on a busy machine does not count.
double ThreadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The block fill's rate as a fraction of memset's, both timed on the same
// buffer in alternation, so that a busy machine slows both alike.
void BM_BlockFillToMemset(benchmark::State& state) {
    const int degree = static_cast<int>(state.range(0));
    std::vector<uint8_t> buffer((std::size_t{1} << degree) - 1);
    double memsetSeconds = 0;
    double fillSeconds = 0;
    for (auto _ : state) {
        const double start = ThreadSeconds();
        std::memset(buffer.data(), 1, buffer.size());
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
        const double between = ThreadSeconds();
        kv::FillRegisterOutput(degree, buffer, true);
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
        memsetSeconds += between - start;
        fillSeconds += ThreadSeconds() - between;
    }
    state.counters["ratio"] = memsetSeconds / fillSeconds;
}
BENCHMARK(BM_BlockFillToMemset)->Arg(23)->Arg(24)->Arg(31)->Unit(benchmark::kMillisecond);

// The plain register over one whole period of degree 31 (2^31 - 1 steps).
void BM_RegisterFullPeriod31(benchmark::State& state) {
    const uint64_t steps = (uint64_t{1} << 31) - 1;
    for (auto _ : state) {
        kv::ShiftRegister reg(31);
        unsigned sink = 0;
        for (uint64_t i = 0; i < steps; ++i) {
            sink += reg.Step();
        }
        benchmark::DoNotOptimize(sink);
    }
    state.counters["bits_per_s"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(steps),
                           benchmark::Counter::kIsRate);
}
BENCHMARK(BM_RegisterFullPeriod31)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
