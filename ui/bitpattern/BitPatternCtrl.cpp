#include "ui/bitpattern/BitPatternCtrl.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <array>

#include "ui/bitpattern/BitPatternCursors.h"
#include "ui/canvas/BufferedPaint.h"
#include "ui/canvas/QtCanvas.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

struct KeyName {
    int qtKey;
    BitKey key;
};

// The keys the control knows; '0' and '1' only from the main keyboard.
constexpr std::array kKeyNames{
    KeyName{Qt::Key_0, BitKey::Zero},
    KeyName{Qt::Key_1, BitKey::One},
    KeyName{Qt::Key_Left, BitKey::Left},
    KeyName{Qt::Key_Right, BitKey::Right},
    KeyName{Qt::Key_Home, BitKey::Home},
    KeyName{Qt::Key_End, BitKey::End},
    KeyName{Qt::Key_Delete, BitKey::Delete},
    KeyName{Qt::Key_Insert, BitKey::Insert},
    KeyName{Qt::Key_Backspace, BitKey::Back},
    KeyName{Qt::Key_X, BitKey::X},
    KeyName{Qt::Key_C, BitKey::C},
    KeyName{Qt::Key_V, BitKey::V},
};

BitKey ToBitKey(const QKeyEvent& event) {
    const bool keypad = event.modifiers().testFlag(Qt::KeypadModifier);
    for (const KeyName& name : kKeyNames) {
        if (name.qtKey == event.key()) {
            const bool digit = name.key == BitKey::Zero || name.key == BitKey::One;
            return digit && keypad ? BitKey::Other : name.key;
        }
    }
    return BitKey::Other;
}

KeyModifiers ToModifiers(const QKeyEvent& event) {
    return {event.modifiers().testFlag(Qt::ControlModifier),
            event.modifiers().testFlag(Qt::ShiftModifier)};
}

struct MenuItem {
    const char* text;
    int command;
    bool EditCommandState::*enabled;
};

// Menu 4041, popup "SubMenu".
constexpr std::array kMenuItems{
    MenuItem{"Cu&t\tCtrl+X", CBitPatternCtrl::kCommandCut, &EditCommandState::cut},
    MenuItem{"&Copy\tCtrl+C", CBitPatternCtrl::kCommandCopy, &EditCommandState::copy},
    MenuItem{"&Paste\tCtrl-V", CBitPatternCtrl::kCommandPaste, &EditCommandState::paste},
    MenuItem{"&Delete\tDel", CBitPatternCtrl::kCommandDelete, &EditCommandState::del},
};

// The caret is as wide as a window border.
constexpr int kCaretWidth = 1;

uint32_t ToColorRef(const QColor& color) {
    return MakeColorRef(static_cast<uint8_t>(color.red()), static_cast<uint8_t>(color.green()),
                        static_cast<uint8_t>(color.blue()));
}

}  // namespace

// The control's window as the core sees it.
class CBitPatternCtrl::Window final : public IControlWindow {
public:
    explicit Window(CBitPatternCtrl& control) : m_control(control) {}

    void CreateCaret(int height) override {
        caretExists = true;
        caretHeight = height;
        RestartBlink();
    }
    void DestroyCaret() override {
        caretExists = false;
        m_control.m_caretBlink.stop();
        m_control.update();
    }
    void SetCaretPosition(Point position) override {
        caretPosition = position;
        RestartBlink();
    }
    void ShowCaret() override {
        caretVisible = true;
        RestartBlink();
    }
    void HideCaret() override {
        caretVisible = false;
        m_control.update();
    }
    void SetCursor(CursorShape shape) override {
        const QCursor cursors[] = {QCursor(Qt::ArrowCursor), QCursor(Qt::IBeamCursor),
                                   m_control.m_addBitsCursor, m_control.m_endHandleCursor};
        m_control.setCursor(cursors[static_cast<int>(shape)]);
        cursor = shape;
    }
    // Qt keeps sending a pressed button's moves to the widget it was pressed on.
    void CaptureMouse() override {}
    void ReleaseMouse() override {}
    void StartTimer(int id, int periodMs) override {
        m_control.m_autoScrollId = id;
        m_control.m_autoScroll.start(periodMs);
    }
    void StopTimer(int id) override {
        if (m_control.m_autoScrollId == id) {
            m_control.m_autoScroll.stop();
            m_control.m_autoScrollId = 0;
        }
    }
    void SetScrollInfo(const ScrollInfo& info, bool /*redraw*/) override {
        info.ApplyTo(scroll);
        QScrollBar& bar = *m_control.m_scrollBar;
        // The bar's last position leaves the final page in view.
        const int last = std::max(scroll.minimum, scroll.maximum - std::max(scroll.page - 1, 0));
        const QSignalBlocker blocker(bar);
        bar.setRange(scroll.minimum, last);
        bar.setPageStep(std::max(scroll.page, 1));
        bar.setSingleStep(m_control.m_editor ? m_control.m_editor->Layout().cellWidth : 1);
        if (info.mask & ScrollInfo::kPosition) {
            bar.setValue(info.position);
        }
        const bool shown = scroll.maximum > scroll.minimum;
        if (shown != !bar.isHidden()) {
            bar.setVisible(shown);
            m_control.UpdateClientRect();
        }
        m_control.update();
    }
    ScrollInfo GetScrollInfo() const override {
        ScrollInfo info = scroll;
        info.mask = ScrollInfo::kAll;
        info.position = m_control.m_scrollBar->value();
        return info;
    }
    void SetScrollPosition(int position) override {
        const QSignalBlocker blocker(m_control.m_scrollBar);
        m_control.m_scrollBar->setValue(position);
    }
    void Invalidate() override { m_control.update(); }

    bool caretExists = false;
    bool caretVisible = false;
    int caretHeight = 0;
    Point caretPosition;
    CursorShape cursor = CursorShape::Arrow;
    ScrollInfo scroll;

private:
    // A caret that moves is shown at once and blinks from there.
    void RestartBlink() {
        m_control.m_blinkOn = true;
        if (caretExists) {
            const int flash = QApplication::cursorFlashTime();
            if (flash > 0) {
                m_control.m_caretBlink.start(flash / 2);
            }
        }
        m_control.update();
    }

    CBitPatternCtrl& m_control;
};

CBitPatternCtrl::CBitPatternCtrl(QWidget* parent)
    : QWidget(parent),
      m_window(std::make_unique<Window>(*this)),
      m_editor(std::make_unique<BitPatternEditor>(*m_window, m_clipboard)),
      m_bits(m_editor->Bits()),
      m_scrollBar(new QScrollBar(Qt::Horizontal, this)),
      m_addBitsCursor(ModuleCursor(kAddBitsCursorId)),
      m_endHandleCursor(ModuleCursor(kEndHandleCursorId)) {
    setObjectName(ControlObjectName(kControlId));
    // Everything is drawn off-screen and copied in one block: nothing to erase.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    m_scrollBar->setFocusPolicy(Qt::NoFocus);
    m_scrollBar->hide();
    connect(m_scrollBar, &QScrollBar::actionTriggered, this, &CBitPatternCtrl::OnScrollAction);
    connect(&m_autoScroll, &QTimer::timeout, this, &CBitPatternCtrl::OnAutoScrollTick);
    connect(&m_caretBlink, &QTimer::timeout, this, [this] {
        m_blinkOn = !m_blinkOn;
        update();
    });
    m_editor->SetButtonFaceColor(ToColorRef(palette().color(QPalette::Button)));
    MeasureFont(font());
}

CBitPatternCtrl::~CBitPatternCtrl() {
    m_autoScroll.stop();
    m_caretBlink.stop();
}

void CBitPatternCtrl::MeasureFont(const QFont& font) {
    const QFontMetrics metrics(font);
    const QString cell = QStringLiteral("00");
    m_editor->SetTextMetrics(metrics.horizontalAdvance(cell), metrics.height());
    UpdateClientRect();
}

bool CBitPatternCtrl::AttachToDlgItem(int id, QWidget* parent) {
    QWidget* placeholder = FindControl<QWidget>(parent, id);
    if (placeholder == nullptr || placeholder == this) {
        return false;
    }
    QWidget* owner = placeholder->parentWidget();
    setParent(owner);
    setObjectName(ControlObjectName(id));
    QLayout* layout = owner->layout();
    if (layout != nullptr && layout->indexOf(placeholder) >= 0) {
        delete layout->replaceWidget(placeholder, this);
    } else {
        setGeometry(placeholder->geometry());
    }
    delete placeholder;
    setFont(parent->font());
    MeasureFont(parent->font());
    show();
    return true;
}

void CBitPatternCtrl::SetPaintMode(int mode, int repetitions) {
    m_editor->SetPaintMode(mode, repetitions);
}

void CBitPatternCtrl::SetPattern(const uint8_t* bits, int count) {
    m_editor->SetPattern(std::span<const uint8_t>(bits, bits == nullptr ? 0 : std::max(count, 0)),
                         hasFocus());
}

void CBitPatternCtrl::SetCaretIndex(int index) {
    m_editor->SetCaretIndex(index);
}

int CBitPatternCtrl::GetCaretIndex() const {
    return m_editor->GetCaretIndex();
}

void CBitPatternCtrl::EnsureCaretVisible() {
    m_editor->EnsureCaretVisible();
}

void CBitPatternCtrl::SetReadOnly(bool readOnly) {
    m_editor->SetReadOnly(readOnly);
}

bool CBitPatternCtrl::IsReadOnly() const {
    return m_editor->IsReadOnly();
}

void CBitPatternCtrl::Copy() {
    m_editor->Copy();
}

void CBitPatternCtrl::Cut() {
    m_editor->Cut();
}

void CBitPatternCtrl::Paste() {
    m_editor->Paste();
}

void CBitPatternCtrl::Delete() {
    m_editor->Delete();
}

QRect CBitPatternCtrl::ClientRect() const {
    const int bar = m_scrollBar->isHidden() ? 0 : m_scrollBar->sizeHint().height();
    return QRect(0, 0, width(), std::max(height() - bar, 0));
}

bool CBitPatternCtrl::CaretDrawn() const {
    return m_window->caretExists && m_window->caretVisible && m_blinkOn;
}

QSize CBitPatternCtrl::sizeHint() const {
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(QStringLiteral("00")) * 24, metrics.height() * 7};
}

void CBitPatternCtrl::UpdateClientRect() {
    // Showing or hiding the scroll bar changes the client, which lays out
    // again and may touch the bar: settle it in a loop, not by recursion.
    if (m_inClientUpdate) {
        m_clientDirty = true;
        return;
    }
    m_inClientUpdate = true;
    do {
        m_clientDirty = false;
        const QRect client = ClientRect();
        m_scrollBar->setGeometry(0, client.bottom() + 1, width(), height() - client.height());
        m_editor->SetClientRect({0, 0, client.width(), client.height()});
    } while (m_clientDirty);
    m_inClientUpdate = false;
}

void CBitPatternCtrl::OnScrollAction(int action) {
    using A = QAbstractSlider::SliderAction;
    ScrollRequest request;
    switch (action) {
        case A::SliderSingleStepSub:
            request = ScrollRequest::LineLeft;
            break;
        case A::SliderSingleStepAdd:
            request = ScrollRequest::LineRight;
            break;
        case A::SliderPageStepSub:
            request = ScrollRequest::PageLeft;
            break;
        case A::SliderPageStepAdd:
            request = ScrollRequest::PageRight;
            break;
        case A::SliderMove:
            request = ScrollRequest::ThumbTrack;
            break;
        default:
            request = ScrollRequest::ThumbPosition;
            break;
    }
    m_editor->OnHScroll(request, m_scrollBar->sliderPosition());
    // The bar applies its own idea of the action next; it must land where
    // the control put it.
    m_scrollBar->setSliderPosition(m_scrollBar->value());
}

void CBitPatternCtrl::OnAutoScrollTick() {
    if (m_autoScrollId != 0) {
        m_editor->OnTimer(m_autoScrollId, m_lastMouseY);
    }
}

bool CBitPatternCtrl::event(QEvent* event) {
    // Shortcuts of the dialog must not take the keys the control uses.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (m_editor->IsCaretShown() && ToBitKey(*key) != BitKey::Other) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void CBitPatternCtrl::paintEvent(QPaintEvent* /*event*/) {
    PaintBuffered(*this, ClientRect().size(), [this](QtCanvas& canvas) {
        m_editor->Paint(canvas);
        if (CaretDrawn()) {
            const Point at = m_window->caretPosition;
            QPainter& painter = canvas.Painter();
            painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
            painter.fillRect(QRect(at.x, at.y, kCaretWidth, m_window->caretHeight), Qt::white);
        }
    });
}

void CBitPatternCtrl::resizeEvent(QResizeEvent* /*event*/) {
    UpdateClientRect();
}

void CBitPatternCtrl::mousePressEvent(QMouseEvent* event) {
    m_lastMouseY = event->position().toPoint().y();
    if (event->button() != Qt::LeftButton) {
        return;
    }
    setFocus(Qt::MouseFocusReason);
    const QPoint at = event->position().toPoint();
    m_editor->OnMouseDown({at.x(), at.y()});
}

void CBitPatternCtrl::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    m_lastMouseY = at.y();
    m_editor->OnMouseMove({at.x(), at.y()});
}

void CBitPatternCtrl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_editor->OnMouseUp();
    }
}

void CBitPatternCtrl::keyPressEvent(QKeyEvent* event) {
    if (m_editor->OnKey(ToBitKey(*event), ToModifiers(*event))) {
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool CBitPatternCtrl::KeepsFocusThrough(const QFocusEvent& event) const {
    // A popup menu borrows the focus (on some platforms its window even
    // becomes the active one) without the control losing it.
    return m_menuOpen || event.reason() == Qt::PopupFocusReason;
}

void CBitPatternCtrl::focusInEvent(QFocusEvent* event) {
    // Focus that comes back after a borrowed spell is no new focus.
    if (!m_focused) {
        m_focused = true;
        m_editor->OnFocusGained();
    }
    QWidget::focusInEvent(event);
}

void CBitPatternCtrl::focusOutEvent(QFocusEvent* event) {
    if (!KeepsFocusThrough(*event)) {
        m_focused = false;
        m_editor->OnFocusLost();
    }
    QWidget::focusOutEvent(event);
}

void CBitPatternCtrl::contextMenuEvent(QContextMenuEvent* event) {
    const EditCommandState state = m_editor->PrepareContextMenu({event->x(), event->y()});
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("menu4041"));
    menu.setTitle(QStringLiteral("SubMenu"));
    for (const MenuItem& item : kMenuItems) {
        QAction* action = menu.addAction(QString::fromLatin1(item.text));
        action->setData(item.command);
        action->setEnabled(state.*item.enabled);
    }
    m_menuOpen = true;
    const QAction* chosen = menu.exec(event->globalPos());
    m_menuOpen = false;
    if (chosen != nullptr) {
        RunCommand(chosen->data().toInt());
    }
}

void CBitPatternCtrl::RunCommand(int command) {
    switch (command) {
        case kCommandCut:
            Cut();
            break;
        case kCommandCopy:
            Copy();
            break;
        case kCommandPaste:
            Paste();
            break;
        case kCommandDelete:
            Delete();
            break;
        default:
            break;
    }
}

}  // namespace kv::ui
