#pragma once

#include <optional>
#include <string>

#include "core/stimulus/StimulusData.h"

// Stimulus data in an INI file, as the commands that read one share it.

namespace kv::cli {

// Reads the file into `data` as Load reads it, without a message: why the
// file (FindIniFileProblem) or its data cannot be used, or none when `data`
// holds valid data.
std::optional<std::string> ReadValidStimulus(const std::string& path, CStimulusData& data);

}  // namespace kv::cli
