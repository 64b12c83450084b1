#include "apps/viadescription/ViaExportModel.h"

#include <sstream>

#include "core/via/PadstackDump.h"

namespace kv::via_json {

ViaExportModel::ViaExportModel(const ViaDescription& description)
    : m_subcircuit(description.subcircuit), m_pair(description.pair) {
    for (const ViaDescriptionVia& read : description.vias) {
        Via via{std::make_unique<CViaVizData>(), {}, {}};
        via.data->SetStackupLayers(description.stackup);
        *via.data->GetPadstack() = read.padstack;
        via.data->SetPads(read.pads);
        for (const VIAELEMENT& element : read.elements) {
            via.elements.push_back(ToViaVizElement(element));
        }
        for (const int32_t layer : read.ports) {
            via.ports.push_back({layer});
        }
        m_vias.push_back(std::move(via));
    }
}

SpiceExportInput ViaExportModel::SpiceInput(bool metric) const {
    SpiceExportInput input;
    // Both vias of a pair go through the same board.
    input.stackup = &m_vias.front().data->Stackup();
    input.pair = m_pair;
    input.subcircuitName = m_subcircuit;
    input.metric = metric;
    for (const Via& via : m_vias) {
        input.vias.push_back({&via.data->Padstack(), via.elements, via.ports});
    }
    return input;
}

std::string ViaExportModel::PadstackDump() const {
    std::ostringstream listing;
    for (const Via& via : m_vias) {
        WritePadstackDump(via.data->Stackup(), via.data->Padstack(), listing);
    }
    return listing.str();
}

}  // namespace kv::via_json
