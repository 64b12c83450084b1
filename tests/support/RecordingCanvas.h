#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "core/ports/Canvas.h"

namespace kv::test {

// A canvas that keeps every primitive with the state it was drawn in, in
// logical coordinates, and measures text with a fixed metric (every
// character kCharWidth wide, kTextHeight high) so no font is needed.
class RecordingCanvas final : public ICanvas {
public:
    static constexpr int kCharWidth = 7;
    static constexpr int kTextHeight = 13;

    enum class Kind { Line, FillRect, Rectangle, Text, CentredText, Polyline, FillPolygon, Image };
    struct Primitive {
        Kind kind;
        Point from;      // lines: start; text: top-left
        Point to;        // lines: end
        Rect rect;       // fills, rectangles, centred text, images
        uint32_t color;  // pen (lines, rectangles), fill or text colour
        int penWidth;
        std::string text;
        Point origin;  // window origin at the time
    };

    std::vector<Primitive> primitives;
    std::vector<std::vector<Point>> polygons;
    // The pixels of every image, in the order drawn.
    std::vector<std::vector<uint32_t>> images;

    Extent TextExtent(std::string_view text) const override {
        return {static_cast<int>(text.size()) * kCharWidth, kTextHeight};
    }
    void SelectPen(uint32_t color, int width) override {
        m_penColor = color;
        m_penWidth = width;
    }
    void SelectDefaultPen() override { SelectPen(0, 0); }
    void SelectBrush(uint32_t color) override { m_brush = color; }
    void SelectDefaultBrush() override { m_brush = 0xFFFFFF; }
    void MoveTo(Point to) override { m_position = to; }
    void LineTo(Point to) override {
        primitives.push_back(
            {Kind::Line, m_position, to, {}, m_penColor, m_penWidth, {}, m_origin});
        m_position = to;
    }
    Point CurrentPosition() const override { return m_position; }
    void Polyline(std::span<const Point> points) override {
        for (size_t i = 1; i < points.size(); ++i) {
            primitives.push_back({Kind::Polyline,
                                  points[i - 1],
                                  points[i],
                                  {},
                                  m_penColor,
                                  m_penWidth,
                                  {},
                                  m_origin});
        }
    }
    void FillRect(const Rect& rect, uint32_t color) override {
        primitives.push_back({Kind::FillRect, {}, {}, rect, color, 0, {}, m_origin});
    }
    void Rectangle(const Rect& rect) override {
        primitives.push_back({Kind::Rectangle, {}, {}, rect, m_penColor, m_penWidth, {}, m_origin});
    }
    // Kept as its bounding box; the corner points go to `polygons` in the same order.
    void FillPolygon(std::span<const Point> points, uint32_t color) override {
        Rect box{};
        if (!points.empty()) {
            box = {points[0].x, points[0].y, points[0].x, points[0].y};
            for (const Point& p : points) {
                box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
                       std::max(box.bottom, p.y)};
            }
        }
        primitives.push_back({Kind::FillPolygon, {}, {}, box, color, 0, {}, m_origin});
        polygons.emplace_back(points.begin(), points.end());
    }
    // Kept as the rectangle it covers; its pixels go to `images` in the same order.
    void DrawImage(Point at, const ArgbImage& image) override {
        primitives.push_back({Kind::Image,
                              at,
                              {},
                              {at.x, at.y, at.x + image.width, at.y + image.height},
                              0,
                              0,
                              {},
                              m_origin});
        images.emplace_back(image.pixels.begin(), image.pixels.end());
    }
    void SetTextColor(uint32_t color) override { m_textColor = color; }
    void SetTransparentBackground(bool transparent) override { transparentText = transparent; }
    void TextOut(Point at, std::string_view text) override {
        primitives.push_back({Kind::Text, at, {}, {}, m_textColor, 0, std::string(text), m_origin});
    }
    void DrawTextCentered(const Rect& rect, std::string_view text) override {
        primitives.push_back(
            {Kind::CentredText, {}, {}, rect, m_textColor, 0, std::string(text), m_origin});
    }
    void SetWindowOrigin(Point origin) override { m_origin = origin; }
    Point WindowOrigin() const override { return m_origin; }
    void SetClipRect(const Rect& /*rect*/) override {}
    void ResetClip() override {}

    bool transparentText = false;

    // Every primitive of a kind (and colour, unless any colour).
    std::vector<Primitive> Of(Kind kind) const {
        std::vector<Primitive> found;
        std::copy_if(primitives.begin(), primitives.end(), std::back_inserter(found),
                     [&](const Primitive& p) { return p.kind == kind; });
        return found;
    }
    std::vector<Primitive> Of(Kind kind, uint32_t color) const {
        std::vector<Primitive> found = Of(kind);
        std::erase_if(found, [&](const Primitive& p) { return p.color != color; });
        return found;
    }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const Primitive& p : primitives) {
            if (p.kind == Kind::Text || p.kind == Kind::CentredText) {
                texts.push_back(p.text);
            }
        }
        return texts;
    }

private:
    Point m_position;
    Point m_origin;
    uint32_t m_penColor = 0;
    int m_penWidth = 0;
    uint32_t m_brush = 0xFFFFFF;
    uint32_t m_textColor = 0;
};

}  // namespace kv::test
