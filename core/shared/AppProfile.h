#pragma once

#include <string>
#include <string_view>

// Where a profile's settings live: either a keyed store in the user's
// configuration folder (the module's own, under the registry key start-up
// sets, or one a caller names) or an initialisation file a caller names.
// Save, load and the jitter seed are each handed the profile they use, so
// nothing has to swap the module's profile while they run.

namespace kv {

struct AppProfile {
    std::string registryKey;  // empty until start-up sets it
    std::string profileName = "KVComCtl";
    std::string iniFile;  // set: this file, exactly, instead of a keyed store

    static AppProfile Keyed(std::string key) { return {std::move(key), "KVComCtl", {}}; }
    static AppProfile File(std::string path) { return {{}, "KVComCtl", std::move(path)}; }
    bool IsFile() const { return !iniFile.empty(); }
};

// The module's own profile; start-up sets its key.
AppProfile& ModuleProfile();

inline constexpr std::string_view kModuleRegistryKey = "Velmorine";

// Outside a host (the command line, the Python module) no start-up sets the
// key: this gives the module's profile the key start-up would, unless one is
// set already, so that the jitter seed and load and save without a location
// use the store the library uses inside a host.
void EnsureModuleRegistryKey();

}  // namespace kv
