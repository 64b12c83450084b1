#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

// A fresh folder under the system's temporary folder, removed with the test.
class TestFolder {
public:
    TestFolder() {
        std::random_device device;
        m_path = std::filesystem::temp_directory_path() /
                 ("kvseq-" + std::to_string(device()) + "-" + std::to_string(device()));
        std::filesystem::create_directories(m_path);
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string File(const std::string& name) const { return (m_path / name).string(); }
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

inline void WriteText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
