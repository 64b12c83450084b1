#include "core/ports/Canvas.h"

namespace kv {

void ICanvas::Lines(std::span<const LineSegment> lines) {
    const Point position = CurrentPosition();
    for (const LineSegment& line : lines) {
        MoveTo(line.from);
        LineTo(line.to);
    }
    MoveTo(position);
}

}  // namespace kv
