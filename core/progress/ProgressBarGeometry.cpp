#include "core/progress/ProgressBarGeometry.h"

#include <cstdint>

namespace kv {

int32_t ClampPercent(int32_t position) {
    if (position < 1) {
        return 0;
    }
    return position > 100 ? 100 : position;
}

int DoneRight(int left, int width, int32_t position) {
    // 64-bit product: a very wide bar must not overflow before the division.
    const int64_t share = static_cast<int64_t>(width) * ClampPercent(position) / 100;
    return left + static_cast<int>(share);
}

std::string ProgressLabel(int32_t position, bool noPercentSign) {
    std::string label = std::to_string(position);
    if (!noPercentSign) {
        label += '%';
    }
    return label;
}

BarLayout LayoutProgressBar(const BarRect& client, int32_t position, bool noPercentSign,
                            const LabelFontMetrics& font) {
    BarLayout layout;
    const int split = DoneRight(client.left, client.right - client.left, position);
    layout.done = {client.left, client.top, split, client.bottom};
    layout.remaining = {split, client.top, client.right, client.bottom};
    layout.label = ProgressLabel(position, noPercentSign);
    layout.labelCentreX = (client.left + client.right) / 2;
    // Centres the glyphs' em box (the ascent without the internal leading)
    // vertically in the bar.
    layout.labelBaseline =
        (client.top + client.bottom - font.internalLeading + font.ascent + 1) / 2;
    return layout;
}

}  // namespace kv
