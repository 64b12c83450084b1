#pragma once

#include <QObject>

namespace kv::ui {

// Holds back a request to quit the application that arrives while the
// progress dialog pumps events inside the host's long job: the job is
// cancelled first, and the request is then posted again so the host's own
// event loop still sees it. Catches for as long as it lives.
class QuitRequestCatcher final : public QObject {
    Q_OBJECT
public:
    QuitRequestCatcher();
    ~QuitRequestCatcher() override;

    bool QuitRequested() const { return m_quitRequested; }
    // Posts the quit request again, for the next event loop to handle.
    static void PassOn();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool m_quitRequested = false;
};

}  // namespace kv::ui
