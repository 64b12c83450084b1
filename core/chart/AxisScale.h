#pragma once

#include <string>
#include <vector>

#include "core/chart/AxisArithmetic.h"

// One call from a data range to an axis' grid: the widened range, the major
// step, the label interval and every major line with its label. The chart,
// the command line and scripting all scale their axes through it.

namespace kv {

struct AxisRequest {
    double lo = 0.0;
    double hi = 0.0;
    int pixels = 0;            // length of the axis
    bool logarithmic = false;  // the step is then one decade in exponent space
    std::string unit;
    bool prefixes = true;
    int minLabelSpacing = 0;  // pixels between labels, as the axis keeps it
    bool yAxis = false;       // the y axis needs twice its spacing
};

struct GridLine {
    double value = 0.0;  // in data units (a power of ten on a logarithmic axis)
    std::string label;   // empty for a line without a label
};

struct AxisScale {
    Range range;            // after widening
    double step = 0.0;      // for a logarithmic axis in exponent space
    int intervals = 0;      // major intervals from the first line to the last
    int labelInterval = 1;  // lines from one label to the next
    int prefixRow = 0;      // the SI prefix row all labels share
    std::vector<GridLine> lines;
};

// Throws std::invalid_argument when no step fits the range (a zero-length
// or reversed range, or a logarithmic one that is not wholly positive).
AxisScale ScaleAxis(const AxisRequest& request);

}  // namespace kv
