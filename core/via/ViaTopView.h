#pragma once

#include <string>

#include "core/ports/Canvas.h"
#include "core/via/ViaSpiceModel.h"
#include "kvcomctl/ViaRecords.h"

// One layer of a via seen from above: the anti-pad cut into the layer, the pad, the drilled
// hole with its plating and the finished hole, all to one scale, with dimension lines and a
// legend of the values. The via control's top view draws it per via; the padstack editor's
// preview draws it for the row in hand.

namespace kv {

struct PadTopViewInput {
    const PADDATA* pad = nullptr;  // null: the layer has no pad record
    double drill = 0.0;            // finished hole diameter
    double plating = 0.0;          // the drilled hole is the drill plus twice this
    bool metric = false;
    std::string title;  // first line, above the drawing; may be empty
};

// The widest thing the view must show, in metres: anti-pad, pad or drilled hole.
double PadTopViewExtent(const PadTopViewInput& input);

// Where the shapes of a view drawn into `into` go: the centre, and pixels per metre so that
// `extent` metres fill the space left by the title, the dimension lines and the legend.
struct PadTopViewPlacement {
    Point centre;
    double scale = 0.0;
};
PadTopViewPlacement PlacePadTopView(const Rect& into, double extent, const ITextMetrics& metrics);

// Draws the view into `into`. `extent` (metres) is what must fit; 0 fits the view's own
// extent. Two views drawn with the same extent share their scale.
void DrawLayerPadTopView(ICanvas& canvas, const Rect& into, const PadTopViewInput& input,
                         double extent = 0.0);

}  // namespace kv

namespace kv {

// The top view of layer `layer` for every via of `input` side by side (the right one is via
// 0, as in the side view), all to one scale, each titled with the layer and the via.
void PaintViaTopView(ICanvas& canvas, const Rect& client, const SpiceExportInput& input, int layer);

}  // namespace kv
