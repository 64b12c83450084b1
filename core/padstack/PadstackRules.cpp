#include "core/padstack/PadstackRules.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr double kRelativeTolerance = 1e-9;

}  // namespace

int CompareSizes(double a, double b) {
    const double tolerance = kRelativeTolerance * std::max(std::fabs(a), std::fabs(b));
    if (std::fabs(a - b) <= tolerance) {
        return 0;
    }
    return a < b ? -1 : 1;
}

bool EnclosureApplies(const PadstackRow& row) {
    return row.padShape != TableShape::Auto && row.antiPadShape != TableShape::Auto &&
           row.antiPadShape != TableShape::Clearance && row.antiPadShape != TableShape::None &&
           row.antiPadAngle == row.padAngle;
}

}  // namespace kv
