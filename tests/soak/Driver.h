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
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    // `actionLimit` user actions at most; with a deadline, also none after it. File dialogs
    // are answered with names in `files`.
    Driver(SoakRandom& random, UserActions& actions, QDir files, uint64_t actionLimit,
           Deadline deadline)
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
        const bool more = HasActionsLeft();
        if (more) {
            Count();
        }
        return more;
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
        const bool insist = m_closeAttempts > kInsistAfter;
        if (Answer(insist)) {
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
            m_userActions.Trace(insist ? "close, insisting" : "close", Target());
            m_close(insist);
        }
    }

    // The window a user can work in now: a modal window takes all input; otherwise any window
    // that is up. (Popups are answered first.)
    QWidget* Target() {
        QList<QWidget*> windows = {QApplication::activeModalWidget()};
        if (windows[0] == nullptr) {
            windows = QApplication::topLevelWidgets();
            windows.removeIf([](QWidget* window) {
                return !window->isVisible() || window->windowType() == Qt::ToolTip ||
                       window->windowHandle() == nullptr;
            });
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

    // Answers the window that waits for the user, if any.
    bool Answer(bool insist) {
        QWidget* modal = QApplication::activeModalWidget();
        if (QWidget* popup = QApplication::activePopupWidget()) {
            m_userActions.Trace("answer popup", popup);
            AnswerPopup(*popup);
        } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            m_userActions.Trace(qPrintable("answer box \"" + box->text() + '"'), box);
            AnswerBox(*box, insist);
        } else if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
            m_userActions.Trace("answer file dialog", dialog);
            AnswerFileDialog(*dialog);
        } else {
            return false;
        }
        return true;
    }

    // A random button, or Escape or Enter as a user at the keyboard answers; when insisting,
    // the affirmative button, so that a closing component can go.
    void AnswerBox(QMessageBox& box, bool insist) {
        QList<QAbstractButton*> buttons = box.buttons();
        if (CountAnswer(box) < 4 && !insist && m_random.Chance(0.15)) {
            m_userActions.PressKey(&box, m_random.Chance(0.5) ? Qt::Key_Escape : Qt::Key_Return);
            return;
        }
        if (insist) {
            buttons.removeIf([&box](QAbstractButton* button) {
                const QMessageBox::ButtonRole role = box.buttonRole(button);
                return role != QMessageBox::AcceptRole && role != QMessageBox::YesRole;
            });
        }
        if (buttons.isEmpty()) {
            box.done(QMessageBox::Cancel);
        } else {
            m_random.Pick(buttons)->click();
        }
    }

    // A file, a folder, a new name or one no file can have, in the work folder; or no answer.
    // A folder chosen in an open dialog only opens the folder, and a missing file is refused
    // with a box of the dialog's own: after a few answers the user gives up.
    void AnswerFileDialog(QFileDialog& dialog) {
        static const QStringList kNames =
            QStringLiteral(
                "valid.bit|bad.bit|long.bit|empty.bit|name with blanks.bit|garbage.bin|"
                "hostile stimulus.ini|period zero.ini|folder with blanks|.|new file.bit|"
                "new.cir|new stimulus.ini|missing folder/new.bit|trailing blank .bit")
                .split(u'|')
            << QString(240, u'n') + ".bit";
        if (CountAnswer(dialog) > 6 || m_random.Chance(0.25)) {
            dialog.reject();
            return;
        }
        const QString path = m_files.absoluteFilePath(m_random.Pick(kNames));
        if (auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
            edit->setText(path);
        } else {
            dialog.selectFile(path);
        }
        QMetaObject::invokeMethod(&dialog, "accept");  // what the Open or Save button does
    }

    // A menu's item, or in a drop-down list or any other popup a move, a pick or a click; after
    // a few answers Escape, and after a few more the popup is closed.
    void AnswerPopup(QWidget& popup) {
        static constexpr Qt::Key kKeys[] = {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Return,
                                            Qt::Key_Escape};
        const int answers = CountAnswer(popup);
        auto* menu = qobject_cast<QMenu*>(&popup);
        if (answers > 8) {
            popup.close();
        } else if (answers > 4) {
            m_userActions.PressKey(&popup, Qt::Key_Escape);
        } else if (menu != nullptr && m_random.Chance(0.75)) {
            QList<QAction*> items = menu->actions();
            items.removeIf([](QAction* item) {
                return item->isSeparator() || !item->isEnabled() || !item->isVisible();
            });
            if (!items.isEmpty()) {
                menu->setActiveAction(m_random.Pick(items));
            }
            m_userActions.PressKey(menu, items.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
        } else if (m_random.Chance(0.2)) {
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
    Deadline m_deadline;
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
