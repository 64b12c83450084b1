#include "core/eyediagram/MaskOutline.h"

#include <initializer_list>

namespace kv {
namespace {

// One corner: which time point and which level of the mask it joins.
struct Corner {
    double EYEMASK::*time;
    double EYEMASK::*level;
};

std::vector<VEC2> Place(std::initializer_list<Corner> corners, const EYEMASK& mask,
                        double bitInterval) {
    std::vector<VEC2> points;
    points.reserve(corners.size());
    for (const Corner& corner : corners) {
        points.push_back(PlaceMaskPoint(mask, bitInterval, mask.*corner.time, mask.*corner.level));
    }
    return points;
}

}  // namespace

VEC2 PlaceMaskPoint(const EYEMASK& mask, double bitInterval, double percent, double volts) {
    return {bitInterval * (mask.OffsetTime + mask.ScaleTime * percent) / 100.0,
            mask.OffsetVolt + mask.ScaleVolt * volts};
}

MaskOutline BuildMaskOutline(const EYEMASK& mask, double bitInterval) {
    using M = EYEMASK;
    MaskOutline outline{
        Place({{&M::TCross1Max, &M::PCross},
               {&M::TRiseDelay, &M::PTopMin},
               {&M::TFallDelay, &M::PTopMin},
               {&M::TCross2Min, &M::PCross},
               {&M::TFallDelay, &M::PBaseMax},
               {&M::TRiseDelay, &M::PBaseMax},
               {&M::TCross1Max, &M::PCross}},
              mask, bitInterval),
        Place({{&M::TCross1Min, &M::PTopMax}, {&M::TCross2Max, &M::PTopMax}}, mask, bitInterval),
        Place({{&M::TCross1Min, &M::PBaseMin}, {&M::TCross2Max, &M::PBaseMin}}, mask, bitInterval),
        Place({{&M::TCross1Min, &M::PCross}, {&M::TCross1Max, &M::PCross}}, mask, bitInterval),
        Place({{&M::TCross2Min, &M::PCross}, {&M::TCross2Max, &M::PCross}}, mask, bitInterval),
    };
    return outline;
}

}  // namespace kv
