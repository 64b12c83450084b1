#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "core/shared/BoundedCopy.h"
#include "core/shared/UnitFormat.h"
#include "core/via/LayerRole.h"
#include "core/via/ViaSpiceModel.h"
#include "core/via/ViaViewStyle.h"

// Small readings of the via records that the side view's layout, painting and hover text share.
// Not for use outside the side view.

namespace kv::side_view {

inline constexpr int kMargin = 8;
inline constexpr int kColumnGap = 10;
// Elements whose spans overlap are drawn in separate lanes beside the via.
inline constexpr int kLanes = 3;
inline constexpr int kLaneWidth = 7;
inline constexpr int kPortSize = 7;
// A stackup whose thicknesses add up to nothing is drawn with every layer this thick.
inline constexpr double kFallbackThickness = 1e-4;

inline std::span<const STACKUPLAYER> LayersOf(const SpiceExportInput& input) {
    if (input.stackup == nullptr || input.stackup->layers == nullptr || input.stackup->count <= 0) {
        return {};
    }
    return {input.stackup->layers, static_cast<std::size_t>(input.stackup->count)};
}

inline const PADDATA* PadOf(const PADSTACK* padstack, int layer) {
    if (padstack == nullptr || padstack->pads == nullptr || layer < 0 ||
        layer >= padstack->padCount) {
        return nullptr;
    }
    return &padstack->pads[layer];
}

inline double Positive(double value) {
    return std::isfinite(value) && value > 0.0 ? value : 0.0;
}

inline double DrilledDiameter(const PADSTACK& padstack) {
    const double drill = Positive(padstack.drill);
    return drill > 0.0 ? drill + 2 * Positive(padstack.plating) : 0.0;
}

// The layer span of a via, clamped into the stackup; empty (first > last) when it is not one.
inline std::pair<int, int> SpanOf(const PADSTACK* padstack, int layerCount) {
    if (padstack == nullptr || layerCount == 0) {
        return {0, -1};
    }
    return {std::max(padstack->firstLayer, 0), std::min(padstack->lastLayer, layerCount - 1)};
}

inline double Thickness(const STACKUPLAYER& layer) {
    return Positive(layer.thickness);
}

inline std::string ValueText(const STACKUPLAYER& layer, bool metric) {
    return std::string(LayerTypeWord(layer.kind, layer.usage)) + "  " +
           LengthText(layer.thickness, metric);
}

inline const char* ViaName(const SpiceExportInput& input, int via) {
    if (!input.pair) {
        return "Via";
    }
    return via == 0 ? "Right Via" : "Left Via";
}

inline int ToPixels(double metres, double scale) {
    return static_cast<int>(std::lround(metres * scale));
}

}  // namespace kv::side_view
