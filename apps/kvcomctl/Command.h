#pragma once

#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The command line is a set of named commands. Each command lives in a file
// of its own and registers itself with a static CommandRegistration, so a new
// command is one new file.

namespace kv::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

using Arguments = std::span<const std::string_view>;

struct Command {
    std::string_view name;
    std::string_view summary;  // one line for the overview
    std::string_view help;     // the whole usage text of the command
    std::function<int(Arguments args, std::ostream& out, std::ostream& err)> run;
};

const std::vector<Command>& Commands();

struct CommandRegistration {
    explicit CommandRegistration(Command command);
};

// Thrown by argument helpers; main turns it into "kvcomctl: <message>" on
// stderr and exit status 2.
struct UsageError {
    std::string message;
};

// Reads the value after an option, or raises a UsageError naming the option.
std::string_view OptionValue(Arguments args, std::size_t& index);
// Parses a whole decimal integer, or raises a UsageError naming `what`.
long long ParseInteger(std::string_view text, std::string_view what);

}  // namespace kv::cli
