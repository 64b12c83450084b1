#include "core/shared/FileIo.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <random>
#include <system_error>

namespace kv {
namespace {

// The reason the last failed stream operation left in errno.
std::string LastSystemReason() {
    return errno != 0 ? std::strerror(errno) : "input/output error";
}

// A name in the same folder, so that the rename never crosses file systems.
std::filesystem::path TemporaryPathFor(const std::filesystem::path& path) {
    static std::mt19937_64 names{std::random_device{}()};
    std::filesystem::path temporary = path;
    temporary += ".tmp" + std::to_string(names() % 100000000u);
    return temporary;
}

// Removes the temporary file on every way out unless it was renamed.
class TemporaryFile {
public:
    explicit TemporaryFile(std::filesystem::path path) : m_path(std::move(path)) {}
    ~TemporaryFile() {
        if (!m_renamed) {
            std::error_code ignored;
            std::filesystem::remove(m_path, ignored);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    void MarkRenamed() { m_renamed = true; }

private:
    std::filesystem::path m_path;
    bool m_renamed = false;
};

FileResult WriteStream(const std::filesystem::path& path, std::ios::openmode mode,
                       std::string_view contents) {
    errno = 0;
    std::ofstream file(path, mode | std::ios::binary);
    if (!file) {
        return {false, LastSystemReason()};
    }
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    if (file.fail()) {
        return {false, LastSystemReason()};
    }
    return {true, {}};
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maxBytes,
                                         std::string* reason) {
    const auto fail = [reason](std::string why) -> std::optional<std::string> {
        if (reason != nullptr) {
            *reason = std::move(why);
        }
        return std::nullopt;
    };
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

FileResult ReplaceFileAtomically(const std::filesystem::path& path, std::string_view contents) {
    TemporaryFile temporary(TemporaryPathFor(path));
    FileResult written = WriteStream(temporary.Path(), std::ios::out | std::ios::trunc, contents);
    if (!written.ok) {
        return written;
    }
    std::error_code error;
    const auto existing = std::filesystem::status(path, error);
    if (!error && std::filesystem::exists(existing)) {
        std::filesystem::permissions(temporary.Path(), existing.permissions(), error);
    }
    std::filesystem::rename(temporary.Path(), path, error);
    if (error) {
        return {false, error.message()};
    }
    temporary.MarkRenamed();
    return {true, {}};
}

FileResult AppendToFile(const std::filesystem::path& path, std::string_view text) {
    return WriteStream(path, std::ios::out | std::ios::app, text);
}

}  // namespace kv
