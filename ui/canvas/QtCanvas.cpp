#include "ui/canvas/QtCanvas.h"

#include <QFontMetrics>
#include <QImage>
#include <QPaintDevice>
#include <vector>

#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QRect ToQRect(const Rect& rect) {
    return QRect(rect.left, rect.top, rect.Width(), rect.Height());
}

}  // namespace

QtCanvas::QtCanvas(QPaintDevice& device, const QFont& font) : m_painter(&device) {
    m_painter.setFont(font);
    m_painter.setRenderHint(QPainter::Antialiasing, false);
    m_painter.setRenderHint(QPainter::TextAntialiasing, true);
    m_painter.setBackground(Qt::white);
    SelectDefaultPen();
    SelectDefaultBrush();
    m_textColor = Qt::black;
}

QtCanvas::~QtCanvas() = default;

Extent QtCanvas::TextExtent(std::string_view text) const {
    const QFontMetrics metrics = m_painter.fontMetrics();
    return {metrics.horizontalAdvance(ToQString(text)), metrics.height()};
}

void QtCanvas::SelectPen(uint32_t color, int width) {
    // Wide pens end and join round, as wide device-context pens do, so
    // separately drawn segments meet without notches.
    QPen pen(ColorFromColorRef(color), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setCosmetic(width == 0);
    m_painter.setPen(pen);
}

void QtCanvas::SelectDefaultPen() {
    SelectPen(0, 0);
}

void QtCanvas::SelectBrush(uint32_t color) {
    m_painter.setBrush(ColorFromColorRef(color));
}

void QtCanvas::SelectDefaultBrush() {
    m_painter.setBrush(Qt::white);
}

void QtCanvas::MoveTo(Point to) {
    m_position = to;
}

void QtCanvas::LineTo(Point to) {
    m_painter.drawLine(m_position.x, m_position.y, to.x, to.y);
    m_position = to;
}

Point QtCanvas::CurrentPosition() const {
    return m_position;
}

void QtCanvas::Polyline(std::span<const Point> points) {
    std::vector<QPoint> qtPoints;
    qtPoints.reserve(points.size());
    for (const Point& point : points) {
        qtPoints.emplace_back(point.x, point.y);
    }
    m_painter.drawPolyline(qtPoints.data(), static_cast<int>(qtPoints.size()));
}

void QtCanvas::FillRect(const Rect& rect, uint32_t color) {
    if (rect.Width() > 0 && rect.Height() > 0) {
        m_painter.fillRect(ToQRect(rect), ColorFromColorRef(color));
    }
}

void QtCanvas::Rectangle(const Rect& rect) {
    // A one-pixel outline covers the rectangle up to, not including, its
    // right and bottom edges.
    m_painter.drawRect(rect.left, rect.top, rect.Width() - 1, rect.Height() - 1);
}

void QtCanvas::FillPolygon(std::span<const Point> points, uint32_t color) {
    std::vector<QPoint> qtPoints;
    qtPoints.reserve(points.size());
    for (const Point& point : points) {
        qtPoints.emplace_back(point.x, point.y);
    }
    const QPen pen = m_painter.pen();
    const QBrush brush = m_painter.brush();
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(ColorFromColorRef(color));
    m_painter.drawPolygon(qtPoints.data(), static_cast<int>(qtPoints.size()), Qt::OddEvenFill);
    m_painter.setPen(pen);
    m_painter.setBrush(brush);
}

void QtCanvas::DrawImage(Point at, const ArgbImage& image) {
    if (image.width <= 0 || image.height <= 0 ||
        image.pixels.size() != static_cast<std::size_t>(image.width) * image.height) {
        return;
    }
    // The core's pixels are QImage's ARGB32: the image reads them where they are.
    const QImage view(reinterpret_cast<const uchar*>(image.pixels.data()), image.width,
                      image.height, static_cast<qsizetype>(image.width) * 4, QImage::Format_ARGB32);
    m_painter.drawImage(QPoint(at.x, at.y), view);
}

void QtCanvas::SetTextColor(uint32_t color) {
    m_textColor = ColorFromColorRef(color);
}

void QtCanvas::SetTransparentBackground(bool transparent) {
    m_painter.setBackgroundMode(transparent ? Qt::TransparentMode : Qt::OpaqueMode);
}

void QtCanvas::TextOut(Point at, std::string_view text) {
    const QPen pen = m_painter.pen();
    m_painter.setPen(m_textColor);
    m_painter.drawText(QPoint(at.x, at.y + m_painter.fontMetrics().ascent()), ToQString(text));
    m_painter.setPen(pen);
}

void QtCanvas::DrawTextCentered(const Rect& rect, std::string_view text) {
    const QPen pen = m_painter.pen();
    m_painter.setPen(m_textColor);
    m_painter.drawText(ToQRect(rect), Qt::AlignCenter | Qt::TextSingleLine, ToQString(text));
    m_painter.setPen(pen);
}

void QtCanvas::SetWindowOrigin(Point origin) {
    m_origin = origin;
    m_painter.resetTransform();
    m_painter.translate(-origin.x, -origin.y);
    ApplyClip();
}

Point QtCanvas::WindowOrigin() const {
    return m_origin;
}

void QtCanvas::SetClipRect(const Rect& rect) {
    m_clip = rect;
    ApplyClip();
}

void QtCanvas::ResetClip() {
    m_clip.reset();
    ApplyClip();
}

void QtCanvas::ApplyClip() {
    if (!m_clip) {
        m_painter.setClipping(false);
        return;
    }
    // The clip is kept in device pixels; the painter clips in logical ones.
    m_painter.setClipRect(ToQRect(*m_clip).translated(m_origin.x, m_origin.y));
}

}  // namespace kv::ui
