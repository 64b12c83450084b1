#pragma once

#include <QFont>
#include <QPainter>
#include <optional>

#include "core/ports/Canvas.h"

class QPaintDevice;
class QImage;
class QString;

// The canvas on Qt: a QPainter on any paint device (a widget's off-screen
// pixmap, a QImage, a QSvgGenerator), drawing without anti-aliasing so
// pixels land where the core's integer geometry puts them.

namespace kv::ui {

class QtCanvas final : public ICanvas {
public:
    QtCanvas(QPaintDevice& device, const QFont& font);
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
    void ApplyClip();

    QPainter m_painter;
    QColor m_textColor;
    Point m_position;
    Point m_origin;
    std::optional<Rect> m_clip;
};

}  // namespace kv::ui
