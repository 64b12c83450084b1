#include "apps/kvcomctl/StimulusFile.h"

#include <utility>

#include "core/settings/IniFileCheck.h"
#include "core/shared/AppProfile.h"
#include "core/stimulus/StimulusPersistence.h"

namespace kv::cli {

std::optional<std::string> ReadValidStimulus(const std::string& path, CStimulusData& data) {
    if (auto problem = FindIniFileProblem(path, true)) {
        return std::move(problem->reason);
    }
    EnsureModuleRegistryKey();
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
