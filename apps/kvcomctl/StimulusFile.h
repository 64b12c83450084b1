#pragma once

#include <optional>
#include <string>

#include "core/stimulus/StimulusData.h"

// Stimulus data in an INI file, as the commands that read one share it.

namespace kv::cli {

// Why an existing file cannot serve as stimulus data, if it cannot. A file
// that is there and readable but lacks keys is fine: they take defaults. A
// missing file is a problem only when it `mustExist`.
std::optional<std::string> FileProblem(const std::string& path, bool mustExist);

// Makes the module's own store the one the stimulus reaches for what it
// keeps outside the file (the jitter seed of 8B/10B data).
void UseModuleStore();

// Reads the file into `data` as Load reads it, without a message: why the
// file or its data cannot be used, or none when `data` holds valid data.
std::optional<std::string> ReadValidStimulus(const std::string& path, CStimulusData& data);

}  // namespace kv::cli
