#include "core/stimulus/RegisterFill.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/shared/WideClones.h"
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

// From this size on the output is written as two runs at once, its first and
// its second half. Once most lines come from memory rather than the cache,
// two runs keep more of the memory busy than one; while they come from the
// cache, one run is faster. On a core with a 32 MiB last-level cache shared
// with others, 8 MiB still came from the cache and 16 MiB no longer did.
constexpr std::size_t kTwoRunsFromBytes = std::size_t{8} << 20;

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

// Computes block j into the ring and writes its lines to `dst`.
template <bool kStream, std::size_t kTaps>
inline void WriteBlock(BlockRing& ring, std::size_t j, const BlockTaps<kTaps>& taps,
                       uint64_t invert, Byte* dst) {
    alignas(kLineBytes) Words block;
    ComputeBlock(ring, j, taps, invert, block);
    for (std::size_t k = 0; k < kLinesPerBlock; ++k) {
        WriteLine<kStream>(block, k, dst + k * kLineBytes);
    }
}

// x^power modulo C(x) = x^n + the sum of x^(n - t) over the taps t, over
// GF(2), as the mask of its n coefficients. The blocks of the uninverted
// output obey B[j] = XOR of B[j - t], that is C(E) B = 0 with E the step to
// the next block; so with x^m = R(x) modulo C(x), B[j + m] is the XOR of the
// B[j + i] for the coefficients i set in R.
template <std::size_t kTaps>
uint64_t PowerOfXModulo(std::size_t power, const BlockTaps<kTaps>& taps) {
    const std::size_t n = taps.front();
    uint64_t modulus = uint64_t{1} << n;
    for (const std::size_t tap : taps) {
        modulus |= uint64_t{1} << (n - tap);
    }
    // Products have degree at most 2n - 2 = 62, so they fit in a word.
    const auto multiply = [n, modulus](uint64_t a, uint64_t b) {
        uint64_t product = 0;
        for (std::size_t i = 0; i < n; ++i) {
            if ((b >> i) & 1u) {
                product ^= a << i;
            }
        }
        for (std::size_t i = 2 * n - 2; i >= n; --i) {
            if ((product >> i) & 1u) {
                product ^= modulus << (i - n);
            }
        }
        return product;
    };
    uint64_t result = 1;
    uint64_t square = 2;  // x, already reduced as n >= 3
    for (; power != 0; power >>= 1) {
        if ((power & 1u) != 0) {
            result = multiply(result, square);
        }
        square = multiply(square, square);
    }
    return result;
}

// The ring as it will be `distance` blocks on: from `ring`, which holds the
// n blocks before block `next`, fills `ahead` with the n blocks before block
// next + distance, without computing the blocks in between. The inversion is
// taken out first (with an even number of taps the inverted blocks obey the
// rule only with an extra XOR), and put back into the result.
template <std::size_t kTaps>
void JumpAhead(const BlockRing& ring, std::size_t next, std::size_t distance,
               const BlockTaps<kTaps>& taps, uint64_t invert, BlockRing& ahead) {
    const std::size_t n = taps.front();
    // Blocks next - n to next + n - 2: n known ones and n - 1 computed on.
    std::array<Words, 2 * kRingBlocks> window;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t m = 0; m < kLineWords; ++m) {
            window[i][m] = ring[(next - n + i) % kRingBlocks][m] ^ invert;
        }
    }
    for (std::size_t i = n; i < 2 * n - 1; ++i) {
        window[i] = Words{};
        for (const std::size_t tap : taps) {
            for (std::size_t m = 0; m < kLineWords; ++m) {
                window[i][m] ^= window[i - tap][m];
            }
        }
    }
    const uint64_t picks = PowerOfXModulo(distance, taps);
    for (std::size_t r = 0; r < n; ++r) {
        Words& block = ahead[(next + distance - n + r) % kRingBlocks];
        block.fill(invert);
        for (std::size_t i = 0; i < n; ++i) {
            if ((picks >> i) & 1u) {
                for (std::size_t m = 0; m < kLineWords; ++m) {
                    block[m] ^= window[r + i][m];
                }
            }
        }
    }
}

// Fills `out` from `start` to its end in blocks; the bytes before `start`
// must hold at least `degree` blocks, and out.data() + start must be
// line-aligned. Between the output lines only the ring's block is stored, so
// that the stores, which wait for their lines to arrive from the caches or
// memory, can all be in flight together.
template <bool kStream, std::size_t kTaps>
KV_WIDE_CLONES void WriteBlocks(std::span<Byte> out, std::size_t start,
                                const BlockTaps<kTaps>& taps, uint64_t invert) {
    const std::size_t degree = taps.front();
    alignas(kLineBytes) BlockRing ring;
    for (std::size_t j = 0; j < degree; ++j) {
        PackBlock(out.data() + start - (degree - j) * kBlockBytes, ring[j]);
    }

    const std::size_t blocks = (out.size() - start) / kBlockBytes;
    Byte* dst = out.data() + start;
    alignas(kLineBytes) BlockRing secondHalf;
    BlockRing* last = &ring;
    if (out.size() >= kTwoRunsFromBytes) {
        const std::size_t half = blocks / 2;
        JumpAhead(ring, degree, half, taps, invert, secondHalf);
        for (std::size_t i = 0; i < half; ++i) {
            WriteBlock<kStream>(ring, degree + i, taps, invert, dst + i * kBlockBytes);
            WriteBlock<kStream>(secondHalf, degree + half + i, taps, invert,
                                dst + (half + i) * kBlockBytes);
        }
        if (blocks % 2 != 0) {
            WriteBlock<kStream>(secondHalf, degree + blocks - 1, taps, invert,
                                dst + (blocks - 1) * kBlockBytes);
        }
        last = &secondHalf;
    } else {
        for (std::size_t i = 0; i < blocks; ++i) {
            WriteBlock<kStream>(ring, degree + i, taps, invert, dst + i * kBlockBytes);
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
    alignas(kLineBytes) std::array<Byte, kBlockBytes> part;
    WriteBlock<false>(*last, degree + blocks, taps, invert, part.data());
    std::memcpy(dst + blocks * kBlockBytes, part.data(), (out.size() - start) % kBlockBytes);
}

// WriteBlocks with the stores that suit the size of the output.
template <std::size_t kTaps>
void ExtendBlocks(std::span<Byte> out, std::size_t start, const BlockTaps<kTaps>& taps,
                  uint64_t invert) {
    if (out.size() >= kStreamFromBytes) {
        WriteBlocks<true>(out, start, taps, invert);
    } else {
        WriteBlocks<false>(out, start, taps, invert);
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
    if (taps.size() == 2) {
        ExtendBlocks(out, blocksStart, BlockTaps<2>{taps[0], taps[1]}, blockFlip);
    } else {
        ExtendBlocks(out, blocksStart, BlockTaps<4>{taps[0], taps[1], taps[2], taps[3]}, blockFlip);
    }
}

}  // namespace kv
