#pragma once

#include <QEvent>
#include <QKeyCombination>
#include <QPointF>
#include <QString>

#include "tests/soak/SoakRandom.h"

class QWidget;

namespace kv::soak {

// What a user does with the keyboard and the mouse, sent through the window system as a real
// user's input arrives: modal windows block the others, popups take the input, a right press
// asks for a context menu, shortcuts are matched. Every choice comes from the seeded random
// source, so a run replays exactly.
class UserActions {
public:
    explicit UserActions(SoakRandom& random) : m_random(random) {}

    // Prints every action to standard error, to follow a replay.
    void SetTrace(bool trace) { m_trace = trace; }
    void Trace(const char* what, QWidget* window);

    // One random action on `window` (a top-level widget that takes input now) or on a control
    // inside it.
    void ActOn(QWidget* window);

    // The single steps, also used to answer windows that wait for the user. A key types the
    // character it stands for, if any.
    void PressKey(QWidget* window, QKeyCombination key);
    void Click(QWidget* window, QPointF at, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);

private:
    void Key(QWidget* window, int key, Qt::KeyboardModifiers modifiers, const QString& text);
    void RandomKey(QWidget* window);
    void TypeText(QWidget* window);
    void Paste(QWidget* window);
    void ClickSomewhere(QWidget* window);
    void DoubleClickSomewhere(QWidget* window);
    void DoubleClick(QWidget* window, QPointF at);
    void Drag(QWidget* window);
    void Hover(QWidget* window);
    void Wheel(QWidget* window);
    void ChangeCombo(QWidget* window);
    void ChangeTab(QWidget* window);
    void EditCell(QWidget* window);
    void ClickButton(QWidget* window);

    // What users type and paste: numbers in every spelling, nothing, garbage, 40000 ones.
    QString UserText();
    QPointF AnyPoint(QWidget* window);
    QPointF PointIn(QWidget* window, QWidget* child);
    Qt::KeyboardModifiers AnyModifiers();
    void Mouse(QWidget* window, QPointF at, QEvent::Type type, Qt::MouseButton button,
               Qt::KeyboardModifiers modifiers);

    SoakRandom& m_random;
    bool m_trace = false;
    Qt::MouseButtons m_buttons;
    // Mouse time stamps of our own, so that a double click is one exactly when the driver
    // means one, whatever the machine's speed.
    int m_time = 1000000;
};

}  // namespace kv::soak
