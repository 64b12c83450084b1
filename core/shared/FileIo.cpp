#include "core/shared/FileIo.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <random>
#include <system_error>
#include <vector>

namespace kv {
namespace {

namespace fs = std::filesystem;

// The reason the last failed stream operation left in errno.
std::string LastSystemReason() {
    return errno != 0 ? std::strerror(errno) : "input/output error";
}

std::string ReasonOf(std::errc code) {
    return std::make_error_code(code).message();
}

FileResult Failure(std::string reason) {
    return {false, std::move(reason)};
}

// A name in the same folder, so that the rename never crosses file systems.
fs::path TemporaryPathFor(const fs::path& path) {
    static std::mt19937_64 names{std::random_device{}()};
    fs::path temporary = path;
    temporary += ".tmp" + std::to_string(names() % 100000000u);
    return temporary;
}

// Removes the temporary file on every way out unless it was renamed.
class TemporaryFile {
public:
    explicit TemporaryFile(fs::path path) : m_path(std::move(path)) {}
    ~TemporaryFile() {
        if (!m_renamed) {
            std::error_code ignored;
            fs::remove(m_path, ignored);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const fs::path& Path() const { return m_path; }
    void MarkRenamed() { m_renamed = true; }

private:
    fs::path m_path;
    bool m_renamed = false;
};

// Writes `contents` with the stream unbuffered, so the whole text goes to the
// system in one write request rather than in buffer-sized pieces.
FileResult WriteStream(const fs::path& path, std::ios::openmode mode, std::string_view contents) {
    std::ofstream file;
    file.rdbuf()->pubsetbuf(nullptr, 0);
    errno = 0;
    file.open(path, mode | std::ios::binary);
    if (!file) {
        return Failure(LastSystemReason());
    }
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    if (!file) {
        return Failure(LastSystemReason());
    }
    file.close();
    if (file.fail()) {
        return Failure(LastSystemReason());
    }
    return {true, {}};
}

// The names under which a process reaches a file it holds open: /dev/stdin,
// /dev/stdout, /dev/stderr, /dev/fd/N and /proc/<pid>/fd/N (/proc/self and
// /proc/thread-self among them). Whatever such a name leads to is written
// where it is: a redirected standard output must keep the file it has open,
// and the name may lead to a pipe that has no other name. Only these names
// decide this, never the folder a file lies in: a regular file under /dev or
// /proc (a scratch file in /dev/shm) is replaced like any other.
bool IsStreamName(const fs::path& path) {
    std::error_code error;
    const fs::path normal = fs::absolute(path, error).lexically_normal();
    if (error) {
        return false;
    }
    // The folder with its links resolved: /dev/fd is a link to /proc/self/fd.
    const fs::path folder = fs::weakly_canonical(normal.parent_path(), error);
    if (error) {
        return false;
    }
    const fs::path name = normal.filename();
    if (folder == "/dev") {
        return name == "stdin" || name == "stdout" || name == "stderr";
    }
    // /proc/<pid>/fd, or /proc/<pid>/task/<tid>/fd for a thread.
    const std::vector<fs::path> parts(folder.begin(), folder.end());
    return parts.size() >= 4 && parts[1] == "proc" && parts.back() == "fd";
}

struct WriteTarget {
    bool direct = false;  // written in place rather than replaced
    fs::path path;        // the file itself, every link resolved
};

// Follows the symbolic links from `path` to the file they name, and decides
// how that file is written.
FileResult ResolveWriteTarget(const fs::path& path, WriteTarget& target) {
    // As many links as the system itself follows before it gives up.
    constexpr int kMaxLinks = 40;
    fs::path current = path;
    for (int links = 0;; ++links) {
        if (IsStreamName(current)) {
            target = {true, current};
            return {true, {}};
        }
        std::error_code error;
        if (!fs::is_symlink(fs::symlink_status(current, error))) {
            break;
        }
        if (links == kMaxLinks) {
            return Failure(ReasonOf(std::errc::too_many_symbolic_link_levels));
        }
        const fs::path next = fs::read_symlink(current, error);
        if (error) {
            return Failure(error.message());
        }
        current = next.is_absolute() ? next : current.parent_path() / next;
    }
    std::error_code error;
    const fs::file_status status = fs::status(current, error);
    switch (status.type()) {
        case fs::file_type::not_found:
        case fs::file_type::regular:
            target = {false, current};
            return {true, {}};
        case fs::file_type::directory:
            return Failure(ReasonOf(std::errc::is_a_directory));
        case fs::file_type::none:
            return Failure(error.message());
        default:  // a FIFO, a device, a socket: opened as it is
            target = {true, current};
            return {true, {}};
    }
}

// A file is writable when some write permission bit is set and this process
// may open it for writing. The bits are checked on their own because the
// superuser opens any file, and yet a read-only file is meant to stay as it
// is; the rename that replaces a file would not look at the file at all.
FileResult CheckWritable(const fs::path& file, fs::perms permissions) {
    constexpr fs::perms kAnyWrite =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if ((permissions & kAnyWrite) == fs::perms::none) {
        return Failure(ReasonOf(std::errc::permission_denied) + " (the file is read-only)");
    }
    // Opening for appending changes neither the contents nor the times.
    errno = 0;
    std::ofstream probe(file, std::ios::out | std::ios::app | std::ios::binary);
    if (!probe) {
        return Failure(LastSystemReason());
    }
    return {true, {}};
}

}  // namespace

std::optional<std::string> ReadWholeFile(const fs::path& path, std::size_t maxBytes,
                                         std::string* reason) {
    const auto fail = [reason](std::string why) -> std::optional<std::string> {
        if (reason != nullptr) {
            *reason = std::move(why);
        }
        return std::nullopt;
    };
    std::error_code ignored;
    // A folder opens for reading and then reads as if it were empty.
    if (fs::is_directory(path, ignored)) {
        return fail(ReasonOf(std::errc::is_a_directory));
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return fail(LastSystemReason());
    }
    std::string contents;
    char buffer[65536];
    while (file) {
        file.read(buffer, sizeof buffer);
        const auto got = static_cast<std::size_t>(file.gcount());
        if (contents.size() + got > maxBytes) {
            return fail(std::strerror(EFBIG));
        }
        contents.append(buffer, got);
    }
    if (file.bad()) {
        return fail(LastSystemReason());
    }
    return contents;
}

FileResult ReplaceFileAtomically(const fs::path& path, std::string_view contents) {
    WriteTarget target;
    if (FileResult resolved = ResolveWriteTarget(path, target); !resolved.ok) {
        return resolved;
    }
    std::error_code error;
    if (target.direct) {
        // A regular file reached through a stream's name is written in place
        // but holds this text alone afterwards, as a replaced file would; a
        // FIFO or a device has nothing to cut and no end to append to.
        const bool regular = fs::is_regular_file(target.path, error);
        return WriteStream(
            target.path, regular ? std::ios::out | std::ios::trunc : std::ios::out | std::ios::app,
            contents);
    }
    const fs::file_status existing = fs::status(target.path, error);
    const bool exists = fs::exists(existing);
    if (exists) {
        if (FileResult writable = CheckWritable(target.path, existing.permissions());
            !writable.ok) {
            return writable;
        }
    }
    TemporaryFile temporary(TemporaryPathFor(target.path));
    FileResult written = WriteStream(temporary.Path(), std::ios::out | std::ios::trunc, contents);
    if (!written.ok) {
        return written;
    }
    if (exists) {
        fs::permissions(temporary.Path(), existing.permissions(), error);
    }
    fs::rename(temporary.Path(), target.path, error);
    if (error) {
        return Failure(error.message());
    }
    temporary.MarkRenamed();
    return {true, {}};
}

FileResult AppendToFile(const fs::path& path, std::string_view text) {
    std::error_code error;
    const fs::file_status before = fs::status(path, error);
    const bool existed = fs::exists(before);
    const std::uintmax_t oldSize = fs::is_regular_file(before) ? fs::file_size(path, error) : 0;
    const bool knownSize = !error;
    FileResult written = WriteStream(path, std::ios::out | std::ios::app, text);
    if (written.ok) {
        return written;
    }
    // Whatever part of the record reached the file is taken back.
    if (!existed) {
        if (fs::is_regular_file(path, error)) {
            fs::remove(path, error);
        }
    } else if (fs::is_regular_file(before) && knownSize) {
        fs::resize_file(path, oldSize, error);
    }
    return written;
}

}  // namespace kv
