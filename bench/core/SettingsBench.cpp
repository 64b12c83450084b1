// Reading a large section of an initialisation file: key by key, as a
// settings store reads the mask library (at most 1000 masks), and whole, as
// a stimulus file is read.

#include <benchmark/benchmark.h>

#include <string>

#include "core/settings/IniDocument.h"

namespace {

constexpr int kEntries = 1000;

std::string LibraryText() {
    std::string text = "[EYEMASKLIBRARY]\nCount=1000\n";
    for (int i = 0; i < kEntries; ++i) {
        text += "Mask" + std::to_string(i) + "=" + std::string(200, 'x') + "\n";
    }
    return text;
}

void BM_IniGetEveryKey(benchmark::State& state) {
    const kv::IniDocument document(LibraryText());
    for (auto _ : state) {
        for (int i = 0; i < kEntries; ++i) {
            benchmark::DoNotOptimize(document.Get("EYEMASKLIBRARY", "Mask" + std::to_string(i)));
        }
    }
}
BENCHMARK(BM_IniGetEveryKey)->Unit(benchmark::kMillisecond);

void BM_IniSectionWhole(benchmark::State& state) {
    const kv::IniDocument document(LibraryText());
    for (auto _ : state) {
        benchmark::DoNotOptimize(document.Section("EYEMASKLIBRARY"));
    }
}
BENCHMARK(BM_IniSectionWhole)->Unit(benchmark::kMicrosecond);

}  // namespace
