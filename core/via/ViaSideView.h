#pragma once

#include <string>
#include <vector>

#include "core/ports/Canvas.h"
#include "core/via/ViaSpiceModel.h"

// The via seen from the side: the stackup as horizontal bands to scale, each via's pads,
// anti-pads and plated barrel over its layer span, the vias of a pair side by side (the right
// one is via 0, as the export names it), and the elements and ports of the electrical model
// beside the layers they sit on. The view draws the same input the SPICE export writes.

namespace kv {

struct SideViewLayout {
    Rect client;
    Rect board;               // where the stackup bands are drawn
    double scale = 0.0;       // pixels per metre, across and down alike
    std::vector<int> layerY;  // layer i spans [layerY[i], layerY[i + 1])
    std::vector<int> viaX;    // centre of each via
    int viaReach = 0;         // pixels from a via's centre to the widest pad or anti-pad
    int nameRight = 0;        // layer names end here
    int valueLeft = 0;        // layer types and thicknesses start here
    int elementsLeft = 0;     // the column of via 1's elements (pairs only) ends here
    int elementsRight = 0;    // the column of via 0's elements starts here
    int labelWidth = 0;       // room for an element's label beside its lanes

    int LayerCount() const { return layerY.empty() ? 0 : static_cast<int>(layerY.size()) - 1; }
    // The layer under height y, or -1 above or below the stackup.
    int LayerAt(int y) const;
    // Which side of via `via` its elements are drawn on: +1 right, -1 left.
    static int ElementSide(int via) { return via == 1 ? -1 : 1; }
};

// Fits the stackup into `client`: one scale for both directions, so that the stackup height
// and the widest pads of every via fit between the text columns.
SideViewLayout LayOutSideView(const SpiceExportInput& input, const Rect& client,
                              const ITextMetrics& metrics);

void PaintSideView(ICanvas& canvas, const SpiceExportInput& input, const SideViewLayout& layout);

// What hovering over layer `layer` shows: its name, kind and thickness, and what each via has
// there. Empty for an index outside the stackup.
std::string ViaLayerSummary(const SpiceExportInput& input, int layer);

// "L 200.0 pH", "T 48.0 ohms 1.700 ps C 50.0 fF": an element's values as the side view labels
// it, with or without its end capacitances.
std::string ViaElementLabel(const CViaVizElement& element, bool withCapacitances = true);

// Whether via `via` crosses conductor layer `layer` inside its span without a pad there.
bool IsNonFunctionalLayer(const SpiceExportInput& input, int via, int layer);

}  // namespace kv
