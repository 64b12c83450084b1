#include "ui/bitpattern/BitPatternCursors.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace kv::ui {
namespace {

constexpr int kSide = 32;

QPixmap BlankCursorPixmap() {
    QPixmap pixmap(kSide, kSide);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

// A pen pointing down-left, its tip at the hot spot, with a plus beside it.
QCursor AddBitsCursor() {
    QPixmap pixmap = BlankCursorPixmap();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath pen;
    pen.moveTo(1, 1);
    pen.lineTo(5, 13);
    pen.lineTo(17, 25);
    pen.lineTo(25, 17);
    pen.lineTo(13, 5);
    pen.closeSubpath();
    painter.setPen(QPen(Qt::white, 3));
    painter.drawPath(pen);
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(QColor(255, 255, 160));
    painter.drawPath(pen);
    painter.drawLine(5, 13, 13, 5);
    painter.setBrush(Qt::black);
    painter.drawPolygon(QPolygonF({QPointF(1, 1), QPointF(3, 7), QPointF(7, 3)}));
    const auto plus = [&](const QPen& stroke) {
        painter.setPen(stroke);
        painter.drawLine(19, 5, 29, 5);
        painter.drawLine(24, 0, 24, 10);
    };
    plus(QPen(Qt::white, 4));
    plus(QPen(Qt::black, 2));
    painter.end();
    return QCursor(pixmap, 1, 1);
}

// Arrows to both sides of a bar, centred on the hot spot.
QCursor EndHandleCursor() {
    QPixmap pixmap = BlankCursorPixmap();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPolygonF arrow({QPointF(2, 16), QPointF(9, 9), QPointF(9, 13), QPointF(23, 13),
                           QPointF(23, 9), QPointF(30, 16), QPointF(23, 23), QPointF(23, 19),
                           QPointF(9, 19), QPointF(9, 23)});
    painter.setPen(QPen(Qt::white, 2));
    painter.setBrush(Qt::black);
    painter.drawPolygon(arrow);
    painter.setPen(QPen(Qt::black, 2));
    painter.drawLine(16, 6, 16, 26);
    painter.end();
    return QCursor(pixmap, 16, 16);
}

}  // namespace

QCursor ModuleCursor(int id) {
    switch (id) {
        case kAddBitsCursorId:
            return AddBitsCursor();
        case kEndHandleCursorId:
            return EndHandleCursor();
        default:
            return QCursor(Qt::ArrowCursor);
    }
}

}  // namespace kv::ui
