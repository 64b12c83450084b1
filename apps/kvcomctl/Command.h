#pragma once

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
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

// Parses a whole decimal integer, or raises a UsageError naming `what`.
long long ParseInteger(std::string_view text, std::string_view what);
// Parses a finite real, or raises a UsageError naming `what`: NaN, infinity
// and numbers too large to read are no value a command can use.
double ParseReal(std::string_view text, std::string_view what);

// A command's arguments split into switches, options with a value and
// positional arguments. Anything else that looks like an option is a
// UsageError; a negative number ("-0.25") is positional.
class ParsedArguments {
public:
    ParsedArguments(Arguments args, std::initializer_list<std::string_view> switches,
                    std::initializer_list<std::string_view> valued = {});

    const std::vector<std::string_view>& Positional() const { return m_positional; }
    // The positional arguments, of which there must be `count`; `usage`
    // says what they are when there are not.
    const std::vector<std::string_view>& Positional(std::size_t count,
                                                    std::string_view usage) const;
    bool Has(std::string_view name) const;
    std::optional<std::string_view> Value(std::string_view option) const;
    std::optional<long long> Integer(std::string_view option) const;
    std::optional<double> Real(std::string_view option) const;

private:
    std::vector<std::string_view> m_positional;
    std::vector<std::string_view> m_switches;
    std::vector<std::pair<std::string_view, std::string_view>> m_values;
};

}  // namespace kv::cli
