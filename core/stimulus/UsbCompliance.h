#pragma once

#include "core/stimulus/StimulusData.h"

namespace kv {

inline constexpr int kUsbComplianceBits = 330;

// The fixed 330-bit USB 2.0 compliance pattern, first bit first.
BitVector UsbCompliancePattern();

// The two bits of the toggling sequence for a starting state: the first is
// set when the state is 0, the second when it is not.
BitVector TogglingBits(int initState);

}  // namespace kv
