#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "core/stimulus/Random.h"

namespace {

constexpr int32_t kModulus = 2147483647;

bool SameState(const kv::Ran1State& a, const kv::Ran1State& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Seed words that start the generator from the edges of its range: 1, the
// largest proper seed, the modulus itself, and 2^31 (the most negative word).
const std::vector<int32_t> kEdgeWords{-1,        -16807,   -12345, -91847437, -(kModulus - 1),
                                      -kModulus, INT32_MIN};

TEST(Random, BlocksGiveTheSingleDrawsAndStateForEdgeSeedsOverLongRuns) {
    constexpr std::size_t kDraws = 300000;
    for (const int32_t start : kEdgeWords) {
        int32_t single = start;
        std::vector<double> expected(kDraws);
        for (double& u : expected) {
            u = kv::Ran1(single);
        }
        const kv::Ran1State after = kv::SaveRan1State();

        // Pieces of odd sizes cross the blocks' boundaries everywhere.
        int32_t word = start;
        std::vector<int32_t> raw(kDraws);
        std::size_t done = 0;
        for (std::size_t piece = 1; done < kDraws; piece = piece * 3 + 1) {
            const std::size_t count = std::min(piece, kDraws - done);
            kv::Ran1Raw(word, std::span(raw.data() + done, count));
            done += count;
        }
        for (std::size_t i = 0; i < kDraws; ++i) {
            ASSERT_EQ(kv::RawToUniform(raw[i]), expected[i]) << "word " << start << " draw " << i;
        }
        EXPECT_EQ(word, single) << start;
        EXPECT_TRUE(SameState(after, kv::SaveRan1State())) << start;
    }
}

// Taken step by step, a restart from the modulus itself steps to 0 and fills
// the table with zeros: the first draw is 0, and the zero seed it leaves
// restarts the generator from 1 on the next draw.
TEST(Random, SeedEqualToTheModulusDrawsZeroThenFollowsSeedOne) {
    int32_t fromModulus = -kModulus;
    EXPECT_EQ(kv::Ran1(fromModulus), 0.0);
    std::vector<double> rest(50);
    for (double& u : rest) {
        u = kv::Ran1(fromModulus);
    }
    int32_t fromOne = -1;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        EXPECT_EQ(rest[i], kv::Ran1(fromOne)) << i;
    }
    // A positive word continues the shared table instead of restarting.
    int32_t continuing = 777;
    const double next = kv::Ran1(continuing);
    int32_t restarted = -777;
    EXPECT_NE(kv::Ran1(restarted), next);
}

}  // namespace
