#include "core/bitpattern/BitPatternEditor.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>

namespace kv {
namespace {

enum class Need { Any, Held, Released };

bool Satisfies(Need need, bool held) {
    return need == Need::Any || (need == Need::Held) == held;
}

enum class KeyAction {
    TypeZero,
    TypeOne,
    StepLeft,
    StepRight,
    GoHome,
    GoEnd,
    Delete,
    Cut,
    Copy,
    Paste,
    Backspace
};

struct KeyBinding {
    BitKey key;
    Need ctrl;
    Need shift;
    bool changesBits;  // not offered while read-only
    KeyAction action;
};

// Which key with which modifiers does what; the first match wins and a key
// without a match is left to the dialog.
constexpr std::array kKeyBindings{
    KeyBinding{BitKey::Zero, Need::Released, Need::Any, true, KeyAction::TypeZero},
    KeyBinding{BitKey::One, Need::Released, Need::Any, true, KeyAction::TypeOne},
    KeyBinding{BitKey::Left, Need::Released, Need::Any, false, KeyAction::StepLeft},
    KeyBinding{BitKey::Right, Need::Released, Need::Any, false, KeyAction::StepRight},
    KeyBinding{BitKey::Home, Need::Released, Need::Any, false, KeyAction::GoHome},
    KeyBinding{BitKey::End, Need::Released, Need::Any, false, KeyAction::GoEnd},
    KeyBinding{BitKey::Delete, Need::Released, Need::Released, false, KeyAction::Delete},
    KeyBinding{BitKey::Delete, Need::Released, Need::Held, false, KeyAction::Cut},
    KeyBinding{BitKey::X, Need::Held, Need::Released, false, KeyAction::Cut},
    KeyBinding{BitKey::C, Need::Held, Need::Released, false, KeyAction::Copy},
    KeyBinding{BitKey::Insert, Need::Held, Need::Released, false, KeyAction::Copy},
    KeyBinding{BitKey::V, Need::Held, Need::Released, false, KeyAction::Paste},
    KeyBinding{BitKey::Insert, Need::Released, Need::Held, false, KeyAction::Paste},
    KeyBinding{BitKey::Back, Need::Released, Need::Any, true, KeyAction::Backspace},
};

bool IsBitText(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c == '0' || c == '1'; });
}

}  // namespace

BitPatternEditor::BitPatternEditor(IControlWindow& window, IClipboard& clipboard)
    : m_window(window), m_clipboard(clipboard), m_painter(std::make_shared<CNormalPaint>(*this)) {
    m_layout = ComputeBitPatternLayout(m_client, m_cellWidth, m_textHeight);
}

void BitPatternEditor::SetTextMetrics(int cellWidth, int textHeight) {
    m_cellWidth = std::max(cellWidth, 1);
    m_textHeight = std::max(textHeight, 1);
    LayOut();
}

void BitPatternEditor::SetClientRect(const Rect& client) {
    m_client = client;
    LayOut();
}

void BitPatternEditor::LayOut() {
    const int index = GetCaretIndex();
    m_layout = ComputeBitPatternLayout(m_client, m_cellWidth, m_textHeight);
    RefreshScrollBar();
    SetCaretIndex(index);
}

void BitPatternEditor::RefreshScrollBar() {
    ScrollInfo info;
    m_painter->FillScrollInfo(info);
    m_window.SetScrollInfo(info, true);
}

void BitPatternEditor::SetPaintMode(int mode, int repetitions) {
    if (auto painter = MakePatternPainter(*this, mode, repetitions)) {
        m_painter = std::move(painter);
    }
    RefreshScrollBar();
    m_window.Invalidate();
}

void BitPatternEditor::SetPattern(std::span<const uint8_t> bits, bool hasFocus) {
    m_bits.Assign(bits);
    if (hasFocus) {
        SetCaretIndex(0);
        MakeCaretVisible();
    }
    m_window.Invalidate();
}

void BitPatternEditor::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    m_window.Invalidate();
}

int BitPatternEditor::GetCaretIndex() const {
    return (m_caretPosition.x + ScrollPosition() - m_layout.left) / m_layout.cellWidth;
}

void BitPatternEditor::SetCaretIndex(int index) {
    const int clamped = std::clamp(index, 0, m_bits.GetSize());
    m_caretPosition = {m_layout.CellX(clamped) - ScrollPosition(), m_layout.digitRow.top};
    m_window.SetCaretPosition(m_caretPosition);
}

void BitPatternEditor::EnsureCaretVisible() {
    MakeCaretVisible();
}

void BitPatternEditor::MakeCaretVisible() {
    if (!m_caretShown) {
        return;
    }
    const int index = GetCaretIndex();
    const int x = m_layout.CellX(index);
    const int scroll = ScrollPosition();
    if (x < scroll + m_layout.left) {
        m_window.SetScrollPosition(x - m_layout.left);
    } else if (x > scroll + m_layout.right) {
        m_window.SetScrollPosition(x - m_layout.right);
    }
    SetCaretIndex(index);
}

int BitPatternEditor::SelectionMin() const {
    return std::min(m_selectionAnchor, m_selectionEnd);
}

int BitPatternEditor::SelectionMax() const {
    return std::max(m_selectionAnchor, m_selectionEnd);
}

bool BitPatternEditor::IsSelected(int index) const {
    return HasSelection() && index >= SelectionMin() && index < SelectionMax();
}

int BitPatternEditor::RemoveSelection() {
    const int count = m_bits.GetSize();
    const int from = std::clamp(SelectionMin(), 0, count);
    const int to = std::clamp(SelectionMax(), 0, count);
    m_bits.RemoveAt(from, to - from);
    return to - from;
}

Rect BitPatternEditor::EndHandle(int mouseY) const {
    if (m_bits.IsEmpty()) {
        return m_layout.Square({m_layout.left, m_layout.LevelY(m_layout.BitAt(mouseY))});
    }
    return m_layout.Square({m_layout.CellX(m_bits.GetSize()), m_layout.LevelY(m_bits.Last())});
}

int BitPatternEditor::MarkerLevelY() const {
    const int centreY = (m_marker.top + m_marker.bottom) / 2;
    return m_layout.LevelY(m_layout.BitAt(centreY));
}

uint32_t BitPatternEditor::BackgroundColor() const {
    return m_readOnly ? m_buttonFace : bitpattern_colors::kBackground;
}

void BitPatternEditor::AppendBits(int count, uint8_t bit) {
    for (int i = 0; i < count; ++i) {
        m_bits.Add(bit);
    }
}

void BitPatternEditor::HideCaretForDrag() {
    m_caretShown = false;
    m_window.HideCaret();
}

void BitPatternEditor::OnMouseDown(Point point) {
    const Point pattern{point.x + ScrollPosition(), point.y};
    const int cell = m_layout.CellAt(pattern.x);
    const int count = m_bits.GetSize();
    if (!m_readOnly && !m_layout.digitRow.Contains(point)) {
        if (EndHandle(point.y).Contains(pattern)) {
            DropSelection();
            m_dragging = true;
            m_window.CaptureMouse();
            HideCaretForDrag();
        } else if (HasMarker()) {
            AppendBits(cell - count, m_layout.BitAt(point.y));
            HideCaretForDrag();
            m_window.Invalidate();
        }
        return;
    }
    const int index = std::clamp(cell, 0, count);
    m_selectionAnchor = index;
    m_selectionEnd = index;
    m_dragging = true;
    m_window.CaptureMouse();
    SetCaretIndex(index);
    m_caretShown = true;
    m_window.ShowCaret();
    m_window.Invalidate();
}

void BitPatternEditor::DragUpdate(Point pattern) {
    const int cell = m_layout.CellAt(pattern.x);
    const int count = m_bits.GetSize();
    const uint8_t bit = m_layout.BitAt(pattern.y);
    if (m_caretShown) {
        m_selectionEnd = std::clamp(cell, 0, count);
        SetCaretIndex(m_selectionEnd);
    } else if (cell > count) {
        // While auto-scrolling the pattern grows a bit per tick, so it
        // keeps pace with the scrolling.
        AppendBits(m_timerId != 0 ? 1 : cell - count, bit);
    } else if (count > 0 && cell < count) {
        m_bits.Truncate(std::max(cell, 0));
    }
    m_marker = m_layout.Square({pattern.x, m_layout.LevelY(bit)});
}

void BitPatternEditor::OnMouseMove(Point point) {
    const Point pattern{point.x + ScrollPosition(), point.y};
    const int s = m_layout.handleSize;
    if (m_dragging) {
        if (point.x > m_client.left + s && point.x < m_client.right - s) {
            if (m_timerId != 0) {
                m_window.StopTimer(m_timerId);
                m_timerId = 0;
            }
            DragUpdate(pattern);
        } else if (m_timerId == 0) {
            m_timerId = point.x <= m_client.left + s ? kScrollLeftTimer : kScrollRightTimer;
            m_window.StartTimer(m_timerId, kAutoScrollPeriodMs);
        }
        m_window.Invalidate();
        return;
    }
    const int cell = m_layout.CellAt(pattern.x);
    const bool nearLevel =
        std::abs(point.y - m_layout.highY) <= s || std::abs(point.y - m_layout.lowY) <= s;
    if (!m_readOnly && EndHandle(point.y).Contains(pattern)) {
        m_marker = EndHandle(point.y);
        m_window.SetCursor(CursorShape::EndHandle);
    } else if (!m_readOnly && nearLevel && cell >= m_bits.GetSize()) {
        m_marker =
            m_layout.Square({m_layout.CellX(cell), m_layout.LevelY(m_layout.BitAt(point.y))});
        m_window.SetCursor(CursorShape::AddBits);
    } else {
        m_marker = {-1, -1, -1, -1};
        m_window.SetCursor(m_layout.digitRow.Contains(point) ? CursorShape::IBeam
                                                             : CursorShape::Arrow);
    }
    m_window.Invalidate();
}

void BitPatternEditor::OnMouseUp() {
    if (m_dragging) {
        m_window.ReleaseMouse();
    }
    m_dragging = false;
    if (m_timerId != 0) {
        m_window.StopTimer(m_timerId);
        m_timerId = 0;
    }
    m_window.Invalidate();
}

void BitPatternEditor::OnTimer(int id, int mouseY) {
    const int s = m_layout.handleSize;
    const bool right = id == kScrollRightTimer;
    ScrollTo(ScrollPosition() + (right ? kAutoScrollStep : -kAutoScrollStep));
    const int x = right ? m_client.right - s + 1 : m_client.left + s - 1;
    DragUpdate({x + ScrollPosition(), mouseY});
    m_window.Invalidate();
}

void BitPatternEditor::ScrollTo(int position) {
    const int index = GetCaretIndex();
    const ScrollInfo info = m_window.GetScrollInfo();
    m_window.SetScrollPosition(std::clamp(position, 0, std::max(info.maximum, 0)));
    m_window.Invalidate();
    SetCaretIndex(index);
}

void BitPatternEditor::OnHScroll(ScrollRequest request, int thumbPosition) {
    const ScrollInfo info = m_window.GetScrollInfo();
    const int w = m_layout.cellWidth;
    const int targets[] = {info.position - w,         info.position + w, info.position - info.page,
                           info.position + info.page, thumbPosition,     thumbPosition};
    ScrollTo(targets[static_cast<int>(request)]);
}

void BitPatternEditor::OnFocusGained() {
    m_window.CreateCaret(m_layout.textHeight);
    m_caretPosition = {m_layout.left - ScrollPosition(), m_layout.digitRow.top};
    m_window.SetCaretPosition(m_caretPosition);
    m_window.ShowCaret();
    m_caretShown = true;
}

void BitPatternEditor::OnFocusLost() {
    DropSelection();
    m_window.HideCaret();
    m_window.DestroyCaret();
    m_window.Invalidate();
}

void BitPatternEditor::MoveCaretTo(int target, bool extend) {
    if (!extend) {
        DropSelection();
    } else if (!HasSelection()) {
        m_selectionAnchor = GetCaretIndex();
    }
    m_selectionEnd = std::clamp(target, 0, m_bits.GetSize());
    SetCaretIndex(m_selectionEnd);
    MakeCaretVisible();
    m_window.Invalidate();
}

void BitPatternEditor::TypeBit(uint8_t bit) {
    const int index = GetCaretIndex();
    const int removed = HasSelection() ? RemoveSelection() : 0;
    const int at = std::clamp(index - removed, 0, m_bits.GetSize());
    if (at >= m_bits.GetSize()) {
        m_bits.Add(bit);
    } else {
        m_bits.InsertAt(at, bit);
    }
    SetCaretIndex(at + 1);
    MakeCaretVisible();
    DropSelection();
    m_window.Invalidate();
}

void BitPatternEditor::Backspace() {
    const int index = std::min(GetCaretIndex(), m_bits.GetSize());
    if (HasSelection()) {
        SetCaretIndex(index - RemoveSelection());
    } else if (index >= 1) {
        m_bits.RemoveAt(index - 1);
        SetCaretIndex(index - 1);
    }
    DropSelection();
    MakeCaretVisible();
    m_window.Invalidate();
}

bool BitPatternEditor::OnKey(BitKey key, KeyModifiers modifiers) {
    if (!m_caretShown) {
        return false;
    }
    const auto binding = std::find_if(kKeyBindings.begin(), kKeyBindings.end(), [&](const auto& b) {
        return b.key == key && Satisfies(b.ctrl, modifiers.ctrl) &&
               Satisfies(b.shift, modifiers.shift) && !(b.changesBits && m_readOnly);
    });
    if (binding == kKeyBindings.end()) {
        return false;
    }
    const int index = GetCaretIndex();
    const std::function<void()> actions[] = {
        [&] { TypeBit(0); },
        [&] { TypeBit(1); },
        [&] { MoveCaretTo(index - 1, modifiers.shift); },
        [&] { MoveCaretTo(index + 1, modifiers.shift); },
        [&] { MoveCaretTo(0, modifiers.shift); },
        [&] { MoveCaretTo(m_bits.GetSize(), modifiers.shift); },
        [&] { Delete(); },
        [&] { Cut(); },
        [&] { Copy(); },
        [&] { Paste(); },
        [&] { Backspace(); },
    };
    actions[static_cast<int>(binding->action)]();
    return true;
}

void BitPatternEditor::Copy() {
    if (!HasSelection()) {
        return;
    }
    const int count = m_bits.GetSize();
    const int from = std::clamp(SelectionMin(), 0, count);
    const int to = std::clamp(SelectionMax(), 0, count);
    std::string text;
    text.reserve(static_cast<size_t>(to - from));
    for (int i = from; i < to; ++i) {
        text.push_back(m_bits[i] != 0 ? '1' : '0');
    }
    m_clipboard.SetText(text);
}

void BitPatternEditor::Cut() {
    if (!HasSelection() || m_readOnly) {
        return;
    }
    Copy();
    const int index = GetCaretIndex();
    SetCaretIndex(index - RemoveSelection());
    DropSelection();
    MakeCaretVisible();
    m_window.Invalidate();
}

void BitPatternEditor::Delete() {
    if (m_readOnly) {
        return;
    }
    const int index = GetCaretIndex();
    if (HasSelection()) {
        SetCaretIndex(index - RemoveSelection());
    } else if (index >= 0 && index < m_bits.GetSize()) {
        m_bits.RemoveAt(index);
    }
    DropSelection();
    MakeCaretVisible();
    m_window.Invalidate();
}

void BitPatternEditor::Paste() {
    if (m_readOnly) {
        return;
    }
    // The bits go where the caret was before the selection was taken out,
    // even though the caret moves back by the removed bits: that is how the
    // control has always pasted.
    const int index = std::max(GetCaretIndex(), 0);
    if (HasSelection()) {
        SetCaretIndex(index - RemoveSelection());
    }
    // No text at all is pasted as nothing.
    const std::string text = m_clipboard.GetText().value_or(std::string());
    const int length = static_cast<int>(text.size());
    if (IsBitText(text)) {
        if (index >= m_bits.GetSize()) {
            for (const char c : text) {
                m_bits.Add(c == '1' ? 1 : 0);
            }
        } else {
            for (int k = 0; k < length; ++k) {
                m_bits.InsertAt(index + k, text[static_cast<size_t>(k)] == '1' ? 1 : 0);
            }
        }
    }
    DropSelection();
    SetCaretIndex(index + length);
    MakeCaretVisible();
    m_window.Invalidate();
}

bool BitPatternEditor::ClipboardHoldsBits() const {
    const auto text = m_clipboard.GetText();
    return text.has_value() && !text->empty() && IsBitText(*text);
}

EditCommandState BitPatternEditor::PrepareContextMenu(Point point) {
    const int index = std::clamp(m_layout.CellAt(point.x + ScrollPosition()), 0, m_bits.GetSize());
    SetCaretIndex(index);
    if (HasSelection() && !IsSelected(index)) {
        DropSelection();
    }
    m_window.Invalidate();
    return {HasSelection() && !m_readOnly, HasSelection(), !m_readOnly && ClipboardHoldsBits(),
            !m_readOnly};
}

}  // namespace kv
