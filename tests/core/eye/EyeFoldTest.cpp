// The fold reads the trace as lines between its samples: how densely it was
// sampled does not change the eye.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "core/eye/EyeFold.h"

namespace {

constexpr double kInterval = 1e-9;

// A triangle wave from 0 V up to 1 V and back every two intervals, by its
// corners alone or with `between` more samples in every interval, spaced
// unevenly along the same lines.
struct Triangle {
    std::vector<double> time;
    std::vector<double> volts;

    explicit Triangle(int between) {
        for (int k = 0; k <= 4; ++k) {
            for (int i = 0; i <= (k < 4 ? between : 0); ++i) {
                const double x = k + static_cast<double>(i * i) / ((between + 1) * (between + 1));
                time.push_back(x * kInterval);
                volts.push_back(k % 2 == 0 ? x - k : k + 1 - x);
            }
        }
    }
    kv::EyeTrace Trace() const { return {time, volts}; }
};

std::vector<uint32_t> Fold(const kv::EyeTrace& trace, const kv::EyeGrid& grid, int eyes) {
    std::vector<uint32_t> density(static_cast<std::size_t>(grid.width) * grid.height);
    const kv::EyeFrame frame{kInterval, eyes, 0.0, 0.0, 4 * kInterval};
    EXPECT_TRUE(kv::FoldEye(trace, frame, grid, density).has_value());
    return density;
}

TEST(EyeFold, CornersAloneDrawTheSameContinuousTraceAsDenseSamples) {
    const kv::EyeGrid grid{200, 50, -0.01, 1.01};
    for (const int eyes : {1, 2}) {
        const std::vector<uint32_t> corners = Fold(Triangle(0).Trace(), grid, eyes);
        const std::vector<uint32_t> dense = Fold(Triangle(997).Trace(), grid, eyes);
        int64_t differ = 0;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            differ += corners[i] != dense[i];
        }
        EXPECT_LE(differ, 4) << eyes << " eyes";  // a point on a row boundary
        // Every column of every window holds exactly one point.
        for (int column = 0; column < grid.width; ++column) {
            uint32_t sum = 0;
            for (int row = 0; row < grid.height; ++row) {
                sum += corners[static_cast<std::size_t>(row) * grid.width + column];
            }
            EXPECT_EQ(sum, 4u / eyes) << "column " << column;
        }
    }
}

TEST(EyeFold, RefusesADensityOfAnotherSizeAndLeavesItAlone) {
    const kv::EyeGrid grid{10, 10, 0.0, 1.0};
    std::vector<uint32_t> density(100, 7);
    const kv::EyeFrame frame{kInterval, 1, 0.0, 0.0, 4 * kInterval};
    EXPECT_FALSE(kv::FoldEye(Triangle(0).Trace(), frame, grid, std::span(density).first(99)));
    EXPECT_EQ(density, std::vector<uint32_t>(100, 7));
}

}  // namespace
