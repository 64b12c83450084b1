#pragma once

#include <cstdint>
#include <span>

// The linear feedback shift register behind the pseudo-random sequences.
// Degrees below 3 work as 3 and above 32 as 32; each degree uses its
// maximal-length tap set, so the output repeats after 2^degree - 1 steps.

namespace kv {

struct ShiftRegister {
    explicit ShiftRegister(int requestedDegree);

    // Shifts one step: the parity of the tapped bits enters at the top.
    // Returns the lowest bit of the new state, the register's output.
    unsigned Step() {
        const unsigned parity = static_cast<unsigned>(__builtin_parity(state & tapMask));
        state = (parity << (degree - 1)) | (state >> 1);
        return state & 1u;
    }

    uint32_t degree;   // 3 to 32
    uint32_t state;    // starts at 2^(degree/2) - 1
    uint32_t tapMask;  // a tap at position t sets bit (degree - t)
};

// Clamps a requested degree to the register's range 3 to 32.
int ClampRegisterDegree(int requestedDegree);

// The tap positions of a degree (3 to 32), largest first: two or four of them,
// the first always the degree itself.
std::span<const uint8_t> RegisterTaps(int degree);

}  // namespace kv
