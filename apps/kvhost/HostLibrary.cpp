#include "HostLibrary.h"

#include <dlfcn.h>

HostLibrary::~HostLibrary() {
    if (m_handle != nullptr) {
        dlclose(m_handle);
    }
}

bool HostLibrary::Load(const QString& path) {
    m_handle = dlopen(path.toLocal8Bit().constData(), RTLD_NOW | RTLD_LOCAL);
    if (m_handle == nullptr) {
        m_error = QString::fromLocal8Bit(dlerror());
        return false;
    }
    auto get = reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(m_handle, "GetKVComCtlFactory"));
    if (get == nullptr) {
        m_error = QString::fromLocal8Bit(dlerror());
        return false;
    }
    m_factory = get();
    return m_factory != nullptr;
}
