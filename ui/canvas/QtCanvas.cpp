#include "ui/canvas/QtCanvas.h"

#include <QFontMetrics>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QRegion>
#include <algorithm>
#include <cmath>

#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QRect ToQRect(const Rect& rect) {
    return QRect(rect.left, rect.top, rect.Width(), rect.Height());
}

// The image the painter's pixels go to (a QImage itself, the image behind a
// pixmap, a window's back buffer), when they are 32-bit words the canvas
// can set to an opaque colour exactly as the painter would.
const QImage* ImageOf32BitPixels(const QPainter& painter) {
    const QPaintEngine* const engine = painter.paintEngine();
    const QPaintDevice* const device = engine != nullptr ? engine->paintDevice() : nullptr;
    if (device == nullptr || device->devType() != QInternal::Image) {
        return nullptr;
    }
    const auto* const image = static_cast<const QImage*>(device);
    const QImage::Format format = image->format();
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied
               ? image
               : nullptr;
}

}  // namespace

QtCanvas::QtCanvas(QPaintDevice& device, const QFont& font, TextLayoutCache* texts)
    : m_painter(&device),
      m_image(ImageOf32BitPixels(m_painter)),
      m_texts(texts != nullptr ? texts : &m_ownTexts) {
    m_painter.setFont(font);
    m_painter.setRenderHint(QPainter::Antialiasing, false);
    m_painter.setRenderHint(QPainter::TextAntialiasing, true);
    m_painter.setBackground(Qt::white);
    SelectDefaultPen();
    SelectDefaultBrush();
    m_textColor = Qt::black;
}

QtCanvas::~QtCanvas() = default;

std::optional<QtCanvas::OwnPixels> QtCanvas::OwnPixelAccess() const {
    if (m_image == nullptr || m_painter.compositionMode() != QPainter::CompositionMode_SourceOver ||
        m_painter.opacity() != 1.0) {
        return std::nullopt;
    }
    const QTransform& transform = m_painter.deviceTransform();
    if (transform.type() > QTransform::TxTranslate ||
        transform.dx() != std::trunc(transform.dx()) ||
        transform.dy() != std::trunc(transform.dy())) {
        return std::nullopt;
    }
    const QPoint offset(static_cast<int>(transform.dx()), static_cast<int>(transform.dy()));
    // The painter writes where the image's pixels are now; so does the
    // canvas, without the copy a write access would make of shared ones.
    OwnPixels pixels{m_image->rect(), offset,
                     reinterpret_cast<QRgb*>(const_cast<uchar*>(m_image->constBits())),
                     m_image->bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb))};
    // The region a window repaints.
    const QRegion& system = m_painter.paintEngine()->systemClip();
    if (!system.isEmpty()) {
        if (system.rectCount() != 1) {
            return std::nullopt;
        }
        pixels.area &= system.boundingRect();
    }
    if (m_painter.hasClipping()) {
        if (!m_clip) {
            return std::nullopt;  // a clip set on the painter directly
        }
        // The clip is kept relative to the window origin.
        pixels.area &=
            ToQRect(*m_clip).translated(offset.x() + m_origin.x, offset.y() + m_origin.y);
    }
    return pixels;
}

void QtCanvas::SetPixels(const OwnPixels& pixels, const QRect& rect, QRgb color) {
    // The part inside the area, worked out in 64 bits: a line may run far
    // past the image before it is cut.
    const qint64 left =
        std::max<qint64>(qint64{rect.left()} + pixels.offset.x(), pixels.area.left());
    const qint64 right =
        std::min<qint64>(qint64{rect.right()} + pixels.offset.x(), pixels.area.right());
    const qint64 top = std::max<qint64>(qint64{rect.top()} + pixels.offset.y(), pixels.area.top());
    const qint64 bottom =
        std::min<qint64>(qint64{rect.bottom()} + pixels.offset.y(), pixels.area.bottom());
    if (left > right || top > bottom) {
        return;
    }
    const int width = static_cast<int>(right - left + 1);
    const int height = static_cast<int>(bottom - top + 1);
    // The painter fills wide rows faster than a loop and sets the same
    // pixels; in narrow ones its work for each row is what costs.
    constexpr int kWideRow = 16;
    if (width >= kWideRow) {
        m_painter.fillRect(QRect(static_cast<int>(left) - pixels.offset.x(),
                                 static_cast<int>(top) - pixels.offset.y(), width, height),
                           QColor::fromRgb(color));
        return;
    }
    // Both formats hold an opaque colour as 0xffRRGGBB.
    const QRgb value = color | 0xff000000u;
    const qsizetype stride = pixels.stride;
    QRgb* row = pixels.bits + top * stride + left;
    const QRgb* const end = row + height * stride;
    if (width == 1) {
        // Vertical lines and a curve's column stretches, most of them.
        for (; row != end; row += stride) {
            *row = value;
        }
        return;
    }
    for (; row != end; row += stride) {
        std::fill_n(row, width, value);
    }
}

bool QtCanvas::ThinOpaquePen() const {
    const QPen& pen = m_painter.pen();
    return pen.style() == Qt::SolidLine && pen.widthF() == 0.0 &&
           pen.brush().style() == Qt::SolidPattern && pen.color().alpha() == 255 &&
           !m_painter.testRenderHint(QPainter::Antialiasing);
}

const TextLayout* QtCanvas::CachedLayout(std::string_view text) const {
    // Printable ASCII lays out left to right whatever the painter's
    // direction leaves to the text; control characters break or move a
    // line, and other scripts may run the other way. A scaled painter
    // renders glyphs for the scaled size, which the kept ones are not.
    const bool plain =
        std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7f; }) &&
        m_painter.layoutDirection() != Qt::RightToLeft &&
        m_painter.deviceTransform().type() <= QTransform::TxTranslate;
    return plain ? &m_texts->Layout(text, m_painter.font(), *m_painter.device()) : nullptr;
}

Extent QtCanvas::TextExtent(std::string_view text) const {
    if (const TextLayout* layout = CachedLayout(text)) {
        return layout->extent;
    }
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
    const LineSegment line{m_position, to};
    m_position = to;
    Lines(std::span(&line, 1));
}

void QtCanvas::Lines(std::span<const LineSegment> lines) {
    const std::optional<OwnPixels> pixels =
        ThinOpaquePen() ? OwnPixelAccess() : std::optional<OwnPixels>();
    const QRgb color = m_painter.pen().color().rgba();
    for (const auto& [from, to] : lines) {
        if (pixels && (from.x == to.x || from.y == to.y)) {
            // A one-pixel line with round caps covers both of its ends.
            SetPixels(*pixels,
                      QRect(QPoint(std::min(from.x, to.x), std::min(from.y, to.y)),
                            QPoint(std::max(from.x, to.x), std::max(from.y, to.y))),
                      color);
        } else {
            m_painter.drawLine(from.x, from.y, to.x, to.y);
        }
    }
}

Point QtCanvas::CurrentPosition() const {
    return m_position;
}

void QtCanvas::Polyline(std::span<const Point> points) {
    m_qtPoints.clear();
    m_qtPoints.reserve(points.size());
    for (const Point& point : points) {
        m_qtPoints.emplace_back(point.x, point.y);
    }
    m_painter.drawPolyline(m_qtPoints.data(), static_cast<int>(m_qtPoints.size()));
}

void QtCanvas::FillRect(const Rect& rect, uint32_t color) {
    if (rect.Width() <= 0 || rect.Height() <= 0) {
        return;
    }
    if (const auto pixels = OwnPixelAccess()) {
        SetPixels(*pixels, ToQRect(rect), ColorFromColorRef(color).rgba());
        return;
    }
    m_painter.fillRect(ToQRect(rect), ColorFromColorRef(color));
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
    if (const TextLayout* layout = CachedLayout(text)) {
        const QPointF baseline(at.x, at.y + layout->ascent);
        for (const QGlyphRun& run : layout->runs) {
            m_painter.drawGlyphRun(baseline, run);
        }
    } else {
        m_painter.drawText(QPoint(at.x, at.y + m_painter.fontMetrics().ascent()), ToQString(text));
    }
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
