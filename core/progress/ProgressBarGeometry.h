#pragma once

#include <cstdint>
#include <string>

// What a progress bar paints, worked out without a window: the split between
// the done and the remaining part, and where its label goes.

namespace kv {

// The percentage a bar shows: anything below 1 is 0, anything above 100 is 100.
int32_t ClampPercent(int32_t position);

// Right edge of the done part of a bar spanning [left, left + width): the
// share of the width for the clamped position, truncated toward zero.
int DoneRight(int left, int width, int32_t position);

// The label: the unclamped position, followed by "%" unless left off.
std::string ProgressLabel(int32_t position, bool noPercentSign);

// The few font measures the label placement needs, in pixels.
struct LabelFontMetrics {
    int ascent = 0;
    int internalLeading = 0;  // space inside the ascent above the glyphs' em box
};

struct BarRect {
    int left = 0;
    int top = 0;
    int right = 0;   // exclusive
    int bottom = 0;  // exclusive
};

struct BarLayout {
    BarRect done;       // painted in the fill colour, label in the empty colour
    BarRect remaining;  // painted in the empty colour, label in the fill colour
    std::string label;
    int labelCentreX = 0;   // the label is centred on this column
    int labelBaseline = 0;  // and sits on this row
};

BarLayout LayoutProgressBar(const BarRect& client, int32_t position, bool noPercentSign,
                            const LabelFontMetrics& font);

// SetPos repaints only for a new value, or when asked to.
inline bool SetPosRepaints(int32_t stored, int32_t value, bool force) {
    return force || stored != value;
}

}  // namespace kv
