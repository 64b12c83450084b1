#pragma once

#include <cstdint>

// The module's application object: one static instance, started when the
// library is loaded and shut down when it is unloaded.

namespace kv::module {

// The base every module of the product family shares: it publishes itself as
// the module's current application object.
class CGuiDllApp {
public:
    CGuiDllApp();
    virtual ~CGuiDllApp();
    CGuiDllApp(const CGuiDllApp&) = delete;
    CGuiDllApp& operator=(const CGuiDllApp&) = delete;

    static CGuiDllApp* Current();

protected:
    uint32_t m_word1 = 0;
    uint32_t m_word2 = 0;
};

class CKVComCtlApp final : public CGuiDllApp {
public:
    CKVComCtlApp();
    ~CKVComCtlApp() override;

private:
    void InitInstance();
    void ExitInstance();

    bool m_started = false;
};

}  // namespace kv::module
