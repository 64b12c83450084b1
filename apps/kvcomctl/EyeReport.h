#pragma once

#include <iosfwd>

#include "core/eye/EyeAnalysis.h"

// The measurements of an eye as kvcomctl eye prints them.

namespace kv::cli {

// One line per measurement: its name, then its value with the engineering
// unit the library's views show, or "not measured". With `maskTested`, the
// mask's hits, margin and verdict follow.
void WriteEyeText(const EyeMeasure& measure, bool maskTested, std::ostream& out);

// One JSON object with every measurement under a fixed key (those of the
// Python module's eye()), in volts, seconds and percent, numbers as %.17g;
// a value that was not measured, and the mask's values without a mask test,
// are null.
void WriteEyeJson(const EyeMeasure& measure, std::ostream& out);

}  // namespace kv::cli
