#include "core/eyediagram/StimulusEditPageModel.h"

#include <algorithm>
#include <cmath>

#include "core/eyediagram/KindPattern.h"
#include "core/eyediagram/PageFieldText.h"
#include "core/eyediagram/StimulusLibrary.h"
#include "core/eyediagram/StimulusOpenCheck.h"
#include "core/settings/IniDocument.h"
#include "core/shared/AsciiText.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeDiagramControlIds.h"

namespace kv {
namespace {

namespace id = kvcomctl_ids::stimulus_edit;
using stimulus_edit::kListPositions;

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

// How the pattern control and the level list behave for a kind. A kind that
// keeps the level list as it is has no label and items here.
struct KindBehaviour {
    bool readOnly = true;
    int paintMode = 0;
    std::optional<std::string_view> levelLabel;
    std::array<std::string_view, 2> levelItems{};
};

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

constexpr int kTextFields[] = {id::kPeriod,   id::kDuty,    id::kRepetitions, id::kFrequency,
                               id::kHighTime, id::kLowTime, id::kJitter};

bool IsTextField(int controlId) {
    return std::find(std::begin(kTextFields), std::end(kTextFields), controlId) !=
           std::end(kTextFields);
}

// The kind at a list position (1 to 7), and back: 0 for a kind the list
// does not offer.
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

bool IsShownAt(int controlId, int position) {
    for (const VisibilityRow& row : kVisibility) {
        const auto end = row.controls.begin() + static_cast<std::ptrdiff_t>(row.count);
        if (std::find(row.controls.begin(), end, controlId) != end) {
            return position >= 1 && position <= kListPositions &&
                   row.shown[static_cast<std::size_t>(position - 1)];
        }
    }
    return true;  // controls the table does not name are always shown
}

// None for kinds 5, 6 and 7, which change neither the control nor the list.
std::optional<KindBehaviour> BehaviourOf(int kind) {
    for (const KindRow& row : KindTable()) {
        if (row.kind == kind) {
            return row.behaviour;
        }
    }
    return std::nullopt;
}

}  // namespace

MessageAnswer stimulus_edit::Ask(std::string_view text, MessageIcon icon, MessageButtons buttons) {
    return ShowMessage(text, icon, buttons, kCaption);
}

std::span<const int> StimulusEditPageModel::ControlsWithVisibility() {
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

StimulusEditPageModel::StimulusEditPageModel(CStimulusData& data)
    : m_data(data), m_openedBits(data.Bits()), m_levelLabel(kInitialState), m_levelItems(kHighLow) {
    FillNames("");
    ShowData();
}

bool StimulusEditPageModel::CheckOnOpen() {
    if (!ReplaceValuesPagesCannotUse(m_data)) {
        return false;
    }
    stimulus_edit::Ask(kInvalidEyeDiagramData, MessageIcon::Warning, MessageButtons::Ok);
    ShowData();
    return true;
}

void StimulusEditPageModel::ShowData() {
    // Kind 7 is generated as a pseudo-random sequence; 5 and 6 keep their
    // bits, as a drawn sequence does. Neither changes the data until the
    // user picks a kind, and the pattern behaves as the kind the list shows.
    const int kind = m_data.m_seqType;
    m_position = PositionOfKind(kind);
    if (m_position == 0) {
        m_position = PositionOfKind(kind == seq::kConstructionDefault ? seq::kPrbs : seq::kCustom);
    }
    m_levelIndex = LevelOfInitState(m_data.m_initState);
    const int jitterType = m_data.m_jitterType;
    m_distributionIndex = jitterType >= 0 && jitterType < 3 ? jitterType : 0;
    m_data.m_jitterType = m_distributionIndex;  // the list can show no other
    ShowLook(Kind());
    m_bits = m_data.m_bits;
    ++m_bitsRevision;
    ShowTexts();
    m_modified = false;
}

void StimulusEditPageModel::ShowLook(int kind) {
    const std::optional<KindBehaviour> behaviour = BehaviourOf(kind);
    if (!behaviour) {
        return;
    }
    m_readOnly = behaviour->readOnly;
    m_paintMode = behaviour->paintMode;
    m_paintRepetitions = m_data.m_cycleCount;
    ++m_lookRevision;
    if (behaviour->levelLabel) {
        m_levelLabel = *behaviour->levelLabel;
        m_levelItems = behaviour->levelItems;
    }
}

void StimulusEditPageModel::ChoosePosition(int position) {
    m_position = position;
    m_data.m_seqType = KindAtPosition(position);
    ShowLook(m_data.m_seqType);
    RebuildPattern();
    m_fileName.clear();
}

int StimulusEditPageModel::Kind() const {
    return KindAtPosition(m_position);
}

bool StimulusEditPageModel::IsShown(int controlId) const {
    if (controlId == id::kNameList || controlId == id::kNameEdit) {
        return m_namingNew == (controlId == id::kNameEdit);
    }
    return IsShownAt(controlId, m_position);
}

std::string_view StimulusEditPageModel::Label(int controlId) const {
    const bool oscillator = Kind() == seq::kToggling;
    switch (controlId) {
        case id::kPeriodLabel:
            return oscillator ? "&Period:" : "&Bit interval:";
        case id::kRepetitionsLabel:
            return oscillator ? "&Frequency:" : "Sequence &repetitions:";
        case id::kLevelLabel:
            return m_levelLabel;
        case id::kJitterLabel:
            return m_distributionIndex == 1 ? "Amount (p-p):" : "Amount:";
        default:
            return {};
    }
}

std::string_view StimulusEditPageModel::ItemText(int controlId, int item) const {
    if (controlId == id::kLevel && (item == 0 || item == 1)) {
        return m_levelItems[static_cast<std::size_t>(item)];
    }
    if (controlId == id::kJitterUnit) {
        if (item == 0) {
            return Kind() == seq::kToggling ? "% of period" : "% of interval";
        }
        return item == 1 ? "ns" : "";
    }
    return {};
}

void StimulusEditPageModel::SetLevelIndex(int index) {
    m_levelIndex = index;
    if (index >= 0) {
        m_data.m_initState = InitStateOfLevel(index);
        RebuildPattern();
    }
}

void StimulusEditPageModel::SetBitOrderIndex(int index) {
    m_bitOrderIndex = index;
    RebuildPattern();
}

void StimulusEditPageModel::SetJitterUnitIndex(int index) {
    m_jitterUnitIndex = index;
    ShowTexts();
}

void StimulusEditPageModel::SetDistributionIndex(int index) {
    m_distributionIndex = index;
    m_data.m_jitterType = index;
    m_modified = true;
}

void StimulusEditPageModel::SetRepeatJitter(bool repeat) {
    m_data.m_jitterRepeatable = repeat;
    m_modified = true;
}

void StimulusEditPageModel::RebuildPattern() {
    m_bits = KindPattern(Kind(), std::max(0, m_levelIndex), m_data);
    // The bit order list is shown for PRBS alone; hidden, it orders nothing.
    if (m_bitOrderIndex == 1 && IsShown(id::kBitOrder)) {
        std::reverse(m_bits.begin(), m_bits.end());
    }
    ++m_bitsRevision;
    m_modified = true;
}

double StimulusEditPageModel::JitterInNs(double shown) const {
    return m_jitterUnitIndex == 0 ? shown * m_data.m_period * 0.01 : shown;
}

void StimulusEditPageModel::ShowTexts() {
    const double period = m_data.m_period;
    const double duty = m_data.m_dutyCycle;
    m_texts[id::kPeriod] = FormatFieldValue(period);
    m_texts[id::kDuty] = FormatFieldValue(duty);
    // The spin box shows whole percent; a duty cycle that is no number shows as its minimum.
    m_dutySpin = static_cast<int>(std::isfinite(duty) ? std::clamp(duty, 0.0, 100.0) + 0.5 : 0.0);
    m_texts[id::kRepetitions] = std::to_string(m_data.m_cycleCount);
    if (period > 0) {
        const double high = period * duty * 0.01;
        m_texts[id::kFrequency] = FormatFieldValue(1000.0 / period);
        m_texts[id::kHighTime] = FormatFieldValue(high);
        m_texts[id::kLowTime] = FormatFieldValue(period - high);
    }
    const double jitter = m_data.m_maxJitter;
    const bool percent = m_jitterUnitIndex == 0;
    m_texts[id::kJitter] =
        FormatFieldValue(percent && period > 0 ? jitter * 100.0 / period : jitter);
}

const std::string& StimulusEditPageModel::Text(int controlId) const {
    static const std::string none;
    const auto found = m_texts.find(controlId);
    return found == m_texts.end() ? none : found->second;
}

void StimulusEditPageModel::Type(int controlId, std::string text) {
    if (controlId == id::kNameEdit) {
        m_newName = std::move(text);
    } else if (IsTextField(controlId)) {
        m_texts[controlId] = std::move(text);
    }
}

std::optional<std::string_view> StimulusEditPageModel::Check(int controlId, double value) const {
    const double period = m_data.m_period;
    const bool oscillator = Kind() == seq::kToggling;
    switch (controlId) {
        case id::kPeriod:
            return CheckTyped(StimulusRuleOf("PERIOD"), value, !oscillator);
        case id::kDuty:
            return CheckTyped(StimulusRuleOf("DUTYCYCLE"), value);
        case id::kRepetitions:
            return CheckTyped(StimulusRuleOf("CYCLECOUNT"), value);
        case id::kFrequency:
            return CheckTyped(StimulusRuleOf("PERIOD"), value > 0 ? 1000.0 / value : -1.0);
        case id::kHighTime:
            return CheckTyped(StimulusRuleOf("DUTYCYCLE"), value / period * 100.0);
        case id::kLowTime:
            return CheckTyped(StimulusRuleOf("DUTYCYCLE"), (period - value) / period * 100.0);
        case id::kJitter:
            return CheckMaxJitterInInterval(JitterInNs(value), period);
        default:
            return std::nullopt;
    }
}

void StimulusEditPageModel::Store(int controlId, double value) {
    const double period = m_data.m_period;
    switch (controlId) {
        case id::kPeriod:
            m_data.m_period = value;
            break;
        case id::kDuty:
            m_data.m_dutyCycle = value;
            break;
        case id::kRepetitions:
            m_data.m_cycleCount = static_cast<int32_t>(value);
            if (Kind() == seq::kPulse) {
                m_paintRepetitions = m_data.m_cycleCount;
                ++m_lookRevision;
            } else if (Kind() == seq::k8b10b) {
                RebuildPattern();  // ten bits per repetition
            }
            break;
        case id::kFrequency:
            m_data.m_period = 1000.0 / value;
            break;
        case id::kHighTime:
            m_data.m_dutyCycle = value / period * 100.0;
            break;
        case id::kLowTime:
            m_data.m_dutyCycle = (period - value) / period * 100.0;
            break;
        case id::kJitter:
            m_data.m_maxJitter = JitterInNs(value);
            break;
        default:
            break;
    }
}

bool StimulusEditPageModel::Commit(int controlId) {
    if (m_telling || !IsTextField(controlId) || !IsShown(controlId)) {
        return true;
    }
    const std::optional<double> typed = ParseFieldValue(m_texts[controlId]);
    const double value = typed.value_or(-1.0e300);
    if (const std::optional<std::string_view> problem = Check(controlId, value)) {
        m_telling = true;
        stimulus_edit::Ask(*problem, MessageIcon::Warning, MessageButtons::Ok);
        m_telling = false;
        return false;
    }
    // What the accepted value changes, when it differs from what is shown
    // now (an untouched field marks nothing).
    ShowTexts();
    if (ParseFieldValue(m_texts[controlId]) != typed) {
        Store(controlId, value);
        m_modified = true;
        ShowTexts();
    }
    return true;
}

bool StimulusEditPageModel::Spin(int fieldId, int count) {
    Type(fieldId, std::to_string(count));
    return Commit(fieldId);
}

int StimulusEditPageModel::SpinValue(int spinId) const {
    return spinId == id::kDutySpin ? m_dutySpin : m_data.m_cycleCount;
}

std::optional<int> StimulusEditPageModel::CommitAll() {
    for (const int controlId : kTextFields) {
        if (!Commit(controlId)) {
            return controlId;
        }
    }
    return std::nullopt;
}

bool StimulusEditPageModel::LoadBits(IFileChooser& chooser) {
    FileQuery query;
    query.defaultExtension = std::string(kBitFileExtension);
    query.filter = std::string(kBitFileFilter);
    query.hideReadOnly = true;
    const std::optional<ChosenFile> chosen = chooser.ChooseOpenFile(query);
    if (!chosen) {
        return false;
    }
    const std::string path = chosen->Path().string();
    std::optional<BitVector> bits = ReadBitFile(path, stimulus_edit::kCaption);
    if (!bits) {
        return false;
    }
    m_bits = std::move(*bits);
    ++m_bitsRevision;
    m_fileName = path;
    m_modified = true;
    return true;
}

void StimulusEditPageModel::SaveBits(IFileChooser& chooser) {
    FileQuery query;
    query.defaultExtension = std::string(kBitFileExtension);
    query.filter = std::string(kBitFileFilter);
    const std::optional<ChosenFile> chosen = chooser.ChooseSaveFile(query);
    if (chosen && WriteBitFile(chosen->Path().string(), m_bits, stimulus_edit::kCaption)) {
        m_fileName = chosen->Path().string();
    }
}

void StimulusEditPageModel::FillNames(const std::string& selected) {
    m_names = stimulus_library::Names();
    const bool kept = std::find(m_names.begin(), m_names.end(), selected) != m_names.end();
    m_selectedName = kept ? selected : std::string();
    m_namingNew = false;
}

std::string StimulusEditPageModel::CurrentName() const {
    return std::string(TrimSpace(m_namingNew ? m_newName : m_selectedName));
}

void StimulusEditPageModel::StartNewName() {
    m_namingNew = true;
    m_newName.clear();
}

void StimulusEditPageModel::OpenNamed(const std::string& name) {
    m_selectedName = name;
    if (stimulus_library::Open(m_data, name)) {
        ShowData();
        m_modified = true;
    }
}

bool StimulusEditPageModel::SaveNamed() {
    const std::string name = CurrentName();
    if (name.empty() || CommitAll()) {
        return false;
    }
    StoreToData();
    if (!stimulus_library::Save(m_data, name)) {
        return false;
    }
    FillNames(name);
    return true;
}

void StimulusEditPageModel::RemoveNamed() {
    if (!m_selectedName.empty() && stimulus_library::Remove(m_selectedName)) {
        FillNames("");
    }
}

void StimulusEditPageModel::OpenFile(IFileChooser& chooser) {
    FileQuery query;
    query.defaultExtension = "ini";
    query.filter = "Stimulus file (*.ini)|*.ini|All Files (*.*)|*.*|";
    if (const std::optional<ChosenFile> chosen = chooser.ChooseOpenFile(query)) {
        m_data.Load(chosen->Path().string().c_str(), true);
        ShowData();
        m_modified = true;
    }
}

bool StimulusEditPageModel::IsModified() const {
    return m_modified || m_bits != m_openedBits;
}

void StimulusEditPageModel::StoreToData() {
    m_data.m_bits = m_bits;
    if (IsShown(id::kLevel)) {
        m_data.m_initState = InitStateOfLevel(m_levelIndex);
    }
}

bool StimulusEditPageModel::Apply() {
    if (!IsModified()) {
        return true;
    }
    // Saving keeps the stimulus under its name; Yes and No alike hand the
    // edits to the sheet, which gives them to the caller. Only Cancel keeps
    // the page open.
    const MessageAnswer answer = stimulus_edit::Ask(
        stimulus_edit::kApplyQuestion, MessageIcon::Warning, MessageButtons::YesNoCancel);
    if (answer != MessageAnswer::Yes && answer != MessageAnswer::No) {
        return false;
    }
    StoreToData();
    // After Yes applying succeeds only if saving the named stimulus worked;
    // an unnamed one has nowhere to be kept but the caller.
    return answer == MessageAnswer::No || CurrentName().empty() || SaveNamed();
}

bool StimulusEditPageModel::QueryCancel() const {
    return !IsModified() || stimulus_edit::Ask(stimulus_edit::kCancelQuestion, MessageIcon::Warning,
                                               MessageButtons::OkCancel) == MessageAnswer::Ok;
}

}  // namespace kv
