#include "tests/soak/UserActions.h"

#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QTabBar>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>
#include <array>
#include <chrono>
#include <cstdio>
#include <span>

namespace kv::soak {
namespace {

struct KeyStroke {
    int key;
    Qt::KeyboardModifiers modifiers;
    const char* text;
};

const std::array kKeys = {
    KeyStroke{Qt::Key_Tab, Qt::NoModifier, "\t"},
    KeyStroke{Qt::Key_Backtab, Qt::ShiftModifier, ""},
    KeyStroke{Qt::Key_Return, Qt::NoModifier, "\r"},
    KeyStroke{Qt::Key_Enter, Qt::KeypadModifier, "\r"},
    KeyStroke{Qt::Key_Escape, Qt::NoModifier, "\x1b"},
    KeyStroke{Qt::Key_Left, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Right, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Up, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Down, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Home, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_End, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_PageUp, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_PageDown, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Delete, Qt::NoModifier, "\x7f"},
    KeyStroke{Qt::Key_Backspace, Qt::NoModifier, "\b"},
    KeyStroke{Qt::Key_Insert, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Space, Qt::NoModifier, " "},
    KeyStroke{Qt::Key_F1, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_F2, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_F4, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Menu, Qt::NoModifier, ""},
    KeyStroke{Qt::Key_Down, Qt::AltModifier, ""},
    KeyStroke{Qt::Key_C, Qt::ControlModifier, ""},
    KeyStroke{Qt::Key_V, Qt::ControlModifier, ""},
    KeyStroke{Qt::Key_X, Qt::ControlModifier, ""},
    KeyStroke{Qt::Key_Z, Qt::ControlModifier, ""},
    KeyStroke{Qt::Key_Y, Qt::ControlModifier, ""},
    KeyStroke{Qt::Key_A, Qt::ControlModifier, ""},
    KeyStroke{Qt::Key_Insert, Qt::ShiftModifier, ""},
    KeyStroke{Qt::Key_Insert, Qt::ControlModifier, ""},
    KeyStroke{Qt::Key_Delete, Qt::ShiftModifier, ""},
    KeyStroke{Qt::Key_Left, Qt::ShiftModifier, ""},
    KeyStroke{Qt::Key_Right, Qt::ShiftModifier, ""},
    KeyStroke{Qt::Key_Home, Qt::ShiftModifier, ""},
    KeyStroke{Qt::Key_End, Qt::ShiftModifier, ""},
    KeyStroke{Qt::Key_Plus, Qt::NoModifier, "+"},
    KeyStroke{Qt::Key_Minus, Qt::NoModifier, "-"},
    KeyStroke{Qt::Key_Period, Qt::NoModifier, "."},
    KeyStroke{Qt::Key_Comma, Qt::NoModifier, ","},
    KeyStroke{Qt::Key_0, Qt::NoModifier, "0"},
    KeyStroke{Qt::Key_1, Qt::NoModifier, "1"},
    KeyStroke{Qt::Key_2, Qt::NoModifier, "2"},
    KeyStroke{Qt::Key_5, Qt::NoModifier, "5"},
    KeyStroke{Qt::Key_9, Qt::NoModifier, "9"},
};

// The key a character is typed with; text the keyboard has no key for arrives as text alone.
int KeyOf(QChar character) {
    const char16_t code = character.toUpper().unicode();
    if ((code >= u'0' && code <= u'9') || (code >= u'A' && code <= u'Z') || code == u' ' ||
        code == u'+' || code == u'-' || code == u'.' || code == u',') {
        return code;  // Qt's key codes are the characters themselves here
    }
    return Qt::Key_unknown;
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
    return widgets.isEmpty() ? nullptr : widgets[random.Below(static_cast<int>(widgets.size()))];
}

}  // namespace

void UserActions::ActOn(QWidget* window) {
    if (window == nullptr || window->windowHandle() == nullptr) {
        Trace("nothing: no window takes input", window);
        return;
    }
    m_time += 1000;
    using Action = void (UserActions::*)(QWidget*);
    struct Choice {
        int weight;
        const char* name;
        Action action;
    };
    static const std::array kChoices = {
        Choice{28, "key", &UserActions::RandomKey},
        Choice{8, "type", &UserActions::TypeText},
        Choice{6, "paste", &UserActions::Paste},
        Choice{16, "click", &UserActions::ClickSomewhere},
        Choice{5, "double-click", &UserActions::DoubleClick},
        Choice{7, "drag", &UserActions::Drag},
        Choice{5, "hover", &UserActions::Hover},
        Choice{5, "wheel", &UserActions::Wheel},
        Choice{5, "combo", &UserActions::ChangeCombo},
        Choice{3, "tab", &UserActions::ChangeTab},
        Choice{7, "cell", &UserActions::EditCell},
        Choice{5, "button", &UserActions::ClickButton},
    };
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
    if (m_trace) {
        static const auto start = std::chrono::steady_clock::now();
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - start);
        std::fprintf(
            stderr, "soak: %lld ms: %s on %s \"%s\" %dx%d\n", static_cast<long long>(ms.count()),
            what, window != nullptr ? window->metaObject()->className() : "-",
            window != nullptr ? qPrintable(window->windowTitle()) : "",
            window != nullptr ? window->width() : 0, window != nullptr ? window->height() : 0);
    }
}

QString UserActions::UserText() {
    static const std::array<QString, 30> kTexts = {
        QString(),
        QStringLiteral("abc"),
        QStringLiteral("1e999"),
        QStringLiteral("nan"),
        QStringLiteral("-0"),
        QStringLiteral("1,5"),
        QString(40000, u'1'),
        QStringLiteral("0"),
        QStringLiteral("1"),
        QStringLiteral("10"),
        QStringLiteral("0101"),
        QStringLiteral("-1"),
        QStringLiteral("1e-30"),
        QStringLiteral("inf"),
        QStringLiteral("-inf"),
        QStringLiteral(" 12 "),
        QStringLiteral("3.3"),
        QStringLiteral("99999999999999999999"),
        QStringLiteral("%s%n%d"),
        QStringLiteral("ÄÖü€"),
        QStringLiteral("1.5n"),
        QStringLiteral("47p"),
        QStringLiteral("0x10"),
        QStringLiteral("1e308"),
        QStringLiteral("-1e308"),
        QStringLiteral("2147483648"),
        QStringLiteral("5e-324"),
        QStringLiteral("1 0 1\n0;1,1"),
        QString(300, u'9'),
        QStringLiteral("\t"),
    };
    return m_random.Pick(std::span<const QString>(kTexts));
}

void UserActions::PressKey(QWidget* window, int key, Qt::KeyboardModifiers modifiers,
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

void UserActions::Type(QWidget* window, const QString& text) {
    QPointer<QWidget> guard = window;
    for (const QChar character : text) {
        if (guard == nullptr) {
            return;
        }
        const bool upper = character.isLetter() && character.isUpper();
        PressKey(guard, KeyOf(character), upper ? Qt::ShiftModifier : Qt::NoModifier,
                 QString(character));
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
    if (m_random.Chance(0.2)) {
        const QChar letter(u'a' + m_random.Below(26));
        PressKey(window, KeyOf(letter), Qt::NoModifier, QString(letter));
        return;
    }
    const KeyStroke& stroke = m_random.Pick(std::span<const KeyStroke>(kKeys));
    PressKey(window, stroke.key, stroke.modifiers, QString::fromLatin1(stroke.text));
}

void UserActions::TypeText(QWidget* window) {
    const QString text = UserText();
    if (text.size() > 16) {
        QGuiApplication::clipboard()->setText(text);
        PressKey(window, Qt::Key_V, Qt::ControlModifier);
    } else {
        Type(window, text);
    }
}

void UserActions::Paste(QWidget* window) {
    QGuiApplication::clipboard()->setText(UserText());
    if (m_random.Chance(0.2)) {
        PressKey(window, Qt::Key_Insert, Qt::ShiftModifier);
    } else {
        PressKey(window, Qt::Key_V, Qt::ControlModifier);
    }
}

void UserActions::ClickSomewhere(QWidget* window) {
    const int roll = m_random.Below(20);
    const Qt::MouseButton button = roll < 15   ? Qt::LeftButton
                                   : roll < 19 ? Qt::RightButton
                                               : Qt::MiddleButton;
    Click(window, AnyPoint(window), button, AnyModifiers());
}

void UserActions::DoubleClick(QWidget* window) {
    QPointer<QWidget> guard = window;
    const QPointF at = AnyPoint(window);
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
        return;
    }
    if (m_random.Chance(0.3)) {
        Click(window, PointIn(window, combo));  // opens the list; answered as a popup
        return;
    }
    combo->setFocus(Qt::TabFocusReason);
    static const std::array kMoves = {Qt::Key_Up,  Qt::Key_Down,   Qt::Key_Home,
                                      Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown};
    PressKey(window, m_random.Pick(std::span<const Qt::Key>(kMoves)));
}

void UserActions::ChangeTab(QWidget* window) {
    QTabBar* bar = AnyOf(m_random, Usable<QTabBar>(window));
    if (bar == nullptr || bar->count() == 0) {
        ClickSomewhere(window);
        return;
    }
    const QRect tab = bar->tabRect(m_random.Below(bar->count()));
    Click(window, bar->mapTo(window, tab.center()));
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
        const QPointF at = view->viewport()->mapTo(window, view->visualRect(cell).center());
        Click(window, at);
        m_time += 50;
        Click(window, at);
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
    Commit(window);
}

void UserActions::Commit(QWidget* window) {
    switch (m_random.Below(5)) {
        case 0:
            PressKey(window, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
            break;
        case 1:
            PressKey(window, Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
            break;
        case 2:
            PressKey(window, Qt::Key_Escape, Qt::NoModifier, QStringLiteral("\x1b"));
            break;
        case 3:
            PressKey(window, Qt::Key_Enter, Qt::KeypadModifier, QStringLiteral("\r"));
            break;
        default:
            Click(window, AnyPoint(window));
            break;
    }
}

void UserActions::ClickButton(QWidget* window) {
    QAbstractButton* button = AnyOf(m_random, Usable<QAbstractButton>(window));
    if (button == nullptr) {
        ClickSomewhere(window);
        return;
    }
    Click(window, PointIn(window, button));
}

QPointF UserActions::AnyPoint(QWidget* window) {
    const int roll = m_random.Below(10);
    if (roll < 5) {
        return {m_random.Real(0.0, window->width()), m_random.Real(0.0, window->height())};
    }
    if (roll < 9) {
        QList<QWidget*> children = Usable<QWidget>(window);
        if (QWidget* child = AnyOf(m_random, children)) {
            return PointIn(window, child);
        }
    }
    // The very edges and just outside them.
    const double xs[] = {-3.0, 0.0, window->width() - 1.0, window->width() + 2.0};
    const double ys[] = {-3.0, 0.0, window->height() - 1.0, window->height() + 2.0};
    return {xs[m_random.Below(4)], ys[m_random.Below(4)]};
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
        Qt::NoModifier,    Qt::NoModifier,
    };
    return m_random.Chance(0.75)
               ? Qt::KeyboardModifiers(Qt::NoModifier)
               : m_random.Pick(std::span<const Qt::KeyboardModifiers>(kModifiers));
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
