#pragma once

#include <QString>

#include "kvcomctl/IKVComCtlFactory.h"

// The loaded library: opened with dlopen, closed when this object goes.
class HostLibrary {
public:
    HostLibrary() = default;
    ~HostLibrary();
    HostLibrary(const HostLibrary&) = delete;
    HostLibrary& operator=(const HostLibrary&) = delete;

    // Loads the library at `path` and looks up its factory; on failure
    // returns false and leaves the reason in Error().
    bool Load(const QString& path);
    IKVComCtlFactory* Factory() const { return m_factory; }
    QString Error() const { return m_error; }

private:
    void* m_handle = nullptr;
    IKVComCtlFactory* m_factory = nullptr;
    QString m_error;
};
