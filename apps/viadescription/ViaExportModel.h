#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/viadescription/ViaDescription.h"
#include "core/via/ViaSpiceModel.h"
#include "core/via/ViaVizData.h"

// A via description turned into the core's objects, for the exports of the command line and
// the Python module: each via's data object, filled as a host fills it, and its electrical
// model in the export's records.

namespace kv::via_json {

class ViaExportModel {
public:
    explicit ViaExportModel(const ViaDescription& description);

    // The SPICE export's input over these vias; it refers into this object.
    SpiceExportInput SpiceInput(bool metric) const;
    // The padstack diagnostic dump of every via, in order.
    std::string PadstackDump() const;

private:
    struct Via {
        std::unique_ptr<CViaVizData> data;  // the stackup and this via's padstack
        std::vector<CViaVizElement> elements;
        std::vector<CViaVizPort> ports;
    };

    std::string m_subcircuit;
    bool m_pair = false;
    std::vector<Via> m_vias;
};

}  // namespace kv::via_json
