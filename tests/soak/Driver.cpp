#include "tests/soak/Driver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>
#include <QVariant>

#include "tests/soak/FailureReport.h"

namespace kv::soak {
namespace {

// Closing tries OK or Cancel at random and answers what they ask at random; after this many
// tries it insists (Cancel, and yes to the question), and after the last one a component
// that still will not go is a fault.
constexpr int kInsistAfter = 6;
constexpr int kGiveUpAfter = 40;

// How often the driver has answered this window already: one that stays up after a few
// answers gets firmer ones, so that nothing is left waiting.
int CountAnswer(QWidget& window) {
    const int answers = window.property("soakAnswers").toInt() + 1;
    window.setProperty("soakAnswers", answers);
    return answers;
}

}  // namespace

Driver::Driver(SoakRandom& random, UserActions& actions, QDir files, uint64_t actionLimit,
               std::optional<std::chrono::steady_clock::time_point> deadline)
    : m_random(random),
      m_userActions(actions),
      m_files(std::move(files)),
      m_actionLimit(actionLimit),
      m_deadline(deadline) {
    // From now on whatever waits for the user is answered. The step still posted when the
    // driver goes is taken back with it.
    QTimer::singleShot(0, this, [this] { Step(); });
}

bool Driver::HasActionsLeft() const {
    return m_actions < m_actionLimit &&
           (!m_deadline || std::chrono::steady_clock::now() < *m_deadline);
}

void Driver::Count() {
    ++m_actions;
    ++m_events;
    ReportAction(m_actions);
}

bool Driver::NextRound() {
    if (!HasActionsLeft()) {
        return false;
    }
    Count();
    return true;
}

void Driver::Begin(int share, Close close) {
    m_running = true;
    m_shareLeft = share;
    m_closeAttempts = 0;
    m_close = std::move(close);
}

void Driver::End() {
    m_running = false;
    m_close = nullptr;
    m_closed = nullptr;
}

void Driver::RunModeless(int share, Close close, std::function<bool()> closed) {
    Begin(share, std::move(close));
    m_closed = std::move(closed);
    QEventLoop loop;
    m_loop = &loop;
    loop.exec();
    m_loop = nullptr;
    End();
}

void Driver::Step() {
    // First, so that a modal loop this step opens is driven too.
    QTimer::singleShot(0, this, [this] { Step(); });
    Beat();
    if (Answer(m_closeAttempts > kInsistAfter)) {
        ++m_events;
        return;
    }
    if (!m_running) {
        return;
    }
    if (m_loop != nullptr && m_closed && m_closed()) {
        m_loop->quit();
        return;
    }
    if (InShare()) {
        --m_shareLeft;
        Count();
        m_userActions.ActOn(Target());
        return;
    }
    if (!m_close) {
        if (m_loop != nullptr) {
            m_loop->quit();  // nothing to close: the run ends with its share
        }
        return;
    }
    if (++m_closeAttempts > kGiveUpAfter) {
        Fail("the component did not close after OK, Cancel and every answer to their questions");
    }
    ++m_events;
    m_userActions.Trace(m_closeAttempts > kInsistAfter ? "close, insisting" : "close", Target());
    m_close(m_closeAttempts > kInsistAfter);
}

// The window a user can work in now: an open popup or modal window takes all input; otherwise
// any window that is up.
QWidget* Driver::Target() {
    if (QWidget* popup = QApplication::activePopupWidget()) {
        return popup;
    }
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

// Message boxes get a random one of their buttons, file dialogs a random file, folder or new
// name inside the work folder (or no answer at all), menus and other popups a random item or
// Escape.
bool Driver::Answer(bool insist) {
    if (QWidget* popup = QApplication::activePopupWidget()) {
        m_userActions.Trace("answer popup", popup);
        AnswerPopup(*popup);
        return true;
    }
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        m_userActions.Trace(qPrintable(QStringLiteral("answer box \"%1\"").arg(box->text())), box);
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

void Driver::AnswerBox(QMessageBox& box, bool insist) {
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

void Driver::AnswerFileDialog(QFileDialog& dialog) {
    // A folder chosen in an open dialog only opens the folder, and a missing file is refused
    // with a box of the dialog's own: after a few answers the user gives up.
    if (CountAnswer(dialog) > 6 || m_random.Chance(0.25)) {
        dialog.reject();
        return;
    }
    static const QString kNames[] = {"valid.bit",
                                     "bad.bit",
                                     "long.bit",
                                     "empty.bit",
                                     "name with blanks.bit",
                                     "garbage.bin",
                                     "folder with blanks",
                                     ".",
                                     "new file.bit",
                                     "new.cir",
                                     "new stimulus.ini",
                                     "missing folder/new.bit",
                                     "trailing blank .bit",
                                     QString(240, u'n') + ".bit",
                                     "hostile stimulus.ini",
                                     "period zero.ini"};
    const QString path = m_files.absoluteFilePath(m_random.Pick(kNames));
    if (auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
        name->setText(path);
    } else {
        dialog.selectFile(path);
    }
    QMetaObject::invokeMethod(&dialog, "accept");  // what the Open or Save button does
}

void Driver::AnswerPopup(QWidget& popup) {
    const int answers = CountAnswer(popup);
    if (answers > 8) {
        popup.close();
    } else if (answers > 4) {
        m_userActions.PressKey(&popup, Qt::Key_Escape);
    } else if (auto* menu = qobject_cast<QMenu*>(&popup)) {
        QList<QAction*> choices;
        for (QAction* action : menu->actions()) {
            if (!action->isSeparator() && action->isEnabled() && action->isVisible()) {
                choices << action;
            }
        }
        const bool pick = !choices.isEmpty() && m_random.Chance(0.75);
        if (pick) {
            menu->setActiveAction(m_random.Pick(choices));
        }
        m_userActions.PressKey(menu, pick ? Qt::Key_Return : Qt::Key_Escape);
    } else if (m_random.Chance(0.25)) {
        // A drop-down list or any other popup: click into it, move in it, pick or leave it.
        m_userActions.Click(
            &popup, QPointF(m_random.Real(0.0, popup.width()), m_random.Real(0.0, popup.height())));
    } else {
        static constexpr Qt::Key kKeys[] = {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Return,
                                            Qt::Key_Escape};
        m_userActions.PressKey(&popup, m_random.Pick(kKeys));
    }
}

}  // namespace kv::soak
