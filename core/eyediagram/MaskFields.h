#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeMask.h"

// The fifteen numbers of the eye mask page: their control ids, labels and
// how each is shown; what each may hold is its row of the stimulus rules.

namespace kv::mask_page {

struct MaskField {
    int controlId;
    std::string_view label;
    const StimulusRule* rule;
    double shownFactor;  // the scales are shown in percent
};

std::span<const MaskField> MaskFields();
const MaskField* FindMaskField(int controlId);

// The message when `shown` (as the field shows it) may not stand in `mask`.
std::optional<std::string_view> CheckMaskField(const MaskField& field, const EYEMASK& mask,
                                               double shown);
double ShownValue(const MaskField& field, const EYEMASK& mask);
void StoreShownValue(const MaskField& field, EYEMASK& mask, double shown);

}  // namespace kv::mask_page
