#pragma once

#include "core/ports/Canvas.h"

// Where the waveform, its level lines and the digit row sit in the control,
// worked out from the client rectangle and the size of the text "00".

namespace kv {

// The grid and the normal scroll range always span this many cells,
// whatever the bit count.
inline constexpr int kGridCells = 32768;

struct BitPatternLayout {
    Rect client;
    int cellWidth = 1;   // width of "00"
    int textHeight = 1;  // height of "00"
    int handleSize = 4;  // half the side of every square marker
    int left = 0;        // x of bit 0's left edge
    int highY = 0;       // y of the 1-level line
    int right = 0;       // left + whole cells that fit
    int lowY = 0;        // y of the 0-level line
    Rect digitRow;

    int MiddleY() const { return (highY + lowY) / 2; }
    int CellX(int index) const { return left + index * cellWidth; }
    int LevelY(uint8_t bit) const { return bit != 0 ? highY : lowY; }
    // The level a point at height y stands for: above the middle line is 1.
    uint8_t BitAt(int y) const { return y < MiddleY() ? 1 : 0; }
    // The cell under pattern x (rounded toward zero as the division does).
    int CellAt(int patternX) const { return (patternX - left) / cellWidth; }
    // A square of half side handleSize centred on `centre`.
    Rect Square(Point centre) const {
        return {centre.x - handleSize, centre.y - handleSize, centre.x + handleSize,
                centre.y + handleSize};
    }
};

// Cell width and text height below 1 are taken as 1.
BitPatternLayout ComputeBitPatternLayout(const Rect& client, int cellWidth, int textHeight);

}  // namespace kv
