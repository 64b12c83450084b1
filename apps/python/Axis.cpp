#include <pybind11/stl.h>

#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "apps/python/Bindings.h"
#include "core/chart/AxisScale.h"
#include "core/chart/Chart.h"

// The chart's axis arithmetic: the same call the chart control and `kvcomctl axis` scale
// their axes with.

namespace kv::python {
namespace {

using Line = std::pair<double, std::string>;
using Scaled = std::tuple<std::pair<double, double>, double, int, std::vector<Line>>;

Scaled Axis(double lo, double hi, int pixels, bool logarithmic, bool prefixes,
            const std::string& unit, std::optional<int> spacing, bool yAxis) {
    if (!std::isfinite(lo) || !std::isfinite(hi)) {
        throw py::value_error("lo and hi must be finite numbers");
    }
    if (pixels <= 0) {
        throw py::value_error("pixels must be a positive whole number, not " +
                              std::to_string(pixels));
    }
    if (spacing && (*spacing < 0 || *spacing > 1000000)) {
        throw py::value_error("spacing must be a number of pixels from 0 to 1000000");
    }
    AxisRequest request;
    request.lo = lo;
    request.hi = hi;
    request.pixels = pixels;
    request.logarithmic = logarithmic;
    request.unit = unit;
    request.prefixes = prefixes;
    request.yAxis = yAxis;
    const LabelSpacing fontSpacing = LabelSpacingFromFont(kNominalDigitWidth, kNominalTextHeight);
    request.minLabelSpacing = spacing.value_or(yAxis ? fontSpacing.y : fontSpacing.x);

    AxisScale scale;
    try {
        py::gil_scoped_release released;
        scale = ScaleAxis(request);
    } catch (const std::invalid_argument&) {
        throw py::value_error(std::string("no grid step fits the range") +
                              (logarithmic ? " on a logarithmic axis" : ""));
    }
    std::vector<Line> lines;
    lines.reserve(scale.lines.size());
    for (GridLine& line : scale.lines) {
        lines.emplace_back(line.value, std::move(line.label));
    }
    return {{scale.range.lo, scale.range.hi}, scale.step, scale.labelInterval, std::move(lines)};
}

}  // namespace

void BindAxis(py::module_& m) {
    m.def("axis", &Axis, py::arg("lo"), py::arg("hi"), py::arg("pixels"), py::arg("log") = false,
          py::arg("prefixes") = true, py::arg("unit") = "", py::arg("spacing") = py::none(),
          py::arg("y") = false,
          "Scales one chart axis of `pixels` pixels over the data range [lo, hi] as the chart\n"
          "control does. Returns ((lo', hi'), step, label_interval, lines): the range after\n"
          "widening a degenerate one, the major step (one decade in exponent space when `log`),\n"
          "the number of lines from one label to the next, and every major grid line first to\n"
          "last as (value, label), the label with its blanks or '' for a line without one.\n"
          "`spacing` is the minimum label spacing in pixels (default: the control's font);\n"
          "`y` scales a y axis, which doubles it. Raises ValueError when no step fits the range.");
}

}  // namespace kv::python
