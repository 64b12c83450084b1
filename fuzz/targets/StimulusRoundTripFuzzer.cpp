// Stimulus data that is valid survives a Save and a Load with every value.
// Two ways to valid data from one input: Load of the input as a file (then
// saved to a new file, and back into the file it came from, whose other
// sections must stay as they were), and the values of its [EYEDIAGRAM]
// section set one by one, with the bits the pages give each kind, as a
// person editing them would leave the object.

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "FuzzSupport.h"
#include "core/settings/IniDocument.h"
#include "core/shared/AsciiText.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusPersistence.h"

namespace {

using kv::CStimulusData;
using kv::fuzz::Escaped;
using kv::fuzz::Expect;

std::string ReadWhole(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// Kinds whose bits the file does not hold and Load does not derive from the
// stored values alone: 5 and 6 keep what the loading object has, and Edge
// and Pulse are rebuilt from the initial state as the page builds them, so
// only their length is compared.
bool BitsComparable(const CStimulusData& data) {
    const int kind = data.m_seqType;
    return kind != 5 && kind != 6 && kind != kv::seq::kEdge && kind != kv::seq::kPulse;
}

// Every persisted value as the text it is stored as, then the bits and the
// mask name as they are held.
std::string Describe(const CStimulusData& data) {
    std::string text;
    for (const auto& [key, value] : kv::PersistedEntries(data)) {
        if (key != "BITSEQUENCE" || BitsComparable(data)) {
            text += std::string(key) + "=" + value + "\n";
        }
    }
    text += "bits=";
    if (BitsComparable(data)) {
        for (const uint8_t bit : data.Bits()) {
            text += bit != 0 ? '1' : '0';
        }
    } else if (data.m_seqType == kv::seq::kEdge || data.m_seqType == kv::seq::kPulse) {
        text += std::to_string(data.Bits().size());
    }
    text += "\nmask name=";
    text += std::string(data.Mask().MaskName, strnlen(data.Mask().MaskName, 21));
    return text;
}

// Whether the data can come back at all. Values whose stored text reads
// back as something the validity rule refuses (a duty cycle of
// 99.99999999999999 is written "100"), and an empty custom sequence (stored
// with length 0, which a load reads as no sequence), and a mask name with
// blanks at either end (the reader trims values; the 20-byte cut can leave
// such blanks), cannot: the command line refuses them before it saves, and
// they are not asked to survive here.
bool Storable(const CStimulusData& data) {
    if (data.m_seqType == kv::seq::kCustom && data.Bits().empty()) {
        return false;
    }
    const std::string_view maskName(data.Mask().MaskName, strnlen(data.Mask().MaskName, 21));
    if (kv::TrimSpace(maskName) != maskName) {
        return false;
    }
    const auto probe = kv::fuzz::ScratchFolder() / "probe.ini";
    std::filesystem::remove(probe);
    if (!kv::SaveStimulusData(data, probe.c_str(), true).ok) {
        return false;
    }
    CStimulusData read;
    return !kv::ReadStimulusFile(read, probe.string()).invalidReason;
}

void CheckReload(CStimulusData first, const std::filesystem::path& file, std::string_view how,
                 std::string_view input) {
    if (!Storable(first)) {
        return;
    }
    Expect(first.Save(file.c_str(), true), std::string("Save failed ") + std::string(how));
    CStimulusData second;
    second.Load(file.c_str(), true);
    const std::string before = Describe(first);
    const std::string after = Describe(second);
    Expect(before == after, "values changed on a save " + std::string(how) + " and a load of \"" +
                                Escaped(input) + "\":\nloaded first:\n" + Escaped(before) +
                                "\nloaded again:\n" + Escaped(after) + "\nsaved file: \"" +
                                Escaped(ReadWhole(file)) + "\"");
}

// The values of the input's section set one at a time, then the bits the
// pages give the kind; none when the pages would not accept the result.
std::optional<CStimulusData> EditedData(std::string_view text) {
    const auto entries = kv::IniDocument(text).Section(kv::kStimulusSection);
    if (!entries) {
        return std::nullopt;
    }
    // The section alone, read as it stands: every value taken, none checked.
    std::string section = "[" + std::string(kv::kStimulusSection) + "]\n";
    for (const kv::IniEntry& entry : entries->Entries()) {
        section += entry.key + "=" + entry.value + "\n";
    }
    const auto edits = kv::fuzz::ScratchFolder() / "edits.ini";
    kv::fuzz::WriteFile(edits, section);
    CStimulusData data;
    kv::ReadStimulusFile(data, edits.string());
    switch (data.m_seqType) {
        case kv::seq::kUsbCompliance:
            data.m_bits = kv::UsbCompliancePattern();
            break;
        case kv::seq::kEdge:
            data.m_bits = {static_cast<uint8_t>(data.m_initState == 1 ? 1 : 0)};
            break;
        case kv::seq::kPulse:
            data.m_bits = kv::TogglingBits(data.m_initState);
            break;
        case kv::seq::kCustom:
            if (data.m_bits.size() > static_cast<std::size_t>(kv::kMaxStoredCustomBits)) {
                data.m_bits.resize(kv::kMaxStoredCustomBits);  // Save cuts them, as documented
            }
            break;
        default:
            kv::RegenerateBits(data);
            break;
    }
    const int stored = static_cast<int>(data.m_bits.size());
    if (!data.IsValid(stored)) {
        return std::nullopt;
    }
    return data;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kv::fuzz::SilenceMessages();
    // Nothing here should touch the user's settings; if it does, it touches these.
    const auto config = kv::fuzz::ScratchFolder() / "config";
    std::filesystem::create_directories(config);
    setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text = kv::fuzz::AsText(data, size);
    const auto input = kv::fuzz::ScratchFolder() / "input.ini";
    const auto fresh = kv::fuzz::ScratchFolder() / "fresh.ini";
    kv::fuzz::WriteFile(input, text);
    std::filesystem::remove(fresh);

    CStimulusData first;
    first.Load(input.c_str(), true);
    CheckReload(first, fresh, "to a new file", text);
    CheckReload(first, input, "into the file it came from", text);
    if (const auto edited = EditedData(text)) {
        std::filesystem::remove(fresh);
        CheckReload(*edited, fresh, "of the values set one by one", text);
    }

    // The other sections of the file are kept as they were.
    const kv::IniDocument original(text);
    const kv::IniDocument saved(ReadWhole(input));
    for (std::string_view line : {text}) {
        for (std::size_t at = 0; at < line.size();) {
            const std::size_t end = std::min(line.find('\n', at), line.size());
            const std::string_view current = line.substr(at, end - at);
            at = end + 1;
            if (current.empty() || current.front() != '[') {
                continue;
            }
            const std::string_view trimmed = kv::TrimSpace(current);
            const std::size_t close = trimmed.find(']');
            if (close == std::string_view::npos) {
                continue;
            }
            const std::string_view name = kv::TrimSpace(trimmed.substr(1, close - 1));
            if (!kv::EqualNoCase(name, kv::kStimulusSection)) {
                Expect(
                    original.Section(name) == saved.Section(name),
                    "saving changed section [" + Escaped(name) + "] of \"" + Escaped(text) + "\"");
            }
        }
    }
    return 0;
}
