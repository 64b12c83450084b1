#include "core/ports/Canvas.h"

namespace kv {

void ICanvas::FillRects(std::span<const Rect> rects, uint32_t color) {
    for (const Rect& rect : rects) {
        FillRect(rect, color);
    }
}

}  // namespace kv
