#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <utility>

namespace kv::test {

// Answers the modal windows that open next, one step per window, as a user
// would. A window that opens after the last step is closed and counted, so
// that an unexpected message fails the test instead of hanging it.
class ModalAnswers {
public:
    using Step = std::function<void(QWidget* modal)>;
    explicit ModalAnswers(std::deque<Step> steps) : m_steps(std::move(steps)) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Poll(); });
        m_timer.start(10);
    }
    bool AllAnswered() const { return m_steps.empty(); }
    int UnexpectedWindows() const { return m_unexpected; }

private:
    void Poll() {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal == nullptr || modal == m_last) {
            return;
        }
        m_last = modal;
        Step step = CloseUnexpected;
        if (m_steps.empty()) {
            ++m_unexpected;
        } else {
            step = std::move(m_steps.front());
            m_steps.pop_front();
        }
        // Run from a timer of its own: Qt does not fire this poll again while
        // it runs, so a window the step opens would never be answered.
        QTimer::singleShot(0, modal, [step = std::move(step), modal] { step(modal); });
    }
    // A box is agreed to (so that "All changes will be lost." lets a dialog
    // close), any other dialog cancelled.
    static void CloseUnexpected(QWidget* modal) {
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            for (QAbstractButton* button : box->buttons()) {
                const QMessageBox::ButtonRole role = box->buttonRole(button);
                if (role == QMessageBox::AcceptRole || role == QMessageBox::YesRole) {
                    button->click();
                    return;
                }
            }
        }
        if (auto* dialog = qobject_cast<QDialog*>(modal)) {
            dialog->reject();
        } else {
            modal->close();
        }
    }
    std::deque<Step> m_steps;
    QWidget* m_last = nullptr;
    int m_unexpected = 0;
    QTimer m_timer;
};

// Reads the message box's text into `text` and presses `button`.
inline ModalAnswers::Step Click(QMessageBox::StandardButton button, QString* text) {
    return [button, text](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        ASSERT_NE(box, nullptr);
        *text = box->text();
        if (QAbstractButton* pressed = box->button(button)) {
            pressed->click();
        } else {
            ADD_FAILURE() << "no such button on the box " << text->toStdString();
            box->reject();
        }
    };
}

}  // namespace kv::test
