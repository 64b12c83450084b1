#include <iostream>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/shared/AppProfile.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusPersistence.h"

// kvcomctl stimulus show|new|set FILE.ini: the stimulus data in an
// initialisation file, through the data object's own Load and Save.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl stimulus show FILE.ini\n"
    "       kvcomctl stimulus new FILE.ini\n"
    "       kvcomctl stimulus set FILE.ini KEY=VALUE...\n"
    "\n"
    "  show   loads the file and prints every stored key and value, in the order\n"
    "         they are saved (invalid data is reported and shown as the defaults)\n"
    "  new    writes the default stimulus data into the file\n"
    "  set    loads the file, sets the values (keys as stored, e.g. CYCLECOUNT=8,\n"
    "         PERIOD=2.5, SEQTYPE=4, BITSEQUENCE=0110) and saves it again; data\n"
    "         that would not load back is refused and the file left as it was\n";

void Show(const CStimulusData& data, std::ostream& out) {
    for (const auto& [key, value] : PersistedEntries(data)) {
        out << key << '=';
        // Multi-line values continue on indented lines, as in the file.
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (value[i] == '\r') {
                continue;
            }
            out << value[i];
            if (value[i] == '\n' && i + 1 < value.size()) {
                out << '\t';
            }
        }
        if (value.empty() || value.back() != '\n') {
            out << '\n';
        }
    }
}

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    if (args.size() < 2) {
        throw UsageError{"stimulus needs an action (show, new, set) and a file"};
    }
    // The jitter seed of 8B/10B data lives in the module's own store.
    if (ModuleProfile().registryKey.empty()) {
        ModuleProfile().registryKey = std::string(kModuleRegistryKey);
    }
    const std::string path(args[1]);
    CStimulusData data;
    if (args[0] == "new") {
        if (args.size() != 2) {
            throw UsageError{"new takes only the file"};
        }
        if (!data.Save(path.c_str(), true)) {
            err << "kvcomctl: cannot write " << path << '\n';
            return kExitFailure;
        }
        return kExitOk;
    }
    if (args[0] == "show") {
        if (args.size() != 2) {
            throw UsageError{"show takes only the file"};
        }
        data.Load(path.c_str(), true);
        Show(data, out);
        return kExitOk;
    }
    if (args[0] != "set") {
        throw UsageError{"unknown action '" + std::string(args[0]) + "'"};
    }
    if (args.size() < 3) {
        throw UsageError{"set needs KEY=VALUE"};
    }
    data.Load(path.c_str(), true);
    for (std::string_view assignment : args.subspan(2)) {
        const std::size_t equals = assignment.find('=');
        if (equals == std::string_view::npos ||
            !SetPersistedValue(data, assignment.substr(0, equals), assignment.substr(equals + 1))) {
            throw UsageError{"cannot set '" + std::string(assignment) + "'"};
        }
    }
    RegenerateBits(data);
    const int storedLength = data.GetBitCount();
    if (!data.IsValid(storedLength)) {
        err << "kvcomctl: the values make the stimulus data invalid; " << path << " is unchanged\n";
        return kExitFailure;
    }
    if (!data.Save(path.c_str(), true)) {
        err << "kvcomctl: cannot write " << path << '\n';
        return kExitFailure;
    }
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"stimulus", "show, create or change stimulus data in an INI file", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
