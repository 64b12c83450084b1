#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports/Canvas.h"
#include "kvcomctl/ICouplingRgnWalkerDlg.h"

// The board cross-section at the walker's current region: the stackup as
// bands drawn to scale, the traces on their layers around the current net,
// and the edge-to-edge separations of the coupled nets on the current net's
// layers. The walker keeps its own copy of what the host hands it.

namespace kv {

struct CrossSectionLayer {
    std::string name;
    int32_t kind = STACKUP_DIELECTRIC;
    int32_t usage = 0;
    double thickness = 0;  // metres
};

struct CrossSectionTrace {
    int32_t layer = 0;
    double x = 0;      // centre, metres from the current net's centre
    double width = 0;  // metres
    int32_t role = CROSSSECTION_ROLE_OTHER;
    std::string net;
};

struct CrossSectionData {
    std::vector<CrossSectionLayer> layers;  // top first
    std::vector<CrossSectionTrace> traces;

    // Copies the host's records. A null stackup or trace array, or a
    // negative count, counts as none; a net name fills at most its 64 bytes.
    // Traces at no finite place are left out; a thickness that is no finite
    // positive number counts as 0.
    static CrossSectionData Copy(const STACKUPARRAY* stackup, const CROSSSECTIONTRACE* traces,
                                 int32_t count);
};

namespace crosssection_colors {
inline constexpr uint32_t kBackground = 0xFFFFFF;
inline constexpr uint32_t kDielectric = 0xB8DCC8;  // pale green
inline constexpr uint32_t kPlane = 0x70A8D8;       // copper
inline constexpr uint32_t kSignalLayer = 0xE4F0E8;
inline constexpr uint32_t kBandEdge = 0x808080;
inline constexpr uint32_t kCurrentNet = 0x0000D0;  // red
inline constexpr uint32_t kCoupledNet = 0xD06000;  // blue
inline constexpr uint32_t kOtherNet = 0x909090;
inline constexpr uint32_t kHighlighted = 0x00A0FF;  // orange
inline constexpr uint32_t kOutline = 0x000000;
inline constexpr uint32_t kDimension = 0x000000;
inline constexpr uint32_t kText = 0x202020;
}  // namespace crosssection_colors

struct CrossSectionBand {
    Rect rect;
    int layer = 0;
    uint32_t color = 0;
};

struct CrossSectionTraceBox {
    Rect rect;
    int trace = 0;  // index into CrossSectionData::traces
    uint32_t color = 0;
    bool highlighted = false;
};

// A separation: a line from x1 to x2 at y with ticks at both ends, and its
// length as text centred above.
struct CrossSectionDimension {
    int y = 0;
    int x1 = 0;
    int x2 = 0;
    std::string text;
};

struct CrossSectionLayout {
    Rect client;
    Rect area;  // where the stackup is drawn, right of the layer names
    double pixelsPerMetre = 0;
    int centreX = 0;  // x of the current net's centre
    std::vector<CrossSectionBand> bands;
    std::vector<CrossSectionTraceBox> traces;
    std::vector<CrossSectionDimension> dimensions;
    std::vector<std::pair<Point, std::string>> labels;  // layer names
    std::string emptyText;  // shown instead when there is nothing to draw
};

inline constexpr int kCrossSectionMargin = 8;

// Works out the picture for `client`. One scale serves both directions, so
// widths and thicknesses compare as on the board. Traces of `highlightedNet`
// (when not empty) are marked; traces on no layer of the stackup are left
// out.
CrossSectionLayout ComputeCrossSectionLayout(const CrossSectionData& data, const Rect& client,
                                             std::string_view highlightedNet,
                                             const ITextMetrics& metrics);

void PaintCrossSection(ICanvas& canvas, const CrossSectionLayout& layout);

}  // namespace kv
