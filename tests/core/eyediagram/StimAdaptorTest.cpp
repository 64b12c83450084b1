#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "tests/support/TestSupport.h"

namespace {

constexpr double kNs = 1e-9;
constexpr double kLow = -0.5;
constexpr double kHigh = 3.3;

kv::CStimulusData Stimulus(int seqType, const std::string& bits, int cycles, double periodNs,
                           double dutyPercent = 50.0) {
    kv::CStimulusData data;
    data.SetSeqType(seqType);
    kv::BitVector vector;
    for (const char c : bits) {
        vector.push_back(c == '1' ? 1 : 0);
    }
    data.SetBitVector(vector);
    data.SetCycleCount(cycles);
    data.SetPeriod(periodNs);
    data.SetDutyCycle(dutyPercent);
    return data;
}

// Corner points as (ns, volts) pairs.
std::vector<std::pair<double, double>> PointsOf(const kv::CEyeStimAdaptor& adaptor) {
    std::vector<std::pair<double, double>> points;
    for (int i = 0; i < adaptor.GetPointCount(); ++i) {
        points.emplace_back(adaptor.GetPoints()[i].time / kNs, adaptor.GetPoints()[i].level);
    }
    return points;
}

void ExpectPoints(const kv::CEyeStimAdaptor& adaptor,
                  const std::vector<std::pair<double, double>>& expected) {
    const auto points = PointsOf(adaptor);
    ASSERT_EQ(points.size(), expected.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_NEAR(points[i].first, expected[i].first, 1e-9) << "point " << i;
        EXPECT_DOUBLE_EQ(points[i].second, expected[i].second) << "point " << i;
    }
    EXPECT_NEAR(adaptor.GetDuration() / kNs, expected.back().first, 1e-9);
}

TEST(StimAdaptor, DataKindsRampAtChangedBoundariesOnly) {
    kv::CEyeStimAdaptor adaptor;
    auto data = Stimulus(kv::seq::kCustom, "0110", 2, 1.0);
    EXPECT_EQ(adaptor.Build(&data, kLow, kHigh, 0.1 * kNs, 0.2 * kNs), 10);
    ExpectPoints(adaptor, {{0, kLow},
                           {1, kLow},
                           {1.1, kHigh},
                           {3, kHigh},
                           {3.2, kLow},
                           {5, kLow},
                           {5.1, kHigh},
                           {7, kHigh},
                           {7.2, kLow},
                           {8, kLow}});

    // The last bit differs from the first: every later cycle begins with a ramp.
    data = Stimulus(kv::seq::kPrbs, "10", 2, 1.0);
    EXPECT_EQ(adaptor.Build(&data, kLow, kHigh, 0.1 * kNs, 0.1 * kNs), 8);
    ExpectPoints(adaptor, {{0, kHigh},
                           {1, kHigh},
                           {1.1, kLow},
                           {2, kLow},
                           {2.1, kHigh},
                           {3, kHigh},
                           {3.1, kLow},
                           {4, kLow}});

    // A ramp as long as the period ends where the waveform ends: one corner.
    data = Stimulus(kv::seq::kCustom, "01", 1, 1.0);
    EXPECT_EQ(adaptor.Build(&data, kLow, kHigh, 1.0 * kNs, 1.0 * kNs), 3);
    ExpectPoints(adaptor, {{0, kLow}, {1, kLow}, {2, kHigh}});

    // A flat sequence is its two ends.
    data = Stimulus(kv::seq::kCustom, "111", 3, 2.0);
    EXPECT_EQ(adaptor.Build(&data, kLow, kHigh, 0.1 * kNs, 0.1 * kNs), 2);
    ExpectPoints(adaptor, {{0, kHigh}, {18, kHigh}});
}

TEST(StimAdaptor, OscillatorPulseAndEdge) {
    kv::CEyeStimAdaptor adaptor;
    for (const int kind : {kv::seq::kToggling, kv::seq::kPulse}) {
        auto data = Stimulus(kind, "01", 2, 4.0, 25.0);
        EXPECT_EQ(adaptor.Build(&data, kLow, kHigh, 0.5 * kNs, 0.5 * kNs), 8);
        ExpectPoints(adaptor, {{0, kHigh},
                               {1, kHigh},
                               {1.5, kLow},
                               {4, kLow},
                               {4.5, kHigh},
                               {5, kHigh},
                               {5.5, kLow},
                               {8, kLow}});
        // A rise longer than the high phase would overlap the fall.
        EXPECT_EQ(adaptor.Build(&data, kLow, kHigh, 1.5 * kNs, 0.5 * kNs), -1);
        data.SetDutyCycle(100.0);
        EXPECT_EQ(adaptor.Build(&data, kLow, kHigh, 0.5 * kNs, 0.5 * kNs), -1);
    }

    auto rising = Stimulus(kv::seq::kEdge, "1", 3, 2.0);
    EXPECT_EQ(adaptor.Build(&rising, kLow, kHigh, 0.5 * kNs, 0.25 * kNs), 3);
    ExpectPoints(adaptor, {{0, kLow}, {0.5, kHigh}, {6, kHigh}});
    auto falling = Stimulus(kv::seq::kEdge, "0", 3, 2.0);
    EXPECT_EQ(adaptor.Build(&falling, kLow, kHigh, 0.5 * kNs, 0.25 * kNs), 3);
    ExpectPoints(adaptor, {{0, kHigh}, {0.25, kLow}, {6, kLow}});
}

TEST(StimAdaptor, RefusedInputClearsThePoints) {
    kv::CEyeStimAdaptor adaptor;
    auto good = Stimulus(kv::seq::kCustom, "0110", 1, 1.0);
    const auto rebuild = [&] { ASSERT_GT(adaptor.Build(&good, 0, 1, 0.1 * kNs, 0.1 * kNs), 0); };
    const auto expectCleared = [&](int32_t result) {
        EXPECT_EQ(result, -1);
        EXPECT_EQ(adaptor.GetPointCount(), 0);
        EXPECT_EQ(adaptor.GetPoints(), nullptr);
        EXPECT_EQ(adaptor.GetDuration(), 0.0);
    };
    rebuild();
    expectCleared(adaptor.Build(nullptr, 0, 1, 0.1 * kNs, 0.1 * kNs));
    for (const double period : {0.0, -1.0}) {
        auto data = Stimulus(kv::seq::kCustom, "01", 1, period);
        rebuild();
        expectCleared(adaptor.Build(&data, 0, 1, 0.1 * kNs, 0.1 * kNs));
    }
    rebuild();
    expectCleared(adaptor.Build(&good, 0, 1, 1.5 * kNs, 0.1 * kNs));
    rebuild();
    expectCleared(adaptor.Build(&good, 0, 1, 0.1 * kNs, 0.0));
    auto empty = Stimulus(kv::seq::kCustom, "", 1, 1.0);
    rebuild();
    expectCleared(adaptor.Build(&empty, 0, 1, 0.1 * kNs, 0.1 * kNs));
    // 32768 cycles of 32768 toggling bits would need gigabytes: refused, not allocated.
    auto huge = Stimulus(kv::seq::kCustom, std::string(32768, '0'), 32768, 1.0);
    for (std::size_t i = 1; i < huge.m_bits.size(); i += 2) {
        huge.m_bits[i] = 1;
    }
    rebuild();
    expectCleared(adaptor.Build(&huge, 0, 1, 0.1 * kNs, 0.1 * kNs));
    rebuild();
    adaptor.Clear();
    EXPECT_EQ(adaptor.GetPointCount(), 0);
}

TEST(StimAdaptor, WritePwlIsOneSourceAndRefusesBadArguments) {
    const TestFolder folder;
    kv::CEyeStimAdaptor adaptor;
    const std::string path = folder.File("stim.cir");
    EXPECT_FALSE(adaptor.WritePwl(path.c_str(), "IN", "n1"));  // nothing built yet
    auto data = Stimulus(kv::seq::kCustom, "0110", 2, 1.0);
    ASSERT_EQ(adaptor.Build(&data, 0, 1, 0.1 * kNs, 0.2 * kNs), 10);
    ASSERT_TRUE(adaptor.WritePwl(path.c_str(), "IN", "n1"));
    const std::string text = ReadText(path);
    EXPECT_NE(text.find("\nVIN n1 0 PWL(\n+ 0 0 1e-09 0 1.1e-09 1 3e-09 1\n+ "), std::string::npos)
        << text;
    EXPECT_NE(text.find("7.2e-09 0 8e-09 0\n+ )\n"), std::string::npos) << text;

    WriteText(path, "kept");
    EXPECT_FALSE(adaptor.WritePwl(path.c_str(), "IN", "two words"));
    EXPECT_FALSE(adaptor.WritePwl(path.c_str(), "", "n1"));
    EXPECT_FALSE(adaptor.WritePwl(path.c_str(), nullptr, "n1"));
    EXPECT_FALSE(adaptor.WritePwl(nullptr, "IN", "n1"));
    EXPECT_EQ(ReadText(path), "kept");
    EXPECT_FALSE(adaptor.WritePwl(folder.File("missing/stim.cir").c_str(), "IN", "n1"));
    EXPECT_FALSE(std::filesystem::exists(folder.File("missing")));
}

}  // namespace
