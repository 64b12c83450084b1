#include "core/padstack/PadstackUnits.h"

#include "core/shared/NumberText.h"

namespace kv {
namespace {

constexpr int kShownDecimals = 2;

}  // namespace

std::string DisplayUnits::ShowLength(double metres) const {
    return FormatFixed(metres * Scale(), kShownDecimals);
}

std::string ShowAngle(double degrees) {
    return FormatFixed(degrees, kShownDecimals);
}

}  // namespace kv
