#include "core/via/ViaSideView.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/shared/Misc_String.h"
#include "core/via/PadOutline.h"
#include "core/via/ViaViewStyle.h"

namespace kv {
namespace {

namespace style = via_view;

constexpr int kMargin = 8;
constexpr int kColumnGap = 10;
// Elements whose spans overlap are drawn in separate lanes beside the via.
constexpr int kLanes = 3;
constexpr int kLaneWidth = 7;
constexpr int kPortSize = 7;
// A stackup whose thicknesses add up to nothing is drawn with every layer this thick.
constexpr double kFallbackThickness = 1e-4;

// A record name up to its NUL, or all of it when the host left none.
template <std::size_t N>
std::string_view NameOf(const char (&name)[N]) {
    return {name, static_cast<std::size_t>(std::find(name, name + N, '\0') - name)};
}

using FormatFn = bool (*)(double, char*, std::size_t, char*);

std::string Formatted(FormatFn format, double value) {
    char text[kNumberTextCapacity + kUnitTextCapacity + 2];
    format(value, text, sizeof text - 1, nullptr);
    return text;
}

std::span<const STACKUPLAYER> LayersOf(const SpiceExportInput& input) {
    if (input.stackup == nullptr || input.stackup->layers == nullptr || input.stackup->count <= 0) {
        return {};
    }
    return {input.stackup->layers, static_cast<std::size_t>(input.stackup->count)};
}

const PADDATA* PadOf(const PADSTACK* padstack, int layer) {
    if (padstack == nullptr || padstack->pads == nullptr || layer < 0 ||
        layer >= padstack->padCount) {
        return nullptr;
    }
    return &padstack->pads[layer];
}

double Positive(double value) {
    return std::isfinite(value) && value > 0.0 ? value : 0.0;
}

double DrilledDiameter(const PADSTACK& padstack) {
    const double drill = Positive(padstack.drill);
    return drill > 0.0 ? drill + 2 * Positive(padstack.plating) : 0.0;
}

// The layer span of a via, clamped into the stackup; empty (first > last) when it is not one.
std::pair<int, int> SpanOf(const PADSTACK* padstack, int layerCount) {
    if (padstack == nullptr || layerCount == 0) {
        return {0, -1};
    }
    return {std::max(padstack->firstLayer, 0), std::min(padstack->lastLayer, layerCount - 1)};
}

double Thickness(const STACKUPLAYER& layer) {
    return Positive(layer.thickness);
}

const char* TypeWord(const STACKUPLAYER& layer) {
    if (layer.kind == STACKUP_DIELECTRIC) {
        return "DIEL";
    }
    return layer.usage == STACKUP_USAGE_PLANE || layer.usage == STACKUP_USAGE_PLANE_SPLIT ? "PLANE"
                                                                                          : "METAL";
}

uint32_t BandColor(const STACKUPLAYER& layer) {
    if (layer.kind == STACKUP_DIELECTRIC) {
        return style::kDielectric;
    }
    return layer.usage == STACKUP_USAGE_PLANE || layer.usage == STACKUP_USAGE_PLANE_SPLIT
               ? style::kPlaneLayer
               : style::kSignalLayer;
}

std::string ValueText(const STACKUPLAYER& layer, bool metric) {
    return std::string(TypeWord(layer)) + "  " + style::LengthText(layer.thickness, metric);
}

const char* ViaName(const SpiceExportInput& input, int via) {
    if (!input.pair) {
        return "Via";
    }
    return via == 0 ? "Right Via" : "Left Via";
}

// The widest reach of via `via`'s shapes from its centre, in metres.
double ViaReach(const SpiceExportInput& input, int via, int layerCount) {
    const PADSTACK* padstack = input.vias[static_cast<std::size_t>(via)].padstack;
    if (padstack == nullptr) {
        return 0.0;
    }
    double reach = DrilledDiameter(*padstack) / 2;
    for (int layer = 0; layer < layerCount; ++layer) {
        if (const PADDATA* pad = PadOf(padstack, layer)) {
            const LayerPadSpecs specs = PadSpecsOf(*pad, DrilledDiameter(*padstack));
            for (const PadShape* shape : {&specs.pad, &specs.antipad}) {
                const OutlineCut cut = CutAlongX(*shape);
                reach = std::max({reach, cut.left, cut.right});
            }
        }
    }
    return reach;
}

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

int ToPixels(double metres, double scale) {
    return static_cast<int>(std::lround(metres * scale));
}

void PaintBands(ICanvas& canvas, std::span<const STACKUPLAYER> layers,
                const SideViewLayout& layout) {
    for (std::size_t i = 0; i < layers.size(); ++i) {
        canvas.FillRect(
            {layout.board.left, layout.layerY[i], layout.board.right, layout.layerY[i + 1]},
            BandColor(layers[i]));
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
            const LayerPadSpecs specs = PadSpecsOf(*pad, drilled);
            const int top = layout.layerY[i];
            const int bottom = layout.layerY[i + 1];
            if (const OutlineCut cut = CutAlongX(specs.antipad); cut.right > 0.0) {
                canvas.FillRect({x - ToPixels(cut.left, layout.scale), top,
                                 x + ToPixels(cut.right, layout.scale), bottom},
                                style::kClearance);
            }
            if (const OutlineCut cut = CutAlongX(specs.pad); cut.right > 0.0) {
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
            const auto lane = static_cast<std::size_t>(
                                  std::find_if(laneBottom.begin(), laneBottom.end(),
                                               [top](int laneEnd) { return laneEnd <= top; }) -
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
        const std::string name(NameOf(layers[i].name));
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
            title += " \"" + std::string(NameOf(padstack->name)) + "\"";
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

int SideViewLayout::LayerAt(int y) const {
    if (layerY.size() < 2 || y < layerY.front() || y >= layerY.back()) {
        return -1;
    }
    const auto above = std::upper_bound(layerY.begin(), layerY.end(), y);
    return static_cast<int>(above - layerY.begin()) - 1;
}

bool IsNonFunctionalLayer(const SpiceExportInput& input, int via, int layer) {
    const std::span<const STACKUPLAYER> layers = LayersOf(input);
    if (via < 0 || static_cast<std::size_t>(via) >= input.vias.size() || layer < 0 ||
        static_cast<std::size_t>(layer) >= layers.size() ||
        layers[static_cast<std::size_t>(layer)].kind == STACKUP_DIELECTRIC) {
        return false;
    }
    const PADSTACK* padstack = input.vias[static_cast<std::size_t>(via)].padstack;
    const auto [first, last] = SpanOf(padstack, static_cast<int>(layers.size()));
    const PADDATA* pad = PadOf(padstack, layer);
    return layer >= first && layer <= last && (pad == nullptr || pad->padType != PAD_TYPE_PAD);
}

SideViewLayout LayOutSideView(const SpiceExportInput& input, const Rect& client,
                              const ITextMetrics& metrics) {
    SideViewLayout layout;
    layout.client = client;
    const std::span<const STACKUPLAYER> layers = LayersOf(input);
    const int textHeight = metrics.TextExtent("Xg").height;
    int nameWidth = 0;
    int valueWidth = 0;
    double thickness = 0.0;
    for (const STACKUPLAYER& layer : layers) {
        nameWidth = std::max(nameWidth, metrics.TextExtent(NameOf(layer.name)).width);
        valueWidth = std::max(valueWidth, metrics.TextExtent(ValueText(layer, input.metric)).width);
        thickness += Thickness(layer);
    }
    const bool fallback = thickness <= 0.0;
    if (fallback) {
        thickness = kFallbackThickness * static_cast<double>(layers.size());
    }
    // Names may take at most a quarter of the width; longer ones are cut by the board.
    nameWidth = std::min(nameWidth, client.Width() / 4);
    valueWidth = std::min(valueWidth, client.Width() / 4);
    int elementWidth = 0;
    for (const SpiceViaInput& via : input.vias) {
        for (const CViaVizElement& element : via.elements) {
            elementWidth =
                std::max(elementWidth, metrics.TextExtent(ViaElementLabel(element)).width);
        }
    }
    layout.labelWidth = std::min(elementWidth, client.Width() / 6);
    elementWidth = layout.labelWidth + kLanes * kLaneWidth + 12;

    layout.nameRight = client.left + kMargin + nameWidth;
    layout.valueLeft = client.right - kMargin - valueWidth;
    layout.board = {layout.nameRight + kColumnGap, client.top + kMargin + 2 * textHeight,
                    layout.valueLeft - kColumnGap, client.bottom - kMargin};
    layout.elementsLeft = layout.board.left + (input.pair ? elementWidth : 0);
    layout.elementsRight = layout.board.right - elementWidth;

    double reach = 0.0;
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        reach =
            std::max(reach, ViaReach(input, static_cast<int>(v), static_cast<int>(layers.size())));
    }
    if (reach <= 0.0) {
        reach = thickness / 10;
    }
    // A pair's centres lie two and a half reaches apart, so half a reach of board shows
    // between their widest shapes; a quarter reach of board shows outside them.
    const double pitch = 2.5 * reach;
    const double across = (input.vias.size() > 1 ? pitch : 0.0) + 2.5 * reach;
    const int width = std::max(0, layout.elementsRight - layout.elementsLeft);
    const int height = std::max(0, layout.board.Height());
    layout.scale = std::min(width / across, height / thickness);
    layout.viaReach = ToPixels(reach, layout.scale);

    layout.layerY.reserve(layers.size() + 1);
    double depth = 0.0;
    layout.layerY.push_back(layout.board.top);
    for (const STACKUPLAYER& layer : layers) {
        depth += fallback ? kFallbackThickness : Thickness(layer);
        layout.layerY.push_back(layout.board.top + ToPixels(depth, layout.scale));
    }
    const int centre = (layout.elementsLeft + layout.elementsRight) / 2;
    const int half = ToPixels(pitch / 2, layout.scale);
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        // Via 0 is the right one of a pair.
        layout.viaX.push_back(input.vias.size() < 2 ? centre
                                                    : (v == 0 ? centre + half : centre - half));
    }
    return layout;
}

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

std::string ViaElementLabel(const CViaVizElement& element, bool withCapacitances) {
    std::string label;
    if (element.kind == kViaElementInductance) {
        label = "L " + Formatted(FormatInductance, element.value);
    } else if (element.kind == kViaElementLine) {
        label = "T " + Formatted(FormatResistance, element.value) + " " +
                Formatted(FormatTime, element.delay);
    }
    for (const auto& [type, value] : {std::pair{element.startEndType, element.startCapacitance},
                                      std::pair{element.endEndType, element.endCapacitance}}) {
        if (type == kViaEndCapacitance && (withCapacitances || label.empty())) {
            label += (label.empty() ? "C " : " C ") + Formatted(FormatCapacitance, value);
        }
    }
    return label;
}

std::string ViaLayerSummary(const SpiceExportInput& input, int layer) {
    const std::span<const STACKUPLAYER> layers = LayersOf(input);
    if (layer < 0 || static_cast<std::size_t>(layer) >= layers.size()) {
        return {};
    }
    const STACKUPLAYER& record = layers[static_cast<std::size_t>(layer)];
    const bool dielectric = record.kind == STACKUP_DIELECTRIC;
    const bool plane = !dielectric && (record.usage == STACKUP_USAGE_PLANE ||
                                       record.usage == STACKUP_USAGE_PLANE_SPLIT);
    std::string text = std::to_string(layer + 1) + " " + std::string(NameOf(record.name)) + ": " +
                       (dielectric ? "dielectric"
                        : plane    ? "plane"
                                   : "signal") +
                       ", " + style::LengthText(record.thickness, input.metric);
    if (dielectric) {
        return text;
    }
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        const PADSTACK* padstack = input.vias[v].padstack;
        const PADDATA* pad = PadOf(padstack, layer);
        text += std::string("\n") + ViaName(input, static_cast<int>(v)) + ": ";
        if (pad != nullptr && pad->padType == PAD_TYPE_PAD) {
            text += "pad " + style::ShapeText(pad->shape) + " " +
                    style::LengthText(pad->pad_x, input.metric);
            if (pad->antipad_x > 0.0) {
                text += ", anti-pad " + style::LengthText(pad->antipad_x, input.metric);
            }
        } else if (pad != nullptr && pad->padType == PAD_TYPE_ANTIPAD) {
            text += "anti-pad " + style::ShapeText(pad->shape) + " " +
                    style::LengthText(pad->pad_x, input.metric);
        } else {
            text += "no pad";
        }
        const auto [first, last] = SpanOf(padstack, static_cast<int>(layers.size()));
        if (layer < first || layer > last) {
            text += ", outside the layer span";
        } else if (IsNonFunctionalLayer(input, static_cast<int>(v), layer)) {
            text += ", non-functional";
        }
        for (const CViaVizPort& port : input.vias[v].ports) {
            if (port.layer == layer) {
                text += ", port";
            }
        }
        for (const CViaVizElement& element : input.vias[v].elements) {
            if (element.startLayer == layer || element.endLayer == layer) {
                text += "\n  " + ViaElementLabel(element);
            }
        }
    }
    return text;
}

}  // namespace kv
