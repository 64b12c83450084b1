#include "via/AtomicFile.h"

#include <fstream>
#include <random>
#include <string>
#include <system_error>

namespace kv {
namespace {

// A name in the same folder, so that the rename never crosses file systems.
std::filesystem::path TemporaryPathFor(const std::filesystem::path& path) {
    std::random_device seed;
    std::filesystem::path temporary = path;
    temporary += ".tmp" + std::to_string(seed() % 1000000u);
    return temporary;
}

class TemporaryFileGuard {
public:
    explicit TemporaryFileGuard(std::filesystem::path path) : m_path(std::move(path)) {}
    ~TemporaryFileGuard() {
        if (!m_kept) {
            std::error_code ignored;
            std::filesystem::remove(m_path, ignored);
        }
    }
    TemporaryFileGuard(const TemporaryFileGuard&) = delete;
    TemporaryFileGuard& operator=(const TemporaryFileGuard&) = delete;

    void Keep() { m_kept = true; }

private:
    std::filesystem::path m_path;
    bool m_kept = false;
};

}  // namespace

bool WriteFileAtomically(const std::filesystem::path& path,
                         const std::function<void(std::ostream&)>& write) {
    const std::filesystem::path temporary = TemporaryPathFor(path);
    TemporaryFileGuard guard(temporary);
    {
        std::ofstream file(temporary, std::ios::out | std::ios::trunc | std::ios::binary);
        if (!file) {
            return false;
        }
        write(file);
        file.close();
        if (file.fail()) {
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    if (error) {
        return false;
    }
    guard.Keep();
    return true;
}

bool AppendToFile(const std::filesystem::path& path, std::string_view text) {
    std::ofstream file(path, std::ios::out | std::ios::app | std::ios::binary);
    if (!file) {
        return false;
    }
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
}

}  // namespace kv
