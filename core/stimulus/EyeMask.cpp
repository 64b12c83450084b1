#include "core/stimulus/EyeMask.h"

#include <algorithm>

#include "core/shared/BoundedCopy.h"
#include "core/stimulus/StimulusRules.h"

namespace kv {

EYEMASK DefaultEyeMask() {
    EYEMASK mask{};
    mask.PTopMax = 5.5;
    mask.PTopMin = 4.5;
    mask.PBaseMin = -0.5;
    mask.PBaseMax = 0.5;
    mask.PCross = 2.5;
    mask.TCross1Min = 0;
    mask.TCross1Max = 10;
    mask.TRiseDelay = 20;
    mask.TCross2Max = 110;
    mask.TCross2Min = 100;
    mask.TFallDelay = 90;
    mask.ScaleTime = 1.0;
    mask.ScaleVolt = 1.0;
    mask.OffsetTime = 0;
    mask.OffsetVolt = 0;
    return mask;
}

void SetMaskName(EYEMASK& mask, std::string_view name) {
    SetFieldText(mask.MaskName, name);
}

std::string_view MaskName(const EYEMASK& mask) {
    return FieldText(mask.MaskName);
}

std::optional<std::string_view> FindMaskOrderError(const EYEMASK& mask) {
    // Each rule: a value must not fall below its lower (or earlier)
    // neighbour. Checked in the rules' own order, top to bottom, then left
    // to right.
    const std::span<const StimulusRule> rules = StimulusRules();
    for (int number = 1;; ++number) {
        const auto rule = std::find_if(rules.begin(), rules.end(), [number](const StimulusRule& r) {
            return r.orderRule == number;
        });
        if (rule == rules.end()) {
            return std::nullopt;
        }
        if (mask.*rule->maskMember < mask.*rule->below) {
            return rule->orderMessage;
        }
    }
}

}  // namespace kv
