// Cost of a full repaint of the via visualizer's side view on a large board: a differential
// pair through 64 conductor layers (127 stackup layers with the dielectrics between them),
// pads on every conductor layer and an element on every layer, at 1200 x 800 pixels offscreen.
// The top view of one layer is measured beside it.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdio>
#include <memory>
#include <vector>

#include "core/via/ViaVizData.h"
#include "ui/via/ViaVisualizerCtrl.h"

namespace {

constexpr int kConductors = 64;

void FillVia(IViaVizData& data, int layerCount) {
    auto* layers = new STACKUPLAYER[static_cast<std::size_t>(layerCount)]{};
    auto* pads = new PADDATA[static_cast<std::size_t>(layerCount)]{};
    for (int i = 0; i < layerCount; ++i) {
        const bool conductor = i % 2 == 0;
        char name[16];
        std::snprintf(name, sizeof name, "%c%d", conductor ? 'L' : 'D', i + 1);
        kv::SetRecordName(layers[i].name, name);
        layers[i].kind = conductor ? STACKUP_CONDUCTOR : STACKUP_DIELECTRIC;
        layers[i].usage = conductor && i % 4 == 2 ? STACKUP_USAGE_PLANE : 0;
        layers[i].thickness = conductor ? 35e-6 : 100e-6;
        if (conductor) {
            const bool plane = layers[i].usage == STACKUP_USAGE_PLANE;
            pads[i] = PADDATA{plane ? PAD_TYPE_ANTIPAD : PAD_TYPE_PAD,
                              PAD_SHAPE_ROUND,
                              plane ? 760e-6 : 500e-6,
                              plane ? 760e-6 : 500e-6,
                              0.0,
                              plane ? 0.0 : 760e-6,
                              plane ? 0.0 : 760e-6,
                              0.0,
                              0,
                              0,
                              0.0};
        }
    }
    STACKUPARRAY* stackup = data.GetStackup();
    stackup->layers = layers;
    stackup->count = layerCount;
    PADSTACK* padstack = data.GetPadstack();
    kv::SetRecordName(padstack->name, "VIA8_20");
    padstack->drill = 200e-6;
    padstack->plating = 25e-6;
    padstack->firstLayer = 0;
    padstack->lastLayer = layerCount - 1;
    padstack->pads = pads;
    padstack->padCount = layerCount;
}

std::unique_ptr<kv::ui::CViaVisualizerCtrl> LargePair() {
    const int layerCount = 2 * kConductors - 1;
    auto control = std::make_unique<kv::ui::CViaVisualizerCtrl>();
    control->SetPair(true);
    for (int v = 0; v < 2; ++v) {
        FillVia(*control->GetViaData(v), layerCount);
        std::vector<VIAELEMENT> elements;
        for (int i = 0; i < layerCount; ++i) {
            const bool line = i % 2 == 1;
            elements.push_back(VIAELEMENT{line ? 4 : 1, 2, 0, i, i, line ? 48.0 : 2e-11, 3e-14, 0.0,
                                          line ? 1.5e-12 : 0.0});
        }
        control->SetElements(v, elements.data(), static_cast<int32_t>(elements.size()));
        const int32_t ports[] = {0, layerCount - 1};
        control->SetPorts(v, ports, 2);
    }
    control->resize(1200, 800);
    control->show();
    QApplication::processEvents();
    return control;
}

void BM_ViaSideViewFullRepaint(benchmark::State& state) {
    const auto control = LargePair();
    for (auto _ : state) {
        control->repaint();
    }
}

// The same after the host says its data changed: the layout is worked out again.
void BM_ViaSideViewRefreshAndRepaint(benchmark::State& state) {
    const auto control = LargePair();
    for (auto _ : state) {
        control->Refresh();
        control->repaint();
    }
}

void BM_ViaTopViewFullRepaint(benchmark::State& state) {
    const auto control = LargePair();
    control->SetView(1);
    control->SetTopViewLayer(0);
    for (auto _ : state) {
        control->repaint();
    }
}

}  // namespace

BENCHMARK(BM_ViaSideViewFullRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViaSideViewRefreshAndRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViaTopViewFullRepaint)->Unit(benchmark::kMillisecond);
