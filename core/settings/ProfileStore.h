#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shared/AppProfile.h"

// The settings store the module's profile calls go to. A profile with a
// registry key is a keyed store: one INI file per key under the user's
// configuration folder, <config>/<key>/<profile name>.ini, where <config> is
// $XDG_CONFIG_HOME, else ~/.config (tests point it at a temporary folder). A
// profile without a key names an initialisation file directly.

namespace kv {

class IProfileStore {
public:
    virtual ~IProfileStore() = default;
    // Every entry of a section as "key=value", or none when it is absent.
    virtual std::optional<std::vector<std::string>> ReadSection(std::string_view section) = 0;
    virtual std::optional<std::string> GetString(std::string_view section,
                                                 std::string_view entry) = 0;
    // False when the store cannot be written; what it held stays.
    virtual bool WriteString(std::string_view section, std::string_view entry,
                             std::string_view value) = 0;
};

std::unique_ptr<IProfileStore> OpenProfileStore(const AppProfile& profile);

// The user's configuration folder: the override when one is set, else
// $XDG_CONFIG_HOME, else $HOME/.config.
std::string ConfigDirectory();
void SetConfigDirectoryOverride(std::optional<std::string> directory);

// Where a profile's settings live.
std::string ProfileFilePath(const AppProfile& profile);

// The framework's profile calls. Integers are stored as decimal text; an
// integer entry reads as its leading decimal number, 0 when it has none.
int GetProfileInt(IProfileStore& store, std::string_view section, std::string_view entry,
                  int defaultValue);
std::string GetProfileString(IProfileStore& store, std::string_view section, std::string_view entry,
                             std::string_view defaultValue);
bool WriteProfileInt(IProfileStore& store, std::string_view section, std::string_view entry,
                     int value);
bool WriteProfileString(IProfileStore& store, std::string_view section, std::string_view entry,
                        std::string_view value);

AppProfile ApplicationProfile();

// Puts another profile in place of the module's for the life of the guard.
class ScopedModuleProfile {
public:
    explicit ScopedModuleProfile(AppProfile replacement);
    ~ScopedModuleProfile();
    ScopedModuleProfile(const ScopedModuleProfile&) = delete;
    ScopedModuleProfile& operator=(const ScopedModuleProfile&) = delete;

private:
    friend AppProfile ApplicationProfile();
    AppProfile m_saved;
    ScopedModuleProfile* m_outer;
};

// The application's own profile: the module's profile as it was before any
// ScopedModuleProfile replaced it.
AppProfile ApplicationProfile();

}  // namespace kv
