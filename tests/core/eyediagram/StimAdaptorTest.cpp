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

// A stimulus and its ramps in ns.
struct Input {
    int kind;
    const char* bits;
    int cycles;
    double periodNs;
    double duty;
    double riseNs;
    double fallNs;
};

// The corner points as ns and volts in turn; none: refused.
struct WaveCase {
    Input in;
    std::vector<double> corners;
};

using namespace kv::seq;
const WaveCase kWaveCases[] = {
    // Data kinds ramp at changed boundaries only.
    {{kCustom, "0110", 2, 1.0, 50, 0.1, 0.2},
     {0, kLow, 1,   kLow,  1.1, kHigh, 3,   kHigh, 3.2, kLow,
      5, kLow, 5.1, kHigh, 7,   kHigh, 7.2, kLow,  8,   kLow}},
    // The last bit differs from the first: every later cycle begins with a ramp.
    {{kPrbs, "10", 2, 1.0, 50, 0.1, 0.1},
     {0, kHigh, 1, kHigh, 1.1, kLow, 2, kLow, 2.1, kHigh, 3, kHigh, 3.1, kLow, 4, kLow}},
    // A ramp as long as the period ends where the waveform ends: one corner.
    {{kCustom, "01", 1, 1.0, 50, 1.0, 1.0}, {0, kLow, 1, kLow, 2, kHigh}},
    {{kCustom, "111", 3, 2.0, 50, 0.1, 0.1}, {0, kHigh, 18, kHigh}},
    {{kToggling, "01", 2, 4.0, 25, 0.5, 0.5},
     {0, kHigh, 1, kHigh, 1.5, kLow, 4, kLow, 4.5, kHigh, 5, kHigh, 5.5, kLow, 8, kLow}},
    {{kPulse, "01", 2, 4.0, 25, 0.5, 0.5},
     {0, kHigh, 1, kHigh, 1.5, kLow, 4, kLow, 4.5, kHigh, 5, kHigh, 5.5, kLow, 8, kLow}},
    {{kEdge, "1", 3, 2.0, 50, 0.5, 0.25}, {0, kLow, 0.5, kHigh, 6, kHigh}},
    {{kEdge, "0", 3, 2.0, 50, 0.5, 0.25}, {0, kHigh, 0.25, kLow, 6, kLow}},
    // A rise longer than the high phase would overlap the fall.
    {{kToggling, "01", 2, 4.0, 25, 1.5, 0.5}, {}},
    {{kPulse, "01", 2, 4.0, 100, 0.5, 0.5}, {}},
    {{kCustom, "01", 1, 0.0, 50, 0.1, 0.1}, {}},
    {{kCustom, "01", 1, -1.0, 50, 0.1, 0.1}, {}},
    {{kCustom, "0110", 1, 1.0, 50, 1.5, 0.1}, {}},
    {{kCustom, "0110", 1, 1.0, 50, 0.1, 0.0}, {}},
    {{kCustom, "", 1, 1.0, 50, 0.1, 0.1}, {}},
};

// Refused input leaves no points from the build before.
TEST(StimAdaptor, EachKindGivesItsCornersAndRefusedInputClearsThePoints) {
    kv::CEyeStimAdaptor adaptor;
    auto good = Stimulus(kv::seq::kCustom, "0110", 1, 1.0);
    for (const WaveCase& c : kWaveCases) {
        ASSERT_GT(adaptor.Build(&good, 0, 1, 0.1 * kNs, 0.1 * kNs), 0);
        const Input& in = c.in;
        const std::string what = "case " + std::to_string(&c - kWaveCases);
        auto data = Stimulus(in.kind, in.bits, in.cycles, in.periodNs, in.duty);
        const int32_t count = adaptor.Build(&data, kLow, kHigh, in.riseNs * kNs, in.fallNs * kNs);
        if (c.corners.empty()) {
            EXPECT_EQ(count, -1) << what;
            EXPECT_EQ(adaptor.GetPointCount(), 0) << what;
            EXPECT_EQ(adaptor.GetPoints(), nullptr) << what;
            EXPECT_EQ(adaptor.GetDuration(), 0.0) << what;
            continue;
        }
        ASSERT_EQ(count, static_cast<int32_t>(c.corners.size() / 2)) << what;
        for (std::size_t i = 0; i < c.corners.size() / 2; ++i) {
            EXPECT_NEAR(adaptor.GetPoints()[i].time / kNs, c.corners[2 * i], 1e-9) << what << i;
            EXPECT_DOUBLE_EQ(adaptor.GetPoints()[i].level, c.corners[2 * i + 1]) << what << i;
        }
        EXPECT_NEAR(adaptor.GetDuration() / kNs, c.corners[c.corners.size() - 2], 1e-9) << what;
    }
    EXPECT_EQ(adaptor.Build(nullptr, 0, 1, 0.1 * kNs, 0.1 * kNs), -1);
    // 32768 cycles of 32768 toggling bits would need gigabytes: refused, not allocated.
    auto huge = Stimulus(kv::seq::kCustom, std::string(32768, '0'), 32768, 1.0);
    for (std::size_t i = 1; i < huge.m_bits.size(); i += 2) {
        huge.m_bits[i] = 1;
    }
    EXPECT_EQ(adaptor.Build(&huge, 0, 1, 0.1 * kNs, 0.1 * kNs), -1);
    ASSERT_GT(adaptor.Build(&good, 0, 1, 0.1 * kNs, 0.1 * kNs), 0);
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
    // A comment line first, so the text serves as an included file and as a
    // netlist of its own.
    EXPECT_EQ(ReadText(path),
              "* Stimulus waveform, 10 points\nVIN n1 0 PWL(\n+ 0 0 1e-09 0 1.1e-09 1 3e-09 1\n"
              "+ 3.2e-09 0 5e-09 0 5.1e-09 1 7e-09 1\n+ 7.2e-09 0 8e-09 0\n+ )\n");

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
