// Cost of the bit pattern control's two frequent paths on a long sequence:
// a full repaint of a 1200-pixel control holding 32768 bits with a
// selection, and typing one bit in the middle (edit and repaint). Each runs
// with the grid and waveform clipped to the view (argument 0) and drawn over
// every cell of the grid and every bit (argument 1); both show the same
// pixels.

#include <QApplication>
#include <QKeyEvent>
#include <random>
#include <vector>

#include "bench/ui/WidgetBench.h"
#include "ui/bitpattern/BitPatternCtrl.h"

namespace {

constexpr int kBits = 32768;

std::unique_ptr<kv::ui::CBitPatternCtrl> LongPatternControl(bool drawEverything) {
    auto control = kv::bench::ShownControl<kv::ui::CBitPatternCtrl>(1200, 140);
    std::mt19937 random(11);
    std::vector<uint8_t> bits(kBits);
    for (uint8_t& bit : bits) {
        bit = static_cast<uint8_t>(random() & 1u);
    }
    control->SetPattern(bits.data(), kBits);
    control->Editor().SetDrawEverything(drawEverything);
    control->setFocus();
    kv::BitPatternEditor& editor = control->Editor();
    editor.OnFocusGained();
    editor.SetCaretIndex(kBits / 2);
    for (int i = 0; i < 20; ++i) {
        editor.OnKey(kv::BitKey::Right, {false, true});
    }
    editor.EnsureCaretVisible();
    QApplication::processEvents();
    return control;
}

void BM_BitPatternFullRepaint(benchmark::State& state) {
    const auto control = LongPatternControl(state.range(0) != 0);
    for (auto _ : state) {
        control->repaint();
    }
}

void SendKey(QWidget& widget, int key, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &press);
}

void BM_BitPatternTypeBitInMiddle(benchmark::State& state) {
    const auto control = LongPatternControl(state.range(0) != 0);
    control->Editor().OnKey(kv::BitKey::Home, {});
    control->SetCaretIndex(kBits / 2);
    control->EnsureCaretVisible();
    for (auto _ : state) {
        SendKey(*control, Qt::Key_1, QStringLiteral("1"));
        control->repaint();
        state.PauseTiming();
        SendKey(*control, Qt::Key_Backspace, QString());
        state.ResumeTiming();
    }
}

}  // namespace

BENCHMARK(BM_BitPatternFullRepaint)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BitPatternTypeBitInMiddle)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
