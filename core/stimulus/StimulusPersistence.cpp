#include "core/stimulus/StimulusPersistence.h"

#include <array>
#include <optional>

#include "core/ports/MessagePort.h"
#include "core/settings/IniDocument.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/NumberText.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/UsbCompliance.h"
#include "core/stimulus/Uuencode.h"

namespace kv {
namespace {

enum class Kind { Int, Bool, Real };

// One persisted number: its key, how it is written and read, and where it
// lives. Integers and booleans travel as doubles, which hold them exactly.
struct Field {
    std::string_view key;
    Kind kind;
    double (*get)(const CStimulusData&);
    void (*set)(CStimulusData&, double);
};

#define KV_INT(KEY, MEMBER)                                                        \
    Field {                                                                        \
        KEY, Kind::Int, [](const CStimulusData& d) { return double(d.MEMBER); },   \
            [](CStimulusData& d, double v) { d.MEMBER = static_cast<int32_t>(v); } \
    }
#define KV_BOOL(KEY, MEMBER)                                                          \
    Field {                                                                           \
        KEY, Kind::Bool, [](const CStimulusData& d) { return d.MEMBER ? 1.0 : 0.0; }, \
            [](CStimulusData& d, double v) { d.MEMBER = v != 0; }                     \
    }
#define KV_REAL(KEY, MEMBER)                                                      \
    Field {                                                                       \
        KEY, Kind::Real, [](const CStimulusData& d) { return double(d.MEMBER); }, \
            [](CStimulusData& d, double v) { d.MEMBER = v; }                      \
    }

// Keys 1 to 27, in the order Save writes them.
const std::array<Field, 27> kDataFields{{
    KV_INT("CYCLECOUNT", m_cycleCount),
    KV_INT("SKIPBITS", m_skipBits),
    KV_INT("EYECOUNT", m_eyeCount),
    KV_REAL("PERIOD", m_period),
    KV_REAL("DUTYCYCLE", m_dutyCycle),
    KV_REAL("MAXJITTER", m_maxJitter),
    KV_REAL("RANDOMFREQ", m_randomFreq),
    KV_REAL("SINEMAG", m_sineMag),
    KV_REAL("SINEFREQ", m_sineFreq),
    KV_REAL("SINEINIT", m_sineInit),
    KV_REAL("UNIFORMMAG", m_uniformMag),
    KV_REAL("UNIFORMMEAN", m_uniformMean),
    KV_BOOL("ADDGAUSSIAN", m_addJitter[0]),
    KV_BOOL("ADDUNIFORM", m_addJitter[1]),
    KV_BOOL("ADDSINE", m_addJitter[2]),
    KV_BOOL("ADVJITTER", m_advancedJitter),
    KV_BOOL("GAUSSIANFREQMEAS", m_freqMeasured[0]),
    KV_BOOL("UNIFORMFREQMEAS", m_freqMeasured[1]),
    KV_BOOL("SINEFREQMEAS", m_freqMeasured[2]),
    KV_INT("JITTERTYPE", m_jitterType),
    KV_BOOL("JITTERREPEATABLE", m_jitterRepeatable),
    KV_BOOL("GAUSSIANJITASTIME", m_jitterAsTime[0]),
    KV_BOOL("UNIFORMJITASTIME", m_jitterAsTime[1]),
    KV_BOOL("SINEJITASTIME", m_jitterAsTime[2]),
    KV_INT("SEQTYPE", m_seqType),
    KV_INT("INITSTATE", m_initState),
    KV_INT("POLYDEGREE", m_polyDegree),
}};

// Keys 30 to 44: the mask's levels and times.
const std::array<Field, 15> kMaskFields{{
    KV_REAL("PTOPMAX", m_mask.PTopMax),
    KV_REAL("PTOPMIN", m_mask.PTopMin),
    KV_REAL("PBASEMIN", m_mask.PBaseMin),
    KV_REAL("PBASEMAX", m_mask.PBaseMax),
    KV_REAL("PCROSS", m_mask.PCross),
    KV_REAL("TCROSS1MIN", m_mask.TCross1Min),
    KV_REAL("TCROSS1MAX", m_mask.TCross1Max),
    KV_REAL("TRISEDELAY", m_mask.TRiseDelay),
    KV_REAL("TCROSS2MAX", m_mask.TCross2Max),
    KV_REAL("TCROSS2MIN", m_mask.TCross2Min),
    KV_REAL("TFALLDELAY", m_mask.TFallDelay),
    KV_REAL("SCALETIME", m_mask.ScaleTime),
    KV_REAL("SCALEVOLT", m_mask.ScaleVolt),
    KV_REAL("OFFSETTIME", m_mask.OffsetTime),
    KV_REAL("OFFSETVOLT", m_mask.OffsetVolt),
}};

#undef KV_INT
#undef KV_BOOL
#undef KV_REAL

constexpr std::string_view kSequenceLength = "SEQUENCELENGTH";
constexpr std::string_view kMaskName = "MASKNAME";
constexpr std::string_view kBitSequence = "BITSEQUENCE";

std::string FormatField(const Field& field, const CStimulusData& data) {
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
    ValueSource(IProfileStore& store, bool fromFile) : m_store(store), m_fromFile(fromFile) {
        if (fromFile) {
            LoadSection();
        }
    }

    double Read(Kind kind, std::string_view key, double defaultValue) {
        if (m_fromFile) {
            const auto text = Lookup(key);
            return text ? ParseFileValue(kind, *text).value_or(defaultValue) : defaultValue;
        }
        if (kind == Kind::Real) {
            // atof of the stored text: a stored text that is no number is 0.
            return ParseRealOrZero(
                GetProfileString(m_store, kStimulusSection, key, FormatReal(defaultValue)));
        }
        const int value =
            GetProfileInt(m_store, kStimulusSection, key, static_cast<int>(defaultValue));
        return kind == Kind::Bool ? (value > 0 ? 1.0 : 0.0) : value;
    }

    std::string ReadText(std::string_view key, std::string_view defaultValue) {
        if (m_fromFile) {
            return Lookup(key).value_or(std::string(defaultValue));
        }
        return GetProfileString(m_store, kStimulusSection, key, defaultValue);
    }

private:
    void LoadSection() {
        const auto entries = m_store.ReadSection(kStimulusSection);
        if (!entries) {
            return;
        }
        std::size_t returned = 0;  // as the section call counts: each entry and its NUL
        for (const std::string& entry : *entries) {
            returned += entry.size() + 1;
        }
        if (returned < 3) {
            return;  // too little to be a section
        }
        for (const std::string& entry : *entries) {
            const std::size_t equals = entry.find('=');
            const std::string_view whole(entry);
            const std::string_view key = TrimSpace(whole.substr(0, equals));
            if (key.empty()) {
                continue;
            }
            std::string_view value =
                equals == std::string::npos ? std::string_view{} : whole.substr(equals + 1);
            while (!value.empty() && (value.front() == ' ' || value.front() == '\t')) {
                value.remove_prefix(1);
            }
            m_entries.emplace_back(std::string(key), std::string(value));
        }
    }

    // The last entry of the key wins; the value loses its trailing blanks.
    std::optional<std::string> Lookup(std::string_view key) const {
        for (auto it = m_entries.rbegin(); it != m_entries.rend(); ++it) {
            if (EqualNoCase(it->first, key)) {
                return std::string(TrimSpace(it->second));
            }
        }
        return std::nullopt;
    }

    IProfileStore& m_store;
    bool m_fromFile;
    std::vector<std::pair<std::string, std::string>> m_entries;
};

AppProfile ChooseProfile(const char* location, bool toFile) {
    if (location == nullptr) {
        return ModuleProfile();
    }
    return toFile ? AppProfile::File(location) : AppProfile::Keyed(location);
}

int StoredBitCount(const CStimulusData& data) {
    const auto count = static_cast<int>(data.m_bits.size());
    return data.m_seqType == seq::kCustom ? std::min(count, kMaxStoredCustomBits) : count;
}

}  // namespace

std::string EncodeBitSequence(const BitVector& bits) {
    if (bits.size() < static_cast<std::size_t>(kUuencodedFromBits)) {
        std::string text(bits.size(), '0');
        for (std::size_t i = 0; i < bits.size(); ++i) {
            text[i] = bits[i] != 0 ? '1' : '0';
        }
        return text;
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
    std::vector<uint8_t> bytes(count / 8 + 2, 0);
    const auto decoded = Uudecode(text, bytes);
    if (!decoded || *decoded < (count + 7) / 8) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < count; ++i) {
        bits[i] = (bytes[i / 8] >> (i % 8)) & 1u;
    }
    return bits;
}

std::vector<std::pair<std::string_view, std::string>> PersistedEntries(const CStimulusData& data) {
    std::vector<std::pair<std::string_view, std::string>> entries;
    entries.reserve(45);
    for (const Field& field : kDataFields) {
        entries.emplace_back(field.key, FormatField(field, data));
    }
    const int stored = StoredBitCount(data);
    entries.emplace_back(kSequenceLength, std::to_string(stored));
    entries.emplace_back(kMaskName, std::string(MaskName(data.m_mask)));
    for (const Field& field : kMaskFields) {
        entries.emplace_back(field.key, FormatField(field, data));
    }
    if (data.m_seqType == seq::kCustom) {
        const BitVector first(data.m_bits.begin(), data.m_bits.begin() + stored);
        entries.emplace_back(kBitSequence, EncodeBitSequence(first));
    }
    return entries;
}

bool SaveStimulusData(const CStimulusData& data, const char* location, bool toFile) {
    const auto store = OpenProfileStore(ChooseProfile(location, toFile));
    for (const auto& [key, value] : PersistedEntries(data)) {
        if (!WriteProfileString(*store, kStimulusSection, key, value)) {
            return false;  // what was written stays written
        }
    }
    return true;
}

void RegenerateBits(CStimulusData& data) {
    switch (data.m_seqType) {
        case seq::kPrbs:
        case seq::kConstructionDefault:
            if (data.m_polyDegree >= 3 && data.m_polyDegree <= 16) {
                data.GenerateSequence(data.m_initState, data.m_bits);
            }
            return;
        case seq::k8b10b:
            if (data.m_cycleCount >= 1 && data.m_cycleCount <= 32768) {
                data.GenerateSequence(data.m_initState, data.m_bits);
            }
            return;
        case seq::kToggling:
            data.m_bits = TogglingBits(data.m_initState);
            return;
        default:
            return;
    }
}

void LoadStimulusData(CStimulusData& data, const char* location, bool fromFile) {
    const auto store = OpenProfileStore(ChooseProfile(location, fromFile));
    // A settings store has no section call; only a file is read whole.
    ValueSource values(*store, fromFile && location != nullptr);
    const CStimulusData defaults;

    for (const Field& field : kDataFields) {
        field.set(data, values.Read(field.kind, field.key, field.get(defaults)));
    }
    const int64_t cycle = PrbsSequenceLength(data.m_polyDegree);
    const int length = static_cast<int>(
        values.Read(Kind::Int, kSequenceLength,
                    static_cast<double>(cycle < 0 || cycle > INT32_MAX ? -1 : cycle)));

    bool sequenceUnreadable = false;
    if (length >= 1 && length <= kMaxStoredCustomBits && data.m_seqType == seq::kCustom) {
        if (auto bits = DecodeBitSequence(values.ReadText(kBitSequence, ""), length)) {
            data.m_bits = std::move(*bits);
        } else {
            sequenceUnreadable = true;  // too short or not decodable: nothing to trust
        }
    }
    RegenerateBits(data);

    if (sequenceUnreadable || !data.IsValid(length)) {
        ShowMessage(kInvalidEyeDiagramData, MessageIcon::Information, MessageButtons::Ok);
        data = defaults;
    }
    // The mask is read in every case, so it survives a reset of the rest.
    SetMaskName(data.m_mask, values.ReadText(kMaskName, ""));
    for (const Field& field : kMaskFields) {
        field.set(data, values.Read(field.kind, field.key, field.get(defaults)));
    }
}

bool SetPersistedValue(CStimulusData& data, std::string_view key, std::string_view value) {
    if (EqualNoCase(key, kMaskName)) {
        SetMaskName(data.m_mask, TrimSpace(value));
        return true;
    }
    if (EqualNoCase(key, kBitSequence)) {
        BitVector bits;
        for (char c : TrimSpace(value)) {
            if (c != '0' && c != '1') {
                return false;
            }
            bits.push_back(c == '1' ? 1 : 0);
        }
        data.m_bits = std::move(bits);
        return true;
    }
    for (const auto* fields : {static_cast<const Field*>(kDataFields.data()), kMaskFields.data()}) {
        const std::size_t count =
            fields == kDataFields.data() ? kDataFields.size() : kMaskFields.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (EqualNoCase(key, fields[i].key)) {
                const auto parsed = ParseFileValue(fields[i].kind, TrimSpace(value));
                if (!parsed) {
                    return false;
                }
                fields[i].set(data, *parsed);
                return true;
            }
        }
    }
    return false;
}

}  // namespace kv
