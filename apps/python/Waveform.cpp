#include <pybind11/stl.h>

#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "apps/python/Bindings.h"
#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/eyediagram/StimWaveform.h"
#include "core/stimulus/StimulusData.h"

// The waveform a stimulus drives a simulator with, with its jitter, as the
// stimulus adaptor builds it for a host.

namespace kv::python {
namespace {

using Samples = py::array_t<double, py::array::c_style>;

std::pair<Samples, Samples> JitteredWaveform(CStimulusData& data, double low, double high,
                                             std::optional<double> rise,
                                             std::optional<double> fall) {
    for (const auto& [name, value] :
         {std::pair{"low", std::optional(low)}, std::pair{"high", std::optional(high)},
          std::pair{"rise", rise}, std::pair{"fall", fall}}) {
        if (value && !std::isfinite(*value)) {
            throw py::value_error(std::string(name) + " must be a finite number");
        }
    }
    const double tenth = data.GetPeriod() * 1e-9 * 0.1;
    CEyeStimAdaptor adaptor;
    const int32_t count =
        adaptor.BuildJittered(&data, low, high, rise.value_or(tenth), fall.value_or(tenth));
    if (count < 0) {
        throw py::value_error(NoWaveformMessage(true));
    }
    Samples times(count);
    Samples volts(count);
    double* t = times.mutable_data();
    double* v = volts.mutable_data();
    for (int32_t i = 0; i < count; ++i) {
        t[i] = adaptor.GetPoints()[i].time;
        v[i] = adaptor.GetPoints()[i].level;
    }
    return {std::move(times), std::move(volts)};
}

}  // namespace

void BindWaveform(py::module_& m) {
    m.def("jittered_waveform", &JitteredWaveform, py::arg("stimulus"), py::kw_only(),
          py::arg("low") = 0.0, py::arg("high") = 1.0, py::arg("rise") = py::none(),
          py::arg("fall") = py::none(),
          "The stimulus's piecewise-linear waveform with every edge moved by its jitter, as\n"
          "the stimulus adaptor's BuildJittered makes it: (time, volts), two numpy.float64\n"
          "arrays of the corner points, times in seconds from 0 and strictly increasing.\n"
          "`low` and `high` are the levels in volts; `rise` and `fall` the ramp times in\n"
          "seconds, by default a tenth of the bit interval. Repeatable jitter gives the same\n"
          "arrays every time (from the jitter seed of the module's settings store); without\n"
          "jitter the waveform is the nominal one. Raises ValueError when the values make no\n"
          "waveform.");
}

}  // namespace kv::python
