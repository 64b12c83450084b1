#include "tests/soak/UserActions.h"

#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QPointer>
#include <QTabBar>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>
#include <array>
#include <chrono>
#include <cstdio>

namespace kv::soak {
namespace {

// The keys a user presses alone and with the modifiers that make shortcuts of them.
constexpr QKeyCombination kKeys[] = {
    Qt::Key_Tab,      Qt::Key_Return, Qt::Key_Escape,    Qt::Key_Left,   Qt::Key_Right,
    Qt::Key_Up,       Qt::Key_Down,   Qt::Key_Home,      Qt::Key_End,    Qt::Key_PageUp,
    Qt::Key_PageDown, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Insert, Qt::Key_Space,
    Qt::Key_F1,       Qt::Key_F2,     Qt::Key_F4,        Qt::Key_Menu,   Qt::Key_Plus,
    Qt::Key_Minus,    Qt::Key_Period, Qt::Key_Comma,     Qt::Key_0,      Qt::Key_1,
    Qt::Key_2,        Qt::Key_5,      Qt::Key_9};
struct Chord {
    Qt::KeyboardModifier modifier;
    Qt::Key key;
};
constexpr Chord kChords[] = {
    {Qt::ShiftModifier, Qt::Key_Backtab},  {Qt::KeypadModifier, Qt::Key_Enter},
    {Qt::AltModifier, Qt::Key_Down},       {Qt::ControlModifier, Qt::Key_C},
    {Qt::ControlModifier, Qt::Key_V},      {Qt::ControlModifier, Qt::Key_X},
    {Qt::ControlModifier, Qt::Key_Z},      {Qt::ControlModifier, Qt::Key_Y},
    {Qt::ControlModifier, Qt::Key_A},      {Qt::ShiftModifier, Qt::Key_Insert},
    {Qt::ControlModifier, Qt::Key_Insert}, {Qt::ShiftModifier, Qt::Key_Delete},
    {Qt::ShiftModifier, Qt::Key_Left},     {Qt::ShiftModifier, Qt::Key_Right},
    {Qt::ShiftModifier, Qt::Key_Home},     {Qt::ShiftModifier, Qt::Key_End}};

// The text a key types: a printable key's character (upper case with Shift), the control
// character of the keys that have one, nothing with Control or Alt held.
QString TextOf(QKeyCombination combination) {
    const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
    const int key = combination.key();
    if (modifiers & (Qt::ControlModifier | Qt::AltModifier)) {
        return {};
    }
    switch (key) {
        case Qt::Key_Tab:
            return QStringLiteral("\t");
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return QStringLiteral("\r");
        case Qt::Key_Escape:
            return QStringLiteral("\x1b");
        case Qt::Key_Backspace:
            return QStringLiteral("\b");
        case Qt::Key_Delete:
            return QStringLiteral("\x7f");
    }
    if (key < Qt::Key_Space || key > Qt::Key_AsciiTilde) {
        return {};
    }
    const QChar character(key);  // Qt's key codes are the characters themselves here
    return modifiers & Qt::ShiftModifier ? character : character.toLower();
}

// The key a character is typed with; text the keyboard has no key for arrives as text alone.
int KeyOf(QChar character) {
    const char16_t code = character.toUpper().unicode();
    return code >= Qt::Key_Space && code <= Qt::Key_AsciiTilde ? int{code} : int{Qt::Key_unknown};
}

template <class Widget>
QList<Widget*> Usable(QWidget* window) {
    QList<Widget*> usable;
    for (Widget* widget : window->findChildren<Widget*>()) {
        if (!widget->isWindow() && widget->isVisibleTo(window) && widget->isEnabled()) {
            usable << widget;
        }
    }
    return usable;
}

template <class Widget>
Widget* AnyOf(SoakRandom& random, const QList<Widget*>& widgets) {
    return widgets.isEmpty() ? nullptr : random.Pick(widgets);
}

}  // namespace

void UserActions::ActOn(QWidget* window) {
    if (window == nullptr || window->windowHandle() == nullptr) {
        Trace("nothing: no window takes input", window);
        return;
    }
    m_time += 1000;
    struct Choice {
        int weight;
        const char* name;
        void (UserActions::*action)(QWidget*);
    };
    static const Choice kChoices[] = {{28, "key", &UserActions::RandomKey},
                                      {8, "type", &UserActions::TypeText},
                                      {6, "paste", &UserActions::Paste},
                                      {16, "click", &UserActions::ClickSomewhere},
                                      {5, "double-click", &UserActions::DoubleClickSomewhere},
                                      {7, "drag", &UserActions::Drag},
                                      {5, "hover", &UserActions::Hover},
                                      {5, "wheel", &UserActions::Wheel},
                                      {5, "combo", &UserActions::ChangeCombo},
                                      {3, "tab", &UserActions::ChangeTab},
                                      {7, "cell", &UserActions::EditCell},
                                      {5, "button", &UserActions::ClickButton}};
    int roll = m_random.Below(100);
    for (const Choice& choice : kChoices) {
        if (roll < choice.weight) {
            Trace(choice.name, window);
            (this->*choice.action)(window);
            return;
        }
        roll -= choice.weight;
    }
}

void UserActions::Trace(const char* what, QWidget* window) {
    if (!m_trace) {
        return;
    }
    static const auto start = std::chrono::steady_clock::now();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - start);
    std::fprintf(stderr, "soak: %lld ms: %s on %s \"%s\" %dx%d\n",
                 static_cast<long long>(ms.count()), what,
                 window != nullptr ? window->metaObject()->className() : "-",
                 window != nullptr ? qPrintable(window->windowTitle()) : "",
                 window != nullptr ? window->width() : 0, window != nullptr ? window->height() : 0);
}

QString UserActions::UserText() {
    static constexpr std::array kTexts = {
        "",      "abc",    "1e999",      "nan",    "-0",           "1,5", "0",
        "1",     "10",     "0101",       "-1",     "1e-30",        "inf", "-inf",
        " 12 ",  "3.3",    "%s%n%d",     "ÄÖü€",   "1.5n",         "47p", "0x10",
        "1e308", "-1e308", "2147483648", "5e-324", "1 0 1\n0;1,1", "\t",  "99999999999999999999"};
    const int pick = m_random.Below(static_cast<int>(kTexts.size()) + 2);
    if (pick == kTexts.size()) {
        return QString(40000, u'1');
    }
    if (pick == kTexts.size() + 1) {
        return QString(300, u'9');
    }
    return QString::fromUtf8(kTexts[static_cast<std::size_t>(pick)]);
}

void UserActions::PressKey(QWidget* window, QKeyCombination key) {
    Key(window, key.key(), key.keyboardModifiers(), TextOf(key));
}

void UserActions::Key(QWidget* window, int key, Qt::KeyboardModifiers modifiers,
                      const QString& text) {
    QPointer<QWindow> handle = window != nullptr ? window->windowHandle() : nullptr;
    if (handle == nullptr) {
        return;
    }
    qt_handleKeyEvent(handle, QEvent::KeyPress, key, modifiers, text);
    if (handle != nullptr) {  // the key may have closed the window
        qt_handleKeyEvent(handle, QEvent::KeyRelease, key, modifiers, text);
    }
}

void UserActions::Click(QWidget* window, QPointF at, Qt::MouseButton button,
                        Qt::KeyboardModifiers modifiers) {
    QPointer<QWidget> guard = window;
    Mouse(window, at, QEvent::MouseButtonPress, button, modifiers);
    if (guard != nullptr) {
        Mouse(guard, at, QEvent::MouseButtonRelease, button, modifiers);
    } else {
        m_buttons &= ~button;  // the window went with the press: the button is up again
    }
}

void UserActions::RandomKey(QWidget* window) {
    PressKey(window,
             m_random.Chance(0.2) ? Qt::Key(Qt::Key_A + m_random.Below(26)) : m_random.Pick(kKeys));
}

void UserActions::TypeText(QWidget* window) {
    const QString text = UserText();
    if (text.size() > 16) {
        QGuiApplication::clipboard()->setText(text);
        PressKey(window, Qt::CTRL | Qt::Key_V);
        return;
    }
    QPointer<QWidget> guard = window;
    for (const QChar character : text) {
        const bool upper = character.isLetter() && character.isUpper();
        Key(guard, KeyOf(character), upper ? Qt::ShiftModifier : Qt::NoModifier, character);
    }
}

void UserActions::Paste(QWidget* window) {
    QGuiApplication::clipboard()->setText(UserText());
    PressKey(window, m_random.Chance(0.2) ? Qt::SHIFT | Qt::Key_Insert : Qt::CTRL | Qt::Key_V);
}

void UserActions::ClickSomewhere(QWidget* window) {
    const int roll = m_random.Below(20);
    const Qt::MouseButton button = roll < 15   ? Qt::LeftButton
                                   : roll < 19 ? Qt::RightButton
                                               : Qt::MiddleButton;
    Click(window, AnyPoint(window), button, AnyModifiers());
}

void UserActions::DoubleClickSomewhere(QWidget* window) {
    DoubleClick(window, AnyPoint(window));
}

void UserActions::DoubleClick(QWidget* window, QPointF at) {
    QPointer<QWidget> guard = window;
    Click(window, at);
    m_time += 50;  // well inside any double-click interval
    if (guard != nullptr) {
        Click(guard, at);
    }
}

void UserActions::Drag(QWidget* window) {
    QPointer<QWidget> guard = window;
    const Qt::MouseButton button = m_random.Chance(0.85)  ? Qt::LeftButton
                                   : m_random.Chance(0.5) ? Qt::MiddleButton
                                                          : Qt::RightButton;
    const Qt::KeyboardModifiers modifiers = AnyModifiers();
    const QPointF from = AnyPoint(window);
    // Drags end anywhere, beyond the window's edges too, where controls scroll.
    const QPointF to(m_random.Real(-60.0, window->width() + 60.0),
                     m_random.Real(-60.0, window->height() + 60.0));
    Mouse(window, from, QEvent::MouseButtonPress, button, modifiers);
    const int steps = m_random.Between(1, 6);
    for (int step = 1; step <= steps && guard != nullptr; ++step) {
        m_time += 30;
        Mouse(guard, from + (to - from) * step / steps, QEvent::MouseMove, Qt::NoButton, modifiers);
    }
    m_time += 30;
    if (guard != nullptr) {
        Mouse(guard, to, QEvent::MouseButtonRelease, button, modifiers);
    } else {
        m_buttons &= ~button;
    }
}

void UserActions::Hover(QWidget* window) {
    Mouse(window, AnyPoint(window), QEvent::MouseMove, Qt::NoButton, Qt::NoModifier);
}

// Wheel events cannot be sent through the window system from here; they go to the widget under
// the point and on up its parents until one takes it, as the application would pass them.
void UserActions::Wheel(QWidget* window) {
    const QPointF at = AnyPoint(window);
    QWidget* under = window->childAt(at.toPoint());
    const int notches = m_random.Chance(0.5) ? m_random.Between(1, 3) : -m_random.Between(1, 3);
    const QPoint delta =
        m_random.Chance(0.85) ? QPoint(0, 120 * notches) : QPoint(120 * notches, 0);
    const Qt::KeyboardModifiers modifiers = AnyModifiers();
    QPointer<QWidget> receiver = under != nullptr ? under : window;
    while (receiver != nullptr) {
        const QPointF local = receiver->mapFrom(window, at);
        QWheelEvent wheel(local, receiver->mapToGlobal(local), QPoint(), delta, m_buttons,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(receiver, &wheel);
        if (wheel.isAccepted() || receiver == nullptr || receiver->isWindow()) {
            return;
        }
        receiver = receiver->parentWidget();
    }
}

void UserActions::ChangeCombo(QWidget* window) {
    QComboBox* combo = AnyOf(m_random, Usable<QComboBox>(window));
    if (combo == nullptr) {
        RandomKey(window);
    } else if (m_random.Chance(0.3)) {
        Click(window, PointIn(window, combo));  // opens the list; answered as a popup
    } else {
        combo->setFocus(Qt::TabFocusReason);
        static constexpr std::array kMoves = {Qt::Key_Up,  Qt::Key_Down,   Qt::Key_Home,
                                              Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown};
        PressKey(window, m_random.Pick(kMoves));
    }
}

void UserActions::ChangeTab(QWidget* window) {
    QTabBar* bar = AnyOf(m_random, Usable<QTabBar>(window));
    if (bar == nullptr || bar->count() == 0) {
        ClickSomewhere(window);
        return;
    }
    Click(window, bar->mapTo(window, bar->tabRect(m_random.Below(bar->count())).center()));
}

// A cell edited as a user edits it: its editor opened (by the view or a double click), text
// typed or pasted into it, and the edit ended by Enter, Tab, Escape or a click elsewhere.
void UserActions::EditCell(QWidget* window) {
    QPointer<QAbstractItemView> view = AnyOf(m_random, Usable<QAbstractItemView>(window));
    QAbstractItemModel* model = view != nullptr ? view->model() : nullptr;
    if (model == nullptr) {
        ClickSomewhere(window);
        return;
    }
    const QModelIndex root = view->rootIndex();
    const int rows = model->rowCount(root);
    const int columns = model->columnCount(root);
    if (rows <= 0 || columns <= 0) {
        Click(window, PointIn(window, view->viewport()));
        return;
    }
    const QModelIndex cell = model->index(m_random.Below(rows), m_random.Below(columns), root);
    view->scrollTo(cell);
    if (view != nullptr && m_random.Chance(0.3)) {
        DoubleClick(window, view->viewport()->mapTo(window, view->visualRect(cell).center()));
    } else if (view != nullptr) {
        view->setCurrentIndex(cell);
        if (view != nullptr) {
            view->edit(cell);
        }
    }
    if (m_random.Chance(0.25)) {
        PressKey(window, m_random.Chance(0.5) ? Qt::Key_Down : Qt::Key_Up);
    } else {
        TypeText(window);
    }
    static constexpr std::array<QKeyCombination, 4> kEnds = {
        Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape, Qt::KeypadModifier | Qt::Key_Enter};
    const int end = m_random.Below(5);
    if (end < 4) {
        PressKey(window, kEnds[static_cast<std::size_t>(end)]);
    } else {
        Click(window, AnyPoint(window));
    }
}

void UserActions::ClickButton(QWidget* window) {
    if (QAbstractButton* button = AnyOf(m_random, Usable<QAbstractButton>(window))) {
        Click(window, PointIn(window, button));
    } else {
        ClickSomewhere(window);
    }
}

QPointF UserActions::AnyPoint(QWidget* window) {
    const int roll = m_random.Below(10);
    if (roll < 5) {
        return {m_random.Real(0.0, window->width()), m_random.Real(0.0, window->height())};
    }
    if (roll < 9) {
        if (QWidget* child = AnyOf(m_random, Usable<QWidget>(window))) {
            return PointIn(window, child);
        }
    }
    // The very edges and just outside them.
    const double xs[] = {-3.0, 0.0, window->width() - 1.0, window->width() + 2.0};
    const double ys[] = {-3.0, 0.0, window->height() - 1.0, window->height() + 2.0};
    return {m_random.Pick(xs), m_random.Pick(ys)};
}

QPointF UserActions::PointIn(QWidget* window, QWidget* child) {
    const QRect area = child->rect();
    const QPointF local(m_random.Real(0.0, std::max(1, area.width())),
                        m_random.Real(0.0, std::max(1, area.height())));
    return child->mapTo(window, local);
}

Qt::KeyboardModifiers UserActions::AnyModifiers() {
    static const std::array<Qt::KeyboardModifiers, 6> kModifiers = {
        Qt::ShiftModifier, Qt::ControlModifier,
        Qt::AltModifier,   Qt::ShiftModifier | Qt::ControlModifier,
        Qt::NoModifier,    Qt::NoModifier};
    return m_random.Chance(0.75) ? Qt::KeyboardModifiers(Qt::NoModifier)
                                 : m_random.Pick(kModifiers);
}

void UserActions::Mouse(QWidget* window, QPointF at, QEvent::Type type, Qt::MouseButton button,
                        Qt::KeyboardModifiers modifiers) {
    QWindow* handle = window != nullptr ? window->windowHandle() : nullptr;
    if (handle == nullptr) {
        return;
    }
    if (type == QEvent::MouseButtonPress) {
        m_buttons |= button;
    } else if (type == QEvent::MouseButtonRelease) {
        m_buttons &= ~button;
    }
    const QPointF global = handle->mapToGlobal(at.toPoint());
    qt_handleMouseEvent(handle, at, global, m_buttons, button, type, modifiers, m_time);
}

}  // namespace kv::soak
