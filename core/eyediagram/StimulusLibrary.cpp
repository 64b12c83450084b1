#include "core/eyediagram/StimulusLibrary.h"

#include <algorithm>
#include <system_error>

#include "core/eyediagram/StimulusEditPageModel.h"
#include "core/settings/ProfileStore.h"
#include "core/stimulus/StimulusPersistence.h"

namespace kv::stimulus_library {
namespace {

constexpr std::string_view kExtension = ".ini";

std::filesystem::path PathOf(std::string_view name) {
    return Folder() / (std::string(name) + std::string(kExtension));
}

bool Refuse(std::string_view what, std::string_view name, std::string_view reason) {
    std::string text(what);
    text.append(" \"").append(name).append("\"");
    if (!reason.empty()) {
        text.append(":\n").append(reason);
    }
    stimulus_edit::Ask(text, MessageIcon::Warning, MessageButtons::Ok);
    return false;
}

}  // namespace

std::filesystem::path Folder() {
    return std::filesystem::path(ProfileFilePath(ModuleProfile())).parent_path() / "Stimuli";
}

std::vector<std::string> Names() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(Folder(), error)) {
        if (entry.is_regular_file(error) && entry.path().extension() == kExtension) {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool IsValidName(std::string_view name) {
    if (name.empty() || name.size() > 64 || name.front() == '.') {
        return false;
    }
    return std::none_of(name.begin(), name.end(), [](char c) {
        return c == '/' || c == '\\' || static_cast<unsigned char>(c) < ' ';
    });
}

bool Save(const CStimulusData& data, std::string_view name) {
    if (!IsValidName(name)) {
        return Refuse("Unable to save the stimulus", name, "The name cannot be a file name.");
    }
    std::error_code error;
    std::filesystem::create_directories(Folder(), error);
    if (error) {
        return Refuse("Unable to save the stimulus", name, error.message());
    }
    const FileResult result = SaveStimulusData(data, PathOf(name).string().c_str(), true);
    return result.ok || Refuse("Unable to save the stimulus", name, result.reason);
}

bool Open(CStimulusData& data, std::string_view name) {
    std::error_code error;
    if (!IsValidName(name) || !std::filesystem::is_regular_file(PathOf(name), error)) {
        return Refuse("Unable to open the stimulus", name, "");
    }
    LoadStimulusData(data, PathOf(name).string().c_str(), true);
    return true;
}

bool Remove(std::string_view name) {
    std::error_code error;
    if (!IsValidName(name) || !std::filesystem::remove(PathOf(name), error)) {
        return Refuse("Unable to remove the stimulus", name, error ? error.message() : "");
    }
    return true;
}

}  // namespace kv::stimulus_library
