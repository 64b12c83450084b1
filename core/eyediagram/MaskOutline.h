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
// A good eye keeps its traces between two hexagons: out of the inner one
// (the opening: the latest first crossing, the lower limit of the top level
// from rise delay to fall delay, the earliest second crossing, the upper
// limit of the base level) and within the outer one (the earliest first
// crossing, the upper limit of the top level, the latest second crossing,
// the lower limit of the base level).

namespace kv {

struct MaskOutline {
    // Each closed: the first point is repeated at the end.
    std::vector<VEC2> inner;
    std::vector<VEC2> outer;
};

// The placed point of mask time `percent` and mask level `volts`.
VEC2 PlaceMaskPoint(const EYEMASK& mask, double bitInterval, double percent, double volts);

// Both hexagons, clockwise from the left crossing point, for a bit interval
// in seconds.
MaskOutline BuildMaskOutline(const EYEMASK& mask, double bitInterval);

}  // namespace kv
