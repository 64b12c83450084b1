#include "ui/shared/HostParentGuard.h"

#include <QEvent>
#include <QWidget>

namespace kv::ui {

void HostParentGuard::Install(QWidget* widget) {
    new HostParentGuard(widget);
}

HostParentGuard::HostParentGuard(QWidget* widget) : QObject(widget), m_widget(widget) {
    widget->installEventFilter(this);
    WatchParent();
}

bool HostParentGuard::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_widget && event->type() == QEvent::ParentChange) {
        WatchParent();
    }
    return false;
}

void HostParentGuard::WatchParent() {
    QWidget* parent = m_widget->parentWidget();
    if (parent == m_watchedParent) {
        return;
    }
    disconnect(m_connection);
    m_watchedParent = parent;
    if (parent == nullptr) {
        return;
    }
    m_connection = connect(parent, &QObject::destroyed, this, [this] {
        // Keeping the window flags keeps a dialog a dialog.
        m_widget->hide();
        m_widget->setParent(nullptr, m_widget->windowFlags());
    });
}

}  // namespace kv::ui
