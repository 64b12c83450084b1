#include "core/eyediagram/MaskPageModel.h"

#include <array>

#include "core/eyediagram/PageFieldText.h"
#include "core/ports/MessagePort.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/AsciiText.h"
#include "core/stimulus/EyeMask.h"
#include "kvcomctl/EyeDiagramControlIds.h"

namespace kv {
namespace {

namespace id = kvcomctl_ids::eye_mask;

MaskField Field(int controlId, std::string_view label, std::string_view key, double factor = 1) {
    return {controlId, label, &StimulusRuleOf(key), factor};
}

const std::array<MaskField, 15>& FieldTable() {
    static const std::array<MaskField, 15> fields{{
        Field(id::kTopMax, "Top max:", "PTOPMAX"),
        Field(id::kTopMin, "Top min:", "PTOPMIN"),
        Field(id::kBaseMin, "Base min:", "PBASEMIN"),
        Field(id::kBaseMax, "Base max:", "PBASEMAX"),
        Field(id::kCross, "Cross:", "PCROSS"),
        Field(id::kCross1Min, "Cross1 min:", "TCROSS1MIN"),
        Field(id::kCross1Max, "Cross1 max:", "TCROSS1MAX"),
        Field(id::kRiseDelay, "Rise delay:", "TRISEDELAY"),
        Field(id::kCross2Max, "Cross2 max:", "TCROSS2MAX"),
        Field(id::kCross2Min, "Cross2 min:", "TCROSS2MIN"),
        Field(id::kFallDelay, "Fall delay:", "TFALLDELAY"),
        Field(id::kScaleTime, "Time scale (%):", "SCALETIME", 100),
        Field(id::kScaleVolt, "Voltage scale (%):", "SCALEVOLT", 100),
        Field(id::kOffsetTime, "Time offset:", "OFFSETTIME"),
        Field(id::kOffsetVolt, "Voltage offset (V):", "OFFSETVOLT"),
    }};
    return fields;
}

const MaskField* FindField(int controlId) {
    for (const MaskField& field : FieldTable()) {
        if (field.controlId == controlId) {
            return &field;
        }
    }
    return nullptr;
}

double& Held(const MaskField& field, EYEMASK& mask) {
    return mask.*field.rule->maskMember;
}

MaskLibrary LoadLibrary() {
    const auto store = OpenProfileStore(ModuleProfile());
    return store ? MaskLibrary::Load(*store) : MaskLibrary{};
}

}  // namespace

MaskPageModel::MaskPageModel(CStimulusData& data) : m_data(data), m_library(LoadLibrary()) {
    ShowMask();
}

std::span<const MaskField> MaskPageModel::Fields() {
    return FieldTable();
}

bool MaskPageModel::CheckOnOpen() {
    if (MaskAcceptedOnOpen(m_data.m_mask)) {
        return false;
    }
    ShowMessage(kMaskInvalidOnOpen, MessageIcon::Warning);
    m_data.m_mask = DefaultEyeMask();
    ShowMask();
    return true;
}

const std::string& MaskPageModel::Text(int controlId) const {
    static const std::string none;
    const auto found = m_texts.find(controlId);
    return found == m_texts.end() ? none : found->second;
}

void MaskPageModel::Type(int controlId, std::string text) {
    if (FindField(controlId) != nullptr) {
        m_texts[controlId] = std::move(text);
    }
}

bool MaskPageModel::Commit(int controlId) {
    const MaskField* field = FindField(controlId);
    if (field == nullptr || m_telling) {
        return true;
    }
    const std::optional<double> typed = ParseFieldValue(Text(controlId));
    const double shown = Held(*field, m_data.m_mask) * field->shownFactor;
    if (typed && ParseFieldValue(FormatFieldValue(shown)) == typed) {
        return true;  // untouched: a stored mask may have equal neighbours
    }
    const std::optional<std::string_view> problem =
        typed ? CheckTypedInMask(*field->rule, m_data.m_mask, *typed / field->shownFactor)
              : std::optional<std::string_view>(field->rule->message);
    if (problem) {
        m_telling = true;
        ShowMessage(*problem, MessageIcon::Warning);
        m_telling = false;
        return false;
    }
    Held(*field, m_data.m_mask) = *typed / field->shownFactor;
    return true;
}

std::optional<int> MaskPageModel::CommitAll() {
    for (const MaskField& field : FieldTable()) {
        if (!Commit(field.controlId)) {
            return field.controlId;
        }
    }
    if (const std::optional<std::string_view> broken = FindMaskOrderError(m_data.m_mask)) {
        ShowMessage(*broken, MessageIcon::Warning);
        return 0;
    }
    return std::nullopt;
}

bool MaskPageModel::Apply() {
    const EYEMASK* kept = m_library.Find(Name());
    if (kept == nullptr || SameMaskNumbers(*kept, m_data.m_mask)) {
        return true;
    }
    switch (
        ShowMessage(kMaskDiffersFromLibrary, MessageIcon::Question, MessageButtons::YesNoCancel)) {
        case MessageAnswer::Yes:
            m_library.Put(m_data.m_mask);
            SaveLibrary();
            return true;
        case MessageAnswer::No:
            return true;
        default:
            return false;
    }
}

std::vector<std::string> MaskPageModel::LibraryNames() const {
    std::vector<std::string> names;
    for (const EYEMASK& mask : m_library.Masks()) {
        names.emplace_back(MaskName(mask));
    }
    return names;
}

std::optional<int> MaskPageModel::ChooseLibraryMask(std::string_view name) {
    std::optional<int> refused = CommitAll();
    if (!refused && Apply()) {
        if (const EYEMASK* chosen = m_library.Find(name)) {
            m_data.m_mask = *chosen;
        }
    }
    ShowMask();
    return refused;
}

std::optional<int> MaskPageModel::SaveAs(std::string_view name) {
    name = TrimSpace(name);
    if (name.empty()) {
        return std::nullopt;
    }
    if (const std::optional<int> refused = CommitAll()) {
        return refused;
    }
    SetMaskName(m_data.m_mask, name);
    m_library.Put(m_data.m_mask);
    SaveLibrary();
    ShowMask();
    return std::nullopt;
}

void MaskPageModel::Delete(std::string_view name) {
    if (!name.empty() && m_library.Remove(name)) {
        SaveLibrary();
        ShowMask();
    }
}

MaskOutline MaskPageModel::Outline() const {
    EYEMASK typed = m_data.m_mask;
    for (const MaskField& field : FieldTable()) {
        if (const std::optional<double> value = ParseFieldValue(Text(field.controlId))) {
            Held(field, typed) = *value / field.shownFactor;
        }
    }
    return BuildMaskOutline(typed, m_data.GetPeriod() * 1e-9);
}

void MaskPageModel::ShowMask() {
    for (const MaskField& field : FieldTable()) {
        m_texts[field.controlId] = FormatFieldValue(Held(field, m_data.m_mask) * field.shownFactor);
    }
}

void MaskPageModel::SaveLibrary() {
    const auto store = OpenProfileStore(ModuleProfile());
    if (!store || !m_library.Save(*store)) {
        ShowMessage("Unable to save the mask library.", MessageIcon::Warning);
    }
}

}  // namespace kv
