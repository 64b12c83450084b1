#pragma once

// What the tests share: temporary folders, whole-file text, and running the
// command line (or any shell command) with its output captured. Tests built
// without the command line's path (widget and host tests) get everything else.

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
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

// Sets an environment variable (unsets it for nothing) for the life of the
// guard and puts back what was there.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name)) {
            m_old = old;
        }
        value != nullptr ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedEnvironment() { m_old ? setenv(m_name, m_old->c_str(), 1) : unsetenv(m_name); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

inline void WriteText(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string ReadText(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

struct CommandResult {
    int status = -1;  // the exit status, or -1 when the command did not exit
    std::string out;
    std::string err;
};

// Runs `command` through the shell and captures both of its outputs.
inline CommandResult RunShell(const std::string& command) {
    const TestFolder folder;
    const std::string out = folder.File("stdout");
    const std::string err = folder.File("stderr");
    const int raw = std::system((command + " >" + out + " 2>" + err).c_str());
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadText(out), ReadText(err)};
}

#ifdef KV_CLI_PATH
// Runs the built kvcomctl with `arguments` (quoted for the shell), with
// `environment` ("NAME=value ...") in front when given.
inline CommandResult RunCli(const std::string& arguments, const std::string& environment = "") {
    return RunShell(environment + " " + KV_CLI_PATH + " " + arguments);
}
#endif
