#include "core/stimulus/RegisterFill.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "core/stimulus/ShiftRegister.h"

// Why blocks work: a tap at position t feeds the bit that left the register t
// steps ago, so every output bit is the XOR of the outputs at the tap
// distances before it. Squaring the feedback polynomial over GF(2) doubles
// every distance, so the outputs also obey the same rule at distances 2^k * t.
// Once the smallest distance is a few kilobytes, a whole block of that size
// is the XOR of earlier blocks, which the compiler turns into wide vector
// operations. Every tap set has an even number of taps, so a sequence whose
// bits are all inverted obeys the rule with one extra XOR by the inversion.

#if defined(__x86_64__) && defined(__GNUC__) && defined(__GLIBC__)
#define KV_WIDE_CLONES __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define KV_WIDE_CLONES
#endif

namespace kv {
namespace {

using Byte = uint8_t;

// Blocks of at least this many bytes make the per-block overhead negligible
// while the distances read back stay within the first-level caches for the
// common degrees.
constexpr std::size_t kTargetBlock = 2048;

KV_WIDE_CLONES void XorTwo(Byte* __restrict dst, const Byte* __restrict a, const Byte* __restrict b,
                           std::size_t length, Byte invert) {
    for (std::size_t i = 0; i < length; ++i) {
        dst[i] = a[i] ^ b[i] ^ invert;
    }
}

KV_WIDE_CLONES void XorFour(Byte* __restrict dst, const Byte* __restrict a,
                            const Byte* __restrict b, const Byte* __restrict c,
                            const Byte* __restrict d, std::size_t length, Byte invert) {
    for (std::size_t i = 0; i < length; ++i) {
        dst[i] = a[i] ^ b[i] ^ c[i] ^ d[i] ^ invert;
    }
}

// Extends out[position, end) from the bytes before it, with the tap
// distances scaled by `scale`; every distance is at least the block size.
void ExtendByRecurrence(std::span<Byte> out, std::size_t position, std::size_t end,
                        std::span<const uint8_t> taps, std::size_t scale, Byte invert) {
    const std::size_t block = scale * taps.back();  // the smallest distance
    std::array<std::size_t, 4> distance{};
    for (std::size_t t = 0; t < taps.size(); ++t) {
        distance[t] = scale * taps[t];
    }
    Byte* data = out.data();
    while (position < end) {
        const std::size_t length = std::min(block, end - position);
        Byte* dst = data + position;
        if (taps.size() == 2) {
            XorTwo(dst, dst - distance[0], dst - distance[1], length, invert);
        } else {
            XorFour(dst, dst - distance[0], dst - distance[1], dst - distance[2], dst - distance[3],
                    length, invert);
        }
        position += length;
    }
}

}  // namespace

void FillRegisterOutputStepwise(int degree, std::span<uint8_t> out, bool invert) {
    ShiftRegister reg(degree);
    const unsigned flip = invert ? 1u : 0u;
    for (uint8_t& bit : out) {
        bit = static_cast<uint8_t>(reg.Step() ^ flip);
    }
}

void FillRegisterOutput(int degree, std::span<uint8_t> out, bool invert) {
    const std::span<const uint8_t> taps = RegisterTaps(degree);
    const std::size_t registerDegree = taps.front();
    const std::size_t total = out.size();

    // The rule holds from the degree-th output on; the first ones come from
    // the register itself.
    std::size_t position = std::min(registerDegree, total);
    FillRegisterOutputStepwise(degree, out.first(position), invert);

    // Stage k uses distances 2^k * t and is valid once 2^k * degree outputs
    // exist; each stage doubles the block until it reaches the target size.
    const Byte flip = invert ? 1 : 0;
    std::size_t scale = 1;
    while (position < total) {
        const bool finalStage = scale * taps.back() >= kTargetBlock;
        const std::size_t stageEnd =
            finalStage ? total : std::min(total, 2 * scale * registerDegree);
        ExtendByRecurrence(out, position, stageEnd, taps, scale, flip);
        position = stageEnd;
        scale *= 2;
    }
}

}  // namespace kv
