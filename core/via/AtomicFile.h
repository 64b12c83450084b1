#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string_view>

namespace kv {

// Writes a file so that readers only ever see the old content or the complete new one: the
// text goes to a temporary file beside `path`, which then replaces `path` in one rename.
// Returns false, leaving `path` as it was and no temporary file behind, when the temporary
// file cannot be created or written, when `write` throws (the exception is passed on), or
// when the rename fails.
bool WriteFileAtomically(const std::filesystem::path& path,
                         const std::function<void(std::ostream&)>& write);

// Appends `text` to `path` (created when missing) with one write, so that a failure does not
// leave part of it behind in the usual cases. Returns false when the file cannot be opened or
// written.
bool AppendToFile(const std::filesystem::path& path, std::string_view text);

}  // namespace kv
