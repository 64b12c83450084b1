#include "ui/progress/OwnerWindowLock.h"

#include <utility>

namespace kv::ui {

OwnerWindowLock::OwnerWindowLock(QWidget* owner) {
    if (owner == nullptr) {
        return;
    }
    m_topLevel = owner->window();
    // A top-level window may still have a parent (a dialog over a main
    // window): the root is the end of that chain.
    QWidget* root = m_topLevel;
    while (root->parentWidget() != nullptr) {
        root = root->parentWidget();
    }
    if (root != m_topLevel && root->isEnabled()) {
        root->setEnabled(false);
        m_disabledRoot = root;
    }
    if (m_topLevel->isEnabled()) {
        m_topLevel->setEnabled(false);
        m_topLevelDisabled = true;
    }
}

OwnerWindowLock::~OwnerWindowLock() {
    ReleaseTopLevel();
    ReleaseRoot();
}

OwnerWindowLock::OwnerWindowLock(OwnerWindowLock&& other) noexcept
    : m_topLevel(std::move(other.m_topLevel)),
      m_topLevelDisabled(std::exchange(other.m_topLevelDisabled, false)),
      m_disabledRoot(std::move(other.m_disabledRoot)) {
    other.m_topLevel = nullptr;
    other.m_disabledRoot = nullptr;
}

OwnerWindowLock& OwnerWindowLock::operator=(OwnerWindowLock&& other) noexcept {
    if (this != &other) {
        ReleaseTopLevel();
        ReleaseRoot();
        m_topLevel = std::exchange(other.m_topLevel, nullptr);
        m_topLevelDisabled = std::exchange(other.m_topLevelDisabled, false);
        m_disabledRoot = std::exchange(other.m_disabledRoot, nullptr);
    }
    return *this;
}

void OwnerWindowLock::ReleaseTopLevel() {
    if (m_topLevelDisabled && m_topLevel != nullptr) {
        m_topLevel->setEnabled(true);
    }
    m_topLevelDisabled = false;
}

void OwnerWindowLock::ReleaseRoot() {
    if (m_disabledRoot != nullptr) {
        m_disabledRoot->setEnabled(true);
    }
    m_disabledRoot = nullptr;
}

}  // namespace kv::ui
