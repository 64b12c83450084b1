#pragma once

#include <QImage>
#include <QSize>
#include <functional>

#include "ui/canvas/QtCanvas.h"
#include "ui/canvas/TextLayoutCache.h"

class QWidget;

namespace kv::ui {

// Draws a control's picture off-screen at the screen's pixel ratio and copies
// it onto the widget in one block: the widget never shows an erased
// background or a half-drawn frame. Nothing is drawn for an empty size.
//
// A control that repaints often keeps one: the off-screen image is made
// again only when the size changes, and the texts stay shaped from one
// paint to the next. The picture drawn must cover the whole image, which
// holds the last one.
class PaintBuffer {
public:
    void Paint(QWidget& widget, QSize size, const std::function<void(QtCanvas&)>& draw);

private:
    QImage m_image;
    TextLayoutCache m_texts;
};

// The same with a buffer for this one paint.
void PaintBuffered(QWidget& widget, QSize size, const std::function<void(QtCanvas&)>& draw);

}  // namespace kv::ui
