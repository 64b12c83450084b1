#include "apps/kvcomctl/Command.h"

#include "core/shared/NumberText.h"

#include <algorithm>
#include <cctype>

namespace kv::cli {
namespace {

std::vector<Command>& MutableCommands() {
    static std::vector<Command> commands;
    return commands;
}

}  // namespace

const std::vector<Command>& Commands() {
    return MutableCommands();
}

CommandRegistration::CommandRegistration(Command command) {
    MutableCommands().push_back(std::move(command));
}

long long ParseInteger(std::string_view text, std::string_view what) {
    const auto value = ParseWholeInteger(text);
    if (!value) {
        throw UsageError{std::string(what) + " must be a whole number, not '" + std::string(text) +
                         "'"};
    }
    return *value;
}

double ParseReal(std::string_view text, std::string_view what) {
    const auto value = ParseFiniteNumber(text);
    if (!value) {
        throw UsageError{std::string(what) + " must be a finite number, not '" + std::string(text) +
                         "'"};
    }
    return *value;
}

namespace {

bool LooksLikeOption(std::string_view arg) {
    return arg.size() > 1 && arg[0] == '-' &&
           !(std::isdigit(static_cast<unsigned char>(arg[1])) || arg[1] == '.');
}

bool Contains(std::initializer_list<std::string_view> names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

ParsedArguments::ParsedArguments(Arguments args, std::initializer_list<std::string_view> switches,
                                 std::initializer_list<std::string_view> valued) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string_view arg = args[i];
        if (Contains(switches, arg)) {
            m_switches.push_back(arg);
        } else if (Contains(valued, arg)) {
            if (i + 1 >= args.size()) {
                throw UsageError{std::string(arg) + " needs a value"};
            }
            m_values.emplace_back(arg, args[++i]);
        } else if (LooksLikeOption(arg)) {
            throw UsageError{"unknown option '" + std::string(arg) + "'"};
        } else {
            m_positional.push_back(arg);
        }
    }
}

const std::vector<std::string_view>& ParsedArguments::Positional(std::size_t count,
                                                                 std::string_view usage) const {
    if (m_positional.size() != count) {
        throw UsageError{"expects " + std::string(usage)};
    }
    return m_positional;
}

bool ParsedArguments::Has(std::string_view name) const {
    return std::find(m_switches.begin(), m_switches.end(), name) != m_switches.end() ||
           Value(name).has_value();
}

std::optional<std::string_view> ParsedArguments::Value(std::string_view option) const {
    // The last one given wins, as usual on command lines.
    for (auto it = m_values.rbegin(); it != m_values.rend(); ++it) {
        if (it->first == option) {
            return it->second;
        }
    }
    return std::nullopt;
}

std::optional<long long> ParsedArguments::Integer(std::string_view option) const {
    const auto text = Value(option);
    if (!text) {
        return std::nullopt;
    }
    return ParseInteger(*text, option);
}

std::optional<double> ParsedArguments::Real(std::string_view option) const {
    const auto text = Value(option);
    if (!text) {
        return std::nullopt;
    }
    return ParseReal(*text, option);
}

}  // namespace kv::cli
