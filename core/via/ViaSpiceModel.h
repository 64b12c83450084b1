#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "kvcomctl/IViaVizCtrl.h"
#include "kvcomctl/ViaRecords.h"

// What the SPICE export of a via is made from: per via a list of lumped elements and a list of
// port layers computed by the via's electrical model, and the node table the export builds
// from them. The export computes no electrical values; it places the given ones on nodes.

namespace kv {

// CViaVizElement::kind
inline constexpr int32_t kViaElementInductance = 1;  // value in henries
inline constexpr int32_t kViaElementLine = 4;        // value is Z0 in ohms, delay in seconds
// CViaVizElement::startEndType / endEndType: a shunt capacitance sits at that end.
inline constexpr int32_t kViaEndCapacitance = 2;

// One lumped element between two stackup layers. Kinds other than the two above carry only
// their end capacitances.
struct CViaVizElement {
    int32_t kind = 0;
    int32_t startEndType = 0;
    int32_t endEndType = 0;
    int32_t startLayer = 0;
    int32_t endLayer = 0;
    double value = 0.0;
    double startCapacitance = 0.0;  // farads
    double endCapacitance = 0.0;    // farads
    double delay = 0.0;             // seconds, lines only
};

// The element a host hands over as a VIAELEMENT.
inline CViaVizElement ToViaVizElement(const VIAELEMENT& e) {
    return {e.kind,  e.startEndType,     e.endEndType,     e.startLayer, e.endLayer,
            e.value, e.startCapacitance, e.endCapacitance, e.delay};
}

// A layer at which the via connects to the outside.
struct CViaVizPort {
    int32_t layer = 0;
};

// One node of the export's table. A stackup layer i has two: 2i at its top and 2i+1 at its
// bottom. L, Z0 and TD describe what runs from this node downward.
struct CViaVizSpiceLayer {
    int32_t layer = 0;
    int32_t bottom = 0;                 // 0 top node, 1 bottom node
    const CViaVizPort* port = nullptr;  // top nodes only
    double C = 0.0;
    double L = 0.0;
    double Z0 = 0.0;
    double TD = 0.0;
    std::string name;  // at least 11 characters, blank-padded
};

// Node names are padded with blanks to this width and keep the blanks in the file.
inline constexpr std::size_t kSpiceNodeNameWidth = 11;

struct SpiceViaInput {
    const PADSTACK* padstack = nullptr;
    std::vector<CViaVizElement> elements;
    std::vector<CViaVizPort> ports;
};

// Everything one export writes: one via, or the two vias of a differential pair.
struct SpiceExportInput {
    const STACKUPARRAY* stackup = nullptr;
    std::vector<SpiceViaInput> vias;
    bool pair = false;
    std::string subcircuitName;
    bool metric = false;  // lengths in metric units rather than inches and mils
    std::tm generated{};  // the time the header names
};

// Builds the named and folded node table of via `viaIndex` over `layerCount` stackup layers.
// The port pointers refer into `via.ports`. A layer index outside the stackup throws
// std::out_of_range.
std::vector<CViaVizSpiceLayer> BuildSpiceNodes(const SpiceViaInput& via, int32_t layerCount,
                                               int viaIndex);

}  // namespace kv
