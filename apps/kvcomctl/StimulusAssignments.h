#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/stimulus/StimulusData.h"

// The KEY=VALUE assignments of `kvcomctl stimulus set`. A person typed them,
// so they are read strictly, unlike the lenient reading of a stored file:
// the whole value must be the number, and it must lie in the range the
// eye-diagram pages allow, or the pages' own message says why not.

namespace kv::cli {

struct Assignment {
    std::string key;  // as the store spells it
    std::string_view value;
};

// Splits and names the assignments; an unknown key or a missing "=" is a
// UsageError.
std::vector<Assignment> ParseAssignments(std::span<const std::string_view> texts);

// Applies every assignment to `data` and checks the values that were given,
// alone and against each other; the first refusal as a message, else none.
// The bits of generated kinds are made again afterwards.
std::optional<std::string> ApplyAssignments(const std::vector<Assignment>& assignments,
                                            CStimulusData& data);

bool Assigns(const std::vector<Assignment>& assignments, std::string_view key);

}  // namespace kv::cli
