#include "core/ports/Canvas.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kv {

void ICanvas::FillRects(std::span<const Rect> rects, uint32_t color) {
    for (const Rect& rect : rects) {
        FillRect(rect, color);
    }
}

void ICanvas::FillPolygon(std::span<const Point> points, uint32_t color) {
    if (points.size() < 3) {
        return;
    }
    const auto [low, high] = std::minmax_element(points.begin(), points.end(),
                                                 [](Point a, Point b) { return a.y < b.y; });
    std::vector<double> crossings;
    // Each pixel row is filled where its centre line lies inside the polygon.
    for (int y = low->y; y < high->y; ++y) {
        const double centre = y + 0.5;
        crossings.clear();
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Point a = points[i];
            const Point b = points[(i + 1) % points.size()];
            if ((a.y <= centre) != (b.y <= centre)) {
                crossings.push_back(a.x + (centre - a.y) * (b.x - a.x) / (b.y - a.y));
            }
        }
        std::sort(crossings.begin(), crossings.end());
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
            const int left = static_cast<int>(std::lround(crossings[i]));
            const int right = static_cast<int>(std::lround(crossings[i + 1]));
            FillRect({left, y, right, y + 1}, color);
        }
    }
}

}  // namespace kv
