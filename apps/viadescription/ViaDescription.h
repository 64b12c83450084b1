#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "kvcomctl/IViaVizCtrl.h"
#include "kvcomctl/ViaRecords.h"

// A via or a differential via pair read from a JSON description (format in README.md): the
// stackup, and per via its padstack, elements and ports. The command line reads it from a file,
// the Python module from a dict turned into JSON text and the demo host and its tests from the
// example files, so every front end takes the same structure and refuses it with the same
// messages. The result is the host contract's own records, so that a host can hand it to the
// library as it is; it stays out of the core, which keeps to the standard library, because it
// reads JSON through nlohmann_json.

namespace kv::via_json {

// A description that cannot be read or does not hold together. The message names the field
// ("vias[0].padstack.pads[3].shape: ...").
struct DescriptionError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ViaDescriptionVia {
    // Every field but the pad array: padCount is 0 and pads null, the pads are `pads`.
    PADSTACK padstack{};
    std::vector<PADDATA> pads;  // one per stackup layer
    std::vector<VIAELEMENT> elements;
    std::vector<int32_t> ports;  // stackup indices of the port layers
};

struct ViaDescription {
    std::string subcircuit;
    bool pair = false;
    std::vector<STACKUPLAYER> stackup;    // top layer first, at least one
    std::vector<ViaDescriptionVia> vias;  // one, or two for a pair
};

ViaDescription ReadViaDescription(const std::filesystem::path& path);
ViaDescription ParseViaDescription(const std::string& jsonText);

}  // namespace kv::via_json
