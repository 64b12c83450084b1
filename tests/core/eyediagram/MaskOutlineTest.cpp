// The eye mask placed on the eye and the waveform the stimulus page previews,
// against corner points worked by hand.

#include <gtest/gtest.h>

#include <vector>

#include "core/eyediagram/MaskOutline.h"
#include "core/eyediagram/WaveformPreview.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/SequenceType.h"

namespace {

constexpr double kNs = 1e-9;

// Points as (ns, volts).
struct Expected {
    double ns;
    double volts;
};

void ExpectPolyline(const std::vector<VEC2>& points, const std::vector<Expected>& expected) {
    ASSERT_EQ(points.size(), expected.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_NEAR(points[i].x / kNs, expected[i].ns, 1e-9) << "point " << i;
        EXPECT_NEAR(points[i].y, expected[i].volts, 1e-12) << "point " << i;
    }
}

void ExpectWaveform(const std::vector<STIMPOINT>& points, const std::vector<Expected>& expected) {
    std::vector<VEC2> asVectors;
    for (const STIMPOINT& point : points) {
        asVectors.push_back({point.time, point.level});
    }
    ExpectPolyline(asVectors, expected);
}

TEST(MaskOutline, ScaledAboutTheOriginThenOffset) {
    EYEMASK mask = kv::DefaultEyeMask();
    mask.ScaleTime = 2.0;
    mask.ScaleVolt = 0.5;
    mask.OffsetTime = 50;  // half an interval
    mask.OffsetVolt = -1.0;
    // t = 2 ns * (50 + 2 T) / 100, v = -1 + 0.5 P
    const kv::MaskOutline outline = kv::BuildMaskOutline(mask, 2 * kNs);
    ExpectPolyline(outline.opening, {{1.4, 0.25},
                                     {1.8, 1.25},
                                     {4.6, 1.25},
                                     {5.0, 0.25},
                                     {4.6, -0.75},
                                     {1.8, -0.75},
                                     {1.4, 0.25}});
    ExpectPolyline(outline.topLimit, {{1.0, 1.75}, {5.4, 1.75}});
    ExpectPolyline(outline.baseLimit, {{1.0, -1.25}, {5.4, -1.25}});
    ExpectPolyline(outline.firstCrossing, {{1.0, 0.25}, {1.4, 0.25}});
    ExpectPolyline(outline.secondCrossing, {{5.0, 0.25}, {5.4, 0.25}});
}

TEST(WaveformPreview, TogglingShapedByTheDutyCycle) {
    const std::vector<uint8_t> bits{1, 0};
    kv::PreviewInput input;
    input.bits = bits;
    input.seqType = kv::seq::kToggling;
    input.periodNs = 4.0;
    input.dutyPercent = 25.0;
    input.cycleCount = 2;
    // Ramps of 0.4 ns: a tenth of the interval is shorter than half of 1 ns.
    ExpectWaveform(kv::BuildWaveformPreview(input),
                   {{0, 5}, {1, 5}, {1.4, 0}, {4, 0}, {4.4, 5}, {5, 5}, {5.4, 0}, {8, 0}});
    input.dutyPercent = 1.0;  // ramps shrink to half of the 0.04 ns high phase
    EXPECT_NEAR(kv::PreviewRampTime(input.seqType, 4.0, 1.0) / kNs, 0.02, 1e-12);
    EXPECT_FALSE(kv::BuildWaveformPreview(input).empty());
    EXPECT_NEAR(kv::PreviewRampTime(kv::seq::kPrbs, 4.0, 1.0) / kNs, 0.4, 1e-12);
}

TEST(WaveformPreview, LongStimuliAreCutToWholeCyclesAndBadValuesGiveNothing) {
    EXPECT_EQ(kv::PreviewCycleCount(100, 1000), 65);
    EXPECT_EQ(kv::PreviewCycleCount(3, 1000), 3);
    EXPECT_EQ(kv::PreviewCycleCount(5, 100000), 1);
    EXPECT_EQ(kv::PreviewCycleCount(0, 10), 0);

    const std::vector<uint8_t> bits(1000, 0);
    kv::PreviewInput input;
    input.bits = bits;
    input.seqType = kv::seq::kPrbs;
    input.periodNs = 1.0;
    input.cycleCount = 100;
    const std::vector<STIMPOINT> cut = kv::BuildWaveformPreview(input);
    ASSERT_FALSE(cut.empty());
    EXPECT_NEAR(cut.back().time / kNs, 65000.0, 1e-6);

    const std::vector<uint8_t> toggle{1, 0};
    input.bits = toggle;
    input.seqType = kv::seq::kToggling;
    input.cycleCount = 100000;  // one interval per cycle
    EXPECT_NEAR(kv::BuildWaveformPreview(input).back().time / kNs, 65536.0, 1e-6);

    input.periodNs = 0.0;
    EXPECT_TRUE(kv::BuildWaveformPreview(input).empty());
    input.periodNs = 1.0;
    input.bits = {};
    EXPECT_TRUE(kv::BuildWaveformPreview(input).empty());
}

}  // namespace
