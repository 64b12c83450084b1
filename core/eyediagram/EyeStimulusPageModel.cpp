#include "core/eyediagram/EyeStimulusPageModel.h"

#include <algorithm>

#include "core/eyediagram/KindPattern.h"
#include "core/eyediagram/PageFieldText.h"
#include "core/eyediagram/StimulusOpenCheck.h"
#include "core/eyediagram/WaveformPreview.h"
#include "core/ports/MessagePort.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeDiagramControlIds.h"

namespace kv {
namespace {

namespace id = kvcomctl_ids::eye_stimulus;

constexpr int kGaussian = 0;
constexpr int kSine = 2;

constexpr int kTextFields[] = {
    id::kCycles,
    id::kSkipBits,
    id::kBitInterval,
    id::kDutyCycle,
    id::kMaxJitter,
    id::kComponentMagnitude,
    id::kComponentMagnitude + 1,
    id::kComponentMagnitude + 2,
    id::kComponentValue2,
    id::kComponentValue2 + 1,
    id::kComponentValue2 + 2,
    id::kComponentValue3 + kSine,
};

// Where each component's record lives in the data: 0 Gaussian (magnitude in
// the maximum jitter, value2 its frequency), 1 uniform (magnitude, value2
// its mean), 2 sine (magnitude, value2 its frequency, value3 its phase).
struct ComponentFields {
    double StimulusValues::*magnitude;
    double StimulusValues::*value2;
    double StimulusValues::*value3;  // null when the component has none
};
constexpr ComponentFields kComponents[3] = {
    {&StimulusValues::m_maxJitter, &StimulusValues::m_randomFreq, nullptr},
    {&StimulusValues::m_uniformMag, &StimulusValues::m_uniformMean, nullptr},
    {&StimulusValues::m_sineMag, &StimulusValues::m_sineFreq, &StimulusValues::m_sineInit},
};

CJitter JitterFromData(const CStimulusData& data, std::size_t component) {
    const ComponentFields& fields = kComponents[component];
    CJitter jitter;
    jitter.m_enabled = data.m_addJitter[component];
    jitter.m_magnitude = data.*fields.magnitude;
    jitter.m_value2 = data.*fields.value2;
    jitter.m_value3 = fields.value3 != nullptr ? data.*fields.value3 : 0.0;
    jitter.m_asTime = data.m_jitterAsTime[component] ? 1 : 0;
    jitter.m_freqMeasured = data.m_freqMeasured[component] ? 1 : 0;
    return jitter;
}

void StoreJitter(CStimulusData& data, std::size_t component, const CJitter& jitter) {
    const ComponentFields& fields = kComponents[component];
    data.m_addJitter[component] = jitter.m_enabled;
    data.*fields.magnitude = jitter.m_magnitude;
    data.*fields.value2 = jitter.m_value2;
    if (fields.value3 != nullptr) {
        data.*fields.value3 = jitter.m_value3;
    }
    data.m_jitterAsTime[component] = jitter.m_asTime != 0;
    data.m_freqMeasured[component] = jitter.m_freqMeasured != 0;
}

bool IsTextField(int controlId) {
    return std::find(std::begin(kTextFields), std::end(kTextFields), controlId) !=
           std::end(kTextFields);
}

// The component a control of the component rows belongs to, or -1.
int ComponentOf(int controlId) {
    return controlId >= id::kComponentEnabled && controlId % 10 < 3 ? controlId % 10 : -1;
}

}  // namespace

EyeStimulusPageModel::EyeStimulusPageModel(CStimulusData& data) : m_data(data) {
    ShowData();
}

bool EyeStimulusPageModel::CheckOnOpen() {
    if (!ReplaceValuesPagesCannotUse(m_data)) {
        return false;
    }
    ShowMessage(kInvalidEyeDiagramData, MessageIcon::Warning);
    ShowData();
    return true;
}

const CJitter& EyeStimulusPageModel::Jitter(int component) const {
    return m_jitter[static_cast<std::size_t>(std::clamp(component, 0, 2))];
}

CJitter& EyeStimulusPageModel::Jitter(int component) {
    return m_jitter[static_cast<std::size_t>(std::clamp(component, 0, 2))];
}

void EyeStimulusPageModel::ShowData() {
    for (std::size_t i = 0; i < 3; ++i) {
        m_jitter[i] = JitterFromData(m_data, i);
    }
    m_eyesIndex = std::clamp(m_data.m_eyeCount, 1, 3) - 1;
    m_jitterType = std::clamp(m_data.m_jitterType, 0, 2);
    m_repeatable = m_data.m_jitterRepeatable;
    // Kind 7 is generated as a pseudo-random sequence; kinds the list does
    // not offer show as drawn sequences and keep their bits.
    m_kind = m_data.m_seqType == seq::kConstructionDefault ? seq::kPrbs : m_data.m_seqType;
    if (std::none_of(kEyeDiagramSequenceList.begin(), kEyeDiagramSequenceList.end(),
                     [this](const SequenceTypeName& entry) { return entry.code == m_kind; })) {
        m_kind = seq::kCustom;
    }
    m_levelIndex = LevelOfInitState(m_data.m_initState);
    m_bits = m_data.m_bits;
    ++m_bitsRevision;
    ShowTexts();
}

void EyeStimulusPageModel::ShowTexts() {
    // Each field remembers the text it was given, so that committing a field
    // nobody touched never replaces a value by its rounded text.
    m_texts[id::kCycles] = std::to_string(m_data.m_cycleCount);
    m_texts[id::kSkipBits] = std::to_string(m_data.m_skipBits);
    m_texts[id::kBitInterval] = FormatFieldValue(m_data.m_period);
    m_texts[id::kDutyCycle] = FormatFieldValue(m_data.m_dutyCycle);
    m_texts[id::kMaxJitter] = FormatFieldValue(Jitter(kGaussian).m_magnitude);
    for (int i = 0; i < 3; ++i) {
        m_texts[id::kComponentMagnitude + i] = FormatFieldValue(Jitter(i).m_magnitude);
        m_texts[id::kComponentValue2 + i] = FormatFieldValue(Jitter(i).m_value2);
    }
    m_texts[id::kComponentValue3 + kSine] = FormatFieldValue(Jitter(kSine).m_value3);
    m_shown = m_texts;
}

const std::string& EyeStimulusPageModel::Text(int controlId) const {
    static const std::string none;
    const auto found = m_texts.find(controlId);
    return found == m_texts.end() ? none : found->second;
}

void EyeStimulusPageModel::Type(int controlId, std::string text) {
    if (IsTextField(controlId)) {
        m_texts[controlId] = std::move(text);
    }
}

bool EyeStimulusPageModel::IsEnabled(int controlId) const {
    const bool advanced = Advanced();
    if (controlId == id::kMaxJitter || controlId == id::kJitterType) {
        return !advanced;
    }
    if (controlId == id::kPolyDegree) {
        return DegreeEnabled();
    }
    const int component = ComponentOf(controlId);
    if (component < 0) {
        return true;
    }
    if (controlId == id::kComponentEnabled + component) {
        return advanced;
    }
    return advanced && Jitter(component).m_enabled;
}

bool EyeStimulusPageModel::Commit(int controlId) {
    if (m_telling || !IsTextField(controlId) || !IsEnabled(controlId) ||
        m_texts[controlId] == m_shown[controlId]) {
        return true;
    }
    if (const auto problem = CheckAndStore(controlId, ParseFieldValue(m_texts[controlId]))) {
        m_telling = true;
        ShowMessage(*problem, MessageIcon::Warning);
        m_telling = false;
        return false;
    }
    ShowTexts();
    return true;
}

std::optional<std::string_view> EyeStimulusPageModel::CheckAndStore(int controlId,
                                                                    std::optional<double> typed) {
    const double value = typed.value_or(-1.0e300);
    const double period = m_data.m_period;
    std::optional<std::string_view> problem;
    const int component = ComponentOf(controlId);
    CJitter changed = Jitter(component);
    switch (component < 0 ? controlId : controlId - component) {
        case id::kCycles:
            if (!(problem = CheckTyped(StimulusRuleOf("CYCLECOUNT"), value))) {
                m_data.m_cycleCount = static_cast<int32_t>(value);
                if (m_kind == seq::k8b10b) {
                    RemakeBits();  // ten bits per cycle
                }
            }
            break;
        case id::kSkipBits: {
            const StimulusRule& skip = StimulusRuleOf("SKIPBITS");
            problem = CheckTyped(skip, value);
            if (!problem && !SkipWithinCycles(value, m_data.m_cycleCount,
                                              static_cast<int64_t>(m_bits.size()))) {
                problem = skip.message;
            }
            if (!problem) {
                m_data.m_skipBits = static_cast<int32_t>(value);
            }
            break;
        }
        case id::kBitInterval:
            if (!(problem = CheckTyped(StimulusRuleOf("PERIOD"), value, true))) {
                m_data.m_period = value;
            }
            break;
        case id::kDutyCycle:
            if (!(problem = CheckTyped(StimulusRuleOf("DUTYCYCLE"), value))) {
                m_data.m_dutyCycle = value;
            }
            break;
        case id::kMaxJitter:
            if (!(problem = CheckMaxJitterInHalfPeriod(value, period, m_data.m_dutyCycle))) {
                Jitter(kGaussian).m_magnitude = value;
            }
            break;
        case id::kComponentMagnitude:
            changed.m_magnitude = value;
            if (!typed || value < 0) {
                problem = kJitterMagnitudeTooLarge;
            } else if (!HasBitInterval()) {
                problem = StimulusRuleOf("PERIOD").messageAsInterval;
            } else if (!IsJitterMagnitudeAllowed(changed, period)) {
                problem = kJitterMagnitudeTooLarge;
            }
            break;
        case id::kComponentValue2:
            changed.m_value2 = value;
            break;
        case id::kComponentValue3:
            changed.m_value3 = value;
            break;
        default:
            return std::nullopt;
    }
    if (!problem && !typed) {
        problem = "Invalid number";
    }
    if (!problem && component >= 0) {
        Jitter(component) = changed;
    }
    return problem;
}

std::optional<int> EyeStimulusPageModel::Leave() {
    for (const int controlId : kTextFields) {
        if (!Commit(controlId)) {
            return controlId;
        }
    }
    StoreToData();
    return std::nullopt;
}

void EyeStimulusPageModel::Apply() {
    StoreToData();
}

void EyeStimulusPageModel::StoreToData() {
    for (std::size_t i = 0; i < 3; ++i) {
        StoreJitter(m_data, i, m_jitter[i]);
    }
    m_data.m_eyeCount = m_eyesIndex + 1;
    m_data.m_jitterType = m_jitterType;
    m_data.m_jitterRepeatable = m_repeatable;
    m_data.m_bits = m_bits;
}

void EyeStimulusPageModel::SetKind(int kind) {
    m_kind = kind;
    m_data.m_seqType = kind;
    RemakeBits();
}

void EyeStimulusPageModel::SetPolyDegree(int degree) {
    m_data.m_polyDegree = degree;
    RemakeBits();
}

void EyeStimulusPageModel::SetLevelIndex(int index) {
    m_levelIndex = index;
    m_data.m_initState = InitStateOfLevel(index);
    RemakeBits();
}

void EyeStimulusPageModel::RemakeBits() {
    if (m_kind != seq::kCustom) {  // else the user's own bits stay
        m_bits = KindPattern(m_kind, std::max(0, m_levelIndex), m_data);
        ++m_bitsRevision;
    }
}

// Jitter magnitudes are checked and converted against the bit interval, and a
// page made but not yet shown (so not yet checked) may hold a host's period
// that is none: zero, negative or not a number.
bool EyeStimulusPageModel::HasBitInterval() const {
    return m_data.m_period > 0;
}

bool EyeStimulusPageModel::PatternReadOnly() const {
    return m_kind != seq::kCustom;
}

bool EyeStimulusPageModel::DegreeEnabled() const {
    return m_kind == seq::kPrbs;
}

bool EyeStimulusPageModel::SetComponentEnabled(int component, bool enabled) {
    CJitter changed = Jitter(component);
    changed.m_enabled = enabled;
    if (enabled && !HasBitInterval()) {
        ShowMessage(StimulusRuleOf("PERIOD").messageAsInterval, MessageIcon::Warning);
        return false;
    }
    if (enabled && !CheckJitterMagnitude(changed, m_data.m_period)) {
        return false;
    }
    Jitter(component) = changed;
    return true;
}

void EyeStimulusPageModel::SetComponentUnit(int component, int unit) {
    CJitter& jitter = Jitter(component);
    const bool convert = HasBitInterval();
    const double percent = convert ? MagnitudeInPercent(jitter, m_data.m_period) : 0.0;
    jitter.m_asTime = unit == 1 ? 1 : 0;
    if (convert) {
        jitter.m_magnitude = MagnitudeFromPercent(jitter, percent, m_data.m_period);
    }
    ShowTexts();
}

std::vector<STIMPOINT> EyeStimulusPageModel::Preview() const {
    PreviewInput input;
    input.bits = m_bits;
    input.cycleCount = m_data.m_cycleCount;
    input.seqType = m_kind;
    input.periodNs = m_data.m_period;
    input.dutyPercent = m_data.m_dutyCycle;
    return BuildWaveformPreview(input);
}

}  // namespace kv
