#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// What the controls draw with, as a port: the drawing code of every control
// lives in the core and emits these primitives; the Qt adapter paints them on
// a widget's off-screen pixmap, an image or an SVG document, and tests record
// them. Coordinates are integer pixels; colours are 0x00BBGGRR values
// (core/shared/ColorRef.h).

namespace kv {

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// A rectangle whose right and bottom edges are outside it.
struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool Contains(Point point) const {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    friend bool operator==(const Rect&, const Rect&) = default;
};

// A straight line between two points.
struct LineSegment {
    Point from;
    Point to;
    friend bool operator==(const LineSegment&, const LineSegment&) = default;
};

struct Extent {
    int width = 0;
    int height = 0;
    friend bool operator==(const Extent&, const Extent&) = default;
};

// A picture of `width` x `height` pixels, row by row from the top, each pixel 0xAARRGGBB (the
// order the platform's images keep them in, so a painter can draw it without a copy): alpha 0
// leaves what is under the pixel, 255 covers it. `pixels` holds width * height values.
struct ArgbImage {
    int width = 0;
    int height = 0;
    std::span<const uint32_t> pixels;
};

// The alpha bits of an ArgbImage pixel that covers what is under it.
inline constexpr uint32_t kOpaqueAlpha = 0xFF000000u;

// How wide and high a text is in the font drawn with.
class ITextMetrics {
public:
    virtual ~ITextMetrics() = default;
    virtual Extent TextExtent(std::string_view text) const = 0;
};

// Drawing state follows the device-context model the controls' geometry is
// worked out in: one selected pen, one brush, a current position for line
// drawing, a text colour, and a window origin mapping logical to device
// coordinates (device = logical - origin). Lines stop one pixel short of
// their end point; rectangles exclude their right and bottom edges.
class ICanvas : public ITextMetrics {
public:
    // A solid pen; width 0 draws one pixel wide whatever the scale.
    virtual void SelectPen(uint32_t color, int width) = 0;
    // The device's default pen: black, one pixel.
    virtual void SelectDefaultPen() = 0;
    virtual void SelectBrush(uint32_t color) = 0;
    // The device's default brush: white.
    virtual void SelectDefaultBrush() = 0;

    virtual void MoveTo(Point to) = 0;
    // A line from the current position with the pen; `to` becomes current.
    virtual void LineTo(Point to) = 0;
    virtual Point CurrentPosition() const = 0;
    // Lines through every point with the pen; the current position stays.
    virtual void Polyline(std::span<const Point> points) = 0;

    // Each line with the pen, as MoveTo and LineTo draw it, in one call for
    // many; the current position stays.
    virtual void Lines(std::span<const LineSegment> lines);

    // Fills with a colour, without any outline.
    virtual void FillRect(const Rect& rect, uint32_t color) = 0;
    // Outline with the pen, inside with the brush.
    virtual void Rectangle(const Rect& rect) = 0;
    // Fills the closed polygon through `points` (even-odd rule) with a colour, without any
    // outline.
    virtual void FillPolygon(std::span<const Point> points, uint32_t color) = 0;
    // The image with its top-left pixel at `at`, pixel for pixel, over what is drawn; an image
    // whose pixels do not match its size draws nothing.
    virtual void DrawImage(Point at, const ArgbImage& image) = 0;

    virtual void SetTextColor(uint32_t color) = 0;
    // Text drawn over what is there (true) or on a filled box (false).
    virtual void SetTransparentBackground(bool transparent) = 0;
    // Text whose top-left corner is at `at`.
    virtual void TextOut(Point at, std::string_view text) = 0;
    // One line of text centred horizontally and vertically in `rect`.
    virtual void DrawTextCentered(const Rect& rect, std::string_view text) = 0;

    virtual void SetWindowOrigin(Point origin) = 0;
    virtual Point WindowOrigin() const = 0;
    // Drawing stays inside `rect`, given in device coordinates.
    virtual void SetClipRect(const Rect& rect) = 0;
    virtual void ResetClip() = 0;
};

}  // namespace kv
