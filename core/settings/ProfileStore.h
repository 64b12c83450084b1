#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/settings/IniDocument.h"
#include "core/shared/AppProfile.h"
#include "core/shared/FileIo.h"

// The settings store a profile's calls go to. A keyed store is one INI file
// per key under the user's configuration folder, <config>/<key>/<profile
// name>.ini, where <config> is $XDG_CONFIG_HOME, else ~/.config (tests point
// it at a temporary folder); before start-up has set a key it is
// <config>/<profile name>.ini, never the working folder. A file profile names
// its initialisation file directly.

namespace kv {

// Larger files are not taken for settings: reading them whole would cost
// more than any profile is worth, and rewriting them could lose data.
inline constexpr std::size_t kMaxProfileBytes = 16u << 20;

class IProfileStore {
public:
    virtual ~IProfileStore() = default;
    // Every entry of a section, or none when it is absent.
    virtual std::optional<IniSection> ReadSection(std::string_view section) = 0;
    virtual std::optional<std::string> GetString(std::string_view section,
                                                 std::string_view entry) = 0;
    // Writes the entries of a section in one replace of the store: every one
    // of them or, on failure, none, and what the store held stays. The reason
    // of a failure is a sentence that names the file and says whether it
    // could not be read or not be written.
    virtual FileResult WriteEntries(std::string_view section,
                                    std::span<const IniDocument::Entry> entries) = 0;

    bool WriteString(std::string_view section, std::string_view entry, std::string_view value) {
        const IniDocument::Entry one{entry, std::string(value)};
        return WriteEntries(section, std::span<const IniDocument::Entry>(&one, 1)).ok;
    }
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
