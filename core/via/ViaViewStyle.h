#pragma once

#include <cstdint>
#include <string>

#include "core/shared/ColorRef.h"

// Colours and texts both via views share, so a layer looks the same from the side and from
// above; the SPICE comments name pad shapes as the views do.

namespace kv::via_view {

inline constexpr uint32_t kBackground = MakeColorRef(255, 255, 255);
inline constexpr uint32_t kDielectric = MakeColorRef(214, 232, 196);
inline constexpr uint32_t kSignalLayer = MakeColorRef(243, 226, 200);
inline constexpr uint32_t kPlaneLayer = MakeColorRef(214, 160, 104);
inline constexpr uint32_t kPad = MakeColorRef(184, 115, 51);
inline constexpr uint32_t kPlating = MakeColorRef(120, 72, 30);
inline constexpr uint32_t kHole = MakeColorRef(255, 255, 255);
inline constexpr uint32_t kClearance = MakeColorRef(236, 244, 228);
inline constexpr uint32_t kOutline = MakeColorRef(0, 0, 0);
inline constexpr uint32_t kText = MakeColorRef(0, 0, 0);
inline constexpr uint32_t kNonFunctional = MakeColorRef(140, 140, 140);
inline constexpr uint32_t kDimension = MakeColorRef(40, 70, 160);
inline constexpr uint32_t kInductance = MakeColorRef(30, 90, 200);
inline constexpr uint32_t kLine = MakeColorRef(130, 40, 160);
inline constexpr uint32_t kCapacitance = MakeColorRef(210, 120, 0);
inline constexpr uint32_t kPort = MakeColorRef(200, 30, 30);

// "RND", "RECT", "OVAL", "OBL", "CUST" or "" for no shape.
std::string ShapeText(int32_t shape);

}  // namespace kv::via_view
