#include "core/via/ViaSpiceModel.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kv {
namespace {

std::size_t TopNode(int32_t layer) {
    return 2 * static_cast<std::size_t>(layer);
}
std::size_t BottomNode(int32_t layer) {
    return TopNode(layer) + 1;
}

// Both ends of an element and every port must lie in the stackup, even where the end itself
// gets no node value: an element reaching outside the board is inconsistent data.
void CheckLayer(int32_t layer, std::size_t layerCount) {
    if (layer < 0 || static_cast<std::size_t>(layer) >= layerCount) {
        throw std::out_of_range("via layer index " + std::to_string(layer) +
                                " lies outside the stackup");
    }
}

bool CarriesSeriesPart(const CViaVizSpiceLayer& node) {
    return node.L != 0.0 || node.Z0 != 0.0 || node.TD != 0.0;
}

// An element inside one layer runs from the layer's top node to its bottom node; an element
// between two layers runs from the bottom of the first to the top of the second.
void PlaceElement(std::vector<CViaVizSpiceLayer>& nodes, const CViaVizElement& element) {
    const int32_t a = element.startLayer;
    const int32_t b = element.endLayer;
    CheckLayer(a, nodes.size() / 2);
    CheckLayer(b, nodes.size() / 2);
    const bool withinLayer = a == b;
    CViaVizSpiceLayer& start = nodes.at(withinLayer ? TopNode(a) : BottomNode(a));
    if (element.startEndType == kViaEndCapacitance) {
        start.C += element.startCapacitance;
    }
    if (element.endEndType == kViaEndCapacitance) {
        nodes.at(withinLayer ? BottomNode(b) : TopNode(b)).C += element.endCapacitance;
    }
    if (element.kind == kViaElementInductance) {
        start.L += element.value;
    } else if (element.kind == kViaElementLine) {
        start.Z0 += element.value;
        start.TD += element.delay;
    }
}

std::string NodeName(const CViaVizSpiceLayer& node, int viaNumber) {
    std::string name(1, 'L');
    name.append(std::to_string(node.layer + 1)).append(1, '_').append(std::to_string(viaNumber));
    if (node.bottom != 0) {
        name += "-down";
    } else if (CarriesSeriesPart(node)) {
        name += "-up";
    }
    if (name.size() < kSpiceNodeNameWidth) {
        name.resize(kSpiceNodeNameWidth, ' ');
    }
    return name;
}

// A top node with nothing running down from it takes over its bottom node, so that a layer
// crossed by nothing but a capacitance becomes a single node.
void FoldEmptyTops(std::vector<CViaVizSpiceLayer>& nodes) {
    for (std::size_t top = 0; top + 1 < nodes.size(); top += 2) {
        CViaVizSpiceLayer& upper = nodes[top];
        CViaVizSpiceLayer& lower = nodes[top + 1];
        if (CarriesSeriesPart(upper)) {
            continue;
        }
        upper.C += lower.C;
        upper.L = lower.L;
        upper.Z0 = lower.Z0;
        upper.TD = lower.TD;
        lower.C = lower.L = lower.Z0 = lower.TD = 0.0;
    }
}

}  // namespace

std::vector<CViaVizSpiceLayer> BuildSpiceNodes(const SpiceViaInput& via, int32_t layerCount,
                                               int viaIndex) {
    std::vector<CViaVizSpiceLayer> nodes(2 * static_cast<std::size_t>(std::max(layerCount, 0)));
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i].layer = static_cast<int32_t>(i / 2);
        nodes[i].bottom = static_cast<int32_t>(i % 2);
    }
    for (const CViaVizPort& port : via.ports) {
        CheckLayer(port.layer, nodes.size() / 2);
        nodes.at(TopNode(port.layer)).port = &port;
    }
    for (const CViaVizElement& element : via.elements) {
        PlaceElement(nodes, element);
    }
    for (CViaVizSpiceLayer& node : nodes) {
        node.name = NodeName(node, viaIndex + 1);
    }
    FoldEmptyTops(nodes);
    return nodes;
}

}  // namespace kv
