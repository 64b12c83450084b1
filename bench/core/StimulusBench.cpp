// 8B/10B generation, the 8B/10B stream check, and Save/Load of a long custom
// sequence to a file.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/SymbolSource.h"

namespace {

constexpr std::size_t kSymbols = 100'000'000;

// Code groups straight from a source, in blocks, as GenerateSequence reads them.
void BM_Generate8b10bBlocks(benchmark::State& state) {
    std::vector<int8_t> buffer(1 << 20);
    for (auto _ : state) {
        kv::SymbolSource source(kv::Code8b10bConfig(12345));
        int status = 1;
        for (std::size_t done = 0; done < kSymbols; done += buffer.size()) {
            source.ReadSymbols(buffer, status);
            benchmark::DoNotOptimize(buffer.data());
        }
    }
    state.counters["bits_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * kSymbols, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Generate8b10bBlocks)->Iterations(1)->Unit(benchmark::kMillisecond);

// The longest sequence the data object holds (32768 cycles).
void BM_GenerateSequence8b10b(benchmark::State& state) {
    kv::CStimulusData data;
    data.SetSeqType(kv::seq::k8b10b);
    data.SetCycleCount(32768);  // repeatable jitter: the seed is read, not written
    kv::BitVector bits;
    for (auto _ : state) {
        data.GenerateSequence(0, bits);
        benchmark::DoNotOptimize(bits.data());
    }
    state.counters["bits_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * 327680, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_GenerateSequence8b10b)->Unit(benchmark::kMicrosecond);

// One symbol at a time, for comparison.
void BM_Generate8b10bStepwise(benchmark::State& state) {
    for (auto _ : state) {
        kv::SymbolSource source(kv::Code8b10bConfig(12345));
        int sum = 0;
        for (std::size_t i = 0; i < kSymbols / 10; ++i) {
            int symbol = 0;
            source.NextSymbol(symbol);
            sum += symbol;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["bits_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * (kSymbols / 10), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Generate8b10bStepwise)->Iterations(1)->Unit(benchmark::kMillisecond);

// 10^8 symbols of valid code groups: a pattern of about 100000 symbols played
// 1000 times. The pattern is cut where it can be repeated without breaking a
// rule at the seam.
std::vector<uint8_t> ValidPattern() {
    kv::SymbolSource source(kv::Code8b10bConfig(777));
    std::vector<int8_t> symbols(100000);
    int status = 1;
    source.ReadSymbols(symbols, status);
    std::vector<uint8_t> bits(symbols.size());
    for (std::size_t i = 0; i < bits.size(); ++i) {
        bits[i] = symbols[i] > 0 ? 1 : 0;
    }
    for (std::size_t cut = bits.size(); cut >= 10; cut -= 10) {
        kv::SymbolSourceConfig twice;
        twice.protocol = 1;
        twice.pattern = bits.data();
        twice.patternLength = static_cast<int32_t>(cut);
        twice.repetitions = 2;
        kv::SymbolSource check(twice);
        bool ok = false;
        if (check.CheckStreamStepwise(ok, 6) == 1) {
            bits.resize(cut);
            break;
        }
    }
    return bits;
}

void CheckOverPattern(benchmark::State& state, bool stepwise) {
    const std::vector<uint8_t> pattern = ValidPattern();
    kv::SymbolSourceConfig config;
    config.protocol = 1;
    config.pattern = pattern.data();
    config.patternLength = static_cast<int32_t>(pattern.size());
    config.repetitions = static_cast<int32_t>(kSymbols / pattern.size());
    const double symbols = static_cast<double>(pattern.size()) * config.repetitions;
    for (auto _ : state) {
        kv::SymbolSource source(config);
        bool ok = false;
        const int result = stepwise ? source.CheckStreamStepwise(ok, 6) : source.CheckStream(ok, 6);
        if (result != 1 || !ok) {
            state.SkipWithError("the stream did not pass");
        }
    }
    state.counters["symbols_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * symbols, benchmark::Counter::kIsRate);
}
void BM_CheckStream(benchmark::State& state) {
    CheckOverPattern(state, false);
}
void BM_CheckStreamStepwise(benchmark::State& state) {
    CheckOverPattern(state, true);
}
BENCHMARK(BM_CheckStream)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckStreamStepwise)->Iterations(1)->Unit(benchmark::kMillisecond);

kv::CStimulusData LongCustom() {
    kv::CStimulusData data;
    data.SetSeqType(kv::seq::kCustom);
    kv::BitVector bits(32000);
    for (std::size_t i = 0; i < bits.size(); ++i) {
        bits[i] = (i * 7919 >> 3) & 1;
    }
    data.SetBitVector(bits);
    return data;
}

std::string BenchFile() {
    return (std::filesystem::temp_directory_path() / "kvcomctl-bench-stimulus.ini").string();
}

// The whole section in one atomic replace of the file; the target is under
// 1 ms (each key rewriting the file took about 8 ms).
void BM_SaveCustom32000(benchmark::State& state) {
    kv::CStimulusData data = LongCustom();
    const std::string path = BenchFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(data.Save(path.c_str(), true));
    }
}
BENCHMARK(BM_SaveCustom32000)->Unit(benchmark::kMicrosecond);

void BM_LoadCustom32000(benchmark::State& state) {
    const std::string path = BenchFile();
    LongCustom().Save(path.c_str(), true);
    kv::CStimulusData data;
    for (auto _ : state) {
        data.Load(path.c_str(), true);
        benchmark::DoNotOptimize(data.GetBitCount());
    }
    if (data.GetBitCount() != 32000) {
        state.SkipWithError("the sequence did not load");
    }
    std::filesystem::remove(path);
}
BENCHMARK(BM_LoadCustom32000)->Unit(benchmark::kMicrosecond);

}  // namespace
