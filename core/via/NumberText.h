#pragma once

#include <string>

// Numbers in the via texts are read back by SPICE simulators and scripts, so they are printed
// with a "." decimal point whatever locale the host process runs in.

namespace kv {

// As "%.<decimals>f".
std::string FixedText(double value, int decimals);
// As "%g": six significant digits, trailing zeros dropped, exponent form when it is shorter.
std::string GeneralText(double value);

}  // namespace kv
