// Export of a 64-layer differential via pair with an element on every layer, the largest
// board the via visualizer is used on.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

#include "core/via/ViaSpiceWriter.h"

namespace {

constexpr int kLayers = 64;

struct PairBoard {
    PairBoard() : layers(kLayers), pads(kLayers) {
        for (int i = 0; i < kLayers; ++i) {
            STACKUPLAYER& layer = layers[i];
            std::snprintf(layer.name, sizeof layer.name, "LAYER%d", i + 1);
            layer.kind = i % 2 == 0 ? STACKUP_CONDUCTOR : STACKUP_DIELECTRIC;
            layer.usage = i % 4 == 2 ? STACKUP_USAGE_PLANE : 0;
            layer.thickness = i % 2 == 0 ? 3.556e-5 : 1.27e-4;
            pads[i] = {PAD_TYPE_PAD, PAD_SHAPE_ROUND, 5.08e-4, 5.08e-4, 0, 7.62e-4, 7.62e-4, 0, 0, 0, 0};
        }
        stackup = {kLayers, layers.data()};
        padstack = PADSTACK{"VIA8_20", 2.032e-4, 0, 2.54e-5, 0, kLayers - 1, kLayers, pads.data()};
        input.stackup = &stackup;
        input.pair = true;
        input.subcircuitName = "VIA_DIFF_64";
        for (int v = 0; v < 2; ++v) {
            kv::SpiceViaInput via{&padstack, {}, {{0}, {kLayers - 2}}};
            // Alternating lines, inductances and pad capacitances so that runs keep ending.
            for (int i = 0; i < kLayers; ++i) {
                const int next = i + 1 < kLayers ? i + 1 : i;
                if (i % 3 == 0) {
                    via.elements.push_back(
                        {kv::kViaElementLine, 0, 0, i, next, 45.0 + i % 2, 0, 0, 1.5e-12});
                } else if (i % 3 == 1) {
                    via.elements.push_back({kv::kViaElementInductance, kv::kViaEndCapacitance, 0, i,
                                            next, 1e-10, 5e-14, 0, 0});
                } else {
                    via.elements.push_back({0, kv::kViaEndCapacitance, 0, i, i, 0, 6e-14, 0, 0});
                }
            }
            input.vias.push_back(std::move(via));
        }
    }

    std::vector<STACKUPLAYER> layers;
    std::vector<PADDATA> pads;
    STACKUPARRAY stackup{};
    PADSTACK padstack{};
    kv::SpiceExportInput input;
};

void BM_SpiceExport64LayerPair(benchmark::State& state) {
    PairBoard board;
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string text = kv::SpiceModelText(board.input);
        bytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.counters["file_bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_SpiceExport64LayerPair)->Unit(benchmark::kMicrosecond);

}  // namespace
