#include "core/shared/AppProfile.h"

namespace kv {

AppProfile& ModuleProfile() {
    static AppProfile profile;
    return profile;
}

void EnsureModuleRegistryKey() {
    if (ModuleProfile().registryKey.empty()) {
        ModuleProfile().registryKey = std::string(kModuleRegistryKey);
    }
}

}  // namespace kv
