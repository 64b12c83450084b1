#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// Whole-file reads and writes shared by every file the library keeps. A
// replacing write goes to a temporary file beside the target, which is then
// renamed over it: a reader sees the old text or the new one, never a torn
// mix, and a failed write leaves the old file as it was.

namespace kv {

struct FileResult {
    bool ok = false;
    std::string reason;  // the system's reason when !ok
};

// The file's bytes, up to `maxBytes`; none (with the reason) when it cannot
// be read or is larger.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maxBytes,
                                         std::string* reason = nullptr);

// Replaces (or creates) `path` with `contents`. A replaced file keeps its
// permissions.
FileResult ReplaceFileAtomically(const std::filesystem::path& path, std::string_view contents);

// Appends `text` to `path` (created when missing) in one write.
FileResult AppendToFile(const std::filesystem::path& path, std::string_view text);

}  // namespace kv
