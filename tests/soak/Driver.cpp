#include "tests/soak/Driver.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

#include "tests/soak/FailureReport.h"

namespace kv::soak {
namespace {

// Closing tries OK or Cancel at random and answers what they ask at random; after this many
// tries it insists (Cancel, and yes to the question), and after the last one a component
// that still will not go is a fault.
constexpr int kInsistAfter = 6;
constexpr int kGiveUpAfter = 40;

}  // namespace

Driver::Driver(SoakRandom& random, UserActions& actions, WaitingWindows& waiting,
               uint64_t actionLimit, std::optional<std::chrono::steady_clock::time_point> deadline)
    : m_random(random),
      m_userActions(actions),
      m_waiting(waiting),
      m_actionLimit(actionLimit),
      m_deadline(deadline) {
    Post();  // from now on whatever waits for the user is answered
}

bool Driver::HasActionsLeft() const {
    return m_actions < m_actionLimit &&
           (!m_deadline || std::chrono::steady_clock::now() < *m_deadline);
}

int Driver::NextShare() {
    return m_random.Between(10, 120);
}

void Driver::CountOpening() {
    ++m_actions;
    ++m_events;
    ReportAction(m_actions);
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

// The step still posted when the driver goes is taken back with it.
void Driver::Post() {
    QTimer::singleShot(0, this, [this] { Step(); });
}

void Driver::Step() {
    Post();  // first, so that a modal loop this step opens is driven too
    Beat();
    const bool insist = m_closeAttempts > kInsistAfter;
    if (m_waiting.AnswerOne(insist)) {
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
    if (m_shareLeft > 0 && HasActionsLeft()) {
        --m_shareLeft;
        ++m_actions;
        ++m_events;
        ReportAction(m_actions);
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
    return windows.isEmpty() ? nullptr : windows[m_random.Below(static_cast<int>(windows.size()))];
}

}  // namespace kv::soak
