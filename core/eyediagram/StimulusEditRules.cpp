#include "core/eyediagram/StimulusEditRules.h"

#include <algorithm>
#include <cmath>

#include "core/shared/NumberText.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/SequenceType.h"
#include "kvcomctl/EyeDiagramControlIds.h"

namespace kv::stimulus_edit {
namespace {

namespace id = kvcomctl_ids::stimulus_edit;

// One row of the visibility table: the controls and, per list position 1 to
// 7 (Oscillator, Edge, Pulse, PRBS, 8B/10B, USB 2.0, Custom), whether they
// are shown.
struct VisibilityRow {
    std::array<int, 8> controls;
    std::size_t count;
    std::array<bool, kListPositions> shown;
};

constexpr bool X = true;
constexpr bool o = false;

constexpr std::array<VisibilityRow, 8> kVisibility{{
    {{id::kLoad, id::kSaveBits}, 2, {o, o, o, o, o, o, X}},
    {{id::kBitOrderLabel, id::kBitOrder}, 2, {o, o, o, X, o, o, o}},
    {{id::kLevelLabel, id::kLevel}, 2, {X, X, X, X, X, o, o}},
    {{id::kStimulusGroup, id::kPeriodLabel, id::kPeriod, id::kPeriodUnit, id::kRepetitionsLabel},
     5,
     {X, o, X, X, X, X, X}},
    {{id::kDutyLabel, id::kDuty, id::kDutySpin, id::kDutyUnit}, 4, {X, o, o, o, o, o, o}},
    {{id::kRepetitions, id::kRepetitionsSpin}, 2, {o, o, X, X, X, X, X}},
    {{id::kFrequency, id::kFrequencyUnit, id::kHighLabel, id::kHighTime, id::kHighUnit,
      id::kLowLabel, id::kLowTime, id::kLowUnit},
     8,
     {X, o, o, o, o, o, o}},
    {{id::kJitterGroup, id::kJitterLabel, id::kJitter, id::kJitterUnit, id::kDistributionLabel,
      id::kDistribution, id::kRepeatJitter},
     7,
     {X, o, o, X, X, X, X}},
}};

struct KindRow {
    int kind;
    KindBehaviour behaviour;
};

constexpr std::string_view kInitialState = "&Initial state:";
constexpr std::array<std::string_view, 2> kHighLow{"High", "Low"};

const std::array<KindRow, 7>& KindTable() {
    static const std::array<KindRow, 7> table{{
        {seq::kPrbs, {true, 0, kInitialState, kHighLow}},
        {seq::k8b10b, {true, 0, kInitialState, kHighLow}},
        {seq::kToggling, {true, 1, kInitialState, kHighLow}},
        {seq::kUsbCompliance, {true, 0, std::nullopt, {}}},
        {seq::kCustom, {false, 0, std::nullopt, {}}},
        {seq::kEdge, {true, 2, "&Direction:", {"Falling", "Rising"}}},
        {seq::kPulse, {true, 3, kInitialState, kHighLow}},
    }};
    return table;
}

}  // namespace

MessageAnswer Ask(std::string_view text, MessageIcon icon, MessageButtons buttons) {
    MessageRequest request;
    request.text = std::string(text);
    request.caption = std::string(kCaption);
    request.icon = icon;
    request.buttons = buttons;
    request.defaultAnswer = FirstButtonOf(buttons);
    return ShowMessage(request);
}

int KindAtPosition(int position) {
    if (position < 1 || position > kListPositions) {
        return seq::kPrbs;
    }
    return kStimulusSequenceList[static_cast<std::size_t>(position - 1)].code;
}

int PositionOfKind(int kind) {
    for (std::size_t i = 0; i < kStimulusSequenceList.size(); ++i) {
        if (kStimulusSequenceList[i].code == kind) {
            return static_cast<int>(i) + 1;
        }
    }
    return 0;
}

bool IsShown(int controlId, int position) {
    for (const VisibilityRow& row : kVisibility) {
        const auto end = row.controls.begin() + static_cast<std::ptrdiff_t>(row.count);
        if (std::find(row.controls.begin(), end, controlId) != end) {
            return position >= 1 && position <= kListPositions &&
                   row.shown[static_cast<std::size_t>(position - 1)];
        }
    }
    return true;
}

std::span<const int> ControlsWithVisibility() {
    static const std::vector<int> controls = [] {
        std::vector<int> all;
        for (const VisibilityRow& row : kVisibility) {
            all.insert(all.end(), row.controls.begin(),
                       row.controls.begin() + static_cast<std::ptrdiff_t>(row.count));
        }
        return all;
    }();
    return controls;
}

std::optional<KindBehaviour> BehaviourOf(int kind) {
    for (const KindRow& row : KindTable()) {
        if (row.kind == kind) {
            return row.behaviour;
        }
    }
    return std::nullopt;
}

BitVector ShownPattern(int kind, int levelIndex, bool reversed, const CStimulusData& data) {
    const int initState = InitStateOfLevel(levelIndex);
    if (kind == seq::kCustom) {
        return {};
    }
    if (std::optional<BitVector> fixed = FixedPattern(kind, initState)) {
        return *fixed;
    }
    CStimulusData generator(data);
    generator.m_seqType = kind;
    BitVector bits;
    generator.GenerateSequence(initState, bits);
    // The bit order list is shown for PRBS alone; hidden, it orders nothing.
    if (reversed && IsShown(id::kBitOrder, PositionOfKind(kind))) {
        std::reverse(bits.begin(), bits.end());
    }
    return bits;
}

std::string FormatField(double value) {
    return FormatFixed(value, 3);
}

std::optional<double> ParseField(std::string_view text) {
    const std::optional<NumberPrefix> number = ReadNumberPrefix(text);
    if (!number || number->outOfRange || std::isnan(number->value)) {
        return std::nullopt;
    }
    const std::size_t end = text.find_first_not_of(" \t", number->length);
    if (end != std::string_view::npos) {
        return std::nullopt;  // more than the number, such as a decimal comma and digits
    }
    return number->value;
}

std::optional<BitVector> LoadPatternFile(const std::string& path) {
    return ReadBitFile(path, kCaption);
}

bool SavePatternFile(const std::string& path, const BitVector& bits) {
    return WriteBitFile(path, bits, kCaption);
}

}  // namespace kv::stimulus_edit
