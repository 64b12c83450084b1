#include <pybind11/stl.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "apps/python/Bindings.h"
#include "core/eye/EyeAnalysis.h"

// The eye of a waveform: the density NumPy colours and the measurements, from the same core
// call a host's eye view makes.

namespace kv::python {
namespace {

using Samples = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Density = py::array_t<uint32_t, py::array::c_style>;

std::span<const double> View(const Samples& samples, const char* name) {
    if (samples.ndim() != 1) {
        throw py::value_error(std::string(name) + " must be a one-dimensional array");
    }
    return {samples.data(), static_cast<std::size_t>(samples.size())};
}

py::dict Measures(const EyeResult& eye) {
    const EyeMeasure& m = eye.measure;
    py::dict d;
    d["samples"] = m.samples;
    d["unit_intervals"] = m.unitIntervals;
    d["level0"] = m.level0;
    d["level1"] = m.level1;
    d["noise0"] = m.noise0;
    d["noise1"] = m.noise1;
    d["eye_height"] = m.eyeHeight;
    d["eye_width"] = m.eyeWidth;
    d["eye_centre_time"] = m.eyeCentreTime;
    d["crossing_jitter_rms"] = m.crossingJitterRms;
    d["crossing_jitter_peak_to_peak"] = m.crossingJitterPeakToPeak;
    d["mask_hits"] = m.maskHits;
    d["mask_margin_percent"] = m.maskMarginPercent;
    d["origin"] = eye.origin;
    d["volts_range"] = py::make_tuple(eye.grid.vMin, eye.grid.vMax);
    return d;
}

std::pair<Density, py::dict> Eye(const Samples& time, const Samples& volts, double interval,
                                 int eyes, int skip, int width, int height,
                                 std::optional<std::pair<double, double>> voltsRange,
                                 std::optional<EYEMASK> mask) {
    EyeRequest request;
    request.timing = {interval, eyes, skip};
    request.width = width;
    request.height = height;
    if (voltsRange) {
        request.vMin = voltsRange->first;
        request.vMax = voltsRange->second;
    }
    request.mask = mask;
    const EyeTrace trace{View(time, "time"), View(volts, "volts")};
    EyeResult eye;
    {
        py::gil_scoped_release released;
        eye = AnalyseEye(trace, request);
    }
    if (!eye.refusal.empty()) {
        throw py::value_error(eye.refusal);
    }
    Density density({eye.grid.height, eye.grid.width});
    std::copy(eye.density.begin(), eye.density.end(), density.mutable_data());
    return {std::move(density), Measures(eye)};
}

}  // namespace

void BindEye(py::module_& m) {
    m.def("eye", &Eye, py::arg("time"), py::arg("volts"), py::arg("interval"), py::arg("eyes") = 1,
          py::arg("skip") = 0, py::arg("width") = 1000, py::arg("height") = 600,
          py::arg("volts_range") = py::none(), py::arg("mask") = py::none(),
          "Folds the waveform (time in seconds, volts; straight lines between samples) into an\n"
          "eye of `eyes` bit intervals of `interval` seconds, leaving out the first `skip`\n"
          "intervals, and measures it. Returns (density, measures): the counts as a uint32\n"
          "array of `height` rows (row 0 at the lowest level) by `width` columns (column 0 at\n"
          "a mean crossing), and a dict of the measurements with 'origin' (the time of the\n"
          "grid's left edge) and 'volts_range' (the grid's levels, the waveform's range and a\n"
          "twentieth more each way unless given). With an EyeMask, 'mask_hits' and\n"
          "'mask_margin_percent' test it; else they are -1 and nan. Raises ValueError with the\n"
          "reason when the waveform or the request cannot be folded.");
}

}  // namespace kv::python
