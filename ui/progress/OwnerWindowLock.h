#pragma once

#include <QPointer>
#include <QWidget>

namespace kv::ui {

// While a progress dialog is up, the windows it belongs to take no input:
// the owner's top-level window and, above it, the root of its parent chain.
// The lock remembers what it disabled itself and enables exactly that again,
// at the latest when it goes away, so no way out leaves the host disabled.
class OwnerWindowLock {
public:
    OwnerWindowLock() = default;
    // Disables the top-level window of `owner` and the root above it, each
    // only if it is enabled now. A null owner disables nothing.
    explicit OwnerWindowLock(QWidget* owner);
    ~OwnerWindowLock();
    OwnerWindowLock(OwnerWindowLock&& other) noexcept;
    OwnerWindowLock& operator=(OwnerWindowLock&& other) noexcept;
    OwnerWindowLock(const OwnerWindowLock&) = delete;
    OwnerWindowLock& operator=(const OwnerWindowLock&) = delete;

    // The owner's top-level window, whether or not this lock disabled it.
    QWidget* TopLevel() const { return m_topLevel; }
    // Enables the top-level window again if this lock disabled it.
    void ReleaseTopLevel();
    // Enables the root again if this lock disabled it.
    void ReleaseRoot();

private:
    QPointer<QWidget> m_topLevel;
    bool m_topLevelDisabled = false;
    QPointer<QWidget> m_disabledRoot;
};

}  // namespace kv::ui
