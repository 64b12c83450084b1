#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "core/stimulus/StimulusData.h"

// One row for every persisted number of the stimulus data and its eye mask:
// its key and where it lives, the limits the data object holds it to, the
// range a person may type and what is said outside it, and for the mask's
// levels and time points the neighbours they are ordered between. Load's
// validity check, the pages' opening checks, their typed checks, the command
// line's `stimulus set` and the Python module all read these rows, so that
// each limit and each message is written once.

namespace kv {

enum class ValueKind { Int, Bool, Real };

// A closed range unless an end is excluded; no number (NaN) lies in any.
struct ValueRange {
    double low;
    double high;
    bool lowExcluded = false;
    bool highExcluded = false;

    bool Holds(double value) const {
        return (lowExcluded ? value > low : value >= low) &&
               (highExcluded ? value < high : value <= high);
    }
};

// Where a persisted number lives, and how it is written and read. Integers
// and booleans travel as doubles, which hold them exactly.
struct StimulusValueAccess {
    std::string_view key;
    ValueKind kind;
    double (*get)(const StimulusValues&);
    void (*set)(StimulusValues&, double);
    double EYEMASK::*maskMember = nullptr;  // the mask's rows only
};

struct StimulusValueChecks {
    // The data object's own limits, and those that depend on other values.
    // Load resets the whole object when one fails (for the rows it checks,
    // naming `heldReason`); a page that opens puts back the default of a
    // value outside them, or of a real that is no number.
    std::optional<ValueRange> held{};
    bool (*heldWith)(const StimulusValues&) = nullptr;
    bool checkedOnLoad = true;
    std::string_view heldReason{};

    // What a person may type on a page or give `kvcomctl stimulus set`, and
    // what is said when it lies outside. `messageAsInterval` says the same of
    // the bit interval, as the pages call the period of a bit sequence.
    std::optional<ValueRange> typed{};
    bool whole = false;
    bool (*typedAlso)(double) = nullptr;
    std::string_view message{};
    std::string_view messageAsInterval{};

    // The mask's levels and time points: a typed value must lie strictly
    // between `below` and `above` (null: no bound), and the whole mask breaks
    // its ordering rule number `orderRule` (1 to 9, checked in that order)
    // when this value falls below `below`.
    double EYEMASK::*below = nullptr;
    double EYEMASK::*above = nullptr;
    int orderRule = 0;
    std::string_view orderMessage{};
};

struct StimulusRule : StimulusValueAccess, StimulusValueChecks {
    bool IsMaskValue() const { return maskMember != nullptr; }
};

// Every row, in the order Save writes the keys: the 27 numbers of the data
// object, then the 15 of the mask.
std::span<const StimulusRule> StimulusRules();
// The row of a key, without regard to case; none for keys that are no
// persisted number ("SEQUENCELENGTH", "MASKNAME", "BITSEQUENCE").
const StimulusRule* FindStimulusRule(std::string_view key);
// The row of a key the table holds (a programming error otherwise).
const StimulusRule& StimulusRuleOf(std::string_view key);

// Whether the value of `rule` in `data` lies within the data object's limits
// (a real that is no number included only when `numbersOnly`).
bool IsHeld(const StimulusRule& rule, const StimulusValues& data, bool numbersOnly);

// The message for a typed value outside the rule's range (not whole where it
// must be, or no number at all), or none when it is accepted.
std::optional<std::string_view> CheckTyped(const StimulusRule& rule, double value,
                                           bool asInterval = false);
// The same for a mask value typed into `mask`: within its range and strictly
// between its neighbours.
std::optional<std::string_view> CheckTypedInMask(const StimulusRule& rule, const EYEMASK& mask,
                                                 double value);

// Relations between values, as the pages and the command line apply them.
// The skip must lie within the bits of all cycles (an empty sequence counts
// as one bit).
bool SkipWithinCycles(double skip, int64_t cycles, int64_t bitCount);
// The simple maximum jitter (ns) must be at least 0 and below the shorter of
// the high and low parts of the period, or below the whole bit interval.
std::optional<std::string_view> CheckMaxJitterInHalfPeriod(double jitterNs, double periodNs,
                                                           double dutyPercent);
std::optional<std::string_view> CheckMaxJitterInInterval(double jitterNs, double periodNs);

// A check between values of the whole object, and the keys whose change
// calls for it.
struct StimulusRelation {
    std::span<const std::string_view> keys;
    std::optional<std::string_view> (*broken)(const CStimulusData&);
};
std::span<const StimulusRelation> StimulusRelations();

// The mask: whether it may be shown as it is when the mask page opens (its
// placement within limits, every number a number), and the message of the
// first placement value outside its limits.
bool MaskAcceptedOnOpen(const EYEMASK& mask);
std::optional<std::string_view> FindMaskPlacementError(const EYEMASK& mask);
// Whether two masks hold the same fifteen numbers (names aside).
bool SameMaskNumbers(const EYEMASK& a, const EYEMASK& b);

}  // namespace kv
