// Cost of one SetAll + IsCancelled update cycle on a visible progress
// dialog, the call a host makes in its inner loop: with nothing changed, and
// with both texts and the percentage changing on every cycle.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWidget>
#include <array>
#include <string>

#include "ui/progress/ProgressDlg.h"

namespace {

void BM_UpdateCycleUnchanged(benchmark::State& state) {
    QWidget owner;
    owner.show();
    kv::ui::CProgressDlg dialog;
    dialog.Create(&owner, 0);
    IProgressReportInterface* report = dialog.GetReport();
    for (auto _ : state) {
        report->SetAll("Simulating", "Net 12 of 40", 30);
        benchmark::DoNotOptimize(report->IsCancelled());
    }
    dialog.Destroy();
}

void BM_UpdateCycleChanged(benchmark::State& state) {
    QWidget owner;
    owner.show();
    kv::ui::CProgressDlg dialog;
    dialog.Create(&owner, 0);
    IProgressReportInterface* report = dialog.GetReport();
    // Texts made up front: the cycle measures the dialog, not formatting.
    std::array<std::string, 100> lines;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        lines[i] = "Net " + std::to_string(i) + " of 100";
    }
    std::size_t step = 0;
    for (auto _ : state) {
        const std::size_t i = step++ % lines.size();
        report->SetAll(i % 2 == 0 ? "Simulating" : "Extracting", lines[i].c_str(),
                       static_cast<int32_t>(i));
        benchmark::DoNotOptimize(report->IsCancelled());
    }
    dialog.Destroy();
}

}  // namespace

BENCHMARK(BM_UpdateCycleUnchanged)->Iterations(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_UpdateCycleChanged)->Iterations(100000)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    // Measured without a display unless one is asked for.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
