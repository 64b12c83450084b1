#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "core/stimulus/RegisterFill.h"
#include "core/stimulus/ShiftRegister.h"

namespace {

using kv::ShiftRegister;

TEST(ShiftRegister, StartsFromHalfDegreeOnesAndClampsTheDegree) {
    EXPECT_EQ(ShiftRegister(3).state, 1u);
    EXPECT_EQ(ShiftRegister(5).state, 3u);
    EXPECT_EQ(ShiftRegister(7).state, 7u);
    EXPECT_EQ(ShiftRegister(2).degree, 3u);
    EXPECT_EQ(ShiftRegister(40).degree, 32u);
    EXPECT_EQ(ShiftRegister(40).tapMask, ShiftRegister(32).tapMask);
    // Taps 5 and 3 of degree 5 set bits 0 and 2.
    EXPECT_EQ(ShiftRegister(5).tapMask, 0b101u);
}

// A maximal-length register visits every non-zero state once per period, so
// its state first returns to the start after exactly 2^degree - 1 steps.
TEST(ShiftRegister, EveryTapSetHasMaximalPeriod) {
    for (int degree = 3; degree <= 24; ++degree) {
        ShiftRegister reg(degree);
        const uint32_t start = reg.state;
        const uint64_t period = (uint64_t{1} << degree) - 1;
        uint64_t steps = 0;
        do {
            reg.Step();
            ++steps;
        } while (reg.state != start && steps <= period);
        EXPECT_EQ(steps, period) << "degree " << degree;
    }
}

std::vector<uint8_t> Stepwise(int degree, std::size_t count, bool invert) {
    std::vector<uint8_t> out(count);
    kv::FillRegisterOutputStepwise(degree, out, invert);
    return out;
}

// The fill works in whole cache lines of memory, so where the buffer starts
// decides where the lines fall: here `offset` bytes into a larger buffer, no
// byte outside it may change, and every byte inside it is written.
std::vector<uint8_t> Blockwise(int degree, std::size_t count, bool invert, std::size_t offset = 0) {
    std::vector<uint8_t> storage(count + 128, 0x5A);
    const std::span<uint8_t> out(storage.data() + offset, count);
    kv::FillRegisterOutput(degree, out, invert);
    const auto untouched = [](uint8_t b) { return b == 0x5A; };
    const auto after = storage.begin() + static_cast<std::ptrdiff_t>(offset + count);
    EXPECT_TRUE(std::all_of(storage.begin(), storage.begin() + offset, untouched)) << degree;
    EXPECT_TRUE(std::all_of(after, storage.end(), untouched)) << degree;
    return {out.begin(), out.end()};
}

TEST(RegisterFill, BlockFillMatchesTheRegisterForEveryDegreeAndInversion) {
    for (int degree = 3; degree <= 32; ++degree) {
        const auto d = static_cast<std::size_t>(degree);
        // Around the degree, and long enough to pass through every doubling
        // stage into the final one.
        for (const std::size_t count :
             {std::size_t{0}, std::size_t{1}, d - 1, d, d + 1, 2 * d + 3, 140000 + d * 37}) {
            for (bool invert : {false, true}) {
                EXPECT_EQ(Blockwise(degree, count, invert, (d * 7 + count) % 64),
                          Stepwise(degree, count, invert))
                    << "degree " << degree << " count " << count << " invert " << invert;
            }
        }
    }
}

// Large outputs are written as two halves at once, and those too large for
// the caches past them. Checked without a second buffer of that size: the
// first outputs are the register's, and each later one is the XOR of those at
// the tap distances before it (inverted with the output, as the taps are even
// in number), which by induction makes every byte the register's, down to the
// last, partly filled block.
TEST(RegisterFill, LargeOutputsFollowTheRegisterToTheLastByte) {
    struct Case {
        int degree;
        bool invert;
        std::size_t count;
    };
    for (const Case& c : {Case{31, false, (std::size_t{8} << 20) + 1000},
                          Case{32, true, (std::size_t{64} << 20) + 1000}}) {
        const auto out = Blockwise(c.degree, c.count, c.invert);
        const std::size_t head = 4096;
        const auto expectedHead = Stepwise(c.degree, head, c.invert);
        ASSERT_TRUE(std::equal(expectedHead.begin(), expectedHead.end(), out.begin()));
        const std::span<const uint8_t> taps = kv::RegisterTaps(c.degree);
        std::size_t firstWrong = c.count;
        for (std::size_t i = head; i < c.count && firstWrong == c.count; ++i) {
            uint8_t expected = c.invert ? 1 : 0;
            for (const uint8_t tap : taps) {
                expected ^= out[i - tap];
            }
            if (out[i] != expected) {
                firstWrong = i;
            }
        }
        EXPECT_EQ(firstWrong, c.count) << "degree " << c.degree;
    }
}

}  // namespace
