#include <iostream>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "apps/kvcomctl/StimulusAssignments.h"
#include "apps/kvcomctl/StimulusFile.h"
#include "apps/kvcomctl/StimulusPwl.h"
#include "core/settings/IniFileCheck.h"
#include "core/shared/AppProfile.h"
#include "core/shared/FileIo.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusPersistence.h"

// kvcomctl stimulus show|new|set|pwl FILE.ini: the stimulus data in an
// initialisation file, through the data object's own Load and Save, and the
// waveform it drives a simulator with.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl stimulus show FILE.ini\n"
    "       kvcomctl stimulus new FILE.ini\n"
    "       kvcomctl stimulus set FILE.ini KEY=VALUE...\n"
    "       kvcomctl stimulus pwl FILE.ini -o FILE.cir [--jitter] [--low V] [--high V]\n"
    "                             [--rise S] [--fall S]\n"
    "\n"
    "  show   loads the file and prints every stored key and value, in the order\n"
    "         they are saved; keys the file lacks show their defaults. A file that\n"
    "         is missing, a folder, unreadable, empty or no INI file, and data\n"
    "         that loads as invalid (shown as the defaults), exit with status 1\n"
    "  new    writes the default stimulus data into the file\n"
    "  set    loads the file, sets the values (keys as stored, e.g. CYCLECOUNT=8,\n"
    "         PERIOD=2.5, SEQTYPE=4, BITSEQUENCE=0110) and saves it again. Each\n"
    "         value must be wholly a number in the range the eye-diagram pages\n"
    "         allow; data that would not load back as it is refused, with the\n"
    "         reason, and the file left as it was\n"
    "  pwl    loads the file as show does and writes its waveform as the SPICE\n"
    "         source \"VSTIM in 0 PWL(...)\" to FILE.cir (replaced whole). --jitter\n"
    "         moves every edge by the stimulus's jitter (repeatable jitter gives the\n"
    "         same file every time). Levels in volts, --low default 0 and --high\n"
    "         default 1; ramp times in seconds, --rise and --fall default a tenth\n"
    "         of the bit interval\n";

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

int Fail(std::ostream& err, const std::string& message) {
    err << "kvcomctl stimulus: " << message << '\n';
    return kExitFailure;
}

int RunNew(const std::string& path, std::ostream& err) {
    const FileResult saved = SaveStimulusData(CStimulusData(), path.c_str(), true);
    return saved.ok ? kExitOk : Fail(err, saved.reason);
}

int RunShow(const std::string& path, std::ostream& out, std::ostream& err) {
    if (const auto problem = FindIniFileProblem(path, true)) {
        return Fail(err, problem->reason);
    }
    CStimulusData data;
    const StimulusReadResult read = LoadStimulusData(data, path.c_str(), true);
    Show(data, out);
    if (read.invalidReason) {
        return Fail(err, path + " holds invalid stimulus data (" + *read.invalidReason +
                             "); shown are the defaults with the file's mask");
    }
    if (read.unreadSequenceLength) {
        return Fail(err, path + ": the stored SEQUENCELENGTH=" +
                             std::to_string(*read.unreadSequenceLength) +
                             " lies outside 1 - 32000, so the stored bits were not read");
    }
    return kExitOk;
}

int RunSet(const std::string& path, Arguments texts, std::ostream& err) {
    const std::vector<Assignment> assignments = ParseAssignments(texts);
    if (const auto problem = FindIniFileProblem(path, false)) {
        return Fail(err, problem->reason);
    }
    CStimulusData data;
    const StimulusReadResult read = ReadStimulusFile(data, path);
    const std::string unchanged = "; " + path + " is unchanged";
    if (read.unreadSequenceLength && !Assigns(assignments, "BITSEQUENCE")) {
        // Saving now would store whatever bits the object had instead.
        return Fail(err, "the stored SEQUENCELENGTH=" + std::to_string(*read.unreadSequenceLength) +
                             " lies outside 1 - 32000, so the stored bits cannot be read; give "
                             "BITSEQUENCE to replace them" +
                             unchanged);
    }
    if (const auto refusal = ApplyAssignments(assignments, data)) {
        return Fail(err, *refusal + unchanged);
    }
    if (const auto reason = data.InvalidReason(data.GetBitCount())) {
        return Fail(
            err, "the values make the stimulus data invalid: " + std::string(*reason) + unchanged);
    }
    if (const auto loss = FindRoundTripLoss(data)) {
        return Fail(err, "the values would not load back as they are: " + *loss + unchanged);
    }
    if (StoresItsBits(data.GetSeqType()) && data.GetBitCount() > kMaxStoredCustomBits) {
        err << "kvcomctl stimulus: the sequence has " << data.GetBitCount()
            << " bits; only its first " << kMaxStoredCustomBits << " are saved\n";
    }
    const FileResult saved = SaveStimulusData(data, path.c_str(), true);
    return saved.ok ? kExitOk : Fail(err, saved.reason);
}

int RunPwl(const std::string& path, Arguments options, std::ostream& err) {
    const PwlOptions parsed = ParsePwlOptions(options);
    CStimulusData data;
    if (const auto problem = ReadValidStimulus(path, data)) {
        return Fail(err, *problem);
    }
    return WriteStimulusPwl(data, parsed, err);
}

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    if (args.size() < 2) {
        throw UsageError{"stimulus needs an action (show, new, set, pwl) and a file"};
    }
    EnsureModuleRegistryKey();
    const std::string path(args[1]);
    if (args[0] == "new" || args[0] == "show") {
        if (args.size() != 2) {
            throw UsageError{std::string(args[0]) + " takes only the file"};
        }
        return args[0] == "new" ? RunNew(path, err) : RunShow(path, out, err);
    }
    if (args[0] == "pwl") {
        return RunPwl(path, args.subspan(2), err);
    }
    if (args[0] != "set") {
        throw UsageError{"unknown action '" + std::string(args[0]) + "'"};
    }
    if (args.size() < 3) {
        throw UsageError{"set needs KEY=VALUE"};
    }
    return RunSet(path, args.subspan(2), err);
}

const CommandRegistration kRegistration{
    {"stimulus", "show, create or change stimulus data in an INI file, or write its waveform",
     kHelp, Run}};

}  // namespace
}  // namespace kv::cli
