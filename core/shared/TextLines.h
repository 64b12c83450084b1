#pragma once

#include <string_view>
#include <vector>

namespace kv {

// The lines of `text`, split at each line feed, without the line feed and
// without a carriage return before it. A final line feed ends the last line
// rather than starting an empty one.
std::vector<std::string_view> SplitLines(std::string_view text);

}  // namespace kv
