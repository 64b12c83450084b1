#include "core/via/ViaTopView.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "core/shared/NumberText.h"
#include "core/shared/UnitFormat.h"
#include "core/via/PadOutline.h"
#include "core/via/ViaViewStyle.h"

namespace kv {
namespace {

namespace style = via_view;

constexpr int kMargin = 8;
constexpr int kLegendLines = 3;
// Room for the two dimension lines under the shapes.
constexpr int kDimensionRows = 2;

double DrilledDiameter(const PadTopViewInput& input) {
    const double plating = std::isfinite(input.plating) ? std::max(input.plating, 0.0) : 0.0;
    return std::isfinite(input.drill) && input.drill > 0.0 ? input.drill + 2 * plating : 0.0;
}

LayerPadShapes ShapesOf(const PadTopViewInput& input) {
    return input.pad != nullptr ? PadShapesOf(*input.pad, DrilledDiameter(input))
                                : LayerPadShapes{};
}

struct Bounds {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
    double Width() const { return right - left; }
};

Bounds BoundsOf(const std::vector<PointM>& outline) {
    Bounds b;
    for (const PointM& p : outline) {
        b = {std::min(b.left, p.x), std::max(b.right, p.x), std::min(b.top, p.y),
             std::max(b.bottom, p.y)};
    }
    return b;
}

double Reach(const std::vector<PointM>& outline) {
    double reach = 0.0;
    for (const PointM& p : outline) {
        reach = std::max(reach, std::hypot(p.x, p.y));
    }
    return reach;
}

std::vector<Point> ToPixels(const std::vector<PointM>& outline, const PadTopViewPlacement& at) {
    std::vector<Point> pixels;
    pixels.reserve(outline.size() + 1);
    for (const PointM& p : outline) {
        pixels.push_back({at.centre.x + static_cast<int>(std::lround(p.x * at.scale)),
                          at.centre.y + static_cast<int>(std::lround(p.y * at.scale))});
    }
    return pixels;
}

void DrawShape(ICanvas& canvas, const std::vector<PointM>& outline, const PadTopViewPlacement& at,
               uint32_t fill, uint32_t pen) {
    if (outline.empty()) {
        return;
    }
    std::vector<Point> pixels = ToPixels(outline, at);
    canvas.FillPolygon(pixels, fill);
    pixels.push_back(pixels.front());
    canvas.SelectPen(pen, 0);
    canvas.Polyline(pixels);
}

// A horizontal dimension line over [left, right] metres at height y, ticks at both ends, and
// the measured width as its label.
void DrawDimension(ICanvas& canvas, const PadTopViewPlacement& at, const Bounds& bounds, int y,
                   const std::string& label, bool metric) {
    if (bounds.Width() <= 0.0) {
        return;
    }
    const int left = at.centre.x + static_cast<int>(std::lround(bounds.left * at.scale));
    const int right = at.centre.x + static_cast<int>(std::lround(bounds.right * at.scale));
    canvas.SelectPen(style::kDimension, 0);
    canvas.MoveTo({left, y});
    canvas.LineTo({right + 1, y});
    for (const int x : {left, right}) {
        canvas.MoveTo({x, y - 3});
        canvas.LineTo({x, y + 4});
    }
    const std::string text = label + " " + LengthText(bounds.Width(), metric);
    const Extent size = canvas.TextExtent(text);
    canvas.SetTextColor(style::kDimension);
    canvas.TextOut({(left + right - size.width) / 2, y + 2}, text);
}

std::string ShapeLegend(const char* what, int32_t shape, double width, double height, double angle,
                        bool metric) {
    std::string text =
        std::string(what) + ": " + style::ShapeText(shape) + " " + LengthText(width, metric);
    if (std::isfinite(height) && height > 0.0 && height != width) {
        text += " x " + LengthText(height, metric);
    }
    if (std::isfinite(angle) && angle != 0.0) {
        text += ", " + FormatSignificant(angle, 6) + " deg";
    }
    return text;
}

std::vector<std::string> Legend(const PadTopViewInput& input, const LayerPadShapes& shapes) {
    const PADDATA* pad = input.pad;
    std::string padLine = "Pad: none";
    std::string antipadLine = "Anti-pad: none";
    if (pad != nullptr && !shapes.pad.empty()) {
        padLine = ShapeLegend("Pad", pad->shape, pad->pad_x, pad->pad_y, pad->angle, input.metric);
    }
    if (pad != nullptr && !shapes.antipad.empty()) {
        const bool ownOutline = pad->shape >= PAD_SHAPE_ROUND && pad->shape <= PAD_SHAPE_CUSTOM;
        if (pad->padType == PAD_TYPE_PAD && pad->antipad_x > 0.0) {
            antipadLine =
                ShapeLegend("Anti-pad", PadGeometryOf(*pad, 0.0).antipad.shape, pad->antipad_x,
                            pad->antipad_y, pad->antipadAngle, input.metric);
        } else if (pad->padType == PAD_TYPE_ANTIPAD && ownOutline && pad->pad_x > 0.0) {
            antipadLine = ShapeLegend("Anti-pad", pad->shape, pad->pad_x, pad->pad_y, pad->angle,
                                      input.metric);
        } else {
            antipadLine = "Anti-pad: clearance " + LengthText(pad->clearance, input.metric);
        }
    }
    const std::string holeLine = "Drill: " + LengthText(DrilledDiameter(input), input.metric) +
                                 ", finished hole: " + LengthText(input.drill, input.metric);
    return {padLine, antipadLine, holeLine};
}

}  // namespace

double PadTopViewExtent(const PadTopViewInput& input) {
    const LayerPadShapes shapes = ShapesOf(input);
    return 2 * std::max({Reach(shapes.pad), Reach(shapes.antipad), DrilledDiameter(input) / 2});
}

PadTopViewPlacement PlacePadTopView(const Rect& into, double extent, const ITextMetrics& metrics) {
    const int line = metrics.TextExtent("Xg").height + 2;
    const int top = into.top + kMargin + line;
    const int bottom = into.bottom - kMargin - kLegendLines * line - kDimensionRows * (line + 6);
    const int side = std::max(0, std::min(into.Width() - 2 * kMargin, bottom - top));
    PadTopViewPlacement placement;
    placement.centre = {(into.left + into.right) / 2, top + side / 2};
    placement.scale = extent > 0.0 && std::isfinite(extent) ? side / extent : 0.0;
    return placement;
}

void DrawLayerPadTopView(ICanvas& canvas, const Rect& into, const PadTopViewInput& input,
                         double extent) {
    canvas.FillRect(into, style::kBackground);
    canvas.SetTransparentBackground(true);
    canvas.SetTextColor(style::kText);
    const int line = canvas.TextExtent("Xg").height + 2;
    if (!input.title.empty()) {
        canvas.TextOut({into.left + kMargin, into.top + kMargin / 2}, input.title);
    }
    const LayerPadShapes shapes = ShapesOf(input);
    if (extent <= 0.0) {
        extent = PadTopViewExtent(input);
    }
    const PadTopViewPlacement at = PlacePadTopView(into, extent, canvas);
    if (at.scale > 0.0) {
        const double drilled = DrilledDiameter(input);
        DrawShape(canvas, shapes.antipad, at, style::kClearance, style::kDimension);
        DrawShape(canvas, shapes.pad, at, style::kPad, style::kOutline);
        DrawShape(canvas, PadOutline(PAD_SHAPE_ROUND, drilled, 0.0, 0.0), at, style::kPlating,
                  style::kOutline);
        DrawShape(canvas, PadOutline(PAD_SHAPE_ROUND, input.drill, 0.0, 0.0), at, style::kHole,
                  style::kOutline);
        // Dimension lines go under the widest shape.
        const int below =
            at.centre.y + static_cast<int>(std::lround(extent * at.scale / 2)) + line / 2;
        DrawDimension(canvas, at, BoundsOf(shapes.pad), below, "pad", input.metric);
        DrawDimension(canvas, at, BoundsOf(shapes.antipad), below + line + 6, "anti-pad",
                      input.metric);
    }
    canvas.SetTextColor(style::kText);
    int y = into.bottom - kMargin - kLegendLines * line;
    for (const std::string& text : Legend(input, shapes)) {
        canvas.TextOut({into.left + kMargin, y}, text);
        y += line;
    }
}

}  // namespace kv

namespace kv {
namespace {

std::string TopViewTitle(const SpiceExportInput& input, int via, int layer) {
    const int count =
        input.stackup != nullptr && input.stackup->layers != nullptr ? input.stackup->count : 0;
    std::string title = input.pair ? (via == 0 ? "Right Via, " : "Left Via, ") : "";
    // Counted from 1 for the user; a host may have asked for the last int's layer.
    const int64_t shown = int64_t{layer} + 1;
    if (layer < 0 || layer >= count) {
        return title + "layer " + std::to_string(shown) + " is not in the stackup";
    }
    const STACKUPLAYER& record = input.stackup->layers[layer];
    const auto nameEnd = std::find(record.name, record.name + sizeof record.name, '\0');
    title += "layer " + std::to_string(shown) + " " + std::string(record.name, nameEnd);
    return record.kind == STACKUP_DIELECTRIC ? title + " (dielectric)" : title;
}

PadTopViewInput TopViewInputOf(const SpiceExportInput& input, int via, int layer) {
    PadTopViewInput view;
    view.metric = input.metric;
    view.title = TopViewTitle(input, via, layer);
    const PADSTACK* padstack = input.vias[static_cast<std::size_t>(via)].padstack;
    if (padstack == nullptr) {
        return view;
    }
    view.drill = padstack->drill;
    view.plating = padstack->plating;
    const bool conductor = input.stackup != nullptr && layer >= 0 && layer < input.stackup->count &&
                           input.stackup->layers[layer].kind != STACKUP_DIELECTRIC;
    if (conductor && padstack->pads != nullptr && layer < padstack->padCount) {
        view.pad = &padstack->pads[layer];
    }
    return view;
}

}  // namespace

void PaintViaTopView(ICanvas& canvas, const Rect& client, const SpiceExportInput& input,
                     int layer) {
    canvas.FillRect(client, style::kBackground);
    if (input.vias.empty()) {
        canvas.SetTextColor(style::kText);
        canvas.DrawTextCentered(client, "No via data");
        return;
    }
    std::vector<PadTopViewInput> views;
    double extent = 0.0;
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        views.push_back(TopViewInputOf(input, static_cast<int>(v), layer));
        extent = std::max(extent, PadTopViewExtent(views.back()));
    }
    const int count = static_cast<int>(views.size());
    for (int v = 0; v < count; ++v) {
        // Via 0 takes the rightmost column.
        const int column = count - 1 - v;
        const Rect into{client.left + client.Width() * column / count, client.top,
                        client.left + client.Width() * (column + 1) / count, client.bottom};
        DrawLayerPadTopView(canvas, into, views[static_cast<std::size_t>(v)], extent);
    }
}

}  // namespace kv
