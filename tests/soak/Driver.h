#pragma once

#include <QDir>
#include <QObject>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "tests/soak/SoakRandom.h"
#include "tests/soak/UserActions.h"

class QEventLoop;
class QFileDialog;
class QMessageBox;
class QWidget;

namespace kv::soak {

// Drives one component's session. While it runs, every pass of whatever event loop is running
// (the host's, a modal dialog's, a message box's, a progress pump) makes one step: answer the
// window that waits for the user, else send one user action, else (once the run's share of
// actions is spent) try to close the component. Steps are chained posted calls, each posting
// the next before it acts, so a step that opens a modal loop is followed inside that loop.
class Driver : public QObject {
public:
    // Closes the component; insisting after a few tries that did not close it.
    using Close = std::function<void(bool insist)>;

    // `actionLimit` user actions at most; with a deadline, also none after it. File dialogs
    // are answered with names in `files`.
    Driver(SoakRandom& random, UserActions& actions, QDir files, uint64_t actionLimit,
           std::optional<std::chrono::steady_clock::time_point> deadline);

    uint64_t Actions() const { return m_actions; }
    uint64_t Events() const { return m_events; }

    // Whether the host opens the component again. The opening is one action of the run, so
    // that every session ends even when a component refuses to open.
    bool NextRound();
    // How many actions the next run of the component gets.
    int NextShare() { return m_random.Between(10, 120); }
    // Whether the current run still has actions to send.
    bool InShare() const { return m_running && m_shareLeft > 0 && HasActionsLeft(); }

    // A modal run: the caller enters the component's modal loop right after Begin and calls
    // End when it returned. `close` is called once the share is spent, until the loop ends.
    void Begin(int share, Close close);
    void End();
    // A modeless run: drives until the share is spent and, with `closed`, until it holds. The
    // host's windows stay responsive through it.
    void RunModeless(int share, Close close = nullptr, std::function<bool()> closed = nullptr);

private:
    bool HasActionsLeft() const;
    void Count();
    void Step();
    QWidget* Target();
    // Answers the window that waits for the user, if any; with `insist` a message box gets
    // its affirmative button, so that a closing component can go.
    bool Answer(bool insist);
    void AnswerBox(QMessageBox& box, bool insist);
    void AnswerFileDialog(QFileDialog& dialog);
    void AnswerPopup(QWidget& popup);

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
