#pragma once

#include <string>

#include "core/via/ViaSpiceModel.h"

namespace kv {

// The SPICE subcircuit of `input`: the banner, the stackup table, the .SUBCKT line with its port
// list, the element block of every via and ".ENDS". Inconsistent layer indices throw
// std::out_of_range.
std::string SpiceModelText(const SpiceExportInput& input);

}  // namespace kv
