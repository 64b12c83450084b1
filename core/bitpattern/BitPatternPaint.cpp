// The picture of the bit pattern control: background, grid, the painter's
// waveform, the rubber band with its caption, and the squares on top.

#include <algorithm>
#include <string>

#include "core/bitpattern/BitPatternEditor.h"

namespace kv {
namespace {

const char* StateWord(bool high) {
    return high ? "High-state" : "Low-state";
}

}  // namespace

std::pair<int, int> BitPatternEditor::VisiblePatternSpan() const {
    if (m_drawEverything) {
        return {m_layout.CellX(-1), m_layout.CellX(std::max(kGridCells, m_bits.GetSize()) + 1)};
    }
    const int scroll = ScrollPosition();
    return {scroll - m_layout.cellWidth, scroll + m_client.Width() + m_layout.cellWidth};
}

void BitPatternEditor::Paint(ICanvas& canvas) const {
    namespace color = bitpattern_colors;
    const BitPatternLayout& l = m_layout;
    canvas.FillRect(m_client, BackgroundColor());
    canvas.SetTransparentBackground(true);
    if (m_painter->ShowsSequenceLength()) {
        canvas.SetTextColor(color::kInk);
        canvas.TextOut({l.left, l.digitRow.bottom + l.textHeight / 4},
                       "Sequence length: " + std::to_string(m_bits.GetSize()));
    }
    if (!m_readOnly) {
        canvas.SelectDefaultPen();
        canvas.SelectDefaultBrush();
        canvas.Rectangle(
            {l.digitRow.left - 1, l.digitRow.top - 1, l.digitRow.right + 1, l.digitRow.bottom + 2});
    }
    canvas.SetWindowOrigin({m_window.GetScrollInfo().position, 0});
    PaintGrid(canvas);
    m_painter->Paint(canvas);
    PaintRubberBandAndCaption(canvas);
    PaintSquares(canvas);
    canvas.SetWindowOrigin({0, 0});
}

void BitPatternEditor::PaintGrid(ICanvas& canvas) const {
    namespace color = bitpattern_colors;
    const BitPatternLayout& l = m_layout;
    const int w = l.cellWidth;
    if (HasSelection()) {
        canvas.FillRect({l.left + w * SelectionMin(), l.highY, l.left + w * SelectionMax(), l.lowY},
                        color::kSelectionBand);
    }
    const int gridRight = l.left + w * kGridCells;
    canvas.SelectPen(color::kMiddleLine, 0);
    canvas.MoveTo({l.left, l.MiddleY()});
    canvas.LineTo({gridRight, l.MiddleY()});
    canvas.SelectPen(color::kLevelLine, 0);
    canvas.MoveTo({l.left, l.highY});
    canvas.LineTo({gridRight, l.highY});
    canvas.MoveTo({l.left, l.lowY});
    canvas.LineTo({gridRight, l.lowY});
    // Separators off the view would not show: only the visible ones are drawn.
    const auto [spanLeft, spanRight] = VisiblePatternSpan();
    const int first = std::max(0, (spanLeft - l.left) / w);
    const int last = std::min(kGridCells - 1, (spanRight - l.left) / w);
    for (int k = first; k <= last; ++k) {
        canvas.MoveTo({l.CellX(k), l.highY});
        canvas.LineTo({l.CellX(k), l.lowY});
    }
}

void BitPatternEditor::PaintRubberBandAndCaption(ICanvas& canvas) const {
    const BitPatternLayout& l = m_layout;
    const int count = m_bits.GetSize();
    if (HasMarker()) {
        const int level = MarkerLevelY();
        const bool high = level == l.highY;
        canvas.SelectPen(bitpattern_colors::kRubberBand, 2);
        if (count > 0 && l.LevelY(m_bits.Last()) != level) {
            canvas.LineTo({l.CellX(count), level});
        }
        const int centreX = (m_marker.left + m_marker.right) / 2;
        canvas.LineTo({centreX, level});
        if (m_dragging) {
            const uint8_t bit = high ? 1 : 0;
            int inSeries = 0;
            while (inSeries < count && m_bits[count - 1 - inSeries] == bit) {
                ++inSeries;
            }
            DrawCaption(canvas, "bit " + std::to_string(count + 1) + ", " +
                                    std::to_string(inSeries) + " " + StateWord(high) +
                                    " in series");
        } else {
            const int cell = l.CellAt(centreX);
            DrawCaption(canvas, "bit " + std::to_string(cell) + ", " +
                                    std::to_string(cell - count) + " " + StateWord(high) +
                                    " to add");
        }
    } else if (m_caretShown) {
        DrawCaption(canvas, "bit " + std::to_string(GetCaretIndex()));
    }
}

void BitPatternEditor::DrawCaption(ICanvas& canvas, const std::string& caption) const {
    // Right-aligned to the pattern's right end on screen, so the caption
    // stays put while the pattern scrolls under it.
    const Extent extent = canvas.TextExtent(caption);
    canvas.SetTextColor(bitpattern_colors::kInk);
    canvas.TextOut({m_layout.right + canvas.WindowOrigin().x - extent.width,
                    m_layout.digitRow.bottom + m_layout.textHeight / 4},
                   caption);
}

void BitPatternEditor::PaintSquares(ICanvas& canvas) const {
    const BitPatternLayout& l = m_layout;
    if (m_bits.IsEmpty() && !m_dragging && !m_readOnly) {
        canvas.FillRect(l.Square({l.left, l.highY}), bitpattern_colors::kStartSquare);
        canvas.FillRect(l.Square({l.left, l.lowY}), bitpattern_colors::kStartSquare);
    }
    if (HasMarker()) {
        canvas.FillRect(m_marker, bitpattern_colors::kMarker);
    }
}

}  // namespace kv
