#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "kvcomctl/ViaRecords.h"

// The outline of a pad or anti-pad seen from above, as a polygon in metres around the via's
// centre (x to the right, y downward as on screen). Both via views work from it: the top view
// draws it, the side view cuts it along the x axis through the centre.

namespace kv {

struct PointM {
    double x = 0.0;
    double y = 0.0;
};

// Corners of the curved shapes per full turn: fine enough that a 400-pixel pad looks round.
inline constexpr int kOutlineSegments = 64;

// Round (diameter `width`), rectangle, oval (an ellipse) and oblong (a rectangle whose short
// sides are half circles) of `width` x `height`, turned by `angleDegrees` counter-clockwise.
// A custom shape is drawn as its bounding rectangle. No shape, a size that is not positive or
// not finite gives an empty outline.
std::vector<PointM> PadOutline(int32_t shape, double width, double height, double angleDegrees);

// How far the outline reaches from the centre along the positive and negative x axis: the
// half widths of the cut the side view shows. Zero for an empty outline.
struct OutlineCut {
    double left = 0.0;
    double right = 0.0;
};
OutlineCut CutAlongX(std::span<const PointM> outline);

// One shape at its size and angle.
struct PadShape {
    int32_t shape = PAD_SHAPE_NONE;
    double width = 0.0;
    double height = 0.0;
    double angle = 0.0;  // degrees
};
std::vector<PointM> PadOutline(const PadShape& shape);
// The cut of the shape's outline along the x axis; quarter turns are worked out directly, as
// the side view needs them for every layer of a large board on every repaint.
OutlineCut CutAlongX(const PadShape& shape);

// What a layer's pad record puts around the barrel.
struct LayerPadGeometry {
    PadShape pad;      // copper connected to the barrel
    PadShape antipad;  // clearance cut into the layer's copper
};
struct LayerPadShapes {
    std::vector<PointM> pad;
    std::vector<PointM> antipad;
};

// The pad and anti-pad of `pad`. A pad record's anti-pad has the pad's shape at the anti-pad
// size and angle, or, without an anti-pad size, the pad grown by the clearance on every side.
// An anti-pad record is the anti-pad alone: its shape at the pad size, or, without a size, a
// circle the clearance wider than the drilled hole of `drilledDiameter`.
LayerPadGeometry PadGeometryOf(const PADDATA& pad, double drilledDiameter);
// The same as outlines.
LayerPadShapes PadShapesOf(const PADDATA& pad, double drilledDiameter);

}  // namespace kv
