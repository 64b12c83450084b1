#include "core/shared/DialogUnits.h"

namespace kv {
namespace {

// value * numerator / denominator, rounded half away from zero.
int ScaleRounded(int value, int numerator, int denominator) {
    const long long product = static_cast<long long>(value) * numerator;
    const long long half = denominator / 2;
    return static_cast<int>(product >= 0 ? (product + half) / denominator
                                         : (product - half) / denominator);
}

}  // namespace

DialogBaseUnits BaseUnitsFromFont(int sampleWidth, int fontHeight) {
    const int letters = static_cast<int>(kBaseUnitSample.size());
    return {ScaleRounded(sampleWidth, 1, letters), fontHeight};
}

DialogRect DialogUnitsToPixels(const DialogRect& units, const DialogBaseUnits& base) {
    return {ScaleRounded(units.x, base.x, 4), ScaleRounded(units.y, base.y, 8),
            ScaleRounded(units.width, base.x, 4), ScaleRounded(units.height, base.y, 8)};
}

}  // namespace kv
