#pragma once

#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>
#include <functional>
#include <optional>

#include "tests/soak/FailureReport.h"
#include "tests/soak/UserActions.h"

namespace kv::soak {

// Drives one component's session. While it runs, every pass of whatever event loop is running
// (the host's, a modal dialog's, a message box's, a progress pump) makes one step: answer the
// window that waits for the user, else send one user action, else (once the run's share of
// actions is spent) try to close the component. Steps are chained posted calls, each posting
// the next before it acts, so a step that opens a modal loop is followed inside that loop; the
// step still posted when the driver goes is taken back with it.
class Driver : public QObject {
public:
    // Closes the component; insisting after a few tries that did not close it.
    using Close = std::function<void(bool insist)>;

    // `actionLimit` user actions at most; with a deadline, also none after it. File dialogs
    // are answered with names in `files`.
    Driver(SoakRandom& random, UserActions& actions, QDir files, uint64_t actionLimit,
           std::optional<std::chrono::steady_clock::time_point> deadline)
        : m_random(random),
          m_userActions(actions),
          m_files(std::move(files)),
          m_actionLimit(actionLimit),
          m_deadline(deadline) {
        Post();
    }

    uint64_t Actions() const { return m_actions; }
    uint64_t Events() const { return m_events; }

    // Whether the host opens the component again. The opening is one action of the run, so
    // that every session ends even when a component refuses to open.
    bool NextRound() {
        if (!HasActionsLeft()) {
            return false;
        }
        Count();
        return true;
    }
    // How many actions the next run of the component gets.
    int NextShare() { return m_random.Between(10, 120); }
    // Whether the current run still has actions to send.
    bool InShare() const { return m_running && m_shareLeft > 0 && HasActionsLeft(); }

    // A modal run: the caller enters the component's modal loop right after Begin and calls
    // End when it returned. `close` is called once the share is spent, until the loop ends.
    void Begin(int share, Close close) {
        m_running = true;
        m_shareLeft = share;
        m_closeAttempts = 0;
        m_close = std::move(close);
    }
    // Objects the library deleted later are gone once the host's loop has run again.
    void End() {
        m_running = false;
        m_close = nullptr;
        m_closed = nullptr;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // A modeless run: drives until the share is spent and, with `closed`, until that holds.
    void RunModeless(int share, Close close = nullptr, std::function<bool()> closed = nullptr) {
        Begin(share, std::move(close));
        m_closed = std::move(closed);
        QEventLoop loop;
        m_loop = &loop;
        loop.exec();
        m_loop = nullptr;
        End();
    }

private:
    // Closing tries OK or Cancel at random and answers what they ask at random; after this
    // many tries it insists (Cancel, and yes to the question), and after the last one a
    // component that still will not go is a fault.
    static constexpr int kInsistAfter = 6;
    static constexpr int kGiveUpAfter = 40;

    bool HasActionsLeft() const {
        return m_actions < m_actionLimit &&
               (!m_deadline || std::chrono::steady_clock::now() < *m_deadline);
    }
    void Count() {
        ++m_events;
        ReportAction(++m_actions);
    }
    void Post() {
        QTimer::singleShot(0, this, [this] { Step(); });
    }

    void Step() {
        Post();  // first, so that a modal loop this step opens is driven too
        Beat();
        if (Answer(m_closeAttempts > kInsistAfter)) {
            ++m_events;
        } else if (!m_running) {
            return;
        } else if (m_loop != nullptr && m_closed && m_closed()) {
            m_loop->quit();
        } else if (InShare()) {
            --m_shareLeft;
            Count();
            m_userActions.ActOn(Target());
        } else if (!m_close) {
            if (m_loop != nullptr) {
                m_loop->quit();  // nothing to close: the run ends with its share
            }
        } else if (++m_closeAttempts > kGiveUpAfter) {
            Fail(
                "the component did not close after OK, Cancel and every answer to their "
                "questions");
        } else {
            ++m_events;
            m_userActions.Trace(m_closeAttempts > kInsistAfter ? "close, insisting" : "close",
                                Target());
            m_close(m_closeAttempts > kInsistAfter);
        }
    }

    // The window a user can work in now: a modal window takes all input; otherwise any window
    // that is up. (Popups are answered before.)
    QWidget* Target() {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            return modal;
        }
        QList<QWidget*> windows;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->windowType() != Qt::ToolTip &&
                window->windowHandle() != nullptr) {
                windows << window;
            }
        }
        return windows.isEmpty() ? nullptr : m_random.Pick(windows);
    }

    // How often the driver has answered this window already: one that stays up after a few
    // answers gets firmer ones, so that nothing is left waiting.
    static int CountAnswer(QWidget& window) {
        const int answers = window.property("soakAnswers").toInt() + 1;
        window.setProperty("soakAnswers", answers);
        return answers;
    }

    // Answers the window that waits for the user, if any: message boxes with a random one of
    // their buttons (with `insist`, the affirmative one, so that a closing component can go),
    // file dialogs with a random file, folder or new name in the work folder (or no answer at
    // all), menus and other popups with a random item or Escape.
    bool Answer(bool insist) {
        if (QWidget* popup = QApplication::activePopupWidget()) {
            m_userActions.Trace("answer popup", popup);
            AnswerPopup(*popup);
            return true;
        }
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            m_userActions.Trace(qPrintable("answer box \"" + box->text() + '"'), box);
            AnswerBox(*box, insist);
            return true;
        }
        if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
            m_userActions.Trace("answer file dialog", dialog);
            AnswerFileDialog(*dialog);
            return true;
        }
        return false;
    }

    void AnswerBox(QMessageBox& box, bool insist) {
        const QList<QAbstractButton*> buttons = box.buttons();
        if (CountAnswer(box) < 4 && !insist && m_random.Chance(0.15)) {
            // Escape or Enter instead of a button, as a user at the keyboard answers.
            m_userActions.PressKey(&box, m_random.Chance(0.5) ? Qt::Key_Escape : Qt::Key_Return);
        } else if (buttons.isEmpty()) {
            box.done(QMessageBox::Cancel);
        } else {
            QAbstractButton* chosen = m_random.Pick(buttons);
            for (QAbstractButton* button : buttons) {
                const QMessageBox::ButtonRole role = box.buttonRole(button);
                if (insist && (role == QMessageBox::AcceptRole || role == QMessageBox::YesRole)) {
                    chosen = button;
                }
            }
            chosen->click();
        }
    }

    void AnswerFileDialog(QFileDialog& dialog) {
        // A folder chosen in an open dialog only opens the folder, and a missing file is
        // refused with a box of the dialog's own: after a few answers the user gives up.
        if (CountAnswer(dialog) > 6 || m_random.Chance(0.25)) {
            dialog.reject();
            return;
        }
        // The files made for the run, names that are new, and names no file can have.
        static const QStringList kNames =
            QStringLiteral(
                "valid.bit|bad.bit|long.bit|empty.bit|name with blanks.bit|garbage.bin|"
                "hostile stimulus.ini|period zero.ini|folder with blanks|.|new file.bit|"
                "new.cir|new stimulus.ini|missing folder/new.bit|trailing blank .bit")
                .split(u'|')
            << QString(240, u'n') + ".bit";
        const QString path = m_files.absoluteFilePath(m_random.Pick(kNames));
        if (auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
            edit->setText(path);
        } else {
            dialog.selectFile(path);
        }
        QMetaObject::invokeMethod(&dialog, "accept");  // what the Open or Save button does
    }

    void AnswerPopup(QWidget& popup) {
        static constexpr Qt::Key kKeys[] = {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Return,
                                            Qt::Key_Escape};
        const int answers = CountAnswer(popup);
        auto* menu = qobject_cast<QMenu*>(&popup);
        QList<QAction*> choices;
        for (QAction* action : menu != nullptr ? menu->actions() : QList<QAction*>()) {
            if (!action->isSeparator() && action->isEnabled() && action->isVisible()) {
                choices << action;
            }
        }
        if (answers > 8) {
            popup.close();
        } else if (answers > 4 ||
                   (menu != nullptr && (choices.isEmpty() || m_random.Chance(0.25)))) {
            m_userActions.PressKey(&popup, Qt::Key_Escape);
        } else if (menu != nullptr) {
            menu->setActiveAction(m_random.Pick(choices));
            m_userActions.PressKey(menu, Qt::Key_Return);
        } else if (m_random.Chance(0.25)) {
            // A drop-down list or any other popup: click into it, move in it, pick or leave it.
            m_userActions.Click(&popup, QPointF(m_random.Real(0.0, popup.width()),
                                                m_random.Real(0.0, popup.height())));
        } else {
            m_userActions.PressKey(&popup, m_random.Pick(kKeys));
        }
    }

    SoakRandom& m_random;
    UserActions& m_userActions;
    QDir m_files;
    uint64_t m_actionLimit;
    std::optional<std::chrono::steady_clock::time_point> m_deadline;
    uint64_t m_actions = 0;
    uint64_t m_events = 0;
    bool m_running = false;
    int m_shareLeft = 0;
    int m_closeAttempts = 0;
    Close m_close;
    std::function<bool()> m_closed;
    QEventLoop* m_loop = nullptr;
};

}  // namespace kv::soak
