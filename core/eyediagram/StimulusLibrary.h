#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/stimulus/StimulusData.h"

// The named stimuli of the stimulus editing page: each one an initialisation
// file "<name>.ini" (section "EYEDIAGRAM", the stimulus's own text format) in
// the folder "Stimuli" beside the module's settings store.

namespace kv::stimulus_library {

std::filesystem::path Folder();
// The names kept, sorted; none when the folder does not exist.
std::vector<std::string> Names();
// A name that can be a file name: 1 to 64 characters, no path separator, no
// leading dot, no control character.
bool IsValidName(std::string_view name);
// Each false after a message with the page's caption.
bool Save(const CStimulusData& data, std::string_view name);
bool Open(CStimulusData& data, std::string_view name);
bool Remove(std::string_view name);

}  // namespace kv::stimulus_library
