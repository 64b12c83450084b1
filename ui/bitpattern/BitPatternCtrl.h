#pragma once

#include <QCursor>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <memory>

#include "core/bitpattern/BitPatternEditor.h"
#include "ui/ports/QtClipboard.h"

class QMenu;
class QScrollBar;

// The bit pattern editor control: a bit sequence as a two-level waveform
// with a digit per bit, edited with mouse and keyboard. All behaviour is the
// core's BitPatternEditor; the widget hands it Qt's events and carries out
// what it asks of the window: caret, cursors, timers, scroll bar, painting.

namespace kv::ui {

class CBitPatternCtrl : public QWidget {
    Q_OBJECT

    // Made before m_bits, which refers into the editor.
    class Window;
    std::unique_ptr<Window> m_window;
    QtClipboard m_clipboard;
    std::unique_ptr<BitPatternEditor> m_editor;

public:
    static constexpr int kControlId = 1000;
    static constexpr const char* kWidgetClassName = "Velmorine Bit Pattern Editor";
    // Command ids of the context menu's items.
    static constexpr int kCommandCut = 0xE123;
    static constexpr int kCommandCopy = 0xE122;
    static constexpr int kCommandPaste = 0xE125;
    static constexpr int kCommandDelete = 32771;

    explicit CBitPatternCtrl(QWidget* parent = nullptr);
    ~CBitPatternCtrl() override;

    // Takes the place of the child of `parent` named "ctl<id>" (keeping its
    // geometry, or its place in a layout) and measures "00" in the parent's
    // font. False when there is no such child.
    bool AttachToDlgItem(int id, QWidget* parent);
    void SetPaintMode(int mode, int repetitions);
    void SetPattern(const uint8_t* bits, int count);
    void SetCaretIndex(int index);
    int GetCaretIndex() const;
    void EnsureCaretVisible();
    void SetReadOnly(bool readOnly);
    bool IsReadOnly() const;

    void Copy();
    void Cut();
    void Paste();
    void Delete();

    BitPatternEditor& Editor() { return *m_editor; }
    const BitPatternEditor& Editor() const { return *m_editor; }
    QScrollBar* HorizontalScrollBar() const { return m_scrollBar; }
    // The area the control draws in: the widget without its scroll bar.
    QRect ClientRect() const;
    // Whether the caret is drawn now (it blinks).
    bool CaretDrawn() const;

    // The sequence, one byte per bit; owners read it and change it through SetPattern.
    const BitArray& m_bits;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void UpdateClientRect();
    void OnScrollAction(int action);
    void OnAutoScrollTick();
    void RunCommand(int command);
    void MeasureFont(const QFont& font);
    bool KeepsFocusThrough(const QFocusEvent& event) const;

    QScrollBar* m_scrollBar;
    QTimer m_autoScroll;
    int m_autoScrollId = 0;
    QTimer m_caretBlink;
    bool m_blinkOn = true;
    int m_lastMouseY = 0;
    bool m_menuOpen = false;
    bool m_focused = false;  // as far as the core is concerned
    bool m_inClientUpdate = false;
    bool m_clientDirty = false;
    QCursor m_addBitsCursor;
    QCursor m_endHandleCursor;
};

}  // namespace kv::ui
