#include "core/bitpattern/BitPatternLayout.h"

#include <algorithm>

namespace kv {

BitPatternLayout ComputeBitPatternLayout(const Rect& client, int cellWidth, int textHeight) {
    BitPatternLayout layout;
    layout.client = client;
    layout.cellWidth = std::max(cellWidth, 1);
    layout.textHeight = std::max(textHeight, 1);
    const int w = layout.cellWidth;
    const int h = layout.textHeight;
    layout.handleSize = std::max(w / 4, 4);
    const int cells = (client.right - h - layout.handleSize - client.left) / w;
    layout.left = client.left + h;
    layout.highY = client.top + h - 1;
    layout.right = layout.left + cells * w;
    layout.lowY = client.bottom - 3 * h;
    const int digitTop = layout.lowY + layout.handleSize + 2;
    layout.digitRow = {layout.left, digitTop, layout.right, digitTop + h};
    return layout;
}

}  // namespace kv
