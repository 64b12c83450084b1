#include "core/stimulus/EyeMask.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

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
    const std::size_t length = std::min(name.size(), sizeof mask.MaskName - 1);
    std::memcpy(mask.MaskName, name.data(), length);
    std::memset(mask.MaskName + length, 0, sizeof mask.MaskName - length);
}

std::string_view MaskName(const EYEMASK& mask) {
    return {mask.MaskName, strnlen(mask.MaskName, sizeof mask.MaskName)};
}

std::optional<std::string_view> FindMaskOrderError(const EYEMASK& m) {
    // Each rule: the upper (or later) value must not fall below the lower
    // (or earlier) one. Listed top to bottom, then left to right.
    struct Rule {
        double upper;
        double lower;
        std::string_view message;
    };
    const std::array<Rule, 9> rules{{
        {m.PTopMax, m.PTopMin, "Ptop max value less than Ptop min value"},
        {m.PTopMin, m.PCross, "Ptop min value less than Pcross value"},
        {m.PCross, m.PBaseMax, "Pcross value less than Pbase max value"},
        {m.PBaseMax, m.PBaseMin, "Pbase max value less than Pbase min value"},
        {m.TCross1Max, m.TCross1Min, "Tcross1 min value greater than Tcross1 max value"},
        {m.TRiseDelay, m.TCross1Max, "Tcross1 max value greater than Rise delay value"},
        {m.TFallDelay, m.TRiseDelay, "Rise delay value greater than Fall delay value"},
        {m.TCross2Min, m.TFallDelay, "Fall delay value greater than Tcross2 min value"},
        {m.TCross2Max, m.TCross2Min, "Tcross2 min value greater than Tcross2 max value"},
    }};
    for (const Rule& rule : rules) {
        if (rule.upper < rule.lower) {
            return rule.message;
        }
    }
    return std::nullopt;
}

bool IsValidMaskScale(double scale) {
    return scale >= 0.5 && scale <= 2.0;
}
bool IsValidMaskTimeOffset(double offset) {
    return offset >= 0 && offset <= 1000;
}
bool IsValidMaskVoltOffset(double offset) {
    return offset >= -10 && offset <= 10;
}

bool MaskAcceptedOnOpen(const EYEMASK& mask) {
    const std::array<double, 15> numbers{
        mask.PTopMax,    mask.PTopMin,    mask.PBaseMin,   mask.PBaseMax,   mask.PCross,
        mask.TCross1Min, mask.TCross1Max, mask.TRiseDelay, mask.TCross2Max, mask.TCross2Min,
        mask.TFallDelay, mask.ScaleTime,  mask.ScaleVolt,  mask.OffsetTime, mask.OffsetVolt};
    return MaskPlacementAcceptedOnOpen(mask) &&
           std::all_of(numbers.begin(), numbers.end(), [](double v) { return std::isfinite(v); });
}

bool MaskPlacementAcceptedOnOpen(const EYEMASK& mask) {
    return IsValidMaskTimeOffset(mask.OffsetTime) && IsValidMaskVoltOffset(mask.OffsetVolt) &&
           IsValidMaskScale(mask.ScaleTime) && mask.ScaleVolt >= 0.5;
}

}  // namespace kv
