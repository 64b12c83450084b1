// Where the side view puts things: the scale, the layer heights and the via centres.

#include "core/via/ViaSideView.h"

#include <algorithm>

#include "core/via/PadOutline.h"
#include "core/via/ViaSideViewParts.h"

namespace kv {
namespace {

using namespace side_view;

// The widest reach of via `via`'s shapes from its centre, in metres.
double ViaReach(const SpiceExportInput& input, int via, int layerCount) {
    const PADSTACK* padstack = input.vias[static_cast<std::size_t>(via)].padstack;
    if (padstack == nullptr) {
        return 0.0;
    }
    double reach = DrilledDiameter(*padstack) / 2;
    for (int layer = 0; layer < layerCount; ++layer) {
        if (const PADDATA* pad = PadOf(padstack, layer)) {
            const LayerPadGeometry geometry = PadGeometryOf(*pad, DrilledDiameter(*padstack));
            for (const PadShape* shape : {&geometry.pad, &geometry.antipad}) {
                const OutlineCut cut = CutAlongX(*shape);
                reach = std::max({reach, cut.left, cut.right});
            }
        }
    }
    return reach;
}

}  // namespace

int SideViewLayout::LayerAt(int y) const {
    if (layerY.size() < 2 || y < layerY.front() || y >= layerY.back()) {
        return -1;
    }
    const auto above = std::upper_bound(layerY.begin(), layerY.end(), y);
    return static_cast<int>(above - layerY.begin()) - 1;
}

SideViewLayout LayOutSideView(const SpiceExportInput& input, const Rect& client,
                              const ITextMetrics& metrics) {
    SideViewLayout layout;
    layout.client = client;
    const std::span<const STACKUPLAYER> layers = LayersOf(input);
    if (layers.empty()) {
        return layout;  // nothing to scale: the view says there is no data
    }
    const int textHeight = metrics.TextExtent("Xg").height;
    int nameWidth = 0;
    int valueWidth = 0;
    double thickness = 0.0;
    for (const STACKUPLAYER& layer : layers) {
        nameWidth = std::max(nameWidth, metrics.TextExtent(FieldText(layer.name)).width);
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
    // The label column is kept at most a sixth of the width: measuring stops there.
    const int labelCap = client.Width() / 6;
    int elementWidth = 0;
    for (const SpiceViaInput& via : input.vias) {
        for (const CViaVizElement& element : via.elements) {
            if (elementWidth >= labelCap) {
                break;
            }
            elementWidth =
                std::max(elementWidth, metrics.TextExtent(ViaElementLabel(element)).width);
        }
    }
    layout.labelWidth = std::min(elementWidth, labelCap);
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
    // Labels may use all the board beside the outer via, which is at least the column kept
    // for them and more when the stackup's height set the scale.
    if (!layout.viaX.empty()) {
        const int labelLeft = layout.viaX[0] + layout.viaReach + 6 + kLanes * kLaneWidth + 4;
        layout.labelWidth = std::max(layout.labelWidth, layout.board.right - 4 - labelLeft);
    }
    return layout;
}

}  // namespace kv
