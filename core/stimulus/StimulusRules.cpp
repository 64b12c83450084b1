#include "core/stimulus/StimulusRules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

#include "core/settings/IniDocument.h"
#include "core/shared/AsciiText.h"
#include "core/shared/Assert.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/Jitter.h"
#include "core/stimulus/PageMessages.h"
#include "core/stimulus/SequenceType.h"

namespace kv {
namespace {

using V = StimulusValues;
namespace msg = mask_field_message;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The accessors of one field; how it is written follows from the member's
// type, so that a row cannot get it wrong.
template <class Access>
constexpr StimulusValueAccess Accessed(std::string_view key) {
    using Value = std::remove_cvref_t<decltype(Access::In(std::declval<V&>()))>;
    constexpr ValueKind kind = std::is_same_v<Value, bool> ? ValueKind::Bool
                               : std::is_integral_v<Value> ? ValueKind::Int
                                                           : ValueKind::Real;
    return {key, kind, [](const V& data) { return static_cast<double>(Access::In(data)); },
            [](V& data, double value) { Access::In(data) = static_cast<Value>(value); }};
}

template <auto Member>
struct FieldOf {
    template <class Data>
    static auto& In(Data& data) {
        return data.*Member;
    }
};
template <auto Array, std::size_t Index>
struct ElementOf {
    template <class Data>
    static auto& In(Data& data) {
        return (data.*Array)[Index];
    }
};
template <auto Member>
struct MaskOf {
    template <class Data>
    static auto& In(Data& data) {
        return data.m_mask.*Member;
    }
};

template <auto Member>
constexpr StimulusValueAccess Value(std::string_view key) {
    return Accessed<FieldOf<Member>>(key);
}
template <auto Array, std::size_t Index>
constexpr StimulusValueAccess Element(std::string_view key) {
    return Accessed<ElementOf<Array, Index>>(key);
}
template <auto Member>
constexpr StimulusValueAccess Mask(std::string_view key) {
    StimulusValueAccess access = Accessed<MaskOf<Member>>(key);
    access.maskMember = Member;
    return access;
}

constexpr StimulusRule Row(StimulusValueAccess access, StimulusValueChecks checks = {}) {
    return {access, checks};
}
// The mask is not part of Load's check: it is read after it, in every case.
constexpr StimulusRule MaskRow(StimulusValueAccess access, StimulusValueChecks checks) {
    checks.checkedOnLoad = false;
    return {access, checks};
}

bool SkipHeld(const V& data) {
    return SkipWithinCycles(data.m_skipBits, data.m_cycleCount,
                            static_cast<int64_t>(data.m_bits.size()));
}

// The kinds the pages offer: every code of the stimulus list, which holds
// those of the eye-diagram list too.
bool IsOfferedKind(double code) {
    return std::any_of(kStimulusSequenceList.begin(), kStimulusSequenceList.end(),
                       [code](const SequenceTypeName& entry) { return entry.code == code; });
}

constexpr std::string_view kUnofferedKind =
    "Invalid sequence type\nValid types are 0 - 4 (PRBS, 8B/10B, toggling, USB 2.0 compliance, "
    "custom), 8 (edge) and 9 (pulse)";

// clang-format off
constexpr std::array kRules{
    Row(Value<&V::m_cycleCount>("CYCLECOUNT"),
        {.held = ValueRange{1, kMaxCycleCount}, .heldReason = "the cycle count must be from 1 to 32768",
         .typed = ValueRange{1, 2048}, .whole = true, .message = page_message::kCycleCount}),
    Row(Value<&V::m_skipBits>("SKIPBITS"),
        {.heldWith = SkipHeld,
         .heldReason = "the skipped bits must be from 0 to the cycle count times the bit count",
         .typed = ValueRange{0, kInfinity}, .whole = true, .message = page_message::kSkipRange}),
    Row(Value<&V::m_eyeCount>("EYECOUNT"),
        {.held = ValueRange{1, 3}, .heldReason = "the eye count must be from 1 to 3",
         .typed = ValueRange{1, 3}, .whole = true,
         .message = "Invalid eye count\nValid range is 1 - 3"}),
    // Load leaves the period alone; a page needs a positive one to convert
    // jitter between time and percent of the bit interval.
    Row(Value<&V::m_period>("PERIOD"),
        {.held = ValueRange{0, kInfinity, true}, .checkedOnLoad = false,
         .typed = ValueRange{0.001, 1000}, .message = page_message::kPeriod,
         .messageAsInterval = page_message::kBitInterval}),
    Row(Value<&V::m_dutyCycle>("DUTYCYCLE"),
        {.held = ValueRange{0, 100, true, true},
         .heldReason = "the duty cycle must lie strictly between 0 and 100",
         .typed = ValueRange{1, 99}, .message = page_message::kDutyCycle}),
    Row(Value<&V::m_maxJitter>("MAXJITTER")),
    Row(Value<&V::m_randomFreq>("RANDOMFREQ")),
    Row(Value<&V::m_sineMag>("SINEMAG")),
    Row(Value<&V::m_sineFreq>("SINEFREQ")),
    Row(Value<&V::m_sineInit>("SINEINIT")),
    Row(Value<&V::m_uniformMag>("UNIFORMMAG")),
    Row(Value<&V::m_uniformMean>("UNIFORMMEAN")),
    Row(Element<&V::m_addJitter, 0>("ADDGAUSSIAN")),
    Row(Element<&V::m_addJitter, 1>("ADDUNIFORM")),
    Row(Element<&V::m_addJitter, 2>("ADDSINE")),
    Row(Value<&V::m_advancedJitter>("ADVJITTER")),
    Row(Element<&V::m_freqMeasured, 0>("GAUSSIANFREQMEAS")),
    Row(Element<&V::m_freqMeasured, 1>("UNIFORMFREQMEAS")),
    Row(Element<&V::m_freqMeasured, 2>("SINEFREQMEAS")),
    Row(Value<&V::m_jitterType>("JITTERTYPE"),
        {.held = ValueRange{0, 2}, .heldReason = "the jitter type must be from 0 to 2",
         .typed = ValueRange{0, 2}, .whole = true,
         .message = "Invalid jitter type\nValid range is 0 - 2"}),
    Row(Value<&V::m_jitterRepeatable>("JITTERREPEATABLE")),
    Row(Element<&V::m_jitterAsTime, 0>("GAUSSIANJITASTIME")),
    Row(Element<&V::m_jitterAsTime, 1>("UNIFORMJITASTIME")),
    Row(Element<&V::m_jitterAsTime, 2>("SINEJITASTIME")),
    Row(Value<&V::m_seqType>("SEQTYPE"),
        {.held = ValueRange{0, 9}, .heldReason = "the sequence type must be from 0 to 9",
         .whole = true, .typedAlso = IsOfferedKind, .message = kUnofferedKind}),
    Row(Value<&V::m_initState>("INITSTATE"),
        {.held = ValueRange{0, 1}, .heldReason = "the initial state must be 0 or 1",
         .typed = ValueRange{0, 1}, .whole = true,
         .message = "Invalid initial state\nValid values are 0 and 1"}),
    Row(Value<&V::m_polyDegree>("POLYDEGREE"),
        {.held = ValueRange{3, 16}, .heldReason = "the polynomial degree must be from 3 to 16",
         .typed = ValueRange{3, 16}, .whole = true,
         .message = "Invalid polynomial degree\nValid range is 3 - 16"}),

    MaskRow(Mask<&EYEMASK::PTopMax>("PTOPMAX"),
        {.message = msg::kTopMax, .below = &EYEMASK::PTopMin, .orderRule = 1,
         .orderMessage = "Ptop max value less than Ptop min value"}),
    MaskRow(Mask<&EYEMASK::PTopMin>("PTOPMIN"),
        {.message = msg::kTopMin, .below = &EYEMASK::PCross, .above = &EYEMASK::PTopMax,
         .orderRule = 2, .orderMessage = "Ptop min value less than Pcross value"}),
    MaskRow(Mask<&EYEMASK::PBaseMin>("PBASEMIN"),
        {.message = msg::kBaseMin, .above = &EYEMASK::PBaseMax}),
    MaskRow(Mask<&EYEMASK::PBaseMax>("PBASEMAX"),
        {.message = msg::kBaseMax, .below = &EYEMASK::PBaseMin, .above = &EYEMASK::PCross,
         .orderRule = 4, .orderMessage = "Pbase max value less than Pbase min value"}),
    MaskRow(Mask<&EYEMASK::PCross>("PCROSS"),
        {.message = msg::kCross, .below = &EYEMASK::PBaseMax, .above = &EYEMASK::PTopMin,
         .orderRule = 3, .orderMessage = "Pcross value less than Pbase max value"}),
    MaskRow(Mask<&EYEMASK::TCross1Min>("TCROSS1MIN"),
        {.message = msg::kCross1Min, .above = &EYEMASK::TCross1Max}),
    MaskRow(Mask<&EYEMASK::TCross1Max>("TCROSS1MAX"),
        {.message = msg::kCross1Max, .below = &EYEMASK::TCross1Min,
         .above = &EYEMASK::TRiseDelay, .orderRule = 5,
         .orderMessage = "Tcross1 min value greater than Tcross1 max value"}),
    MaskRow(Mask<&EYEMASK::TRiseDelay>("TRISEDELAY"),
        {.message = msg::kRiseDelay, .below = &EYEMASK::TCross1Max,
         .above = &EYEMASK::TFallDelay, .orderRule = 6,
         .orderMessage = "Tcross1 max value greater than Rise delay value"}),
    MaskRow(Mask<&EYEMASK::TCross2Max>("TCROSS2MAX"),
        {.message = msg::kCross2Max, .below = &EYEMASK::TCross2Min, .orderRule = 9,
         .orderMessage = "Tcross2 min value greater than Tcross2 max value"}),
    MaskRow(Mask<&EYEMASK::TCross2Min>("TCROSS2MIN"),
        {.message = msg::kCross2Min, .below = &EYEMASK::TFallDelay,
         .above = &EYEMASK::TCross2Max, .orderRule = 8,
         .orderMessage = "Fall delay value greater than Tcross2 min value"}),
    MaskRow(Mask<&EYEMASK::TFallDelay>("TFALLDELAY"),
        {.message = msg::kFallDelay, .below = &EYEMASK::TRiseDelay,
         .above = &EYEMASK::TCross2Min, .orderRule = 7,
         .orderMessage = "Rise delay value greater than Fall delay value"}),
    MaskRow(Mask<&EYEMASK::ScaleTime>("SCALETIME"),
        {.held = ValueRange{0.5, 2.0}, .typed = ValueRange{0.5, 2.0},
         .message = kInvalidMaskScale}),
    // The upper bound of the voltage scale is deliberately not held on
    // opening, so that a stored voltage scale above 2.0 survives it.
    MaskRow(Mask<&EYEMASK::ScaleVolt>("SCALEVOLT"),
        {.held = ValueRange{0.5, kInfinity}, .typed = ValueRange{0.5, 2.0},
         .message = kInvalidMaskScale}),
    MaskRow(Mask<&EYEMASK::OffsetTime>("OFFSETTIME"),
        {.held = ValueRange{0, 1000}, .typed = ValueRange{0, 1000},
         .message = kInvalidMaskTimeOffset}),
    MaskRow(Mask<&EYEMASK::OffsetVolt>("OFFSETVOLT"),
        {.held = ValueRange{-10, 10}, .typed = ValueRange{-10, 10},
         .message = kInvalidMaskVoltOffset}),
};
// clang-format on
static_assert(kRules.size() == 27 + 15);

bool HeldValue(const StimulusRule& rule, double value, bool numbersOnly) {
    return (!rule.held || rule.held->Holds(value)) &&
           (!numbersOnly || rule.kind != ValueKind::Real || std::isfinite(value));
}

std::optional<std::string_view> SkipOutsideCycles(const CStimulusData& d) {
    if (SkipWithinCycles(d.m_skipBits, d.m_cycleCount, static_cast<int64_t>(d.m_bits.size()))) {
        return std::nullopt;
    }
    return page_message::kSkipRange;
}

// The oscillator is bounded by the shorter part of its period, every other
// kind by the bit interval.
std::optional<std::string_view> MaxJitterTooLarge(const CStimulusData& d) {
    return d.m_seqType == seq::kToggling
               ? CheckMaxJitterInHalfPeriod(d.m_maxJitter, d.m_period, d.m_dutyCycle)
               : CheckMaxJitterInInterval(d.m_maxJitter, d.m_period);
}

// The uniform and sine components; the Gaussian magnitude is the maximum
// jitter, bounded above.
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

constexpr std::string_view kSkipKeys[] = {"SKIPBITS", "CYCLECOUNT", "BITSEQUENCE", "SEQTYPE"};
constexpr std::string_view kMaxJitterKeys[] = {"MAXJITTER", "PERIOD", "DUTYCYCLE", "SEQTYPE"};
constexpr std::string_view kComponentKeys[] = {"UNIFORMMAG", "SINEMAG",          "ADDUNIFORM",
                                               "ADDSINE",    "UNIFORMJITASTIME", "SINEJITASTIME",
                                               "PERIOD"};

}  // namespace

std::span<const StimulusRule> StimulusRules() {
    return kRules;
}

const StimulusRule* FindStimulusRule(std::string_view key) {
    const auto found = std::find_if(kRules.begin(), kRules.end(), [key](const StimulusRule& rule) {
        return EqualNoCase(rule.key, key);
    });
    return found == kRules.end() ? nullptr : &*found;
}

const StimulusRule& StimulusRuleOf(std::string_view key) {
    const StimulusRule* rule = FindStimulusRule(key);
    KV_ASSERT_IN("StimulusRules.cpp", rule != nullptr);
    return *rule;
}

bool IsHeld(const StimulusRule& rule, const StimulusValues& data, bool numbersOnly) {
    return HeldValue(rule, rule.get(data), numbersOnly) &&
           (rule.heldWith == nullptr || rule.heldWith(data));
}

std::optional<std::string_view> CheckTyped(const StimulusRule& rule, double value,
                                           bool asInterval) {
    const bool accepted = (!rule.typed || rule.typed->Holds(value)) &&
                          (!rule.whole || std::trunc(value) == value) &&
                          (rule.typedAlso == nullptr || rule.typedAlso(value));
    if (accepted) {
        return std::nullopt;
    }
    return asInterval && !rule.messageAsInterval.empty() ? rule.messageAsInterval : rule.message;
}

std::optional<std::string_view> CheckTypedInMask(const StimulusRule& rule, const EYEMASK& mask,
                                                 double value) {
    const bool between = (rule.below == nullptr || value > mask.*rule.below) &&
                         (rule.above == nullptr || value < mask.*rule.above);
    if (between && value == value) {
        return CheckTyped(rule, value);
    }
    return rule.message;
}

bool SkipWithinCycles(double skip, int64_t cycles, int64_t bitCount) {
    return skip >= 0 && skip <= static_cast<double>(cycles) * std::max<int64_t>(bitCount, 1);
}

std::optional<std::string_view> CheckMaxJitterInHalfPeriod(double jitterNs, double periodNs,
                                                           double dutyPercent) {
    const double shorterPart = std::min(dutyPercent, 100.0 - dutyPercent) * 0.01 * periodNs;
    if (jitterNs >= 0 && jitterNs < shorterPart) {
        return std::nullopt;
    }
    return page_message::kMaxJitterHalfPeriod;
}

std::optional<std::string_view> CheckMaxJitterInInterval(double jitterNs, double periodNs) {
    if (jitterNs >= 0 && jitterNs < periodNs) {
        return std::nullopt;
    }
    return page_message::kMaxJitterInterval;
}

std::span<const StimulusRelation> StimulusRelations() {
    static const std::vector<std::string_view> maskKeys = [] {
        std::vector<std::string_view> keys;
        for (const StimulusRule& rule : kRules) {
            if (rule.below != nullptr || rule.above != nullptr) {
                keys.push_back(rule.key);
            }
        }
        return keys;
    }();
    static const std::array<StimulusRelation, 4> relations{{
        {kSkipKeys, SkipOutsideCycles},
        {kMaxJitterKeys, MaxJitterTooLarge},
        {kComponentKeys, ComponentTooLarge},
        {maskKeys, MaskOutOfOrder},
    }};
    return relations;
}

bool MaskAcceptedOnOpen(const EYEMASK& mask) {
    return std::all_of(kRules.begin(), kRules.end(), [&mask](const StimulusRule& rule) {
        return !rule.IsMaskValue() || HeldValue(rule, mask.*rule.maskMember, true);
    });
}

std::optional<std::string_view> FindMaskPlacementError(const EYEMASK& mask) {
    for (const StimulusRule& rule : kRules) {
        if (rule.IsMaskValue() && !HeldValue(rule, mask.*rule.maskMember, false)) {
            return rule.message;
        }
    }
    return std::nullopt;
}

bool SameMaskNumbers(const EYEMASK& a, const EYEMASK& b) {
    return std::all_of(kRules.begin(), kRules.end(), [&](const StimulusRule& rule) {
        return !rule.IsMaskValue() || a.*rule.maskMember == b.*rule.maskMember;
    });
}

}  // namespace kv
