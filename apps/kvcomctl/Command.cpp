#include "Command.h"

#include <charconv>

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

std::string_view OptionValue(Arguments args, std::size_t& index) {
    const std::string_view option = args[index];
    if (index + 1 >= args.size()) {
        throw UsageError{std::string(option) + " needs a value"};
    }
    return args[++index];
}

long long ParseInteger(std::string_view text, std::string_view what) {
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.empty()) {
        throw UsageError{std::string(what) + " must be a whole number, not '" + std::string(text) +
                         "'"};
    }
    return value;
}

}  // namespace kv::cli
