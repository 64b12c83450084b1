#pragma once

#include <string>
#include <string_view>

// The module's application profile: the key under which its settings live in
// the user's settings store, and the name of the profile (the application's
// name, or an initialisation file's path while a caller's file is in use).
// Start-up sets the key; persistence swaps both for the duration of one save
// or load and puts them back.

namespace kv {

struct AppProfile {
    std::string registryKey;  // empty until start-up sets it
    std::string profileName = "KVComCtl";
};

AppProfile& ModuleProfile();

inline constexpr std::string_view kModuleRegistryKey = "Velmorine";

}  // namespace kv
