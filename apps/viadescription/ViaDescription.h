#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/via/ViaSpiceModel.h"
#include "core/via/ViaVizData.h"

// A via or a differential via pair read from a JSON description (format in README.md): the
// stackup, and per via its padstack, elements and ports. The command line reads it from a file
// and the Python module from a dict turned into JSON text, so both front ends take the same
// structure and refuse it with the same messages. It stays out of the core, which keeps to the
// standard library, because it reads JSON through nlohmann_json.

namespace kv::via_json {

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

}  // namespace kv::via_json
