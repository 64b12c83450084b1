#include "ui/shared/ModuleState.h"

#include <QApplication>
#include <QThread>
#include <mutex>

// Q_INIT_RESOURCE must be used outside any namespace.
static void InitKvComCtlResources() {
    Q_INIT_RESOURCE(kvcomctl);
}

namespace kv::ui {
namespace {

thread_local bool t_moduleStateActive = false;

}  // namespace

bool CanCreateWidgets() {
    auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
    return app != nullptr && QThread::currentThread() == app->thread();
}

void EnsureModuleResources() {
    static std::once_flag once;
    std::call_once(once, [] { InitKvComCtlResources(); });
}

ModuleStateGuard::ModuleStateGuard() : m_wasActive(t_moduleStateActive) {
    EnsureModuleResources();
    t_moduleStateActive = true;
}

ModuleStateGuard::~ModuleStateGuard() {
    t_moduleStateActive = m_wasActive;
}

bool ModuleStateGuard::IsActive() {
    return t_moduleStateActive;
}

QIcon ModuleWindowIcon() {
    EnsureModuleResources();
    return QIcon(QStringLiteral(":/kvcomctl/kvcomctl.png"));
}

}  // namespace kv::ui
