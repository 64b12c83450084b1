// The side view drawn on a canvas, back to front: bands, pads, barrels, marks, labels.

#include "core/via/ViaSideView.h"

#include <algorithm>
#include <array>

#include "core/via/PadOutline.h"
#include "core/via/ViaSideViewParts.h"

namespace kv {
namespace {

using namespace side_view;
namespace style = via_view;

constexpr BandColors kBandColors{style::kDielectric, style::kSignalLayer, style::kPlaneLayer};

bool ValidElement(const CViaVizElement& element, int layerCount) {
    return element.startLayer >= 0 && element.endLayer >= element.startLayer &&
           element.endLayer < layerCount;
}

// The heights an element spans: inside its layer when it starts and ends there, else from the
// bottom of its start layer to the top of its end layer, as its nodes lie in the export.
std::pair<int, int> ElementSpan(const CViaVizElement& element, const SideViewLayout& layout) {
    const auto& y = layout.layerY;
    const auto a = static_cast<std::size_t>(element.startLayer);
    const auto b = static_cast<std::size_t>(element.endLayer);
    if (a == b) {
        return {y[a], std::max(y[a + 1], y[a] + 2)};
    }
    return {y[a + 1], std::max(y[b], y[a + 1] + 2)};
}

void PaintBands(ICanvas& canvas, std::span<const STACKUPLAYER> layers,
                const SideViewLayout& layout) {
    for (std::size_t i = 0; i < layers.size(); ++i) {
        canvas.FillRect(
            {layout.board.left, layout.layerY[i], layout.board.right, layout.layerY[i + 1]},
            BandColor(layers[i].kind, layers[i].usage, kBandColors));
    }
}

void PaintPads(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout,
               std::span<const STACKUPLAYER> layers) {
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        const PADSTACK* padstack = input.vias[v].padstack;
        if (padstack == nullptr) {
            continue;
        }
        const int x = layout.viaX[v];
        const double drilled = DrilledDiameter(*padstack);
        for (std::size_t i = 0; i < layers.size(); ++i) {
            const PADDATA* pad = PadOf(padstack, static_cast<int>(i));
            if (pad == nullptr || layers[i].kind == STACKUP_DIELECTRIC) {
                continue;
            }
            const LayerPadGeometry geometry = PadGeometryOf(*pad, drilled);
            const int top = layout.layerY[i];
            const int bottom = layout.layerY[i + 1];
            if (const OutlineCut cut = CutAlongX(geometry.antipad); cut.right > 0.0) {
                canvas.FillRect({x - ToPixels(cut.left, layout.scale), top,
                                 x + ToPixels(cut.right, layout.scale), bottom},
                                style::kClearance);
            }
            if (const OutlineCut cut = CutAlongX(geometry.pad); cut.right > 0.0) {
                canvas.FillRect({x - ToPixels(cut.left, layout.scale), top,
                                 x + ToPixels(cut.right, layout.scale), std::max(bottom, top + 1)},
                                style::kPad);
            }
        }
    }
}

void PaintBarrels(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout) {
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        const PADSTACK* padstack = input.vias[v].padstack;
        const auto [first, last] = SpanOf(padstack, layout.LayerCount());
        if (first > last || Positive(padstack->drill) <= 0.0) {
            continue;
        }
        const int x = layout.viaX[v];
        const int outer = std::max(1, ToPixels(DrilledDiameter(*padstack) / 2, layout.scale));
        // Plating thinner than a pixel still shows as one.
        const int inner =
            std::min(ToPixels(Positive(padstack->drill) / 2, layout.scale), outer - 1);
        const int top = layout.layerY[static_cast<std::size_t>(first)];
        const int bottom = layout.layerY[static_cast<std::size_t>(last) + 1];
        canvas.FillRect({x - outer, top, x + outer, bottom}, style::kPlating);
        canvas.FillRect({x - inner, top, x + inner, bottom}, style::kHole);
    }
}

void PaintNonFunctionalMarks(ICanvas& canvas, const SpiceExportInput& input,
                             const SideViewLayout& layout) {
    canvas.SelectPen(style::kNonFunctional, 0);
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        const int x = layout.viaX[v];
        const int outer = std::max(1, ToPixels(input.vias[v].padstack != nullptr
                                                   ? DrilledDiameter(*input.vias[v].padstack) / 2
                                                   : 0.0,
                                               layout.scale));
        for (int layer = 0; layer < layout.LayerCount(); ++layer) {
            if (!IsNonFunctionalLayer(input, static_cast<int>(v), layer)) {
                continue;
            }
            const auto i = static_cast<std::size_t>(layer);
            const int y = (layout.layerY[i] + layout.layerY[i + 1]) / 2;
            for (const int side : {-1, 1}) {
                canvas.MoveTo({x + side * (outer + 2), y});
                canvas.LineTo({x + side * (outer + 8), y});
            }
        }
    }
}

uint32_t ElementColor(const CViaVizElement& element) {
    if (element.kind == kViaElementInductance) {
        return style::kInductance;
    }
    return element.kind == kViaElementLine ? style::kLine : style::kCapacitance;
}

void PaintCapacitor(ICanvas& canvas, int x, int y, int side) {
    canvas.SelectPen(style::kCapacitance, 0);
    for (const int dy : {-1, 2}) {
        canvas.MoveTo({x + side * 2, y + dy});
        canvas.LineTo({x + side * 8, y + dy});
    }
}

void PaintElements(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout) {
    const int textHeight = canvas.TextExtent("Xg").height;
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        const int side = SideViewLayout::ElementSide(static_cast<int>(v));
        const int base = layout.viaX[v] + side * (layout.viaReach + 6);
        const int labelX = base + side * (kLanes * kLaneWidth + 4);
        std::array<int, kLanes> laneBottom{};
        laneBottom.fill(layout.client.top - 1);
        int labelBottom = layout.client.top - 1;
        for (const CViaVizElement& element : input.vias[v].elements) {
            if (!ValidElement(element, layout.LayerCount())) {
                continue;
            }
            const auto [top, bottom] = ElementSpan(element, layout);
            const auto lane =
                static_cast<std::size_t>(
                    std::find_if(laneBottom.begin(), laneBottom.end(),
                                 [top = top](int laneEnd) { return laneEnd <= top; }) -
                    laneBottom.begin()) %
                kLanes;
            laneBottom[lane] = bottom;
            const int x = base + side * static_cast<int>(lane) * kLaneWidth;
            // A two-pixel bar, filled rather than stroked: a wide pen's round caps cost far
            // more than the bar on a board with hundreds of elements.
            canvas.FillRect({x - 1, top + 1, x + 1, bottom - 1}, ElementColor(element));
            if (element.startEndType == kViaEndCapacitance) {
                PaintCapacitor(canvas, x, top, side);
            }
            if (element.endEndType == kViaEndCapacitance) {
                PaintCapacitor(canvas, x, bottom - 1, side);
            }
            // Labels that would run into the one above or out of their column are shortened or
            // left to the hover text.
            const int labelTop = (top + bottom - textHeight) / 2;
            if (labelTop < labelBottom) {
                continue;
            }
            std::string label = ViaElementLabel(element);
            int width = canvas.TextExtent(label).width;
            if (width > layout.labelWidth) {
                label = ViaElementLabel(element, false);
                width = canvas.TextExtent(label).width;
            }
            if (width <= layout.labelWidth) {
                canvas.SetTextColor(ElementColor(element));
                canvas.TextOut({side > 0 ? labelX : labelX - width, labelTop}, label);
                labelBottom = labelTop + textHeight;
            }
        }
    }
}

void PaintPorts(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout) {
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        // Ports sit on the side away from the elements.
        const int side = -SideViewLayout::ElementSide(static_cast<int>(v));
        const int x = layout.viaX[v] + side * (layout.viaReach + 4);
        for (const CViaVizPort& port : input.vias[v].ports) {
            if (port.layer < 0 || port.layer >= layout.LayerCount()) {
                continue;
            }
            const auto i = static_cast<std::size_t>(port.layer);
            const int y = (layout.layerY[i] + layout.layerY[i + 1]) / 2;
            const int near = side > 0 ? x : x - kPortSize;
            canvas.FillRect({near, y - kPortSize / 2, near + kPortSize, y + kPortSize / 2 + 1},
                            style::kPort);
            canvas.SelectPen(style::kPort, 0);
            canvas.MoveTo({layout.viaX[v], y});
            canvas.LineTo({x, y});
        }
    }
}

void PaintLayerTexts(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout,
                     std::span<const STACKUPLAYER> layers) {
    const int textHeight = canvas.TextExtent("Xg").height;
    int lastBottom = layout.board.top - textHeight;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const int top = (layout.layerY[i] + layout.layerY[i + 1] - textHeight) / 2;
        // Thin layers whose label would overlap the previous one stay unlabelled; hovering
        // names them.
        if (top < lastBottom) {
            continue;
        }
        lastBottom = top + textHeight;
        bool nonFunctional = false;
        for (std::size_t v = 0; v < input.vias.size(); ++v) {
            nonFunctional |= IsNonFunctionalLayer(input, static_cast<int>(v), static_cast<int>(i));
        }
        canvas.SetTextColor(nonFunctional ? style::kNonFunctional : style::kText);
        const std::string name(FieldText(layers[i].name));
        const int width = canvas.TextExtent(name).width;
        canvas.TextOut({layout.nameRight - width, top}, name);
        canvas.SetTextColor(style::kText);
        canvas.TextOut({layout.valueLeft, top}, ValueText(layers[i], input.metric));
    }
}

void PaintViaTitles(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout) {
    canvas.SetTextColor(style::kText);
    const int y = layout.client.top + kMargin / 2;
    if (input.vias.size() == 2) {
        // The two titles meet in the middle between the vias and never overlap.
        const int middle = (layout.viaX[0] + layout.viaX[1]) / 2;
        const std::string left = ViaName(input, 1);
        canvas.TextOut({middle - 6 - canvas.TextExtent(left).width, y}, left);
        canvas.TextOut({middle + 6, y}, ViaName(input, 0));
        return;
    }
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        std::string title = ViaName(input, static_cast<int>(v));
        if (const PADSTACK* padstack = input.vias[v].padstack) {
            title += " \"" + std::string(FieldText(padstack->name)) + "\"";
        }
        const int width = canvas.TextExtent(title).width;
        canvas.TextOut({layout.viaX[v] - width / 2, y}, title);
    }
}

void PaintBoardOutline(ICanvas& canvas, const SideViewLayout& layout) {
    const Rect& b = layout.board;
    const int bottom = layout.layerY.back();
    const Point corners[] = {{b.left, b.top},
                             {b.right - 1, b.top},
                             {b.right - 1, bottom - 1},
                             {b.left, bottom - 1},
                             {b.left, b.top}};
    canvas.SelectPen(style::kOutline, 0);
    canvas.Polyline(corners);
}

}  // namespace

void PaintSideView(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout) {
    canvas.FillRect(layout.client, style::kBackground);
    canvas.SetTransparentBackground(true);
    const std::span<const STACKUPLAYER> layers = LayersOf(input);
    if (layers.empty() || layout.LayerCount() != static_cast<int>(layers.size())) {
        canvas.SetTextColor(style::kText);
        canvas.DrawTextCentered(layout.client, "No via data");
        return;
    }
    PaintBands(canvas, layers, layout);
    PaintPads(canvas, input, layout, layers);
    PaintBarrels(canvas, input, layout);
    PaintBoardOutline(canvas, layout);
    PaintNonFunctionalMarks(canvas, input, layout);
    PaintPorts(canvas, input, layout);
    PaintElements(canvas, input, layout);
    PaintLayerTexts(canvas, input, layout, layers);
    PaintViaTitles(canvas, input, layout);
}

}  // namespace kv
