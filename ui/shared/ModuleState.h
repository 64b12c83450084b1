#pragma once

#include <QIcon>

// The library's own resources (window icon, cursors, images under the prefix
// ":/kvcomctl/") live in this module, not in the host. Every operation that
// creates or destroys a window, dialog or sheet of the module holds a
// ModuleStateGuard for its duration: the guard makes sure the module's
// resources are registered and marks the module state as active, and puts
// back what it changed on every way out.

namespace kv::ui {

class ModuleStateGuard {
public:
    ModuleStateGuard();
    ~ModuleStateGuard();
    ModuleStateGuard(const ModuleStateGuard&) = delete;
    ModuleStateGuard& operator=(const ModuleStateGuard&) = delete;

    // Whether a guard is held on this thread: components that look up module
    // resources expect it.
    static bool IsActive();

private:
    bool m_wasActive;
};

// Whether widgets can be made here: a QApplication exists and this is its
// thread. A host that is not a Qt application gets no widget components.
bool CanCreateWidgets();

// Registers the module's resource file once; safe to call many times.
void EnsureModuleResources();

// The icon the module's top-level dialogs carry.
QIcon ModuleWindowIcon();

}  // namespace kv::ui
