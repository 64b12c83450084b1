#pragma once

#include <cstdint>
#include <span>

// Fills byte-per-bit buffers (0 or 1 per byte) with the shift register's
// output. Two ways that must agree bit for bit: the step-by-step register,
// kept as the reference, and a block fill that builds each block of output by
// XOR of earlier blocks.

namespace kv {

// The register's first out.size() outputs, each XORed with `invert`.
void FillRegisterOutputStepwise(int degree, std::span<uint8_t> out, bool invert);

// The same bytes as FillRegisterOutputStepwise, computed in blocks.
void FillRegisterOutput(int degree, std::span<uint8_t> out, bool invert);

}  // namespace kv
