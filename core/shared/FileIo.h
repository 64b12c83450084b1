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
// be read, is a folder or is larger.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maxBytes,
                                         std::string* reason = nullptr);

// Replaces (or creates) `path` with `contents`. A replaced file keeps its
// permissions. A symbolic link is written through: the file it names is
// replaced in that file's folder and the link stays. A target that nobody
// may write (no write permission bit at all) or that this process may not
// open for writing is refused, even where the permission bits would not stop
// the process. What the target is decides how it is written, never its
// folder: a regular file is always replaced; a FIFO, a device, a socket, or
// whatever a process's stream name (/dev/stdout, /dev/fd/N, /proc/self/fd/N)
// leads to is written directly, and a regular file written so is cut to the
// new text first.
FileResult ReplaceFileAtomically(const std::filesystem::path& path, std::string_view contents);

// Appends `text` to `path` (created when missing) in one write. When the
// write fails part-way the file is cut back to its old length (removed when
// the append created it), so no torn record is left.
FileResult AppendToFile(const std::filesystem::path& path, std::string_view text);

}  // namespace kv
