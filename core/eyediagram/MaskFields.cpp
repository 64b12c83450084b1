#include "core/eyediagram/MaskFields.h"

#include <array>

#include "core/stimulus/EyeMask.h"
#include "kvcomctl/EyeDiagramControlIds.h"

namespace kv::mask_page {
namespace {

namespace id = kvcomctl_ids::eye_mask;
namespace msg = kv::mask_field_message;

constexpr double EYEMASK::*kNone = nullptr;

const std::array<MaskField, 15> kFields{{
    {id::kTopMax, "Top max:", &EYEMASK::PTopMax, 1, &EYEMASK::PTopMin, kNone, false, 0, 0,
     msg::kTopMax},
    {id::kTopMin, "Top min:", &EYEMASK::PTopMin, 1, &EYEMASK::PCross, &EYEMASK::PTopMax, false, 0,
     0, msg::kTopMin},
    {id::kBaseMin, "Base min:", &EYEMASK::PBaseMin, 1, kNone, &EYEMASK::PBaseMax, false, 0, 0,
     msg::kBaseMin},
    {id::kBaseMax, "Base max:", &EYEMASK::PBaseMax, 1, &EYEMASK::PBaseMin, &EYEMASK::PCross, false,
     0, 0, msg::kBaseMax},
    {id::kCross, "Cross:", &EYEMASK::PCross, 1, &EYEMASK::PBaseMax, &EYEMASK::PTopMin, false, 0, 0,
     msg::kCross},
    {id::kCross1Min, "Cross1 min:", &EYEMASK::TCross1Min, 1, kNone, &EYEMASK::TCross1Max, false, 0,
     0, msg::kCross1Min},
    {id::kCross1Max, "Cross1 max:", &EYEMASK::TCross1Max, 1, &EYEMASK::TCross1Min,
     &EYEMASK::TRiseDelay, false, 0, 0, msg::kCross1Max},
    {id::kRiseDelay, "Rise delay:", &EYEMASK::TRiseDelay, 1, &EYEMASK::TCross1Max,
     &EYEMASK::TFallDelay, false, 0, 0, msg::kRiseDelay},
    {id::kCross2Max, "Cross2 max:", &EYEMASK::TCross2Max, 1, &EYEMASK::TCross2Min, kNone, false, 0,
     0, msg::kCross2Max},
    {id::kCross2Min, "Cross2 min:", &EYEMASK::TCross2Min, 1, &EYEMASK::TFallDelay,
     &EYEMASK::TCross2Max, false, 0, 0, msg::kCross2Min},
    {id::kFallDelay, "Fall delay:", &EYEMASK::TFallDelay, 1, &EYEMASK::TRiseDelay,
     &EYEMASK::TCross2Min, false, 0, 0, msg::kFallDelay},
    {id::kScaleTime, "Time scale (%):", &EYEMASK::ScaleTime, 100, kNone, kNone, true, 50, 200,
     kInvalidMaskScale},
    {id::kScaleVolt, "Voltage scale (%):", &EYEMASK::ScaleVolt, 100, kNone, kNone, true, 50, 200,
     kInvalidMaskScale},
    {id::kOffsetTime, "Time offset:", &EYEMASK::OffsetTime, 1, kNone, kNone, true, 0, 1000,
     kInvalidMaskTimeOffset},
    {id::kOffsetVolt, "Voltage offset (V):", &EYEMASK::OffsetVolt, 1, kNone, kNone, true, -10, 10,
     kInvalidMaskVoltOffset},
}};

}  // namespace

std::span<const MaskField> MaskFields() {
    return kFields;
}

const MaskField* FindMaskField(int controlId) {
    for (const MaskField& field : kFields) {
        if (field.controlId == controlId) {
            return &field;
        }
    }
    return nullptr;
}

std::optional<std::string_view> CheckMaskField(const MaskField& field, const EYEMASK& mask,
                                               double shown) {
    const bool fits = field.ranged ? shown >= field.low && shown <= field.high
                                   : (field.below == nullptr || shown > mask.*field.below) &&
                                         (field.above == nullptr || shown < mask.*field.above);
    if (fits && shown == shown) {
        return std::nullopt;
    }
    return field.message;
}

double ShownValue(const MaskField& field, const EYEMASK& mask) {
    return mask.*field.member * field.shownFactor;
}

void StoreShownValue(const MaskField& field, EYEMASK& mask, double shown) {
    mask.*field.member = shown / field.shownFactor;
}

bool SameMaskValues(const EYEMASK& a, const EYEMASK& b) {
    for (const MaskField& field : kFields) {
        if (a.*field.member != b.*field.member) {
            return false;
        }
    }
    return true;
}

}  // namespace kv::mask_page
