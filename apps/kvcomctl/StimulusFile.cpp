#include "apps/kvcomctl/StimulusFile.h"

#include <filesystem>

#include "core/settings/IniDocument.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/AppProfile.h"
#include "core/shared/FileIo.h"
#include "core/stimulus/StimulusPersistence.h"

namespace kv::cli {

std::optional<std::string> FileProblem(const std::string& path, bool mustExist) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        if (!mustExist) {
            return std::nullopt;
        }
        return "cannot read " + path + ": no such file";
    }
    if (std::filesystem::is_directory(status)) {
        return path + " is a folder, not an INI file";
    }
    std::string reason;
    const auto text = ReadWholeFile(path, kMaxProfileBytes, &reason);
    if (!text) {
        return "cannot read " + path + ": " + reason;
    }
    if (TrimSpace(*text).empty()) {
        return mustExist ? std::optional(path + " is empty") : std::nullopt;
    }
    if (!LooksLikeIniText(*text)) {
        return path + " is no INI file: it holds no [section] line, or bytes no text holds";
    }
    return std::nullopt;
}

void UseModuleStore() {
    if (ModuleProfile().registryKey.empty()) {
        ModuleProfile().registryKey = std::string(kModuleRegistryKey);
    }
}

std::optional<std::string> ReadValidStimulus(const std::string& path, CStimulusData& data) {
    if (auto problem = FileProblem(path, true)) {
        return problem;
    }
    UseModuleStore();
    const StimulusReadResult read = ReadStimulusFile(data, path);
    if (read.invalidReason) {
        return path + " holds invalid stimulus data (" + *read.invalidReason + ")";
    }
    if (read.unreadSequenceLength) {
        return path + ": the stored SEQUENCELENGTH=" + std::to_string(*read.unreadSequenceLength) +
               " lies outside 1 - 32000, so the stored bits were not read";
    }
    return std::nullopt;
}

}  // namespace kv::cli
