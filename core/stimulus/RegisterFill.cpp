#include "core/stimulus/RegisterFill.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/stimulus/ShiftRegister.h"

// Why blocks work: a tap at position t feeds the bit that left the register t
// steps ago, so every output bit is the XOR of the outputs at the tap
// distances before it. Squaring the feedback polynomial over GF(2) doubles
// every distance, so the outputs also obey the same rule at distances 2^k * t.
// Once the smallest distance is a few kilobytes, every cache line of output is
// the XOR of lines written long enough ago to have left the store buffer, and
// the lines can be computed one after another in place. Every tap set has an
// even number of taps, so a sequence whose bits are all inverted obeys the
// rule with one extra XOR by the inversion.

#if defined(__x86_64__) && defined(__GNUC__) && defined(__GLIBC__)
#define KV_WIDE_CLONES __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define KV_WIDE_CLONES
#endif

namespace kv {
namespace {

using Byte = uint8_t;

// One cache line, the unit of the final stage: with a line-aligned target
// every store fills exactly one line, and with distances that are multiples
// of a line every load reads exactly one. Its elements are 64-bit words
// because the widest vector units handle XOR on those (bytes would need a
// further instruction set extension for the same width).
constexpr std::size_t kLineBytes = 64;
using Line = uint64_t __attribute__((vector_size(kLineBytes)));

// The smallest distance of the final stage. Much shorter and a line would be
// read while the store that wrote it is still in flight, which stalls the
// load; much longer and the lines read back leave the first-level cache.
constexpr std::size_t kFinalDistance = 2048;

// Times a byte, a word with that byte in each of its eight places.
constexpr uint64_t kEveryByte = 0x0101010101010101;

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

// Whole lines from `dst` on, each from the lines at the given distances
// before it (all at least one line, so each source line is complete before
// it is read). The copies in and out compile to single vector moves.
KV_WIDE_CLONES void XorLinesTwo(Byte* dst, std::size_t lines, std::size_t d0, std::size_t d1,
                                Byte invert) {
    const Line flip = Line{} + invert * kEveryByte;
    for (std::size_t i = 0; i < lines; ++i, dst += kLineBytes) {
        Line a;
        Line b;
        std::memcpy(&a, dst - d0, sizeof a);
        std::memcpy(&b, dst - d1, sizeof b);
        const Line result = a ^ b ^ flip;
        std::memcpy(dst, &result, sizeof result);
    }
}

KV_WIDE_CLONES void XorLinesFour(Byte* dst, std::size_t lines, std::size_t d0, std::size_t d1,
                                 std::size_t d2, std::size_t d3, Byte invert) {
    const Line flip = Line{} + invert * kEveryByte;
    for (std::size_t i = 0; i < lines; ++i, dst += kLineBytes) {
        Line a;
        Line b;
        Line c;
        Line d;
        std::memcpy(&a, dst - d0, sizeof a);
        std::memcpy(&b, dst - d1, sizeof b);
        std::memcpy(&c, dst - d2, sizeof c);
        std::memcpy(&d, dst - d3, sizeof d);
        const Line result = a ^ b ^ c ^ d ^ flip;
        std::memcpy(dst, &result, sizeof result);
    }
}

// The tap distances of one stage: the taps scaled by 2^k.
struct Distances {
    std::array<std::size_t, 4> of{};
    std::size_t count = 0;

    Distances(std::span<const uint8_t> taps, std::size_t scale) : count(taps.size()) {
        for (std::size_t t = 0; t < taps.size(); ++t) {
            of[t] = scale * taps[t];
        }
    }
    std::size_t Smallest() const { return of[count - 1]; }
};

// Extends out[position, end) from the bytes before it, in blocks no longer
// than the smallest distance.
void ExtendBytes(std::span<Byte> out, std::size_t position, std::size_t end,
                 const Distances& distance, Byte invert) {
    Byte* data = out.data();
    while (position < end) {
        const std::size_t length = std::min(distance.Smallest(), end - position);
        Byte* dst = data + position;
        if (distance.count == 2) {
            XorTwo(dst, dst - distance.of[0], dst - distance.of[1], length, invert);
        } else {
            XorFour(dst, dst - distance.of[0], dst - distance.of[1], dst - distance.of[2],
                    dst - distance.of[3], length, invert);
        }
        position += length;
    }
}

// Extends out[position, end) with distances of at least one line: bytes up to
// the first line boundary of memory, whole lines, then the bytes left over.
void ExtendLines(std::span<Byte> out, std::size_t position, std::size_t end,
                 const Distances& distance, Byte invert) {
    const auto address = reinterpret_cast<std::uintptr_t>(out.data() + position);
    const std::size_t toBoundary = (kLineBytes - address % kLineBytes) % kLineBytes;
    const std::size_t linesStart = std::min(end, position + toBoundary);
    ExtendBytes(out, position, linesStart, distance, invert);

    const std::size_t lines = (end - linesStart) / kLineBytes;
    Byte* dst = out.data() + linesStart;
    if (distance.count == 2) {
        XorLinesTwo(dst, lines, distance.of[0], distance.of[1], invert);
    } else {
        XorLinesFour(dst, lines, distance.of[0], distance.of[1], distance.of[2], distance.of[3],
                     invert);
    }
    ExtendBytes(out, linesStart + lines * kLineBytes, end, distance, invert);
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
    // exist; each stage doubles the distances until the smallest reaches the
    // final one, which then runs to the end.
    const Byte flip = invert ? 1 : 0;
    std::size_t scale = 1;
    while (position < total) {
        const Distances distance(taps, scale);
        if (distance.Smallest() >= kFinalDistance) {
            ExtendLines(out, position, total, distance, flip);
            return;
        }
        const std::size_t stageEnd = std::min(total, 2 * scale * registerDegree);
        ExtendBytes(out, position, stageEnd, distance, flip);
        position = stageEnd;
        scale *= 2;
    }
}

}  // namespace kv
