#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "apps/kvcomctl/Command.h"

namespace {

using kv::cli::Command;

void PrintOverview(std::ostream& out) {
    out << "Usage: kvcomctl COMMAND [ARGS...]\n"
           "       kvcomctl COMMAND --help\n\n"
           "Commands:\n";
    std::vector<const Command*> sorted;
    for (const Command& command : kv::cli::Commands()) {
        sorted.push_back(&command);
    }
    std::sort(sorted.begin(), sorted.end(),
              [](const Command* a, const Command* b) { return a->name < b->name; });
    for (const Command* command : sorted) {
        std::string name(command->name);
        name.resize(std::max<std::size_t>(name.size(), 14), ' ');
        out << "  " << name << "  " << command->summary << '\n';
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> args(argv + 1, argv + argc);
    if (args.empty()) {
        PrintOverview(std::cerr);
        return kv::cli::kExitUsage;
    }
    if (args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        PrintOverview(std::cout);
        return kv::cli::kExitOk;
    }
    const auto& commands = kv::cli::Commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const Command& c) { return c.name == args[0]; });
    if (found == commands.end()) {
        std::cerr << "kvcomctl: unknown command '" << args[0] << "' (see kvcomctl --help)\n";
        return kv::cli::kExitUsage;
    }
    const kv::cli::Arguments rest(args.data() + 1, args.size() - 1);
    if (std::find(rest.begin(), rest.end(), "--help") != rest.end()) {
        std::cout << found->help;
        return kv::cli::kExitOk;
    }
    try {
        return found->run(rest, std::cout, std::cerr);
    } catch (const kv::cli::UsageError& error) {
        std::cerr << "kvcomctl " << found->name << ": " << error.message << '\n';
        return kv::cli::kExitUsage;
    } catch (const std::exception& error) {
        std::cerr << "kvcomctl " << found->name << ": " << error.what() << '\n';
        return kv::cli::kExitFailure;
    }
}
