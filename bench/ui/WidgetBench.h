#pragma once

// What the widget benchmarks share: a control shown at the size it is measured at, and the
// zoom step of the views that zoom with the wheel.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>
#include <memory>

namespace kv::bench {

template <class Control>
std::unique_ptr<Control> ShownControl(int width, int height) {
    auto control = std::make_unique<Control>();
    control->resize(width, height);
    control->show();
    return control;
}

// Each iteration: a wheel notch at `at`, in and out by turns so that the view stays where it
// was, and the repaint it causes.
inline void RunZoomSteps(benchmark::State& state, QWidget& control, QPointF at) {
    int direction = 120;
    for (auto _ : state) {
        QWheelEvent wheel(at, control.mapToGlobal(at), QPoint(), QPoint(0, direction), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&control, &wheel);
        control.repaint();
        direction = -direction;
    }
}

}  // namespace kv::bench
