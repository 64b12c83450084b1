#pragma once

#include <QObject>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "tests/soak/SoakRandom.h"
#include "tests/soak/UserActions.h"
#include "tests/soak/WaitingWindows.h"

class QEventLoop;
class QWidget;

namespace kv::soak {

// Drives one component's session. While it runs, every pass of whatever event loop is running
// (the host's, a modal dialog's, a message box's, a progress pump) makes one step: answer the
// window that waits for the user, else send one user action, else (once the run's share of
// actions is spent) try to close the component. Steps are chained posted calls, each posting
// the next before it acts, so a step that opens a modal loop is followed inside that loop.
class Driver : public QObject {
public:
    using Close = std::function<void(bool insist)>;

    // `actionLimit` user actions at most; with a deadline, also none after it.
    Driver(SoakRandom& random, UserActions& actions, WaitingWindows& waiting, uint64_t actionLimit,
           std::optional<std::chrono::steady_clock::time_point> deadline);

    bool HasActionsLeft() const;
    uint64_t Actions() const { return m_actions; }
    uint64_t Events() const { return m_events; }

    // How many actions the next opening of the component gets.
    int NextShare();
    // The host opening the component again is one action of the run, so that every session
    // ends even when a component refuses to open.
    void CountOpening();
    // Whether the current run still has actions to send.
    bool InShare() const { return m_running && m_shareLeft > 0 && HasActionsLeft(); }

    // A modal run: the caller enters the component's modal loop right after Begin and calls
    // End when it returned. `close` is called once the share is spent, until the loop ends.
    void Begin(int share, Close close);
    void End();

    // A modeless run: drives until the share is spent and `closed()` holds, or the user
    // closed the component early. The host's windows stay responsive through it.
    void RunModeless(int share, Close close, std::function<bool()> closed);

private:
    void Post();
    void Step();
    QWidget* Target();

    SoakRandom& m_random;
    UserActions& m_userActions;
    WaitingWindows& m_waiting;
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
