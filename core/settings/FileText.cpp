#include "settings/FileText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace kv {
namespace {

struct Descriptor {
    int fd = -1;
    ~Descriptor() {
        if (fd >= 0) {
            ::close(fd);
        }
    }
};

std::string Reason(int error) {
    return std::strerror(error);
}

bool WriteAll(int fd, std::string_view data) {
    while (!data.empty()) {
        const ssize_t written = ::write(fd, data.data(), data.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t maxBytes,
                                         std::string* reason) {
    Descriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (file.fd < 0) {
        if (reason) {
            *reason = Reason(errno);
        }
        return std::nullopt;
    }
    std::string contents;
    char buffer[65536];
    for (;;) {
        const ssize_t got = ::read(file.fd, buffer, sizeof buffer);
        if (got < 0) {
            if (errno == EINTR) {
                continue;
            }
            if (reason) {
                *reason = Reason(errno);
            }
            return std::nullopt;
        }
        if (got == 0) {
            return contents;
        }
        if (contents.size() + static_cast<std::size_t>(got) > maxBytes) {
            if (reason) {
                *reason = Reason(EFBIG);
            }
            return std::nullopt;
        }
        contents.append(buffer, static_cast<std::size_t>(got));
    }
}

FileResult ReplaceFileAtomically(const std::string& path, std::string_view contents) {
    std::vector<char> name(path.begin(), path.end());
    const char suffix[] = ".tmpXXXXXX";
    name.insert(name.end(), suffix, suffix + sizeof suffix);  // with the terminator
    Descriptor temporary{::mkstemp(name.data())};
    if (temporary.fd < 0) {
        return {false, Reason(errno)};
    }
    // The new file keeps the permissions of the one it replaces; a new one
    // gets the usual read-write for the owner and read for others.
    struct stat existing {};
    const mode_t mode = ::stat(path.c_str(), &existing) == 0 ? existing.st_mode & 07777 : 0644;
    int error = 0;
    if (::fchmod(temporary.fd, mode) != 0 || !WriteAll(temporary.fd, contents)) {
        error = errno;
    }
    if (::close(temporary.fd) != 0 && error == 0) {
        error = errno;
    }
    temporary.fd = -1;
    if (error == 0 && ::rename(name.data(), path.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        ::unlink(name.data());
        return {false, Reason(error)};
    }
    return {true, {}};
}

}  // namespace kv
