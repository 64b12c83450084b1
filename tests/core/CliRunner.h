#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

// Runs the built command line with `arguments` (already quoted for the shell)
// and returns what it printed on standard output with its exit status.
struct CliResult {
    std::string out;
    int status = -1;
};

inline CliResult RunCli(const std::string& arguments) {
    const std::string command = std::string(KV_CLI_PATH) + " " + arguments + " 2>/dev/null";
    CliResult result;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return result;
    }
    std::array<char, 4096> buffer{};
    std::size_t count = 0;
    while ((count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) {
        result.out.append(buffer.data(), count);
    }
    const int raw = pclose(pipe);
    result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return result;
}
