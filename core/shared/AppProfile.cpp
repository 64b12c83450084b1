#include "core/shared/AppProfile.h"

namespace kv {

AppProfile& ModuleProfile() {
    static AppProfile profile;
    return profile;
}

}  // namespace kv
