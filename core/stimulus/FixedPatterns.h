#pragma once

#include <optional>

#include "core/stimulus/StimulusData.h"

// The sequence kinds whose bits are not generated but fixed by the kind and
// the initial state: the USB 2.0 compliance pattern, and the short patterns
// the stimulus page builds for Oscillator, Edge and Pulse.

namespace kv {

inline constexpr int kUsbComplianceBits = 330;

// The fixed 330-bit USB 2.0 compliance pattern, first bit first.
BitVector UsbCompliancePattern();

// The two bits of the toggling sequence for a starting state: the first is
// set when the state is 0, the second when it is not.
BitVector TogglingBits(int initState);

// The bits of a kind fixed by its initial state (toggling, USB 2.0
// compliance, Edge, Pulse); none for a kind whose bits are generated or
// drawn by the user.
std::optional<BitVector> FixedPattern(int seqType, int initState);

}  // namespace kv
