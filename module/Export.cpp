#include "module/KVComCtlFactory.h"

namespace {

// Static: no start-up work and no allocation when the host asks for it.
kv::module::CKVComCtlFactory g_factory;

}  // namespace

extern "C" KVCOMCTL_API IKVComCtlFactory* GetKVComCtlFactory() {
    return &g_factory;
}
