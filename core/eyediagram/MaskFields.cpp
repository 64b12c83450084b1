#include "core/eyediagram/MaskFields.h"

#include <array>

#include "kvcomctl/EyeDiagramControlIds.h"

namespace kv::mask_page {
namespace {

namespace id = kvcomctl_ids::eye_mask;

MaskField Field(int controlId, std::string_view label, std::string_view key, double factor = 1) {
    return {controlId, label, &StimulusRuleOf(key), factor};
}

const std::array<MaskField, 15>& Fields() {
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

}  // namespace

std::span<const MaskField> MaskFields() {
    return Fields();
}

const MaskField* FindMaskField(int controlId) {
    for (const MaskField& field : Fields()) {
        if (field.controlId == controlId) {
            return &field;
        }
    }
    return nullptr;
}

std::optional<std::string_view> CheckMaskField(const MaskField& field, const EYEMASK& mask,
                                               double shown) {
    return CheckTypedInMask(*field.rule, mask, shown / field.shownFactor);
}

double ShownValue(const MaskField& field, const EYEMASK& mask) {
    return mask.*field.rule->maskMember * field.shownFactor;
}

void StoreShownValue(const MaskField& field, EYEMASK& mask, double shown) {
    mask.*field.rule->maskMember = shown / field.shownFactor;
}

}  // namespace kv::mask_page
