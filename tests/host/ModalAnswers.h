#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QMessageBox>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <utility>

// Failures name texts as they read.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace kv::test {

// Answers the modal windows that open while it lives, as a user would: every message box with
// its default button, keeping its text, and every other window with the next step. A window
// that opens after the last step is cancelled and counted, and one still open two seconds after
// its answer is cancelled and fails the test, so that neither hangs it.
class ModalAnswers {
public:
    using Step = std::function<void(QWidget* window)>;
    explicit ModalAnswers(std::deque<Step> steps = {}) : m_steps(std::move(steps)) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Poll(); });
        m_timer.start(5);
    }
    bool AllAnswered() const { return m_steps.empty(); }
    int UnexpectedWindows() const { return m_unexpected; }
    const QStringList& Texts() const { return m_texts; }

private:
    void Poll() {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal == nullptr) {
            return;
        }
        if (modal == m_last) {
            // A step whose check failed before it closed its window would
            // leave the test waiting for the test driver's timeout.
            if (m_answering == 0 && m_patience.hasExpired()) {
                ADD_FAILURE() << "A window stayed open after its answer: "
                              << modal->windowTitle().toStdString();
                m_patience = QDeadlineTimer(kPatienceMs);
                Cancel(modal);
            }
            return;
        }
        m_last = modal;
        m_patience = QDeadlineTimer(QDeadlineTimer::Forever);  // until its step is done
        Step step = Cancel;
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            m_texts << box->text();
            step = AnswerBox;
        } else if (m_steps.empty()) {
            ++m_unexpected;
        } else {
            step = std::move(m_steps.front());
            m_steps.pop_front();
        }
        // Run from a timer of its own: Qt does not fire this poll again while it runs, so a
        // window the step opens would never be answered. The patience starts when the step is
        // done: a slow step (a sanitizer build paints slowly) is no stuck window.
        QTimer::singleShot(0, &m_timer, [this, step = std::move(step), window = QPointer(modal)] {
            if (window != nullptr) {
                ++m_answering;
                step(window);
                --m_answering;
                m_patience = QDeadlineTimer(kPatienceMs);
            }
        });
    }
    static void AnswerBox(QWidget* modal) {
        auto* box = static_cast<QMessageBox*>(modal);
        QAbstractButton* answer = box->defaultButton();
        (answer != nullptr ? answer : box->buttons().front())->click();
    }
    static void Cancel(QWidget* modal) {
        if (auto* dialog = qobject_cast<QDialog*>(modal)) {
            dialog->reject();
        } else {
            modal->close();
        }
    }

    static constexpr int kPatienceMs = 2000;

    std::deque<Step> m_steps;
    QStringList m_texts;
    QPointer<QWidget> m_last;
    QDeadlineTimer m_patience;
    int m_answering = 0;  // steps running, the innermost last
    int m_unexpected = 0;
    QTimer m_timer;
};

}  // namespace kv::test
