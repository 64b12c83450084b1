#include "core/bitpattern/PatternPainters.h"

#include <algorithm>
#include <limits>

#include "core/bitpattern/BitPatternEditor.h"

namespace kv {
namespace {

struct PassStyle {
    int offset = 0;
    int extraPixel = 0;  // horizontal segments end this much further right
    bool digits = true;
};

// One pass of the waveform shifted right by `style.offset`, continuing from
// the current position with a line to the pass's first level. Bits whose
// cells lie off the view are not drawn, but the current position ends where
// the whole pass would have left it. Returns the right edge of the pass's
// last cell.
int DrawPass(ICanvas& canvas, const BitPatternEditor& control, const PassStyle& style) {
    const BitPatternLayout& l = control.Layout();
    const BitArray& bits = control.Bits();
    const int count = bits.GetSize();
    const int w = l.cellWidth;
    const int o = style.offset;
    const auto [spanLeft, spanRight] = control.VisiblePatternSpan();
    const int first = std::max(0, (spanLeft - o - l.left) / w);
    const int last = std::min(count - 1, (spanRight - o - l.left) / w);

    canvas.SelectPen(bitpattern_colors::kInk, 2);
    canvas.LineTo({l.left + o, l.LevelY(bits[0])});
    if (first > 0 && first <= last) {
        canvas.MoveTo({l.CellX(first) + o + style.extraPixel, l.LevelY(bits[first - 1])});
    }
    for (int i = first; i <= last; ++i) {
        const int level = l.LevelY(bits[i]);
        if (i > 0 && bits[i] != bits[i - 1]) {
            canvas.LineTo({l.CellX(i) + o, level});
        }
        canvas.LineTo({l.CellX(i + 1) + o + style.extraPixel, level});
    }
    const Point passEnd{l.CellX(count) + o + style.extraPixel, l.LevelY(bits.Last())};
    if (canvas.CurrentPosition() != passEnd) {
        canvas.MoveTo(passEnd);
    }
    if (style.digits) {
        const uint32_t background = control.BackgroundColor();
        for (int i = first; i <= last; ++i) {
            const bool selected = control.IsSelected(i);
            const Rect cell{l.CellX(i) + o, l.digitRow.top, l.CellX(i + 1) + o, l.digitRow.bottom};
            canvas.FillRect(cell, selected ? bitpattern_colors::kInk : background);
            canvas.SetTextColor(selected ? bitpattern_colors::kBackground
                                         : bitpattern_colors::kInk);
            canvas.DrawTextCentered(cell, bits[i] != 0 ? "1" : "0");
        }
    }
    return l.CellX(count) + o;
}

// Where every waveform starts: on the level opposite to the first bit, so
// the first bit begins with an edge.
void MoveToStart(ICanvas& canvas, const BitPatternEditor& control) {
    const BitPatternLayout& l = control.Layout();
    canvas.MoveTo({l.left, l.LevelY(control.Bits()[0] != 0 ? 0 : 1)});
}

// Passes one after another, each starting where the previous one's last
// cell begins plus the pattern's left margin, until `maxPasses` are drawn or
// a pass ends beyond the right edge.
void DrawPasses(ICanvas& canvas, const BitPatternEditor& control, int maxPasses, int extraPixel) {
    const BitPatternLayout& l = control.Layout();
    PassStyle style{0, extraPixel, true};
    for (int pass = 0; pass < maxPasses; ++pass) {
        const int end = DrawPass(canvas, control, style);
        const int next = end - l.cellWidth;
        if (end > l.right || next <= style.offset) {
            break;
        }
        style.offset = next;
    }
}

void MoveToMarkerLevel(ICanvas& canvas, const BitPatternEditor& control) {
    canvas.MoveTo({control.Layout().left, control.MarkerLevelY()});
}

void FillFixedScrollInfo(ScrollInfo& info) {
    info.mask = ScrollInfo::kRange | ScrollInfo::kPage;
    info.minimum = 0;
    info.maximum = 0;
    info.page = 0;
}

}  // namespace

void CPatternPainter::Paint(ICanvas& /*canvas*/) const {}

void CPatternPainter::FillScrollInfo(ScrollInfo& /*info*/) const {}

bool CPatternPainter::ShowsSequenceLength() const {
    return true;
}

void CNormalPaint::Paint(ICanvas& canvas) const {
    if (m_control.Bits().IsEmpty()) {
        MoveToMarkerLevel(canvas, m_control);
        return;
    }
    MoveToStart(canvas, m_control);
    DrawPass(canvas, m_control, {});
}

void CNormalPaint::FillScrollInfo(ScrollInfo& info) const {
    const BitPatternLayout& l = m_control.Layout();
    info.mask = ScrollInfo::kRange | ScrollInfo::kPage;
    info.minimum = 0;
    info.maximum = l.cellWidth * kGridCells;
    info.page = l.right - l.left;
}

bool CNormalPaint::ShowsSequenceLength() const {
    return true;
}

void CCyclePaint::Paint(ICanvas& canvas) const {
    if (m_control.Bits().IsEmpty()) {
        MoveToMarkerLevel(canvas, m_control);
        return;
    }
    MoveToStart(canvas, m_control);
    DrawPasses(canvas, m_control, std::numeric_limits<int>::max(), 1);
}

void CCyclePaint::FillScrollInfo(ScrollInfo& info) const {
    FillFixedScrollInfo(info);
}

bool CCyclePaint::ShowsSequenceLength() const {
    return false;
}

void CContinuousPaint::Paint(ICanvas& canvas) const {
    const BitArray& bits = m_control.Bits();
    if (!bits.IsEmpty()) {
        const BitPatternLayout& l = m_control.Layout();
        MoveToStart(canvas, m_control);
        DrawPass(canvas, m_control, {0, 0, false});
        canvas.LineTo({l.right, l.LevelY(bits.Last())});
    }
    MoveToMarkerLevel(canvas, m_control);
}

void CRepetitionPaint::Paint(ICanvas& canvas) const {
    const BitArray& bits = m_control.Bits();
    if (bits.IsEmpty()) {
        MoveToMarkerLevel(canvas, m_control);
        return;
    }
    const BitPatternLayout& l = m_control.Layout();
    MoveToStart(canvas, m_control);
    if (m_repetitions > 0) {
        DrawPasses(canvas, m_control, m_repetitions, 0);
    } else {
        canvas.SelectPen(bitpattern_colors::kInk, 2);
    }
    canvas.LineTo({l.right, l.LevelY(bits.Last())});
}

std::shared_ptr<CPatternPainter> MakePatternPainter(const BitPatternEditor& control, int mode,
                                                    int repetitions) {
    switch (mode) {
        case 0:
            return std::make_shared<CNormalPaint>(control);
        case 1:
            return std::make_shared<CCyclePaint>(control);
        case 2:
            return std::make_shared<CContinuousPaint>(control);
        case 3:
            return std::make_shared<CRepetitionPaint>(control, repetitions);
        default:
            return nullptr;
    }
}

}  // namespace kv
