#include "apps/kvcomctl/StimulusAssignments.h"

#include <algorithm>
#include <climits>
#include <span>

#include "apps/kvcomctl/Command.h"
#include "core/shared/AsciiText.h"
#include "core/shared/NumberText.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusPersistence.h"
#include "core/stimulus/StimulusRules.h"

namespace kv::cli {
namespace {

constexpr std::size_t kMaskNameBytes = sizeof(EYEMASK::MaskName) - 1;

std::string Refusal(const Assignment& assignment, std::string_view why) {
    return assignment.key + "=" + std::string(assignment.value) + ": " + std::string(why);
}

// A number of the key's kind, wholly; the reason when it is not one.
std::optional<double> ReadNumber(const Assignment& assignment, PersistedKind kind,
                                 std::string& refusal) {
    // Where the page has a message for the field, it is what the page would
    // show for such a text too.
    const StimulusRule& rule = StimulusRuleOf(assignment.key);
    const auto refuse = [&](std::string_view what) {
        std::string why(what);
        if (!rule.message.empty()) {
            why += '\n';
            why += rule.message;
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
    if (const auto refused = CheckTyped(StimulusRuleOf(assignment.key), value)) {
        return Refusal(assignment, *refused);
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
    // Checks between values, each only when one of its keys was given.
    for (const StimulusRelation& relation : StimulusRelations()) {
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
