#include "module/KVComCtlApp.h"

#include "core/ports/MessagePort.h"
#include "core/shared/AppProfile.h"
#include "module/ModuleWidgetClasses.h"
#include "ui/ports/QtMessagePort.h"

namespace kv::module {
namespace {

CGuiDllApp* g_currentApp = nullptr;
ui::QtMessagePort g_qtMessagePort;

}  // namespace

CGuiDllApp::CGuiDllApp() {
    g_currentApp = this;
}

CGuiDllApp::~CGuiDllApp() {
    if (g_currentApp == this) {
        g_currentApp = nullptr;
    }
}

CGuiDllApp* CGuiDllApp::Current() {
    return g_currentApp;
}

CKVComCtlApp::CKVComCtlApp() {
    InitInstance();
}

CKVComCtlApp::~CKVComCtlApp() {
    ExitInstance();
}

void CKVComCtlApp::InitInstance() {
    // The padstack table is built on Qt's item views, which need no global
    // initialisation, so start-up begins with the widget classes.
    RegisterModuleWidgetClasses();
    ModuleProfile().registryKey = std::string(kModuleRegistryKey);
    // Message boxes go to Qt whenever the host runs a QApplication, and to
    // standard error otherwise.
    InstallMessagePort(&g_qtMessagePort);
    m_started = true;
}

void CKVComCtlApp::ExitInstance() {
    if (!m_started) {
        return;
    }
    InstallMessagePort(nullptr);
    UnregisterModuleWidgetClasses();
    m_started = false;
}

// Constructed when the host loads the library, destroyed when it unloads it.
CKVComCtlApp theApp;

}  // namespace kv::module
