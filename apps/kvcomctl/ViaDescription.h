#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/via/ViaSpiceModel.h"
#include "core/via/ViaVizData.h"

// A via or a differential via pair read from a JSON description (format in README.md): the
// stackup, and per via its padstack, elements and ports.

namespace kv::cli {

// A description that cannot be read or does not hold together. The message names the field
// ("vias[0].padstack.pads[3].shape: ...").
struct DescriptionError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ViaDescriptionVia {
    // Holds the stackup and this via's padstack, as the host would fill them.
    std::unique_ptr<CViaVizData> data;
    std::vector<CViaVizElement> elements;
    std::vector<CViaVizPort> ports;
};

struct ViaDescription {
    std::string subcircuit;
    bool pair = false;
    std::vector<ViaDescriptionVia> vias;

    // The export input over these vias; it refers into this description.
    SpiceExportInput SpiceInput(bool metric) const;
};

ViaDescription ReadViaDescription(const std::filesystem::path& path);
ViaDescription ParseViaDescription(const std::string& jsonText);

}  // namespace kv::cli
