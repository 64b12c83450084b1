// Filling the walker's Nets pane with ten thousand nets, the way a host
// refreshes a region (CopyFrom of a list it prepared), and scrolling through
// them a page at a time.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QScrollBar>
#include <string>

#include "core/walker/CoupledNetsList.h"
#include "ui/walker/CoupRgnWalkerDlg.h"
#include "ui/walker/FramelessListView.h"

namespace {

constexpr int kNets = 10000;

// A host's list of `count` nets with every cell set, held by one reference.
struct SourceList {
    explicit SourceList(int count) {
        list->AddRef();
        for (int i = 0; i < count; ++i) {
            const std::string name = "DDR_DQ" + std::to_string(i);
            const std::string separation = std::to_string(100 + i % 400) + " um";
            list->AddNet(name.c_str(), separation.c_str(), i % 2 == 0 ? "TOP" : "IN1", "0.102 mm");
        }
    }
    ~SourceList() { list->Release(); }
    kv::CCoupledNetsList* list = new kv::CCoupledNetsList;
};

// The list alone, no pane: what the copy itself costs.
void BM_CopyFromWithoutPane(benchmark::State& state) {
    SourceList source(kNets);
    SourceList target(0);
    for (auto _ : state) {
        target.list->CopyFrom(source.list);
        benchmark::DoNotOptimize(target.list->Entries().size());
    }
}

// The walker up on screen: copy, refill the pane and let it lay out and
// paint, as the user sees the new region.
// With state.range(0) set, the user sorted the pane by name first, so every
// refill sorts ten thousand names again.
void BM_FillNetsPaneOnScreen(benchmark::State& state) {
    SourceList source(kNets);
    kv::ui::CCoupRgnWalkerDlg dialog;
    ICouplingRgnWalkerDlg* walker = dialog.Access();
    walker->CreateWindow(nullptr, nullptr);
    walker->Show(true);
    QApplication::processEvents();
    if (state.range(0) != 0) {
        dialog.NetsPane().sortByColumn(0, Qt::AscendingOrder);
    }
    for (auto _ : state) {
        walker->GetNetsList()->CopyFrom(source.list);
        dialog.NetsPane().viewport()->repaint();
        QApplication::processEvents();
    }
    state.counters["rows"] = dialog.NetsPane().RowCount();
    walker->DestroyWindow();
}

// One page down through ten thousand rows, painted each time.
void BM_ScrollNetsPanePage(benchmark::State& state) {
    SourceList source(kNets);
    kv::ui::CCoupRgnWalkerDlg dialog;
    ICouplingRgnWalkerDlg* walker = dialog.Access();
    walker->CreateWindow(nullptr, nullptr);
    walker->Show(true);
    walker->GetNetsList()->CopyFrom(source.list);
    QApplication::processEvents();
    QScrollBar* bar = dialog.NetsPane().verticalScrollBar();
    for (auto _ : state) {
        const int next = bar->value() + bar->pageStep();
        bar->setValue(next > bar->maximum() ? 0 : next);
        dialog.NetsPane().viewport()->repaint();
    }
    walker->DestroyWindow();
}

}  // namespace

BENCHMARK(BM_CopyFromWithoutPane)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FillNetsPaneOnScreen)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScrollNetsPanePage)->Unit(benchmark::kMicrosecond);
