#include <string>

#include "apps/python/Bindings.h"
#include "apps/viadescription/ViaDescription.h"
#include "apps/viadescription/ViaExportModel.h"
#include "core/shared/LocalTime.h"
#include "core/via/ViaSpiceWriter.h"

// The via exports. A description is the dict the command line reads as JSON: it is written as
// JSON text and read by the same reader, so both front ends accept and refuse the same
// descriptions with the same messages.

namespace kv::python {
namespace {

via_json::ViaExportModel Describe(const py::handle& description) {
    if (!py::isinstance<py::dict>(description)) {
        throw py::type_error("a via description must be a dict, not " +
                             std::string(py::str(py::type::of(description).attr("__name__"))));
    }
    // NaN and infinity have no JSON form; refusing them here keeps the reader's messages.
    const auto text = py::module_::import("json")
                          .attr("dumps")(description, py::arg("allow_nan") = false)
                          .cast<std::string>();
    try {
        return via_json::ViaExportModel(via_json::ParseViaDescription(text));
    } catch (const via_json::DescriptionError& error) {
        throw py::value_error(error.what());
    }
}

std::string ViaSpice(const py::handle& description, bool metric) {
    const via_json::ViaExportModel vias = Describe(description);
    SpiceExportInput input = vias.SpiceInput(metric);
    input.generated = LocalTimeNow();
    return SpiceModelText(input);
}

std::string PadstackDump(const py::handle& description) {
    return Describe(description).PadstackDump();
}

}  // namespace

void BindVia(py::module_& m) {
    m.def("via_spice", &ViaSpice, py::arg("description"), py::arg("metric") = false,
          "The SPICE subcircuit of the via or differential via pair in `description`, a dict\n"
          "of the structure the kvcomctl command line reads as JSON (subcircuit, pair, stackup,\n"
          "vias). `metric` shows the stackup's lengths in um, mm, cm or m instead of inches and\n"
          "mils. A description that does not hold together raises ValueError naming the field;\n"
          "a value JSON cannot hold (NaN, an object) raises ValueError or TypeError.");
    m.def("padstack_dump", &PadstackDump, py::arg("description"),
          "The padstack diagnostic dump of every via in `description` (the dict via_spice\n"
          "takes), as text.");
}

}  // namespace kv::python
