#pragma once

#include <vector>

#include "kvcomctl/EyeMask.h"
#include "kvcomctl/Vec2.h"

// Where an eye mask lies on the eye, in seconds and volts.
//
// The mask's time points are percent of the bit interval (100 is one
// interval after the first crossing) and so is its time offset; its levels
// and voltage offset are volts. A mask is placed by scaling about time 0 and
// 0 V and then shifting by the offsets:
//   t = interval * (OffsetTime + ScaleTime * T) / 100
//   v = OffsetVolt + ScaleVolt * P
//
// A good eye keeps its traces out of the opening (a hexagon through the
// latest first crossing, the lower limit of the top level from rise delay to
// fall delay, the earliest second crossing and the upper limit of the base
// level), below the upper limit of the top level and above the lower limit of
// the base level, and crosses the crossing level within the two crossing
// windows. Runs of equal bits pass through the windows at the top or base
// level, so the windows bound crossings only, not an outer figure.

namespace kv {

struct MaskOutline {
    // Closed: the first point is repeated at the end.
    std::vector<VEC2> opening;
    // Each from the earliest first crossing to the latest second crossing.
    std::vector<VEC2> topLimit;
    std::vector<VEC2> baseLimit;
    // At the crossing level, from the earliest to the latest crossing.
    std::vector<VEC2> firstCrossing;
    std::vector<VEC2> secondCrossing;
};

// The placed point of mask time `percent` and mask level `volts`.
VEC2 PlaceMaskPoint(const EYEMASK& mask, double bitInterval, double percent, double volts);

// The whole figure for a bit interval in seconds; the opening runs clockwise
// from its left corner.
MaskOutline BuildMaskOutline(const EYEMASK& mask, double bitInterval);

}  // namespace kv
