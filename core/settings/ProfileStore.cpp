#include "core/settings/ProfileStore.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "core/settings/IniDocument.h"
#include "core/shared/FileIo.h"
#include "core/shared/NumberText.h"

namespace kv {
namespace {

// A keyed store must stay inside the configuration folder.
bool IsSafeKey(std::string_view key) {
    const std::filesystem::path path(key);
    if (key.empty() || path.is_absolute()) {
        return false;
    }
    for (const auto& part : path) {
        if (part == "..") {
            return false;
        }
    }
    return true;
}

class IniProfileStore final : public IProfileStore {
public:
    IniProfileStore(std::string path, bool createFolders)
        : m_path(std::move(path)), m_createFolders(createFolders) {}

    std::optional<IniSection> ReadSection(std::string_view section) override {
        return Document() ? Document()->Section(section) : std::nullopt;
    }

    std::optional<std::string> GetString(std::string_view section,
                                         std::string_view entry) override {
        return Document() ? Document()->Get(section, entry) : std::nullopt;
    }

    FileResult WriteEntries(std::string_view section,
                            std::span<const IniDocument::Entry> entries) override {
        if (m_path.empty()) {
            return {false,
                    "there is no settings store: neither XDG_CONFIG_HOME nor HOME names "
                    "a folder for it, or its key leaves that folder"};
        }
        if (!m_loaded) {
            Load();
        }
        if (m_readProblem) {
            // Rewriting a file we could not read would lose it.
            return {false, "cannot read " + m_path + ": " + *m_readProblem};
        }
        if (m_createFolders) {
            std::error_code ignored;
            std::filesystem::create_directories(std::filesystem::path(m_path).parent_path(),
                                                ignored);
        }
        IniDocument changed = m_document ? *m_document : IniDocument();
        changed.SetEntries(section, entries);
        const FileResult written = ReplaceFileAtomically(m_path, changed.Text());
        if (!written.ok) {
            return {false, "cannot write " + m_path + ": " + written.reason};
        }
        m_document = std::move(changed);
        return {true, {}};
    }

private:
    const std::optional<IniDocument>& Document() {
        if (!m_loaded) {
            Load();
        }
        return m_document;
    }

    void Load() {
        m_loaded = true;
        if (m_path.empty()) {
            return;
        }
        std::error_code error;
        if (!std::filesystem::exists(m_path, error)) {
            return;  // a missing file is an empty store
        }
        std::string reason;
        const auto text = ReadWholeFile(m_path, kMaxProfileBytes, &reason);
        if (!text) {
            m_readProblem = std::move(reason);
            return;
        }
        m_document.emplace(*text);
    }

    std::string m_path;
    bool m_createFolders;
    bool m_loaded = false;
    std::optional<std::string> m_readProblem;  // why the file could not be read
    std::optional<IniDocument> m_document;
};

}  // namespace

std::string ConfigDirectory() {
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg != nullptr && *xdg != '\0') {
        return xdg;
    }
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return std::string(home) + "/.config";
    }
    return {};
}

std::string ProfileFilePath(const AppProfile& profile) {
    if (profile.IsFile()) {
        return profile.iniFile;
    }
    const std::string config = ConfigDirectory();
    if (config.empty()) {
        return {};
    }
    if (profile.registryKey.empty()) {
        return config + "/" + profile.profileName + ".ini";
    }
    if (!IsSafeKey(profile.registryKey)) {
        return {};
    }
    return config + "/" + profile.registryKey + "/" + profile.profileName + ".ini";
}

std::unique_ptr<IProfileStore> OpenProfileStore(const AppProfile& profile) {
    return std::make_unique<IniProfileStore>(ProfileFilePath(profile), !profile.IsFile());
}

int GetProfileInt(IProfileStore& store, std::string_view section, std::string_view entry,
                  int defaultValue) {
    const auto text = store.GetString(section, entry);
    if (!text) {
        return defaultValue;
    }
    return ParseIntPrefix(*text).value_or(0);
}

std::string GetProfileString(IProfileStore& store, std::string_view section, std::string_view entry,
                             std::string_view defaultValue) {
    return store.GetString(section, entry).value_or(std::string(defaultValue));
}

bool WriteProfileInt(IProfileStore& store, std::string_view section, std::string_view entry,
                     int value) {
    return store.WriteString(section, entry, std::to_string(value));
}

bool WriteProfileString(IProfileStore& store, std::string_view section, std::string_view entry,
                        std::string_view value) {
    return store.WriteString(section, entry, value);
}

}  // namespace kv
