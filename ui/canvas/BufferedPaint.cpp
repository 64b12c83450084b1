#include "ui/canvas/BufferedPaint.h"

#include <QPainter>
#include <QPixmap>
#include <QWidget>

namespace kv::ui {
namespace {

// The pixels a QPixmap would have on this screen, so the picture is the one
// a pixmap buffer gives.
QImage::Format ScreenFormat() {
    static const QImage::Format format = QPixmap(1, 1).toImage().format();
    return format;
}

}  // namespace

void PaintBuffer::Paint(QWidget& widget, QSize size, const std::function<void(QtCanvas&)>& draw) {
    if (size.isEmpty()) {
        return;
    }
    const qreal ratio = widget.devicePixelRatioF();
    const QSize pixels = size * ratio;
    if (m_image.size() != pixels || m_image.format() != ScreenFormat()) {
        m_image = QImage(pixels, ScreenFormat());
    }
    m_image.setDevicePixelRatio(ratio);
    {
        QtCanvas canvas(m_image, widget.font(), &m_texts);
        draw(canvas);
    }
    QPainter(&widget).drawImage(0, 0, m_image);
}

void PaintBuffered(QWidget& widget, QSize size, const std::function<void(QtCanvas&)>& draw) {
    PaintBuffer().Paint(widget, size, draw);
}

}  // namespace kv::ui
