#include <pybind11/stl.h>

#include <string>
#include <utility>

#include "apps/python/Bindings.h"
#include "core/shared/Misc_String.h"

// The engineering formatters and the engineering parser.

namespace kv::python {
namespace {

std::pair<std::string, bool> Format(UnitFormatter format, double value) {
    bool inRange = false;
    std::string text = UnitText(format, value, &inRange);
    return {std::move(text), inRange};
}

double ParseEngineering(const std::string& text, bool spice, bool ampere, bool farad) {
    // The reader stops at a NUL; a text that holds one is not what the caller meant to give.
    if (text.find('\0') != std::string::npos) {
        throw py::value_error("an engineering value cannot contain a NUL character");
    }
    double value = 0.0;
    if (!ParseEngineeringValue(text.c_str(), value, ampere, spice, farad)) {
        throw py::value_error("'" + text + "' is no engineering value");
    }
    return value;
}

}  // namespace

void BindNumbers(py::module_& m) {
    m.def(
        "format_length",
        [](double metres, bool metric) {
            bool inRange = false;
            std::string text = LengthText(metres, metric, &inRange);
            return std::pair(std::move(text), inRange);
        },
        py::arg("metres"), py::arg("metric") = false,
        "A length in metres as number, blank and unit: mils and inches, or um, mm, cm and m\n"
        "when `metric`. Returns (text, ok); ok is False when the value was beyond the largest\n"
        "unit (or no number) and printed as 999 with that unit.");
    for (const UnitQuantity& quantity : UnitQuantities()) {
        const UnitFormatter format = quantity.format;
        m.def(("format_" + std::string(quantity.name)).c_str(),
              [format](double value) { return Format(format, value); }, py::arg("value"),
              ("A value in " + std::string(quantity.baseUnit) +
               " as number, blank and engineering unit.\nReturns (text, ok); ok is False when "
               "the value was beyond the largest unit\n(or no number) and printed as 999 with "
               "that unit.")
                  .c_str());
    }
    m.def("parse_engineering", &ParseEngineering, py::arg("text"), py::arg("spice") = false,
          py::arg("ampere") = false, py::arg("farad") = false,
          "Reads an engineering value such as '1.5 n', '3M' or '47p' and returns it as a float.\n"
          "Blanks anywhere are ignored; the one character after the number scales it (a 1e-18,\n"
          "f/F 1e-15, p/P 1e-12, n/N 1e-9, u/U 1e-6, m 1e-3, k/K 1e3, M 1e6, G 1e9, T 1e12).\n"
          "`spice`: 'M' is milli and 'X' mega; `ampere`: 'a'/'A' are amperes, unscaled;\n"
          "`farad`: 'F' is farads, unscaled. Raises ValueError when the text holds no number\n"
          "or one too large for a float.");
}

}  // namespace kv::python
