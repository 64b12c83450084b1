#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

// A widget the library hands to a host stays the library's: the host gives
// it back to the factory, which deletes it. When the host puts such a widget
// into one of its own windows and then deletes that window, Qt would delete
// the widget with it and the factory would delete it a second time. The
// guard watches the widget's parent and, when the parent is being destroyed
// (Qt announces that before it deletes the children), takes the widget out
// and hides it.
namespace kv::ui {

class HostParentGuard final : public QObject {
    Q_OBJECT
public:
    // Guards `widget` for its whole life; the guard is a child of it.
    static void Install(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit HostParentGuard(QWidget* widget);
    void WatchParent();

    QWidget* m_widget;
    QPointer<QWidget> m_watchedParent;
    QMetaObject::Connection m_connection;
};

}  // namespace kv::ui
