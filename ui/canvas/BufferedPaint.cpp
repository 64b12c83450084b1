#include "ui/canvas/BufferedPaint.h"

#include <QPainter>
#include <QPixmap>
#include <QWidget>

namespace kv::ui {

void PaintBuffered(QWidget& widget, QSize size, const std::function<void(QtCanvas&)>& draw) {
    if (size.isEmpty()) {
        return;
    }
    const qreal ratio = widget.devicePixelRatioF();
    QPixmap buffer(size * ratio);
    buffer.setDevicePixelRatio(ratio);
    {
        QtCanvas canvas(buffer, widget.font());
        draw(canvas);
    }
    QPainter(&widget).drawPixmap(0, 0, buffer);
}

}  // namespace kv::ui
