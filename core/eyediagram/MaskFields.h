#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "kvcomctl/EyeMask.h"

// The fifteen numbers of the eye mask page: their control ids, labels, how
// each is shown, and the check applied while one of them is edited (strictly
// between its neighbours, or within its placement range).

namespace kv::mask_page {

struct MaskField {
    int controlId;
    std::string_view label;
    double EYEMASK::*member;
    double shownFactor;  // the scales are shown in percent
    // Neighbours the value must lie strictly between (null: no bound).
    double EYEMASK::*below;
    double EYEMASK::*above;
    // A placement range instead of neighbours.
    bool ranged;
    double low;
    double high;
    std::string_view message;
};

std::span<const MaskField> MaskFields();
const MaskField* FindMaskField(int controlId);

// The message when `shown` (as the field shows it) may not stand in `mask`.
std::optional<std::string_view> CheckMaskField(const MaskField& field, const EYEMASK& mask,
                                               double shown);
double ShownValue(const MaskField& field, const EYEMASK& mask);
void StoreShownValue(const MaskField& field, EYEMASK& mask, double shown);

// Whether two masks hold the same fifteen numbers.
bool SameMaskValues(const EYEMASK& a, const EYEMASK& b);

}  // namespace kv::mask_page
