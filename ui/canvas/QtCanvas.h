#pragma once

#include <QFont>
#include <QPainter>
#include <optional>
#include <vector>

#include "core/ports/Canvas.h"
#include "ui/canvas/TextLayoutCache.h"

class QPaintDevice;
class QImage;
class QString;

// The canvas on Qt: a QPainter on any paint device (a widget, its
// off-screen pixmap, a QImage, a QSvgGenerator), drawing without
// anti-aliasing so pixels land where the core's integer geometry puts them.
//
// When the painter's pixels are 32-bit words in memory (an image, a pixmap,
// a window's back buffer) and nothing scales, the canvas sets the pixels of
// one-pixel horizontal and vertical lines and of narrow opaque fills
// itself: the same pixels the painter sets, without its work for each one,
// which is most of a chart's grid and curves.

namespace kv::ui {

class QtCanvas final : public ICanvas {
public:
    // `texts` keeps the shaped texts beyond this canvas' life; without one
    // the canvas keeps its own while it lives.
    QtCanvas(QPaintDevice& device, const QFont& font, TextLayoutCache* texts = nullptr);
    ~QtCanvas() override;
    QtCanvas(const QtCanvas&) = delete;
    QtCanvas& operator=(const QtCanvas&) = delete;

    Extent TextExtent(std::string_view text) const override;
    void SelectPen(uint32_t color, int width) override;
    void SelectDefaultPen() override;
    void SelectBrush(uint32_t color) override;
    void SelectDefaultBrush() override;
    void MoveTo(Point to) override;
    void LineTo(Point to) override;
    void Lines(std::span<const LineSegment> lines) override;
    Point CurrentPosition() const override;
    void Polyline(std::span<const Point> points) override;
    void FillRect(const Rect& rect, uint32_t color) override;
    void Rectangle(const Rect& rect) override;
    void FillPolygon(std::span<const Point> points, uint32_t color) override;
    void DrawImage(Point at, const ArgbImage& image) override;
    void SetTextColor(uint32_t color) override;
    void SetTransparentBackground(bool transparent) override;
    void TextOut(Point at, std::string_view text) override;
    void DrawTextCentered(const Rect& rect, std::string_view text) override;
    void SetWindowOrigin(Point origin) override;
    Point WindowOrigin() const override;
    void SetClipRect(const Rect& rect) override;
    void ResetClip() override;

    QPainter& Painter() { return m_painter; }

private:
    // Where the canvas may set pixels itself: the clip in image pixels and
    // the shift from logical coordinates to them.
    struct OwnPixels {
        QRect area;
        QPoint offset;
        QRgb* bits;
        qsizetype stride;  // in pixels
    };
    // Nothing unless the device is an image of 32-bit pixels, nothing
    // scales, and the painter replaces pixels with opaque colours rather
    // than combining them.
    std::optional<OwnPixels> OwnPixelAccess() const;
    // The pixels of `rect` (logical coordinates) that lie in the area.
    void SetPixels(const OwnPixels& pixels, const QRect& rect, QRgb color);
    // Whether the pen draws what a line of single opaque pixels covers.
    bool ThinOpaquePen() const;
    // The layout of a text the cache can hold: one line, left to right.
    const TextLayout* CachedLayout(std::string_view text) const;
    void ApplyClip();

    QPainter m_painter;
    const QImage* m_image;  // where the pixels go, when they are 32-bit words
    TextLayoutCache m_ownTexts;
    TextLayoutCache* m_texts;
    QColor m_textColor;
    Point m_position;
    Point m_origin;
    std::optional<Rect> m_clip;
    std::vector<QPoint> m_qtPoints;
};

}  // namespace kv::ui
