#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/AppProfile.h"
#include "core/stimulus/Random.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "tests/support/TestSupport.h"

namespace {

constexpr double kNs = 1e-9;
constexpr double kRamp = 0.1 * kNs;

// `cycles` repetitions of "01" at 1 ns: an edge at every bit boundary from
// 1 ns on, 2 * cycles - 1 of them.
kv::CStimulusData Toggling(int cycles) {
    kv::CStimulusData data;
    data.SetSeqType(kv::seq::kCustom);
    data.SetBitVector({0, 1});
    data.SetCycleCount(cycles);
    data.SetPeriod(1.0);
    data.SetMaxJitter(0.0);
    return data;
}

std::vector<STIMPOINT> Points(const kv::CEyeStimAdaptor& adaptor) {
    return {adaptor.GetPoints(), adaptor.GetPoints() + adaptor.GetPointCount()};
}

// How far each edge of a Toggling waveform starts from its bit boundary, in
// seconds; every edge must have kept both of its corners.
std::vector<double> Displacements(const kv::CEyeStimAdaptor& adaptor, int cycles) {
    const std::vector<STIMPOINT> points = Points(adaptor);
    const std::size_t edges = static_cast<std::size_t>(2 * cycles - 1);
    EXPECT_EQ(points.size(), 2 * edges + 2);
    std::vector<double> shifts;
    for (std::size_t k = 0; k < edges && 1 + 2 * k < points.size(); ++k) {
        shifts.push_back(points[1 + 2 * k].time - static_cast<double>(k + 1) * kNs);
    }
    return shifts;
}

struct Moments {
    double mean = 0;
    double rms = 0;  // about zero
    double variance = 0;
};

Moments MomentsOf(const std::vector<double>& values) {
    Moments m;
    for (const double v : values) {
        m.mean += v;
        m.rms += v * v;
    }
    m.mean /= static_cast<double>(values.size());
    m.rms = std::sqrt(m.rms / static_cast<double>(values.size()));
    m.variance = m.rms * m.rms - m.mean * m.mean;
    return m;
}

TEST(StimJitter, WithoutJitterTheWaveformIsBuilds) {
    kv::CEyeStimAdaptor adaptor;
    std::vector<kv::CStimulusData> stimuli;
    for (const int type : {0, 1, 2}) {  // simple jitter of every kind, magnitude 0
        stimuli.push_back(Toggling(3));
        stimuli.back().SetJitterType(type);
    }
    // Advanced jitter ignores the simple magnitude; its components are off
    // or zero.
    stimuli.push_back(Toggling(3));
    stimuli.back().SetMaxJitter(0.3);
    stimuli.back().SetAdvancedJitter(true);
    stimuli.push_back(stimuli.back());
    for (int component = 0; component < 3; ++component) {
        stimuli.back().SetAddJitter(component, true);
    }
    stimuli.back().SetMaxJitter(0.0);
    for (const int kind : {kv::seq::kToggling, kv::seq::kEdge}) {
        stimuli.push_back(Toggling(3));
        stimuli.back().SetSeqType(kind);
    }
    for (std::size_t i = 0; i < stimuli.size(); ++i) {
        ASSERT_GT(adaptor.Build(&stimuli[i], -1, 2, kRamp, 2 * kRamp), 0) << i;
        const std::vector<STIMPOINT> built = Points(adaptor);
        ASSERT_EQ(adaptor.BuildJittered(&stimuli[i], -1, 2, kRamp, 2 * kRamp),
                  static_cast<int32_t>(built.size()))
            << i;
        const std::vector<STIMPOINT> jittered = Points(adaptor);
        for (std::size_t p = 0; p < built.size(); ++p) {
            EXPECT_EQ(jittered[p].time, built[p].time) << i << " point " << p;
            EXPECT_EQ(jittered[p].level, built[p].level) << i << " point " << p;
        }
    }
}

TEST(StimJitter, RepeatableJitterDrawsFromTheStoredSeed) {
    kv::ModuleProfile().registryKey = "Velmorine";
    const TestFolder folder;
    const std::string first = folder.File("first.cir");
    const std::string second = folder.File("second.cir");
    kv::CEyeStimAdaptor adaptor;
    auto data = Toggling(50);
    data.SetAdvancedJitter(true);
    data.SetAddJitter(0, true);
    data.SetMaxJitter(5.0);  // percent of the bit interval
    data.SetAddJitter(1, true);
    data.SetUniformMag(0.1);
    data.SetJitterAsTime(1, true);  // ns
    const auto write = [&](const std::string& path) {
        ASSERT_GT(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), 0);
        ASSERT_TRUE(adaptor.WritePwl(path.c_str(), "STIM", "in"));
    };

    auto store = kv::OpenProfileStore(kv::ModuleProfile());
    kv::WriteProfileInt(*store, "STIMULUSDATA", "jitterSeed", 4242);
    write(first);
    // The documented draws: from the stored seed, per edge u1 and u2 for the
    // Gaussian part, then u for the uniform one.
    int32_t word = -4242;
    const std::vector<double> shifts = Displacements(adaptor, 50);
    for (std::size_t k = 0; k < 5; ++k) {
        const double u1 = kv::Ran1(word);
        const double u2 = kv::Ran1(word);
        const double u = kv::Ran1(word);
        const double expected =
            0.05 * kNs * std::sqrt(-2 * std::log(1 - u1)) * std::cos(2 * std::numbers::pi * u2) +
            0.1 * kNs * (u - 0.5);
        EXPECT_NEAR(shifts[k], expected, 1e-21) << "edge " << k;
    }
    write(second);
    EXPECT_EQ(ReadText(first), ReadText(second));

    kv::WriteProfileInt(*store, "STIMULUSDATA", "jitterSeed", 12345);
    write(second);
    EXPECT_NE(ReadText(first), ReadText(second));

    data.SetJitterRepeatable(false);
    write(first);
    write(second);
    EXPECT_NE(ReadText(first), ReadText(second));
}

TEST(StimJitter, EachDistributionHasItsDefinedShape) {
    constexpr int kCycles = 5001;  // 10^4 edges
    constexpr double kSigma = 0.02 * kNs;
    kv::CEyeStimAdaptor adaptor;

    // Gaussian: the simple one in ns, the advanced one in percent or ns.
    for (int variant = 0; variant < 3; ++variant) {
        auto data = Toggling(kCycles);
        data.SetAdvancedJitter(variant > 0);
        data.SetAddJitter(0, true);
        data.SetJitterAsTime(0, variant == 2);
        data.SetMaxJitter(variant == 1 ? 2.0 : 0.02);
        ASSERT_GT(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), 0);
        const Moments m = MomentsOf(Displacements(adaptor, kCycles));
        EXPECT_NEAR(m.rms, kSigma, 0.05 * kSigma) << "variant " << variant;
        EXPECT_NEAR(m.mean, 0.0, 0.05 * kSigma) << "variant " << variant;
    }

    // Uniform: peak to peak 0.2 ns around a mean of 5 % of the interval; the
    // simple one around 0.
    for (const bool advanced : {true, false}) {
        auto data = Toggling(kCycles);
        data.SetAdvancedJitter(advanced);
        data.SetJitterType(1);
        data.SetMaxJitter(0.2);
        data.SetAddJitter(1, true);
        data.SetUniformMag(20.0);
        data.SetUniformMean(5.0);
        ASSERT_GT(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), 0);
        const std::vector<double> shifts = Displacements(adaptor, kCycles);
        const double mean = advanced ? 0.05 * kNs : 0.0;
        double lowest = 1, highest = -1;
        for (const double s : shifts) {
            lowest = std::min(lowest, s);
            highest = std::max(highest, s);
        }
        EXPECT_GE(lowest, mean - 0.1 * kNs - 1e-18);
        EXPECT_LT(lowest, mean - 0.099 * kNs);
        EXPECT_LE(highest, mean + 0.1 * kNs + 1e-18);
        EXPECT_GT(highest, mean + 0.099 * kNs);
        const Moments m = MomentsOf(shifts);
        EXPECT_NEAR(m.mean, mean, 0.003 * kNs) << advanced;
        EXPECT_NEAR(std::sqrt(m.variance), 0.2 * kNs / std::sqrt(12.0), 0.002 * kNs);
    }

    // Sine: amplitude 0.1 ns at 37 MHz from 30 degrees, over the nominal edge
    // times; the simple sine shares the frequency and phase.
    for (const bool advanced : {true, false}) {
        auto data = Toggling(kCycles);
        data.SetAdvancedJitter(advanced);
        data.SetJitterType(2);
        data.SetMaxJitter(0.1);
        data.SetAddJitter(2, true);
        data.SetJitterAsTime(2, true);
        data.SetSineMag(0.1);
        data.SetSineFreq(37.0);
        data.SetSineInit(30.0);
        ASSERT_GT(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), 0);
        const std::vector<double> shifts = Displacements(adaptor, kCycles);
        for (std::size_t k = 0; k < shifts.size(); ++k) {
            const double t = static_cast<double>(k + 1) * kNs;
            const double expected =
                0.1 * kNs * std::sin(2 * std::numbers::pi * 37e6 * t + std::numbers::pi / 6);
            ASSERT_NEAR(shifts[k], expected, 1e-20) << "edge " << k;
        }
    }

    // The three together add up: the sine taken away leaves the Gaussian's
    // and the uniform's variances and the uniform's mean.
    auto data = Toggling(kCycles);
    data.SetAdvancedJitter(true);
    data.SetMaxJitter(2.0);
    data.SetUniformMag(10.0);
    data.SetUniformMean(-3.0);
    data.SetSineMag(8.0);
    data.SetSineFreq(11.0);
    for (int component = 0; component < 3; ++component) {
        data.SetAddJitter(component, true);
    }
    ASSERT_GT(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), 0);
    std::vector<double> rest = Displacements(adaptor, kCycles);
    for (std::size_t k = 0; k < rest.size(); ++k) {
        rest[k] -= 0.08 * kNs * std::sin(2 * std::numbers::pi * 11e6 * (k + 1.0) * kNs);
    }
    const Moments m = MomentsOf(rest);
    EXPECT_NEAR(m.mean, -0.03 * kNs, 0.002 * kNs);
    const double sigma = std::sqrt(kSigma * kSigma + 0.1 * kNs * 0.1 * kNs / 12);
    EXPECT_NEAR(std::sqrt(m.variance), sigma, 0.05 * sigma);
}

TEST(StimJitter, HugeJitterKeepsEveryEdgeInOrder) {
    kv::CEyeStimAdaptor adaptor;
    constexpr double kTiny = 1e-5 * kNs;
    for (const int kind : {kv::seq::kPrbs, kv::seq::kToggling, kv::seq::kPulse, kv::seq::kEdge}) {
        for (int variant = 0; variant < 4; ++variant) {
            kv::CStimulusData data;
            data.SetSeqType(kind);
            data.SetBitVector(kind == kv::seq::kEdge ? kv::BitVector{1} : data.m_bits);
            data.SetCycleCount(300);
            data.SetPeriod(1.0);
            data.SetDutyCycle(30.0);
            // Simple Gaussian, uniform and sine of 0.49 ns; all three
            // advanced components at 49 % of the interval at once.
            data.SetAdvancedJitter(variant == 3);
            data.SetJitterType(variant % 3);
            data.SetMaxJitter(variant == 3 ? 49.0 : 0.49);
            data.SetUniformMag(98.0);
            data.SetSineMag(49.0);
            data.SetSineFreq(123.0);
            for (int component = 0; component < 3; ++component) {
                data.SetAddJitter(component, true);
            }
            ASSERT_GT(adaptor.Build(&data, 0, 1, kTiny, kTiny), 0);
            const std::vector<STIMPOINT> nominal = Points(adaptor);
            ASSERT_GT(adaptor.BuildJittered(&data, 0, 1, kTiny, kTiny), 0);
            const std::vector<STIMPOINT> points = Points(adaptor);
            const auto changes = [](const std::vector<STIMPOINT>& p) {
                int count = 0;
                for (std::size_t i = 1; i < p.size(); ++i) {
                    count += p[i].level != p[i - 1].level ? 1 : 0;
                }
                return count;
            };
            const std::string where =
                "kind " + std::to_string(kind) + " variant " + std::to_string(variant);
            EXPECT_EQ(changes(points), changes(nominal)) << where;
            EXPECT_EQ(points.front().time, 0.0) << where;
            EXPECT_EQ(points.front().level, nominal.front().level) << where;
            EXPECT_EQ(points.back().time, nominal.back().time) << where;
            for (std::size_t i = 1; i < points.size(); ++i) {
                ASSERT_LT(points[i - 1].time, points[i].time) << where << " point " << i;
            }
        }
    }
}

TEST(StimJitter, ValuesNoWaveformCanTakeAreRefused) {
    kv::CEyeStimAdaptor adaptor;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    auto good = Toggling(2);
    const auto refused = [&](kv::CStimulusData data) {
        EXPECT_GT(adaptor.Build(&good, 0, 1, kRamp, kRamp), 0);
        EXPECT_EQ(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), -1);
        EXPECT_EQ(adaptor.GetPointCount(), 0);
    };
    EXPECT_EQ(adaptor.BuildJittered(nullptr, 0, 1, kRamp, kRamp), -1);
    // Every period the jitter's conversions could not take, in both modes.
    for (const bool advanced : {false, true}) {
        for (const double period : {0.0, -1.0, nan, inf}) {
            auto data = Toggling(2);
            data.SetAdvancedJitter(advanced);
            data.SetAddJitter(0, true);
            data.SetMaxJitter(1.0);
            data.SetPeriod(period);
            refused(data);
        }
    }
    for (const double magnitude : {nan, -0.1, inf}) {
        auto data = Toggling(2);
        data.SetMaxJitter(magnitude);
        refused(data);
    }
    auto unknownType = Toggling(2);
    unknownType.SetJitterType(3);
    refused(unknownType);
    // A magnitude in percent that overflows once it is a time.
    auto overflow = Toggling(2);
    overflow.SetAdvancedJitter(true);
    overflow.SetAddJitter(2, true);
    overflow.SetSineMag(1e308);
    overflow.SetPeriod(1e10);
    refused(overflow);
    // A sine whose phase overflows at the edges' times.
    auto phase = Toggling(2);
    phase.SetAdvancedJitter(true);
    phase.SetAddJitter(2, true);
    phase.SetSineMag(1.0);
    phase.SetSineFreq(1e300);
    phase.SetPeriod(1e300);
    refused(phase);
}

}  // namespace
