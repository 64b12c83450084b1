#pragma once

#include "core/padstack/PadstackRow.h"

// The size comparisons the editor's rules share.

namespace kv {

// Typed values arrive in display units and are divided back into metres, so a size the user
// typed exactly as shown can differ from the held one in the last bits. Sizes this close count
// as equal: the rules' equality cases must hold for what the user sees.
int CompareSizes(double a, double b);

// Whether the anti-pad of `row` must enclose its pad: both have an outline the row sets, and
// they are turned alike. An anti-pad "<None>" (which only a record can bring, the choices do not
// offer it) has nothing to enclose with.
bool EnclosureApplies(const PadstackRow& row);

}  // namespace kv
