#include "core/stimulus/StimulusPersistence.h"

#include <algorithm>
#include <array>
#include <climits>
#include <optional>

#include "core/ports/MessagePort.h"
#include "core/settings/IniDocument.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/AsciiText.h"
#include "core/shared/NumberText.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusRules.h"
#include "core/stimulus/Uuencode.h"

namespace kv {
namespace {

using Kind = ValueKind;

constexpr std::string_view kSequenceLength = "SEQUENCELENGTH";
constexpr std::string_view kMaskName = "MASKNAME";
constexpr std::string_view kBitSequence = "BITSEQUENCE";

// The persisted numbers of the data object (keys 1 to 27) or of its mask
// (keys 30 to 44), in the order Save writes them.
template <class Visit>
void ForEachNumber(bool mask, Visit visit) {
    for (const StimulusRule& rule : StimulusRules()) {
        if (rule.IsMaskValue() == mask) {
            visit(rule);
        }
    }
}

std::string FormatField(const StimulusRule& field, const CStimulusData& data) {
    const double value = field.get(data);
    return field.kind == Kind::Real ? FormatReal(value) : std::to_string(static_cast<int>(value));
}

// A value text as a file load reads it; none leaves the default.
std::optional<double> ParseFileValue(Kind kind, std::string_view text) {
    if (kind == Kind::Real) {
        return ParseRealPrefix(text);
    }
    const auto number = ParseIntPrefix(text);
    if (kind == Kind::Bool && number && *number != 0 && *number != 1) {
        return std::nullopt;
    }
    return number ? std::optional<double>(*number) : std::nullopt;
}

// Reads values either from a whole section of a file or key by key from a
// settings store, with the rules of each.
class ValueSource {
public:
    // File rules over the section read whole (none: no section).
    explicit ValueSource(std::optional<IniSection> section) : m_section(std::move(section)) {}
    // Settings-store rules: a store has no section call, so key by key.
    explicit ValueSource(IProfileStore& store) : m_store(&store) {}

    double Read(Kind kind, std::string_view key, double defaultValue) const {
        if (m_store == nullptr) {
            const auto text = Find(key);
            return text ? ParseFileValue(kind, *text).value_or(defaultValue) : defaultValue;
        }
        if (kind == Kind::Real) {
            // The number that starts the stored text, read by NumberText; a stored
            // text that starts with no number reads as 0.
            return ParseRealOrZero(
                GetProfileString(*m_store, kStimulusSection, key, FormatReal(defaultValue)));
        }
        const int value =
            GetProfileInt(*m_store, kStimulusSection, key, static_cast<int>(defaultValue));
        return kind == Kind::Bool ? (value > 0 ? 1.0 : 0.0) : value;
    }

    // The text of a key, or none when the section does not hold it.
    std::optional<std::string> Find(std::string_view key) const {
        if (m_store != nullptr) {
            return m_store->GetString(kStimulusSection, key);
        }
        const auto value = m_section ? m_section->Find(key) : std::nullopt;
        return value ? std::optional<std::string>(*value) : std::nullopt;
    }

    std::string ReadText(std::string_view key, std::string_view defaultValue) const {
        return Find(key).value_or(std::string(defaultValue));
    }

private:
    IProfileStore* m_store = nullptr;
    std::optional<IniSection> m_section;
};

// An empty name is neither a file nor a key of the settings store; left to
// the store, it would fall through to a store nobody named.
bool NamesNothing(const char* location) {
    return location != nullptr && *location == '\0';
}

AppProfile ChooseProfile(const char* location, bool toFile) {
    if (location == nullptr) {
        return ModuleProfile();
    }
    return toFile ? AppProfile::File(location) : AppProfile::Keyed(location);
}

int StoredBitCount(const CStimulusData& data) {
    const auto count = static_cast<int>(std::min<std::size_t>(data.m_bits.size(), INT_MAX));
    return StoresItsBits(data.m_seqType) ? std::min(count, kMaxStoredCustomBits) : count;
}

void ReadMask(CStimulusData& data, const ValueSource& values, const CStimulusData& defaults) {
    SetMaskName(data.m_mask, values.ReadText(kMaskName, ""));
    ForEachNumber(true, [&](const StimulusRule& field) {
        field.set(data, values.Read(field.kind, field.key, field.get(defaults)));
    });
}

// Every key into the object, as Load reads them, and the verdict of the
// validity rules; the object is left as read.
StimulusReadResult ReadValues(CStimulusData& data, const ValueSource& values,
                              const CStimulusData& defaults) {
    StimulusReadResult result;
    ForEachNumber(false, [&](const StimulusRule& field) {
        field.set(data, values.Read(field.kind, field.key, field.get(defaults)));
    });
    const int64_t cycle = PrbsSequenceLength(data.m_polyDegree);
    const int length = static_cast<int>(
        values.Read(Kind::Int, kSequenceLength,
                    static_cast<double>(cycle < 0 || cycle > INT32_MAX ? -1 : cycle)));

    if (StoresItsBits(data.m_seqType)) {
        if (length < 1 || length > kMaxStoredCustomBits) {
            result.unreadSequenceLength = length;
        } else if (data.m_seqType == seq::kCustom) {
            if (auto bits = DecodeBitSequence(values.ReadText(kBitSequence, ""), length)) {
                data.m_bits = std::move(*bits);
            } else {
                result.invalidReason =
                    "the stored bit sequence is shorter than its length or "
                    "cannot be decoded";
            }
        } else if (const std::optional<std::string> stored = values.Find(kBitSequence)) {
            // Kinds 5 and 6 came without stored bits from older files, which
            // leave the object the bits it had; bits stored since are taken
            // when they can be read, and never make the section invalid.
            if (auto bits = DecodeBitSequence(*stored, length)) {
                data.m_bits = std::move(*bits);
            }
        }
    }
    RegenerateBits(data);
    if (!result.invalidReason) {
        if (const auto reason = data.InvalidReason(length)) {
            result.invalidReason = std::string(*reason);
        }
    }
    ReadMask(data, values, defaults);
    return result;
}

}  // namespace

bool StoresItsBits(int seqType) {
    return seqType == seq::kCustom || seqType == 5 || seqType == 6;
}

std::string EncodeBitSequence(const BitVector& bits) {
    if (bits.size() < static_cast<std::size_t>(kUuencodedFromBits)) {
        return BitText(bits);
    }
    return Uuencode(PackBits(bits));
}

std::optional<BitVector> DecodeBitSequence(std::string_view text, int length) {
    if (length < 1) {
        return BitVector{};
    }
    const auto count = static_cast<std::size_t>(length);
    BitVector bits(count, 0);
    if (length < kUuencodedFromBits) {
        if (text.size() < count) {
            return std::nullopt;
        }
        for (std::size_t i = 0; i < count; ++i) {
            bits[i] = text[i] == '1' ? 1 : 0;
        }
        return bits;
    }
    // Decoded into a zero-filled buffer: a text cut short leaves the bits
    // after it clear. Older files wrote the encoded lines one below the
    // other, so their key reads as the first line only, and the rest of what
    // they hold must still load.
    std::vector<uint8_t> bytes(count / 8 + 2, 0);
    if (!Uudecode(text, bytes)) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < count; ++i) {
        bits[i] = (bytes[i / 8] >> (i % 8)) & 1u;
    }
    return bits;
}

std::vector<PersistedEntry> PersistedEntries(const CStimulusData& data) {
    std::vector<PersistedEntry> entries;
    entries.reserve(45);
    ForEachNumber(false, [&](const StimulusRule& field) {
        entries.emplace_back(field.key, FormatField(field, data));
    });
    const int stored = StoredBitCount(data);
    entries.emplace_back(kSequenceLength, std::to_string(stored));
    entries.emplace_back(kMaskName, std::string(MaskName(data.m_mask)));
    ForEachNumber(true, [&](const StimulusRule& field) {
        entries.emplace_back(field.key, FormatField(field, data));
    });
    if (StoresItsBits(data.m_seqType)) {
        const BitVector first(data.m_bits.begin(), data.m_bits.begin() + stored);
        entries.emplace_back(kBitSequence, EncodeBitSequence(first));
    }
    return entries;
}

FileResult SaveStimulusData(const CStimulusData& data, const char* location, bool toFile) {
    if (NamesNothing(location)) {
        return {false, "no file or key is named"};
    }
    // One replace of the whole store: a failure (a full disk, a file that
    // cannot be read) leaves every key as it was, never half of them.
    return OpenProfileStore(ChooseProfile(location, toFile))
        ->WriteEntries(kStimulusSection, PersistedEntries(data));
}

void RegenerateBits(CStimulusData& data) {
    switch (data.m_seqType) {
        case seq::kPrbs:
        case seq::kConstructionDefault:
            if (IsHeld(StimulusRuleOf("POLYDEGREE"), data, false)) {
                data.GenerateSequence(data.m_initState, data.m_bits);
            }
            return;
        case seq::k8b10b:
            if (IsHeld(StimulusRuleOf("CYCLECOUNT"), data, false)) {
                data.GenerateSequence(data.m_initState, data.m_bits);
            }
            return;
        default:
            break;
    }
    // The USB 2.0 compliance pattern is made again here as well: its bits are
    // not stored, and the validity rule asks for exactly its 330 bits, so
    // this is the only way a saved compliance stimulus can load at all. Edge
    // and Pulse are rebuilt from the initial state as the stimulus page
    // builds them, and toggling gets its two bits.
    if (auto pattern = FixedPattern(data.m_seqType, data.m_initState)) {
        data.m_bits = std::move(*pattern);
    }
}

StimulusReadResult LoadStimulusData(CStimulusData& data, const char* location, bool fromFile) {
    if (NamesNothing(location)) {
        return {};  // nothing to read: the values stay
    }
    const auto store = OpenProfileStore(ChooseProfile(location, fromFile));
    // A settings store has no section call; only a file is read whole.
    const ValueSource values = fromFile && location != nullptr
                                   ? ValueSource(store->ReadSection(kStimulusSection))
                                   : ValueSource(*store);
    const CStimulusData defaults;
    const StimulusReadResult result = ReadValues(data, values, defaults);
    if (result.invalidReason) {
        ShowMessage(kInvalidEyeDiagramData, MessageIcon::Information, MessageButtons::Ok);
        data = defaults;
        // The mask is read in every case, so it survives a reset of the rest.
        ReadMask(data, values, defaults);
    }
    return result;
}

StimulusReadResult ReadStimulusFile(CStimulusData& data, const std::string& path) {
    const auto store = OpenProfileStore(AppProfile::File(path));
    return ReadValues(data, ValueSource(store->ReadSection(kStimulusSection)), CStimulusData());
}

std::optional<std::string> FindRoundTripLoss(const CStimulusData& data) {
    const std::vector<PersistedEntry> written = PersistedEntries(data);
    IniDocument document;
    document.SetEntries(kStimulusSection, written);
    const IniDocument reread(document.Text());

    CStimulusData loaded;  // what any loader starts from
    const StimulusReadResult result =
        ReadValues(loaded, ValueSource(reread.Section(kStimulusSection)), CStimulusData());
    if (result.invalidReason) {
        return "as stored it would load back as invalid data (" + *result.invalidReason +
               ") and be replaced by the defaults";
    }
    if (result.unreadSequenceLength) {
        return "its stored length " + std::to_string(*result.unreadSequenceLength) +
               " lies outside 1 - " + std::to_string(kMaxStoredCustomBits) +
               ", so its bits would not load back";
    }
    const std::vector<PersistedEntry> back = PersistedEntries(loaded);
    for (std::size_t i = 0; i < written.size() && i < back.size(); ++i) {
        if (written[i] != back[i]) {
            return std::string(written[i].first) + "=" + written[i].second +
                   " would load back as " + back[i].second;
        }
    }
    if (written.size() != back.size()) {
        return "its bit sequence would not load back";
    }
    return std::nullopt;
}

std::optional<PersistedKey> FindPersistedKey(std::string_view key) {
    if (EqualNoCase(key, kMaskName)) {
        return PersistedKey{kMaskName, PersistedKind::Text};
    }
    if (EqualNoCase(key, kBitSequence)) {
        return PersistedKey{kBitSequence, PersistedKind::Bits};
    }
    const StimulusRule* field = FindStimulusRule(key);
    if (field == nullptr) {
        return std::nullopt;
    }
    constexpr PersistedKind kKinds[] = {PersistedKind::Int, PersistedKind::Bool,
                                        PersistedKind::Real};
    return PersistedKey{field->key, kKinds[static_cast<int>(field->kind)]};
}

void SetPersistedNumber(CStimulusData& data, std::string_view key, double value) {
    if (const StimulusRule* field = FindStimulusRule(key)) {
        field->set(data, value);
    }
}

}  // namespace kv
