#pragma once

#include <QSize>
#include <functional>

#include "ui/canvas/QtCanvas.h"

class QWidget;

namespace kv::ui {

// Draws a control's picture off-screen at the screen's pixel ratio and copies
// it onto the widget in one block: the widget never shows an erased
// background or a half-drawn frame. Nothing is drawn for an empty size.
void PaintBuffered(QWidget& widget, QSize size, const std::function<void(QtCanvas&)>& draw);

}  // namespace kv::ui
