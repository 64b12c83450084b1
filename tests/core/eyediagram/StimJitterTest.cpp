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

// One way to set the jitter, and the parts it must come to in seconds,
// hertz and radians, worked by hand for a bit interval of 1 ns.
struct JitterCase {
    const char* name;
    void (*set)(kv::CStimulusData&);
    double sigma = 0;
    double width = 0;  // uniform, peak to peak
    double mean = 0;
    double amplitude = 0;
    double hertz = 0;
    double radians = 0;
};

void Advanced(kv::CStimulusData& data, int component) {
    data.SetAdvancedJitter(true);
    data.SetAddJitter(component, true);
}

const JitterCase kJitterCases[] = {
    {"simple Gaussian in ns", [](kv::CStimulusData& d) { d.SetMaxJitter(0.02); }, 0.02 * kNs},
    {"simple uniform ignores the mean",
     [](kv::CStimulusData& d) {
         d.SetJitterType(1);
         d.SetMaxJitter(0.2);
         d.SetUniformMean(5.0);
     },
     0, 0.2 * kNs},
    {"simple sine shares frequency and phase",
     [](kv::CStimulusData& d) {
         d.SetJitterType(2);
         d.SetMaxJitter(0.1);
         d.SetSineFreq(37.0);
         d.SetSineInit(30.0);
     },
     0, 0, 0, 0.1 * kNs, 37e6, std::numbers::pi / 6},
    {"advanced Gaussian in percent",
     [](kv::CStimulusData& d) {
         Advanced(d, 0);
         d.SetMaxJitter(5.0);
     },
     0.05 * kNs},
    {"advanced Gaussian in ns",
     [](kv::CStimulusData& d) {
         Advanced(d, 0);
         d.SetJitterAsTime(0, true);
         d.SetMaxJitter(0.02);
     },
     0.02 * kNs},
    {"advanced parts add up",
     [](kv::CStimulusData& d) {
         Advanced(d, 0);
         Advanced(d, 1);
         Advanced(d, 2);
         d.SetMaxJitter(2.0);
         d.SetJitterAsTime(1, true);
         d.SetUniformMag(0.1);
         d.SetUniformMean(-0.03);
         d.SetSineMag(8.0);
         d.SetSineFreq(11.0);
     },
     0.02 * kNs, 0.1 * kNs, -0.03 * kNs, 0.08 * kNs, 11e6},
    // Advanced jitter ignores the simple magnitude; its parts are off or zero.
    {"advanced without parts",
     [](kv::CStimulusData& d) {
         d.SetAdvancedJitter(true);
         d.SetMaxJitter(0.3);
     }},
    {"advanced parts of zero",
     [](kv::CStimulusData& d) {
         for (int component = 0; component < 3; ++component) {
             Advanced(d, component);
         }
         d.SetMaxJitter(0.0);
     }},
};

// From the stored seed the documented draws per edge: u1 and u2 for the
// Gaussian part, then u for the uniform one; the sine over the nominal edge
// times.
TEST(StimJitter, EachEdgeMovesByTheDocumentedDrawsFromTheStoredSeed) {
    kv::ModuleProfile().registryKey = "Velmorine";
    auto store = kv::OpenProfileStore(kv::ModuleProfile());
    kv::WriteProfileInt(*store, "STIMULUSDATA", "jitterSeed", 4242);
    kv::CEyeStimAdaptor adaptor;
    for (const JitterCase& c : kJitterCases) {
        auto data = Toggling(50);
        c.set(data);
        ASSERT_GT(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), 0) << c.name;
        const std::vector<double> shifts = Displacements(adaptor, 50);
        int32_t word = -4242;
        for (std::size_t k = 0; k < shifts.size(); ++k) {
            double expected = c.mean;
            if (c.sigma > 0) {
                const double u1 = kv::Ran1(word);
                const double u2 = kv::Ran1(word);
                expected += c.sigma * std::sqrt(-2 * std::log(1 - u1)) *
                            std::cos(2 * std::numbers::pi * u2);
            }
            if (c.width > 0) {
                expected += c.width * (kv::Ran1(word) - 0.5);
            }
            const double t = static_cast<double>(k + 1) * kNs;
            expected += c.amplitude * std::sin(2 * std::numbers::pi * c.hertz * t + c.radians);
            ASSERT_NEAR(shifts[k], expected, 1e-20) << c.name << " edge " << k;
        }
    }

    // The same seed draws the same again, another seed or none other edges.
    auto data = Toggling(50);
    data.SetMaxJitter(0.1);
    const auto build = [&] {
        EXPECT_GT(adaptor.BuildJittered(&data, 0, 1, kRamp, kRamp), 0);
        return Displacements(adaptor, 50);
    };
    const std::vector<double> first = build();
    EXPECT_EQ(build(), first);
    kv::WriteProfileInt(*store, "STIMULUSDATA", "jitterSeed", 12345);
    EXPECT_NE(build(), first);
    data.SetJitterRepeatable(false);
    EXPECT_NE(build(), build());
    kv::ModuleProfile().registryKey.clear();
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
