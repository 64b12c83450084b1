#include "core/eyediagram/MaskOutline.h"

#include <array>

namespace kv {
namespace {

// One corner: which time point and which level of the mask it joins.
struct Corner {
    double EYEMASK::*time;
    double EYEMASK::*level;
};

using Hexagon = std::array<Corner, 6>;

constexpr Hexagon kInner{{
    {&EYEMASK::TCross1Max, &EYEMASK::PCross},
    {&EYEMASK::TRiseDelay, &EYEMASK::PTopMin},
    {&EYEMASK::TFallDelay, &EYEMASK::PTopMin},
    {&EYEMASK::TCross2Min, &EYEMASK::PCross},
    {&EYEMASK::TFallDelay, &EYEMASK::PBaseMax},
    {&EYEMASK::TRiseDelay, &EYEMASK::PBaseMax},
}};

constexpr Hexagon kOuter{{
    {&EYEMASK::TCross1Min, &EYEMASK::PCross},
    {&EYEMASK::TRiseDelay, &EYEMASK::PTopMax},
    {&EYEMASK::TFallDelay, &EYEMASK::PTopMax},
    {&EYEMASK::TCross2Max, &EYEMASK::PCross},
    {&EYEMASK::TFallDelay, &EYEMASK::PBaseMin},
    {&EYEMASK::TRiseDelay, &EYEMASK::PBaseMin},
}};

std::vector<VEC2> Place(const Hexagon& corners, const EYEMASK& mask, double bitInterval) {
    std::vector<VEC2> points;
    points.reserve(corners.size() + 1);
    for (const Corner& corner : corners) {
        points.push_back(PlaceMaskPoint(mask, bitInterval, mask.*corner.time, mask.*corner.level));
    }
    points.push_back(points.front());
    return points;
}

}  // namespace

VEC2 PlaceMaskPoint(const EYEMASK& mask, double bitInterval, double percent, double volts) {
    return {bitInterval * (mask.OffsetTime + mask.ScaleTime * percent) / 100.0,
            mask.OffsetVolt + mask.ScaleVolt * volts};
}

MaskOutline BuildMaskOutline(const EYEMASK& mask, double bitInterval) {
    return {Place(kInner, mask, bitInterval), Place(kOuter, mask, bitInterval)};
}

}  // namespace kv
