#include "ui/progress/QuitRequestCatcher.h"

#include <QCoreApplication>
#include <QEvent>

namespace kv::ui {

QuitRequestCatcher::QuitRequestCatcher() {
    if (QCoreApplication* app = QCoreApplication::instance()) {
        app->installEventFilter(this);
    }
}

QuitRequestCatcher::~QuitRequestCatcher() {
    if (QCoreApplication* app = QCoreApplication::instance()) {
        app->removeEventFilter(this);
    }
}

void QuitRequestCatcher::PassOn() {
    if (QCoreApplication* app = QCoreApplication::instance()) {
        QCoreApplication::postEvent(app, new QEvent(QEvent::Quit));
    }
}

bool QuitRequestCatcher::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) {
        m_quitRequested = true;
        return true;  // held back until the job has been cancelled
    }
    return false;
}

}  // namespace kv::ui
