#include "apps/kvcomctl/StimulusAssignments.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <span>

#include "apps/kvcomctl/Command.h"
#include "core/shared/AsciiText.h"
#include "core/shared/NumberText.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/Jitter.h"
#include "core/stimulus/PageMessages.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusPersistence.h"

namespace kv::cli {
namespace {

constexpr std::size_t kMaskNameBytes = sizeof(EYEMASK::MaskName) - 1;

// The range a page allows for one key, and what it says outside it.
struct Range {
    std::string_view key;
    double low;
    double high;
    std::string_view message;
};

// clang-format off
constexpr Range kRanges[] = {
    {"CYCLECOUNT", 1, 2048, page_message::kCycleCount},
    {"EYECOUNT", 1, 3, "Invalid eye count\nValid range is 1 - 3"},
    {"PERIOD", 0.001, 1000, page_message::kPeriod},
    {"DUTYCYCLE", 1, 99, page_message::kDutyCycle},
    {"JITTERTYPE", 0, 2, "Invalid jitter type\nValid range is 0 - 2"},
    {"INITSTATE", 0, 1, "Invalid initial state\nValid values are 0 and 1"},
    {"POLYDEGREE", 3, 16, "Invalid polynomial degree\nValid range is 3 - 16"},
    {"SCALETIME", 0.5, 2.0, kInvalidMaskScale},
    {"SCALEVOLT", 0.5, 2.0, kInvalidMaskScale},
    {"OFFSETTIME", 0, 1000, kInvalidMaskTimeOffset},
    {"OFFSETVOLT", -10, 10, kInvalidMaskVoltOffset},
};
// clang-format on

// The sequence kinds the pages offer.
constexpr int kOfferedKinds[] = {seq::kPrbs,   seq::k8b10b, seq::kToggling, seq::kUsbCompliance,
                                 seq::kCustom, seq::kEdge,  seq::kPulse};
constexpr std::string_view kUnofferedKind =
    "Invalid sequence type\nValid types are 0 - 4 (PRBS, 8B/10B, toggling, USB 2.0 compliance, "
    "custom), 8 (edge) and 9 (pulse)";

const Range* RangeOf(std::string_view key) {
    const auto found = std::find_if(std::begin(kRanges), std::end(kRanges),
                                    [&](const Range& range) { return range.key == key; });
    return found == std::end(kRanges) ? nullptr : found;
}

std::string Refusal(const Assignment& assignment, std::string_view why) {
    return assignment.key + "=" + std::string(assignment.value) + ": " + std::string(why);
}

// A number of the key's kind, wholly; the reason when it is not one.
std::optional<double> ReadNumber(const Assignment& assignment, PersistedKind kind,
                                 std::string& refusal) {
    // Where the page has a message for the field, it is what the page would
    // show for such a text too.
    const Range* range = RangeOf(assignment.key);
    const auto refuse = [&](std::string_view what) {
        std::string why(what);
        if (range != nullptr) {
            why += '\n';
            why += range->message;
        }
        refusal = Refusal(assignment, why);
    };
    if (kind == PersistedKind::Real) {
        const auto value = ParseFiniteNumber(assignment.value);
        if (!value) {
            refuse("not a finite number");
        }
        return value;
    }
    const auto value = ParseWholeInteger(assignment.value);
    if (!value || *value < INT32_MIN || *value > INT32_MAX) {
        refuse("not a whole number");
        return std::nullopt;
    }
    if (kind == PersistedKind::Bool && *value != 0 && *value != 1) {
        refusal = Refusal(assignment, "must be 0 or 1");
        return std::nullopt;
    }
    return static_cast<double>(*value);
}

std::optional<std::string> CheckRange(const Assignment& assignment, double value) {
    if (const Range* range = RangeOf(assignment.key);
        range != nullptr && !(value >= range->low && value <= range->high)) {
        return Refusal(assignment, range->message);
    }
    if (assignment.key == "SEQTYPE" && std::find(std::begin(kOfferedKinds), std::end(kOfferedKinds),
                                                 value) == std::end(kOfferedKinds)) {
        return Refusal(assignment, kUnofferedKind);
    }
    if (assignment.key == "SKIPBITS" && value < 0) {
        return Refusal(assignment, page_message::kSkipRange);
    }
    return std::nullopt;
}

std::optional<std::string> SetText(const Assignment& assignment, CStimulusData& data) {
    const std::string_view name = TrimSpace(assignment.value);
    if (std::any_of(name.begin(), name.end(),
                    [](char c) { return static_cast<unsigned char>(c) < 32; })) {
        return Refusal(assignment, "a mask name may not hold a line break or control character");
    }
    if (name.size() > kMaskNameBytes) {
        return Refusal(assignment, "a mask name holds at most 20 bytes");
    }
    SetMaskName(data.m_mask, name);
    return std::nullopt;
}

std::optional<std::string> SetBits(const Assignment& assignment, CStimulusData& data) {
    BitVector bits;
    bits.reserve(assignment.value.size());
    for (char c : TrimSpace(assignment.value)) {
        if (c != '0' && c != '1') {
            return "BITSEQUENCE: only the digits 0 and 1 make a bit sequence";
        }
        bits.push_back(c == '1' ? 1 : 0);
    }
    data.m_bits = std::move(bits);
    return std::nullopt;
}

// Checks between values, each only when one of its keys was given.
struct Relation {
    std::vector<std::string_view> keys;
    std::optional<std::string_view> (*broken)(const CStimulusData&);
};

std::optional<std::string_view> SkipOutsideCycles(const CStimulusData& d) {
    const auto bits = std::max<int64_t>(1, static_cast<int64_t>(d.m_bits.size()));
    return d.m_skipBits > int64_t{d.m_cycleCount} * bits ? std::optional(page_message::kSkipRange)
                                                         : std::nullopt;
}

std::optional<std::string_view> MaxJitterTooLarge(const CStimulusData& d) {
    // The oscillator page bounds it by the shorter half of the period, the
    // other kinds by the bit interval.
    const bool oscillator = d.m_seqType == seq::kToggling;
    const double shorterHalf = std::min(d.m_dutyCycle, 100 - d.m_dutyCycle) * 0.01 * d.m_period;
    const double bound = oscillator ? shorterHalf : d.m_period;
    if (d.m_maxJitter >= 0 && d.m_maxJitter < bound) {
        return std::nullopt;
    }
    return oscillator ? page_message::kMaxJitterHalfPeriod : page_message::kMaxJitterInterval;
}

std::optional<std::string_view> ComponentTooLarge(const CStimulusData& d) {
    if (!(d.m_period > 0)) {
        return page_message::kPeriod;
    }
    const double magnitudes[] = {0.0, d.m_uniformMag, d.m_sineMag};
    for (std::size_t i = 1; i < 3; ++i) {
        CJitter component;
        component.m_enabled = d.m_addJitter[i];
        component.m_magnitude = magnitudes[i];
        component.m_asTime = d.m_jitterAsTime[i] ? 1 : 0;
        if (!IsJitterMagnitudeAllowed(component, d.m_period)) {
            return kJitterMagnitudeTooLarge;
        }
    }
    return std::nullopt;
}

std::optional<std::string_view> MaskOutOfOrder(const CStimulusData& d) {
    return FindMaskOrderError(d.m_mask);
}

const Relation kRelations[] = {
    {{"SKIPBITS", "CYCLECOUNT", "BITSEQUENCE", "SEQTYPE"}, SkipOutsideCycles},
    {{"MAXJITTER", "PERIOD", "DUTYCYCLE", "SEQTYPE"}, MaxJitterTooLarge},
    {{"UNIFORMMAG", "SINEMAG", "ADDUNIFORM", "ADDSINE", "UNIFORMJITASTIME", "SINEJITASTIME",
      "PERIOD"},
     ComponentTooLarge},
    {{"PTOPMAX", "PTOPMIN", "PBASEMIN", "PBASEMAX", "PCROSS", "TCROSS1MIN", "TCROSS1MAX",
      "TRISEDELAY", "TCROSS2MAX", "TCROSS2MIN", "TFALLDELAY"},
     MaskOutOfOrder},
};

}  // namespace

bool Assigns(const std::vector<Assignment>& assignments, std::string_view key) {
    return std::any_of(assignments.begin(), assignments.end(),
                       [&](const Assignment& a) { return a.key == key; });
}

std::vector<Assignment> ParseAssignments(std::span<const std::string_view> texts) {
    std::vector<Assignment> assignments;
    for (std::string_view text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos) {
            throw UsageError{"'" + std::string(text) + "' is no KEY=VALUE"};
        }
        const std::string_view key = text.substr(0, equals);
        if (EqualNoCase(key, "SEQUENCELENGTH")) {
            throw UsageError{
                "SEQUENCELENGTH follows from the bits and cannot be set; set "
                "BITSEQUENCE instead"};
        }
        const auto persisted = FindPersistedKey(key);
        if (!persisted) {
            throw UsageError{"cannot set '" + std::string(text) + "': no such key"};
        }
        assignments.push_back({std::string(persisted->key), text.substr(equals + 1)});
    }
    return assignments;
}

std::optional<std::string> ApplyAssignments(const std::vector<Assignment>& assignments,
                                            CStimulusData& data) {
    for (const Assignment& assignment : assignments) {
        const auto kind = FindPersistedKey(assignment.key)->kind;
        std::optional<std::string> refusal;
        if (kind == PersistedKind::Text) {
            refusal = SetText(assignment, data);
        } else if (kind == PersistedKind::Bits) {
            refusal = SetBits(assignment, data);
        } else {
            std::string why;
            const auto value = ReadNumber(assignment, kind, why);
            if (!value) {
                return why;
            }
            refusal = CheckRange(assignment, *value);
            if (!refusal) {
                SetPersistedNumber(data, assignment.key, *value);
            }
        }
        if (refusal) {
            return refusal;
        }
    }
    const bool bitsGiven = Assigns(assignments, "BITSEQUENCE");
    if (bitsGiven && !StoresItsBits(data.m_seqType)) {
        return std::string(
            "BITSEQUENCE: only a custom sequence (SEQTYPE=4) keeps the bits given; "
            "every other kind makes its own");
    }
    RegenerateBits(data);
    if (data.m_seqType == seq::kCustom && data.m_bits.empty()) {
        return std::string("BITSEQUENCE: a custom sequence needs at least one bit");
    }
    for (const Relation& relation : kRelations) {
        const bool touched =
            std::any_of(relation.keys.begin(), relation.keys.end(),
                        [&](std::string_view key) { return Assigns(assignments, key); });
        if (touched) {
            if (const auto broken = relation.broken(data)) {
                return std::string(*broken);
            }
        }
    }
    return std::nullopt;
}

}  // namespace kv::cli
