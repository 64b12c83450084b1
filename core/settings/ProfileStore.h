#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/shared/AppProfile.h"

// The settings store a profile's calls go to. A keyed store is one INI file
// per key under the user's configuration folder, <config>/<key>/<profile
// name>.ini, where <config> is $XDG_CONFIG_HOME, else ~/.config (tests point
// it at a temporary folder); before start-up has set a key it is
// <config>/<profile name>.ini, never the working folder. A file profile names
// its initialisation file directly.

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

// The user's configuration folder: $XDG_CONFIG_HOME, else $HOME/.config;
// empty when neither is set, and then no keyed store can be written.
std::string ConfigDirectory();

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

}  // namespace kv
