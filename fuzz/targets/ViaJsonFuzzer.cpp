// The via description reader and the SPICE writer: any text is either
// refused with a message that names the field in the reader's own words, or
// read into vias whose subcircuit is written whole.

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "FuzzSupport.h"
#include "apps/viadescription/ViaDescription.h"
#include "apps/viadescription/ViaExportModel.h"
#include "core/via/ViaSpiceWriter.h"

namespace {

using kv::fuzz::Escaped;
using kv::fuzz::Expect;

// A name with a NUL would be cut where it is copied; the reader must refuse it.
bool HoldsNul(const nlohmann::json& value) {
    if (value.is_string()) {
        return value.get_ref<const std::string&>().find('\0') != std::string::npos;
    }
    if (value.is_array()) {
        return std::any_of(value.begin(), value.end(), HoldsNul);
    }
    if (value.is_object()) {
        for (const auto& [key, member] : value.items()) {
            if (key.find('\0') != std::string::npos || HoldsNul(member)) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string text(kv::fuzz::AsText(data, size));
    kv::via_json::ViaDescription description;
    try {
        description = kv::via_json::ParseViaDescription(text);
    } catch (const kv::via_json::DescriptionError& error) {
        const std::string message = error.what();
        // A parser tag in the message is a leak, unless the input wrote it itself.
        const bool tagged = message.find("[json.exception") != std::string::npos &&
                            text.find("[json.exception") == std::string::npos;
        Expect(!message.empty() && !tagged,
               "the refusal of \"" + Escaped(text) + "\" says \"" + Escaped(message) + "\"");
        return 0;
    }
    Expect(!HoldsNul(nlohmann::json::parse(text)),
           "a NUL in a name was accepted in \"" + Escaped(text) + "\"");
    std::set<std::string> names;
    for (const STACKUPLAYER& layer : description.stackup) {
        Expect(names.insert(layer.name).second, "two layers named \"" + Escaped(layer.name) +
                                                    "\" were accepted in \"" + Escaped(text) +
                                                    "\"");
    }
    const kv::via_json::ViaExportModel vias(description);
    for (const bool metric : {false, true}) {
        const std::string spice = kv::SpiceModelText(vias.SpiceInput(metric));
        Expect(spice.find(".SUBCKT") != std::string::npos && spice.ends_with(".ENDS\n"),
               "the subcircuit of \"" + Escaped(text) + "\" was not written whole");
    }
    return 0;
}
