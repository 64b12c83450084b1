#include "core/stimulus/RegisterFill.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/stimulus/ShiftRegister.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Why blocks work: a tap at position t feeds the bit that left the register t
// steps ago, so every output bit is the XOR of the outputs at the tap
// distances before it. Squaring the feedback polynomial over GF(2) doubles
// every distance, so the outputs also obey the same rule at distances 2^k * t,
// from output 2^k * degree on. Every tap set has an even number of taps, so a
// sequence whose bits are all inverted obeys the rule with one extra XOR by
// the inversion.
//
// The first outputs come from the register, the next ones from the rule in
// place, the distances doubling from stage to stage while they are short. At
// distances 512 * t the output is cut into blocks of 512 bits: bit p of block
// j lies exactly 512 * t bits after bit p of block j - t, so block j is the
// XOR of the blocks j - t, bit for bit, however the 512 bits are arranged
// inside a block. A ring of the last 32 blocks (2 KiB) is all the state that
// is needed, so no output is read back, and four taps cost what two do.

#if defined(__x86_64__) && defined(__GNUC__) && defined(__GLIBC__)
#define KV_WIDE_CLONES __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define KV_WIDE_CLONES
#endif

namespace kv {
namespace {

using Byte = uint8_t;

// One cache line of output. Its elements are 64-bit words because the widest
// vector units shift and mask those (bytes would need a further instruction
// set extension for the same width).
constexpr std::size_t kLineBytes = 64;
using Line = uint64_t __attribute__((vector_size(kLineBytes)));

// Times a byte, a word with that byte in each of its eight places.
constexpr uint64_t kEveryByte = 0x0101010101010101;

// A block holds the bits of eight lines: bit k of byte i of the block is the
// bit in byte i of line k. Unpacking a line is then one shift and one mask per
// word, and packing its inverse; the layout only has to be the same both ways.
constexpr std::size_t kLinesPerBlock = 8;
constexpr std::size_t kBlockBytes = kLinesPerBlock * kLineBytes;

// The last blocks, indexed by block number modulo the size; the largest tap
// (32) reads the slot that the new block is about to replace.
constexpr std::size_t kRingBlocks = 32;

// From this size on, twice the last-level cache one core of common processors
// reaches, the output cannot stay in the cache, so it is written past it:
// plain stores would first read every line in from memory only to overwrite
// it. Smaller outputs go through the cache, where the reader finds them and
// where streaming them out to memory would make the fill slower, not faster.
constexpr std::size_t kStreamFromBytes = std::size_t{64} << 20;

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

using BlockRing = std::array<Line, kRingBlocks>;

// Packs the block of output bytes at `bytes` (each 0 or 1) into `block`.
inline void PackBlock(const Byte* bytes, Line* block) {
    Line packed{};
    for (std::size_t k = 0; k < kLinesPerBlock; ++k) {
        Line line;
        std::memcpy(&line, bytes + k * kLineBytes, sizeof line);
        packed |= line << k;
    }
    *block = packed;
}

// Writes one line; the streaming form bypasses the caches.
template <bool kStream>
inline void StoreLine(Byte* dst, const Line& line) {
#if defined(__SSE2__)
    if constexpr (kStream) {
        constexpr std::size_t kParts = sizeof(Line) / sizeof(__m128i);
        __m128i parts[kParts];
        std::memcpy(parts, &line, sizeof line);
        for (std::size_t q = 0; q < kParts; ++q) {
            _mm_stream_si128(reinterpret_cast<__m128i*>(dst) + q, parts[q]);
        }
        return;
    }
#endif
    std::memcpy(dst, &line, sizeof line);
}

// Block j from the blocks j - t in the ring, kept there for the blocks after it.
inline void ComputeBlock(BlockRing& ring, std::size_t j, std::span<const uint8_t> taps,
                         const Line& flip, Line* block) {
    Line next = flip;
    for (const uint8_t tap : taps) {
        next ^= ring[(j - tap) % kRingBlocks];
    }
    ring[j % kRingBlocks] = next;
    *block = next;
}

// Extends out[start, end) in blocks; the bytes before `start` must hold at
// least `degree` blocks, and out.data() + start must be line-aligned. Between
// the output lines only the ring's block is stored, so that the stores, which
// wait for their lines to arrive from the caches or memory, can all be in
// flight together.
template <bool kStream>
KV_WIDE_CLONES void ExtendBlocks(std::span<Byte> out, std::size_t start,
                                 std::span<const uint8_t> taps, uint64_t invert) {
    const std::size_t degree = taps.front();
    BlockRing ring;
    for (std::size_t j = 0; j < degree; ++j) {
        PackBlock(out.data() + start - (degree - j) * kBlockBytes, &ring[j]);
    }

    const Line flip = Line{} + invert;
    const std::size_t blocks = (out.size() - start) / kBlockBytes;
    Byte* dst = out.data() + start;
    Line block;
    for (std::size_t j = degree; j < degree + blocks; ++j, dst += kBlockBytes) {
        ComputeBlock(ring, j, taps, flip, &block);
        for (std::size_t k = 0; k < kLinesPerBlock; ++k) {
            StoreLine<kStream>(dst + k * kLineBytes, (block >> k) & kEveryByte);
        }
    }
#if defined(__SSE2__)
    if constexpr (kStream) {
        // Streaming stores are weakly ordered; make them visible before the
        // caller hands the output on.
        _mm_sfence();
    }
#endif

    // The output ends inside the next block.
    ComputeBlock(ring, degree + blocks, taps, flip, &block);
    std::array<Line, kLinesPerBlock> lines;
    for (std::size_t k = 0; k < kLinesPerBlock; ++k) {
        lines[k] = (block >> k) & kEveryByte;
    }
    std::memcpy(dst, lines.data(), (out.size() - start) % kBlockBytes);
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
    // exist, so each stage doubles what the next can build on, up to the
    // block distances.
    const Byte flip = invert ? 1 : 0;
    std::size_t scale = 1;
    for (; scale < kBlockBytes && position < total; scale *= 2) {
        const std::size_t stageEnd = std::min(total, 2 * scale * registerDegree);
        ExtendBytes(out, position, stageEnd, Distances(taps, scale), flip);
        position = stageEnd;
    }

    // Bytes at block distances up to the first line boundary of memory, so
    // that every block line is one aligned store; then whole blocks.
    const auto address = reinterpret_cast<std::uintptr_t>(out.data() + position);
    const std::size_t toBoundary = (kLineBytes - address % kLineBytes) % kLineBytes;
    const std::size_t blocksStart = std::min(total, position + toBoundary);
    ExtendBytes(out, position, blocksStart, Distances(taps, kBlockBytes), flip);
    if (blocksStart == total) {
        return;
    }
    const uint64_t blockFlip = invert ? ~uint64_t{0} : 0;
    if (total >= kStreamFromBytes) {
        ExtendBlocks<true>(out, blocksStart, taps, blockFlip);
    } else {
        ExtendBlocks<false>(out, blocksStart, taps, blockFlip);
    }
}

}  // namespace kv
