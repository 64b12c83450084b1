#pragma once

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
#include <QWindow>
#include <chrono>
#include <cstdio>

#include "tests/soak/SoakRandom.h"

namespace kv::soak {

// What a user does with the keyboard and the mouse, sent through the window system as a real
// user's input arrives: modal windows block the others, popups take the input, a right press
// asks for a context menu, shortcuts are matched. Every choice comes from the seeded random
// source, so a run replays exactly. Any input may close the window it goes to, so windows are
// held as guarded pointers.
class UserActions {
public:
    using Window = const QPointer<QWidget>&;

    explicit UserActions(SoakRandom& random) : m_random(random) {}

    // Prints every action to standard error, to follow a replay.
    void SetTrace(bool trace) { m_trace = trace; }
    void Trace(const char* what, QWidget* window) {
        if (!m_trace) {
            return;
        }
        static const auto start = std::chrono::steady_clock::now();
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - start);
        std::fprintf(
            stderr, "soak: %lld ms: %s on %s \"%s\" %dx%d\n", static_cast<long long>(ms.count()),
            what, window != nullptr ? window->metaObject()->className() : "-",
            window != nullptr ? qPrintable(window->windowTitle()) : "",
            window != nullptr ? window->width() : 0, window != nullptr ? window->height() : 0);
    }

    // One random action on `target` (a top-level widget that takes input now) or on a control
    // inside it.
    void ActOn(QWidget* target) {
        const QPointer<QWidget> window = target;
        if (window == nullptr || window->windowHandle() == nullptr) {
            Trace("nothing: no window takes input", window);
            return;
        }
        m_time += 1000;
        struct Choice {
            int weight;
            const char* name;
            void (UserActions::*act)(Window);
        };
        static constexpr Choice kChoices[] = {
            {28, "key", &UserActions::RandomKey},
            {8, "type", &UserActions::TypeText},
            {6, "paste", &UserActions::Paste},
            {16, "click", &UserActions::ClickSomewhere},
            {5, "double-click", &UserActions::DoubleClick},
            {7, "drag", &UserActions::Drag},
            {5, "hover", &UserActions::Hover},
            {5, "wheel", &UserActions::Wheel},
            {5, "combo", &UserActions::ChangeCombo},
            {3, "tab", &UserActions::ClickOn<QTabBar>},
            {7, "cell", &UserActions::EditCell},
            {5, "button", &UserActions::ClickOn<QAbstractButton>}};
        int roll = m_random.Below(100);
        for (const Choice& choice : kChoices) {
            if (roll < choice.weight) {
                Trace(choice.name, window);
                (this->*choice.act)(window);
                return;
            }
            roll -= choice.weight;
        }
    }

    // A key pressed and released, typing the character it stands for, if any.
    void PressKey(Window window, QKeyCombination key) {
        Key(window, key.key(), key.keyboardModifiers(), TextOf(key));
    }

    void Click(Window window, QPointF at, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        Mouse(window, at, QEvent::MouseButtonPress, button, modifiers);
        Mouse(window, at, QEvent::MouseButtonRelease, button, modifiers);
    }

private:
    // The text a key types: a printable key's character (upper case with Shift), the control
    // character of the keys that have one, nothing with Control or Alt held.
    static QString TextOf(QKeyCombination combination) {
        const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
        const int key = combination.key();
        if (modifiers & (Qt::ControlModifier | Qt::AltModifier)) {
            return {};
        }
        static constexpr std::pair<int, char> kControls[] = {
            {Qt::Key_Tab, '\t'},      {Qt::Key_Return, '\r'},    {Qt::Key_Enter, '\r'},
            {Qt::Key_Escape, '\x1b'}, {Qt::Key_Backspace, '\b'}, {Qt::Key_Delete, '\x7f'}};
        for (const auto& [control, character] : kControls) {
            if (key == control) {
                return QString(QChar(character));
            }
        }
        if (key < Qt::Key_Space || key > Qt::Key_AsciiTilde) {
            return {};
        }
        const QChar character(key);  // Qt's key codes are the characters themselves here
        return modifiers & Qt::ShiftModifier ? character : character.toLower();
    }

    void Key(Window window, int key, Qt::KeyboardModifiers modifiers, const QString& text) {
        for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            if (window == nullptr || window->windowHandle() == nullptr) {
                return;  // the press closed the window
            }
            qt_handleKeyEvent(window->windowHandle(), type, key, modifiers, text);
        }
    }

    // Every one of the mouse's events goes through here, so that the buttons held are known:
    // a release after the press closed the window still lets the button up.
    void Mouse(Window window, QPointF at, QEvent::Type type, Qt::MouseButton button = Qt::NoButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        if (type == QEvent::MouseButtonPress) {
            m_buttons |= button;
        } else if (type == QEvent::MouseButtonRelease) {
            m_buttons &= ~button;
        }
        QWindow* handle = window != nullptr ? window->windowHandle() : nullptr;
        if (handle != nullptr) {
            qt_handleMouseEvent(handle, at, handle->mapToGlobal(at.toPoint()), m_buttons, button,
                                type, modifiers, m_time);
        }
    }

    void RandomKey(Window window) {
        static constexpr Qt::Key kKeys[] = {
            Qt::Key_Tab,      Qt::Key_Return, Qt::Key_Escape,    Qt::Key_Left,   Qt::Key_Right,
            Qt::Key_Up,       Qt::Key_Down,   Qt::Key_Home,      Qt::Key_End,    Qt::Key_PageUp,
            Qt::Key_PageDown, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Insert, Qt::Key_Space,
            Qt::Key_F1,       Qt::Key_F2,     Qt::Key_F4,        Qt::Key_Menu,   Qt::Key_Plus,
            Qt::Key_Minus,    Qt::Key_Period, Qt::Key_Comma,     Qt::Key_0,      Qt::Key_1,
            Qt::Key_2,        Qt::Key_5,      Qt::Key_9};
        // With the modifiers that make shortcuts of them.
        static constexpr std::pair<Qt::KeyboardModifier, Qt::Key> kChords[] = {
            {Qt::ShiftModifier, Qt::Key_Backtab},  {Qt::KeypadModifier, Qt::Key_Enter},
            {Qt::AltModifier, Qt::Key_Down},       {Qt::ControlModifier, Qt::Key_C},
            {Qt::ControlModifier, Qt::Key_V},      {Qt::ControlModifier, Qt::Key_X},
            {Qt::ControlModifier, Qt::Key_Z},      {Qt::ControlModifier, Qt::Key_Y},
            {Qt::ControlModifier, Qt::Key_A},      {Qt::ShiftModifier, Qt::Key_Insert},
            {Qt::ControlModifier, Qt::Key_Insert}, {Qt::ShiftModifier, Qt::Key_Delete},
            {Qt::ShiftModifier, Qt::Key_Left},     {Qt::ShiftModifier, Qt::Key_Right},
            {Qt::ShiftModifier, Qt::Key_Home},     {Qt::ShiftModifier, Qt::Key_End}};
        if (m_random.Chance(0.2)) {
            PressKey(window, Qt::Key(Qt::Key_A + m_random.Below(26)));
        } else if (m_random.Chance(0.64)) {
            PressKey(window, m_random.Pick(kKeys));
        } else {
            const auto& [modifier, key] = m_random.Pick(kChords);
            PressKey(window, modifier | key);
        }
    }

    // What users type and paste: numbers in every spelling, nothing, garbage, 40000 ones.
    QString UserText() {
        static constexpr const char* kTexts[] = {
            "",       "abc",          "1e999",  "nan",
            "-0",     "1,5",          "0",      "1",
            "10",     "0101",         "-1",     "1e-30",
            "inf",    "-inf",         " 12 ",   "3.3",
            "%s%n%d", "ÄÖü€",         "1.5n",   "47p",
            "0x10",   "1e308",        "-1e308", "2147483648",
            "5e-324", "1 0 1\n0;1,1", "\t",     "99999999999999999999"};
        switch (const int pick = m_random.Below(static_cast<int>(std::size(kTexts)) + 2)) {
            case 0:
                return QString(40000, u'1');
            case 1:
                return QString(300, u'9');
            default:
                return QString::fromUtf8(kTexts[pick - 2]);
        }
    }

    void TypeText(Window window) {
        const QString text = UserText();
        if (text.size() > 16) {
            QGuiApplication::clipboard()->setText(text);
            PressKey(window, Qt::ControlModifier | Qt::Key_V);
            return;
        }
        // Text the keyboard has no key for arrives as text alone.
        for (const QChar character : text) {
            const char16_t code = character.toUpper().unicode();
            const bool hasKey = code >= Qt::Key_Space && code <= Qt::Key_AsciiTilde;
            Key(window, hasKey ? int{code} : int{Qt::Key_unknown},
                character.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, character);
        }
    }

    void Paste(Window window) {
        QGuiApplication::clipboard()->setText(UserText());
        PressKey(window, m_random.Chance(0.2) ? Qt::ShiftModifier | Qt::Key_Insert
                                              : Qt::ControlModifier | Qt::Key_V);
    }

    void ClickSomewhere(Window window) {
        const int roll = m_random.Below(20);
        const Qt::MouseButton button = roll < 15   ? Qt::LeftButton
                                       : roll < 19 ? Qt::RightButton
                                                   : Qt::MiddleButton;
        Click(window, AnyPoint(window), button, AnyModifiers());
    }

    void DoubleClick(Window window) { DoubleClickAt(window, AnyPoint(window)); }
    void DoubleClickAt(Window window, QPointF at) {
        Click(window, at);
        m_time += 50;  // well inside any double-click interval
        Click(window, at);
    }

    void Drag(Window window) {
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
        for (int step = 1; step <= steps; ++step) {
            m_time += 30;
            Mouse(window, from + (to - from) * step / steps, QEvent::MouseMove, Qt::NoButton,
                  modifiers);
        }
        m_time += 30;
        Mouse(window, to, QEvent::MouseButtonRelease, button, modifiers);
    }

    void Hover(Window window) { Mouse(window, AnyPoint(window), QEvent::MouseMove); }

    // Wheel events cannot be sent through the window system from here; they go to the widget
    // under the point and on up its parents until one takes it, as the application passes them.
    void Wheel(Window window) {
        const QPointF at = AnyPoint(window);
        const int notches = m_random.Between(1, 3) * (m_random.Chance(0.5) ? 1 : -1);
        const QPoint delta =
            m_random.Chance(0.85) ? QPoint(0, 120 * notches) : QPoint(120 * notches, 0);
        const Qt::KeyboardModifiers modifiers = AnyModifiers();
        QWidget* under = window->childAt(at.toPoint());
        for (QPointer<QWidget> receiver = under != nullptr ? under : window.data();
             receiver != nullptr; receiver = receiver->parentWidget()) {
            const QPointF local = receiver->mapFrom(window, at);
            QWheelEvent wheel(local, receiver->mapToGlobal(local), QPoint(), delta, m_buttons,
                              modifiers, Qt::NoScrollPhase, false);
            QApplication::sendEvent(receiver, &wheel);
            if (wheel.isAccepted() || receiver == nullptr || receiver->isWindow()) {
                return;
            }
        }
    }

    void ChangeCombo(Window window) {
        static constexpr Qt::Key kMoves[] = {Qt::Key_Up,  Qt::Key_Down,   Qt::Key_Home,
                                             Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown};
        QComboBox* combo = AnyOf<QComboBox>(window);
        if (combo == nullptr) {
            RandomKey(window);
        } else if (m_random.Chance(0.3)) {
            Click(window, PointIn(window, combo));  // opens the list; answered as a popup
        } else {
            combo->setFocus(Qt::TabFocusReason);
            PressKey(window, m_random.Pick(kMoves));
        }
    }

    // A click into a control of the kind (a tab, a button), or anywhere when there is none.
    template <class Control>
    void ClickOn(Window window) {
        if (Control* control = AnyOf<Control>(window)) {
            Click(window, PointIn(window, control));
        } else {
            ClickSomewhere(window);
        }
    }

    // A cell edited as a user edits it: its editor opened (by the view or a double click), text
    // typed or pasted into it, and the edit ended by Enter, Tab, Escape or a click elsewhere.
    void EditCell(Window window) {
        static constexpr QKeyCombination kEnds[] = {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape,
                                                    Qt::KeypadModifier | Qt::Key_Enter};
        QPointer<QAbstractItemView> view = AnyOf<QAbstractItemView>(window);
        QAbstractItemModel* model = view != nullptr ? view->model() : nullptr;
        const QModelIndex root = view != nullptr ? view->rootIndex() : QModelIndex();
        if (model == nullptr || model->rowCount(root) <= 0 || model->columnCount(root) <= 0) {
            ClickOn<QAbstractItemView>(window);
            return;
        }
        const QModelIndex cell = model->index(m_random.Below(model->rowCount(root)),
                                              m_random.Below(model->columnCount(root)), root);
        view->scrollTo(cell);
        if (view != nullptr && m_random.Chance(0.3)) {
            DoubleClickAt(window, view->viewport()->mapTo(window, view->visualRect(cell).center()));
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
        if (m_random.Chance(0.8)) {
            PressKey(window, m_random.Pick(kEnds));
        } else {
            Click(window, AnyPoint(window));
        }
    }

    // A control of the kind that the user can reach in `window`, if any.
    template <class Widget>
    Widget* AnyOf(QWidget* window) {
        QList<Widget*> usable;
        for (Widget* widget : window->findChildren<Widget*>()) {
            if (!widget->isWindow() && widget->isVisibleTo(window) && widget->isEnabled()) {
                usable << widget;
            }
        }
        return usable.isEmpty() ? nullptr : m_random.Pick(usable);
    }

    // Anywhere in the window, in one of its controls, or on and just beyond its very edges.
    QPointF AnyPoint(Window window) {
        if (window == nullptr) {
            return {};
        }
        const int roll = m_random.Below(10);
        if (roll < 5) {
            return {m_random.Real(0.0, window->width()), m_random.Real(0.0, window->height())};
        }
        if (QWidget* child = roll < 9 ? AnyOf<QWidget>(window) : nullptr) {
            return PointIn(window, child);
        }
        const double xs[] = {-3.0, 0.0, window->width() - 1.0, window->width() + 2.0};
        const double ys[] = {-3.0, 0.0, window->height() - 1.0, window->height() + 2.0};
        return {m_random.Pick(xs), m_random.Pick(ys)};
    }

    QPointF PointIn(QWidget* window, QWidget* child) {
        const QPointF local(m_random.Real(0.0, std::max(1, child->width())),
                            m_random.Real(0.0, std::max(1, child->height())));
        return child->mapTo(window, local);
    }

    Qt::KeyboardModifiers AnyModifiers() {
        static constexpr Qt::KeyboardModifier kModifiers[] = {
            Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::NoModifier};
        if (m_random.Chance(0.75)) {
            return Qt::NoModifier;
        }
        return m_random.Chance(0.2) ? Qt::ShiftModifier | Qt::ControlModifier
                                    : Qt::KeyboardModifiers(m_random.Pick(kModifiers));
    }

    SoakRandom& m_random;
    bool m_trace = false;
    Qt::MouseButtons m_buttons;
    // Mouse time stamps of our own, so that a double click is one exactly when the driver
    // means one, whatever the machine's speed.
    int m_time = 1000000;
};

}  // namespace kv::soak
