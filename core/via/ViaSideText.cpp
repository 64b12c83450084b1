// The texts of the side view that are not drawn at a place: labels and the hover text.

#include "core/via/ViaSideView.h"

#include "core/shared/Misc_String.h"
#include "core/via/ViaSideViewParts.h"

namespace kv {
namespace {

using namespace side_view;
namespace style = via_view;

}  // namespace

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

std::string ViaElementLabel(const CViaVizElement& element, bool withCapacitances) {
    std::string label;
    if (element.kind == kViaElementInductance) {
        label = "L " + UnitText(FormatInductance, element.value);
    } else if (element.kind == kViaElementLine) {
        label = "T " + UnitText(FormatResistance, element.value) + " " +
                UnitText(FormatTime, element.delay);
    }
    for (const auto& [type, value] : {std::pair{element.startEndType, element.startCapacitance},
                                      std::pair{element.endEndType, element.endCapacitance}}) {
        if (type == kViaEndCapacitance && (withCapacitances || label.empty())) {
            label += (label.empty() ? "C " : " C ") + UnitText(FormatCapacitance, value);
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
    const LayerRole role = RoleOfLayer(record.kind, record.usage);
    std::string text = std::to_string(layer + 1) + " " + std::string(FieldText(record.name)) +
                       ": " +
                       (role == LayerRole::Dielectric ? "dielectric"
                        : role == LayerRole::Plane    ? "plane"
                                                      : "signal") +
                       ", " + LengthText(record.thickness, input.metric);
    if (role == LayerRole::Dielectric) {
        return text;
    }
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        const PADSTACK* padstack = input.vias[v].padstack;
        const PADDATA* pad = PadOf(padstack, layer);
        text += std::string("\n") + ViaName(input, static_cast<int>(v)) + ": ";
        if (pad != nullptr && pad->padType == PAD_TYPE_PAD) {
            text +=
                "pad " + style::ShapeText(pad->shape) + " " + LengthText(pad->pad_x, input.metric);
            if (pad->antipad_x > 0.0) {
                text += ", anti-pad " + LengthText(pad->antipad_x, input.metric);
            }
        } else if (pad != nullptr && pad->padType == PAD_TYPE_ANTIPAD) {
            text += "anti-pad " + style::ShapeText(pad->shape) + " " +
                    LengthText(pad->pad_x, input.metric);
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
