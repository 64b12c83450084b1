#pragma once

#include <cstdint>
#include <string_view>

#include "kvcomctl/ViaRecords.h"

// What a stackup layer is, as every drawing and listing of a stackup tells its layers apart:
// a layer that is not dielectric is a conductor, whatever kind code it carries, and a conductor
// used as a plane or a split plane is a plane.

namespace kv {

enum class LayerRole { Dielectric, Signal, Plane };

constexpr LayerRole RoleOfLayer(int32_t kind, int32_t usage) {
    if (kind == STACKUP_DIELECTRIC) {
        return LayerRole::Dielectric;
    }
    return usage == STACKUP_USAGE_PLANE || usage == STACKUP_USAGE_PLANE_SPLIT ? LayerRole::Plane
                                                                              : LayerRole::Signal;
}

// The colours one drawing gives the bands of the three roles.
struct BandColors {
    uint32_t dielectric;
    uint32_t signal;
    uint32_t plane;
};

constexpr uint32_t BandColor(int32_t kind, int32_t usage, const BandColors& colors) {
    const LayerRole role = RoleOfLayer(kind, usage);
    return role == LayerRole::Dielectric ? colors.dielectric
           : role == LayerRole::Plane    ? colors.plane
                                         : colors.signal;
}

// "DIEL", "PLANE" or "METAL", the type column of the SPICE comments and the side view.
constexpr std::string_view LayerTypeWord(int32_t kind, int32_t usage) {
    const LayerRole role = RoleOfLayer(kind, usage);
    return role == LayerRole::Dielectric ? "DIEL" : role == LayerRole::Plane ? "PLANE" : "METAL";
}

}  // namespace kv
