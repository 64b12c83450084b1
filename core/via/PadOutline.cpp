#include "core/via/PadOutline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kv {
namespace {

bool UsableSize(double value) {
    return std::isfinite(value) && value > 0.0;
}

void AddArc(std::vector<PointM>& points, PointM centre, double radiusX, double radiusY,
            double fromRadians, int segments) {
    for (int i = 0; i <= segments; ++i) {
        const double a = fromRadians + std::numbers::pi * i / segments;
        points.push_back({centre.x + radiusX * std::cos(a), centre.y - radiusY * std::sin(a)});
    }
}

std::vector<PointM> Ellipse(double width, double height) {
    std::vector<PointM> points;
    AddArc(points, {0, 0}, width / 2, height / 2, 0.0, kOutlineSegments / 2);
    points.pop_back();
    AddArc(points, {0, 0}, width / 2, height / 2, std::numbers::pi, kOutlineSegments / 2);
    points.pop_back();
    return points;
}

std::vector<PointM> Box(double width, double height) {
    return {{-width / 2, -height / 2},
            {width / 2, -height / 2},
            {width / 2, height / 2},
            {-width / 2, height / 2}};
}

// Two half circles of the short side's diameter joined by straight sides.
std::vector<PointM> Stadium(double width, double height) {
    std::vector<PointM> points;
    const int half = kOutlineSegments / 2;
    if (width >= height) {
        const double r = height / 2;
        const double reach = width / 2 - r;
        AddArc(points, {reach, 0}, r, r, -std::numbers::pi / 2, half);
        AddArc(points, {-reach, 0}, r, r, std::numbers::pi / 2, half);
    } else {
        const double r = width / 2;
        const double reach = height / 2 - r;
        AddArc(points, {0, -reach}, r, r, 0.0, half);
        AddArc(points, {0, reach}, r, r, std::numbers::pi, half);
    }
    return points;
}

void Turn(std::vector<PointM>& points, double angleDegrees) {
    if (!std::isfinite(angleDegrees) || angleDegrees == 0.0) {
        return;
    }
    const double a = angleDegrees * std::numbers::pi / 180.0;
    const double c = std::cos(a);
    const double s = std::sin(a);
    // Counter-clockwise on screen, where y grows downward.
    for (PointM& p : points) {
        p = {p.x * c + p.y * s, -p.x * s + p.y * c};
    }
}

}  // namespace

std::vector<PointM> PadOutline(int32_t shape, double width, double height, double angleDegrees) {
    if (!UsableSize(width)) {
        return {};
    }
    if (!UsableSize(height)) {
        height = width;
    }
    std::vector<PointM> points;
    switch (shape) {
        case PAD_SHAPE_ROUND:
            points = Ellipse(width, width);
            break;
        case PAD_SHAPE_RECTANGLE:
        case PAD_SHAPE_CUSTOM:
            points = Box(width, height);
            break;
        case PAD_SHAPE_OVAL:
            points = Ellipse(width, height);
            break;
        case PAD_SHAPE_OBLONG:
            points = Stadium(width, height);
            break;
        default:
            return {};
    }
    Turn(points, angleDegrees);
    return points;
}

OutlineCut CutAlongX(std::span<const PointM> outline) {
    OutlineCut cut;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const PointM a = outline[i];
        const PointM b = outline[(i + 1) % outline.size()];
        if ((a.y <= 0.0) == (b.y <= 0.0)) {
            continue;
        }
        const double x = a.x + (0.0 - a.y) * (b.x - a.x) / (b.y - a.y);
        cut.right = std::max(cut.right, x);
        cut.left = std::max(cut.left, -x);
    }
    return cut;
}

std::vector<PointM> PadOutline(const PadShape& shape) {
    return PadOutline(shape.shape, shape.width, shape.height, shape.angle);
}

OutlineCut CutAlongX(const PadShape& shape) {
    if (shape.shape < PAD_SHAPE_ROUND || shape.shape > PAD_SHAPE_CUSTOM ||
        !UsableSize(shape.width)) {
        return {};
    }
    const double height = UsableSize(shape.height) ? shape.height : shape.width;
    const double turn = std::isfinite(shape.angle) ? std::fmod(std::fabs(shape.angle), 180.0) : 0.0;
    if (turn == 0.0 || shape.shape == PAD_SHAPE_ROUND) {
        return {shape.width / 2, shape.width / 2};
    }
    if (turn == 90.0) {
        return {height / 2, height / 2};
    }
    return CutAlongX(PadOutline(shape));
}

LayerPadGeometry PadGeometryOf(const PADDATA& pad, double drilledDiameter) {
    LayerPadGeometry geometry;
    const double clearance = UsableSize(pad.clearance) ? pad.clearance : 0.0;
    const double height = UsableSize(pad.pad_y) ? pad.pad_y : pad.pad_x;
    if (pad.padType == PAD_TYPE_PAD) {
        geometry.pad = {pad.shape, pad.pad_x, pad.pad_y, pad.angle};
        // A record that names the anti-pad's own outline is drawn with it; others, as older
        // records were, with the pad's.
        const bool ownOutline =
            pad.antipadShape >= PAD_SHAPE_ROUND && pad.antipadShape <= PAD_SHAPE_OBLONG;
        if (UsableSize(pad.antipad_x)) {
            geometry.antipad = {ownOutline ? pad.antipadShape : pad.shape, pad.antipad_x,
                                pad.antipad_y, pad.antipadAngle};
        } else if (clearance > 0.0) {
            geometry.antipad = {pad.shape, pad.pad_x + 2 * clearance, height + 2 * clearance,
                                pad.angle};
        }
    } else if (pad.padType == PAD_TYPE_ANTIPAD) {
        geometry.antipad = {pad.shape, pad.pad_x, pad.pad_y, pad.angle};
        const bool drawable =
            pad.shape >= PAD_SHAPE_ROUND && pad.shape <= PAD_SHAPE_CUSTOM && UsableSize(pad.pad_x);
        if (!drawable && clearance > 0.0 && UsableSize(drilledDiameter)) {
            geometry.antipad = {PAD_SHAPE_ROUND, drilledDiameter + 2 * clearance, 0.0, 0.0};
        }
    }
    return geometry;
}

LayerPadShapes PadShapesOf(const PADDATA& pad, double drilledDiameter) {
    const LayerPadGeometry geometry = PadGeometryOf(pad, drilledDiameter);
    return {PadOutline(geometry.pad), PadOutline(geometry.antipad)};
}

}  // namespace kv
