#pragma once

#include <iosfwd>
#include <string>

#include "core/via/ViaSpiceModel.h"

namespace kv {

// Writes the SPICE subcircuit of `input`: the banner, the stackup table, the .SUBCKT line with
// its port list, the element block of every via and ".ENDS". Inconsistent layer indices throw
// std::out_of_range before anything is written.
void WriteSpiceModel(const SpiceExportInput& input, std::ostream& out);
std::string SpiceModelText(const SpiceExportInput& input);

}  // namespace kv
