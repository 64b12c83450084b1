#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "core/bitpattern/BitArray.h"
#include "core/bitpattern/BitPatternLayout.h"
#include "core/bitpattern/PatternPainters.h"
#include "core/ports/Canvas.h"
#include "core/ports/ControlWindow.h"
#include "core/shared/ColorRef.h"

// The bit pattern control without its window: the bits, the caret and the
// selection, the editing operations, mouse dragging, auto-scrolling and the
// whole picture. The widget feeds it its events and carries out what it asks
// of the window through IControlWindow and IClipboard.

namespace kv {

namespace bitpattern_colors {
inline constexpr uint32_t kBackground = MakeColorRef(255, 255, 255);
inline constexpr uint32_t kInk = MakeColorRef(0, 0, 0);
inline constexpr uint32_t kMiddleLine = MakeColorRef(224, 224, 224);
inline constexpr uint32_t kLevelLine = MakeColorRef(192, 192, 192);
inline constexpr uint32_t kSelectionBand = MakeColorRef(144, 192, 192);
inline constexpr uint32_t kRubberBand = MakeColorRef(160, 160, 160);
inline constexpr uint32_t kStartSquare = MakeColorRef(224, 0, 0);
inline constexpr uint32_t kMarker = MakeColorRef(0, 224, 0);
inline constexpr uint32_t kDefaultButtonFace = MakeColorRef(240, 240, 240);
}  // namespace bitpattern_colors

enum class BitKey { Zero, One, Left, Right, Home, End, Delete, Insert, Back, X, C, V, Other };

struct KeyModifiers {
    bool ctrl = false;
    bool shift = false;
};

enum class ScrollRequest { LineLeft, LineRight, PageLeft, PageRight, ThumbPosition, ThumbTrack };

// What the context menu offers at the moment it opens.
struct EditCommandState {
    bool cut = false;
    bool copy = false;
    bool paste = false;
    bool del = false;
};

class BitPatternEditor {
public:
    static constexpr int kScrollRightTimer = 1;
    static constexpr int kScrollLeftTimer = 2;
    static constexpr int kAutoScrollPeriodMs = 17;
    static constexpr int kAutoScrollStep = 2;

    BitPatternEditor(IControlWindow& window, IClipboard& clipboard);

    // The sequence; SetPattern and the edits change it.
    const BitArray& Bits() const { return m_bits; }

    // Size of "00" in the dialog's font; lays the control out again.
    void SetTextMetrics(int cellWidth, int textHeight);
    // The client rectangle changed.
    void SetClientRect(const Rect& client);
    const BitPatternLayout& Layout() const { return m_layout; }

    void SetPaintMode(int mode, int repetitions);
    const CPatternPainter& Painter() const { return *m_painter; }
    void SetPattern(std::span<const uint8_t> bits, bool hasFocus);
    void SetReadOnly(bool readOnly);
    bool IsReadOnly() const { return m_readOnly; }
    // The colour a read-only control shows its background in.
    void SetButtonFaceColor(uint32_t color) { m_buttonFace = color; }
    // Draw the grid over all cells, visible or not, and every bit (for
    // measuring what clipping to the view saves; the picture is the same).
    void SetDrawEverything(bool drawEverything) { m_drawEverything = drawEverything; }

    int GetCaretIndex() const;
    void SetCaretIndex(int index);
    void EnsureCaretVisible();
    bool IsCaretShown() const { return m_caretShown; }

    bool HasSelection() const { return m_selectionAnchor != -1; }
    int SelectionAnchor() const { return m_selectionAnchor; }
    int SelectionEnd() const { return m_selectionEnd; }
    int SelectionMin() const;
    int SelectionMax() const;
    bool IsDragging() const { return m_dragging; }
    const Rect& MarkerRect() const { return m_marker; }
    bool HasMarker() const { return m_marker.left != m_marker.right; }
    // The end handle's square; for an empty pattern its level follows y.
    Rect EndHandle(int mouseY) const;
    int ScrollPosition() const { return m_window.GetScrollInfo().position; }

    // Events, in client coordinates.
    void OnMouseDown(Point point);
    void OnMouseMove(Point point);
    void OnMouseUp();
    void OnTimer(int id, int mouseY);
    void OnHScroll(ScrollRequest request, int thumbPosition);
    void OnFocusGained();
    void OnFocusLost();
    // True when the control used the key.
    bool OnKey(BitKey key, KeyModifiers modifiers);
    // Moves the caret under the point and says which commands the menu offers.
    EditCommandState PrepareContextMenu(Point point);

    void Copy();
    void Cut();
    void Paste();
    void Delete();

    // The whole picture in client coordinates.
    void Paint(ICanvas& canvas) const;

    // Helpers the painters share.
    uint32_t BackgroundColor() const;
    int MarkerLevelY() const;
    bool IsSelected(int index) const;
    // The pattern x range [first, last] the view shows, widened by one cell
    // each side; everything when drawing everything.
    std::pair<int, int> VisiblePatternSpan() const;

private:
    void LayOut();
    void RefreshScrollBar();
    void MakeCaretVisible();
    void HideCaretForDrag();
    void DropSelection() { m_selectionAnchor = -1; }
    int RemoveSelection();
    void MoveCaretTo(int target, bool extend);
    void TypeBit(uint8_t bit);
    void Backspace();
    void AppendBits(int count, uint8_t bit);
    void DragUpdate(Point patternPoint);
    void ScrollTo(int position);
    bool ClipboardHoldsBits() const;
    void PaintGrid(ICanvas& canvas) const;
    void PaintRubberBandAndCaption(ICanvas& canvas) const;
    void PaintSquares(ICanvas& canvas) const;
    void DrawCaption(ICanvas& canvas, const std::string& caption) const;

    IControlWindow& m_window;
    IClipboard& m_clipboard;
    BitArray m_bits;
    BitPatternLayout m_layout;
    Rect m_client;
    int m_cellWidth = 16;
    int m_textHeight = 16;
    bool m_dragging = false;
    bool m_caretShown = false;
    Point m_caretPosition;
    int m_selectionAnchor = -1;
    int m_selectionEnd = 0;
    bool m_readOnly = false;
    bool m_drawEverything = false;
    uint32_t m_buttonFace = bitpattern_colors::kDefaultButtonFace;
    std::shared_ptr<CPatternPainter> m_painter;
    int m_timerId = 0;
    Rect m_marker{-1, -1, -1, -1};
};

}  // namespace kv
