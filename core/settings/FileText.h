#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Whole-file reads and writes. A write goes to a temporary file beside the
// target and is renamed over it, so a reader sees the old text or the new
// one, never a torn mix, and a failed write leaves the old file as it was.

namespace kv {

struct FileResult {
    bool ok = false;
    std::string reason;  // the system's reason when !ok
};

// The file's bytes, up to `maxBytes`; none (with the reason) when it cannot
// be read or is larger.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t maxBytes,
                                         std::string* reason = nullptr);

FileResult ReplaceFileAtomically(const std::string& path, std::string_view contents);

}  // namespace kv
