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

// One cache line of output, or one block of packed bits, as 64-bit words: the
// widest vector units shift and mask those (bytes would need a further
// instruction set extension for the same width). Loops over the words let the
// compiler use the vector width of each target; a fixed 64-byte vector type is
// taken apart through memory where the registers are narrower.
constexpr std::size_t kLineBytes = 64;
constexpr std::size_t kLineWords = kLineBytes / sizeof(uint64_t);
using Words = std::array<uint64_t, kLineWords>;

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

using BlockRing = std::array<Words, kRingBlocks>;

// Packs the block of output bytes at `bytes` (each 0 or 1) into `block`.
inline void PackBlock(const Byte* bytes, Words& block) {
    block = Words{};
    for (std::size_t k = 0; k < kLinesPerBlock; ++k) {
        for (std::size_t m = 0; m < kLineWords; ++m) {
            uint64_t word;
            std::memcpy(&word, bytes + k * kLineBytes + m * sizeof word, sizeof word);
            block[m] |= word << k;
        }
    }
}

// Writes line k of a block, bit k of each of its bytes as a byte 0 or 1, to
// `dst`; the streaming form bypasses the caches.
template <bool kStream>
inline void WriteLine(const Words& block, std::size_t k, Byte* dst) {
#if defined(__SSE2__)
    if constexpr (kStream) {
        const __m128i everyByte = _mm_set1_epi64x(static_cast<long long>(kEveryByte));
        for (std::size_t m = 0; m < kLineWords; m += 2) {
            const __m128i words = _mm_load_si128(reinterpret_cast<const __m128i*>(&block[m]));
            _mm_stream_si128(reinterpret_cast<__m128i*>(dst + m * sizeof(uint64_t)),
                             _mm_and_si128(_mm_srli_epi64(words, static_cast<int>(k)), everyByte));
        }
        return;
    }
#endif
    for (std::size_t m = 0; m < kLineWords; ++m) {
        const uint64_t word = (block[m] >> k) & kEveryByte;
        std::memcpy(dst + m * sizeof word, &word, sizeof word);
    }
}

// The taps of a degree as numbers of blocks, their count known to the
// compiler so that a block is a straight run of XORs.
template <std::size_t kTaps>
using BlockTaps = std::array<std::size_t, kTaps>;

// Block j from the blocks j - t in the ring, kept there for the blocks after it.
template <std::size_t kTaps>
inline void ComputeBlock(BlockRing& ring, std::size_t j, const BlockTaps<kTaps>& taps,
                         uint64_t invert, Words& block) {
    for (std::size_t m = 0; m < kLineWords; ++m) {
        uint64_t word = invert;
        for (std::size_t t = 0; t < kTaps; ++t) {
            word ^= ring[(j - taps[t]) % kRingBlocks][m];
        }
        block[m] = word;
    }
    // Word by word: a copy of the whole array goes through memory.
    for (std::size_t m = 0; m < kLineWords; ++m) {
        ring[j % kRingBlocks][m] = block[m];
    }
}

// Extends out[start, end) in blocks; the bytes before `start` must hold at
// least `degree` blocks, and out.data() + start must be line-aligned. Between
// the output lines only the ring's block is stored, so that the stores, which
// wait for their lines to arrive from the caches or memory, can all be in
// flight together.
template <bool kStream, std::size_t kTaps>
KV_WIDE_CLONES void ExtendBlocks(std::span<Byte> out, std::size_t start,
                                 const BlockTaps<kTaps>& taps, uint64_t invert) {
    const std::size_t degree = taps.front();
    alignas(kLineBytes) BlockRing ring;
    for (std::size_t j = 0; j < degree; ++j) {
        PackBlock(out.data() + start - (degree - j) * kBlockBytes, ring[j]);
    }

    const std::size_t blocks = (out.size() - start) / kBlockBytes;
    Byte* dst = out.data() + start;
    alignas(kLineBytes) Words block;
    for (std::size_t j = degree; j < degree + blocks; ++j, dst += kBlockBytes) {
        ComputeBlock(ring, j, taps, invert, block);
        for (std::size_t k = 0; k < kLinesPerBlock; ++k) {
            WriteLine<kStream>(block, k, dst + k * kLineBytes);
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
    ComputeBlock(ring, degree + blocks, taps, invert, block);
    std::array<Byte, kBlockBytes> last;
    for (std::size_t k = 0; k < kLinesPerBlock; ++k) {
        WriteLine<false>(block, k, last.data() + k * kLineBytes);
    }
    std::memcpy(dst, last.data(), (out.size() - start) % kBlockBytes);
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
    const bool stream = total >= kStreamFromBytes;
    if (taps.size() == 2) {
        const BlockTaps<2> blockTaps{taps[0], taps[1]};
        stream ? ExtendBlocks<true>(out, blocksStart, blockTaps, blockFlip)
               : ExtendBlocks<false>(out, blocksStart, blockTaps, blockFlip);
    } else {
        const BlockTaps<4> blockTaps{taps[0], taps[1], taps[2], taps[3]};
        stream ? ExtendBlocks<true>(out, blocksStart, blockTaps, blockFlip)
               : ExtendBlocks<false>(out, blocksStart, blockTaps, blockFlip);
    }
}

}  // namespace kv
