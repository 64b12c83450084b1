// The eye of waveforms whose eye is known: a clean stimulus, one with
// Gaussian edge jitter, and the default mask over eyes that pass and fail.

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "core/eye/EyeAnalysis.h"
#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/StimulusData.h"

namespace {

constexpr double kNs = 1e-9;

struct Waveform {
    std::vector<double> time;
    std::vector<double> volts;

    kv::EyeTrace Trace() const { return {time, volts}; }
    void Add(double t, double v) {
        time.push_back(t);
        volts.push_back(v);
    }
};

// The waveform a host drives its simulator with for this stimulus.
Waveform StimulusWaveform(kv::CStimulusData& data, double low, double high, double ramp) {
    kv::CEyeStimAdaptor adaptor;
    EXPECT_GT(adaptor.Build(&data, low, high, ramp, ramp), 0);
    Waveform waveform;
    for (int i = 0; i < adaptor.GetPointCount(); ++i) {
        waveform.Add(adaptor.GetPoints()[i].time, adaptor.GetPoints()[i].level);
    }
    return waveform;
}

// Random bits, non-return-to-zero, each change a ramp of `ramp` seconds
// centred on its bit boundary moved by a normally distributed `jitter`.
Waveform JitteredNrz(int bits, double interval, double ramp, double jitter) {
    std::mt19937_64 random(20240607);
    std::bernoulli_distribution coin;
    std::normal_distribution<double> displacement(0.0, jitter);
    Waveform waveform;
    bool level = false;
    waveform.Add(0.0, 0.0);
    for (int i = 1; i < bits; ++i) {
        const bool next = coin(random);
        if (next != level) {
            const double edge = i * interval + displacement(random);
            waveform.Add(edge - ramp / 2, level ? 1.0 : 0.0);
            waveform.Add(edge + ramp / 2, next ? 1.0 : 0.0);
            level = next;
        }
    }
    waveform.Add(bits * interval, level ? 1.0 : 0.0);
    return waveform;
}

TEST(EyeAnalysis, CleanStimulusFoldsToAnOpenEyeOfItsLevels) {
    kv::CStimulusData data;  // 31 PRBS bits
    data.SetCycleCount(8);
    data.SetPeriod(2.0);
    data.SetSkipBits(31);
    const Waveform waveform = StimulusWaveform(data, 0.2, 3.1, 0.4 * kNs);
    kv::EyeRequest request;
    request.timing = kv::EyeTimingOf(data);
    const kv::EyeResult eye = kv::AnalyseEye(waveform.Trace(), request);
    ASSERT_EQ(eye.refusal, "");
    const kv::EyeMeasure& m = eye.measure;
    EXPECT_NEAR(m.level0, 0.2, 1e-12);
    EXPECT_NEAR(m.level1, 3.1, 1e-12);
    EXPECT_NEAR(m.eyeHeight, 2.9, 1e-9);
    EXPECT_NEAR(m.crossingJitterRms, 0.0, 1e-9 * kNs);
    EXPECT_NEAR(m.crossingJitterPeakToPeak, 0.0, 1e-9 * kNs);
    EXPECT_NEAR(m.eyeWidth, 2.0 * kNs, 1e-9 * kNs);
    // Ramps start on the boundaries, so the crossings lie half a ramp later.
    EXPECT_NEAR(m.eyeCentreTime, (31 * 2.0 + 0.2 + 1.0) * kNs, 1e-6 * kNs);
    EXPECT_NEAR(eye.origin, (31 * 2.0 + 0.2) * kNs, 1e-6 * kNs);
    EXPECT_EQ(m.unitIntervals, 7 * 31);
    // One point per column in every interval, each on the grid.
    EXPECT_EQ(m.samples, int64_t{7} * 31 * request.width);
    EXPECT_EQ(std::accumulate(eye.density.begin(), eye.density.end(), int64_t{0}), m.samples);
    EXPECT_EQ(m.maskHits, -1);
}

TEST(EyeAnalysis, CrossingJitterMeasuresTheEdgeDisplacement) {
    constexpr double kInterval = 1 * kNs;
    constexpr double kJitter = 0.03 * kInterval;
    const Waveform waveform = JitteredNrz(20000, kInterval, 0.2 * kInterval, kJitter);
    kv::EyeRequest request;
    request.timing = {kInterval, 2, 0};
    const kv::EyeResult eye = kv::AnalyseEye(waveform.Trace(), request);
    ASSERT_EQ(eye.refusal, "");
    EXPECT_NEAR(eye.measure.crossingJitterRms, kJitter, 0.05 * kJitter);
    EXPECT_NEAR(eye.measure.eyeWidth, kInterval - 6 * kJitter, 0.3 * kJitter);
    EXPECT_GT(eye.measure.crossingJitterPeakToPeak, 6 * kJitter);
    EXPECT_NEAR(eye.measure.level1 - eye.measure.level0, 1.0, 1e-12);
}

struct MaskRun {
    double high;
    int64_t hits;
    double margin;
};

MaskRun DefaultMaskOver(double high, double offsetTime = 0.0) {
    kv::CStimulusData data;
    data.SetCycleCount(4);
    data.SetPeriod(1.0);
    data.GetMask()->OffsetTime = offsetTime;
    const Waveform waveform = StimulusWaveform(data, 0.0, high, 0.2 * kNs);
    kv::EyeRequest request;
    request.timing = kv::EyeTimingOf(data);
    request.mask = *data.GetMask();
    const kv::EyeResult eye = kv::AnalyseEye(waveform.Trace(), request);
    EXPECT_EQ(eye.refusal, "");
    // Every hit is in a cell, to be shown.
    EXPECT_EQ(std::accumulate(eye.hits.begin(), eye.hits.end(), int64_t{0}), eye.measure.maskHits);
    return {high, eye.measure.maskHits, eye.measure.maskMarginPercent};
}

TEST(EyeAnalysis, HitsBeyondTheGridsRangeAreKeptInItsEdgeRows) {
    kv::CStimulusData data;
    data.SetPeriod(1.0);
    const Waveform waveform = StimulusWaveform(data, 0.0, 2.0, 0.2 * kNs);
    kv::EyeRequest request;
    request.timing = kv::EyeTimingOf(data);
    // 1 V up: the 2 V level lies inside the opening, the 0 V one below the base limit, and
    // both outside the grid.
    data.GetMask()->OffsetVolt = 1.0;
    request.mask = *data.GetMask();
    request.vMin = 0.5;
    request.vMax = 1.5;
    const kv::EyeResult eye = kv::AnalyseEye(waveform.Trace(), request);
    ASSERT_GT(eye.measure.maskHits, 0);
    const auto width = static_cast<std::size_t>(eye.grid.width);
    const auto row = [&](int r) {
        const auto begin = eye.hits.begin() + static_cast<std::ptrdiff_t>(r * width);
        return std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(width), int64_t{0});
    };
    EXPECT_GT(row(0), 0);
    EXPECT_GT(row(eye.grid.height - 1), 0);
    EXPECT_EQ(std::accumulate(eye.hits.begin(), eye.hits.end(), int64_t{0}), eye.measure.maskHits);
}

TEST(EyeAnalysis, DefaultMaskPassesAFiveVoltEyeAndFailsATwoVoltOne) {
    // The opening's corners lie 5 % of the interval inside the crossings:
    // it grows by 50 / 45 before it reaches them.
    const MaskRun clean = DefaultMaskOver(5.0);
    EXPECT_EQ(clean.hits, 0);
    EXPECT_NEAR(clean.margin, 100.0 / 9.0, 0.1);
    // The 2 V level runs a quarter of the way from the crossing level to
    // the opening's 0.5 V bottom.
    const MaskRun low = DefaultMaskOver(2.0);
    EXPECT_GT(low.hits, 0);
    EXPECT_NEAR(low.margin, -75.0, 1e-6);
    // Above the 5.5 V limit: hits, while the opening stays clear.
    const MaskRun high = DefaultMaskOver(6.0);
    EXPECT_GT(high.hits, 0);
    EXPECT_GT(high.margin, 0.0);
    // A whole interval of offset lays the mask on the next interval alike.
    for (const MaskRun& here : {clean, low}) {
        const MaskRun next = DefaultMaskOver(here.high, 100.0);
        EXPECT_EQ(next.hits, here.hits);
        EXPECT_NEAR(next.margin, here.margin, 1e-6);
    }
    // Half an interval late, the opening sits on the crossings.
    const MaskRun late = DefaultMaskOver(5.0, 50.0);
    EXPECT_GT(late.hits, 0);
    EXPECT_LT(late.margin, 0.0);
}

TEST(EyeAnalysis, RefusesWhatItCannotRead) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Waveform good;
    good.Add(0.0, 0.0);
    good.Add(10 * kNs, 1.0);
    kv::EyeRequest request;
    request.timing = {1 * kNs, 1, 0};
    ASSERT_EQ(kv::AnalyseEye(good.Trace(), request).refusal, "");

    const auto refused = [&](const Waveform& w, const kv::EyeRequest& r) {
        const kv::EyeResult eye = kv::AnalyseEye(w.Trace(), r);
        return !eye.refusal.empty() && eye.density.empty() && eye.measure.samples == 0;
    };
    Waveform bad = good;
    bad.volts[1] = nan;
    EXPECT_TRUE(refused(bad, request));
    bad = good;
    bad.time[1] = -1.0;
    EXPECT_TRUE(refused(bad, request));
    bad.time.pop_back();
    EXPECT_TRUE(refused(bad, request));
    for (const kv::EyeTiming timing :
         {kv::EyeTiming{0.0, 1, 0}, kv::EyeTiming{nan, 1, 0}, kv::EyeTiming{1 * kNs, 0, 0},
          kv::EyeTiming{1 * kNs, 4, 0}, kv::EyeTiming{1 * kNs, 1, -1},
          kv::EyeTiming{1 * kNs, 1, 10}, kv::EyeTiming{1e-15, 1, 0}}) {
        kv::EyeRequest r = request;
        r.timing = timing;
        EXPECT_TRUE(refused(good, r)) << timing.interval << " " << timing.eyes;
    }
    kv::EyeRequest grid = request;
    grid.width = 0;
    EXPECT_TRUE(refused(good, grid));
    grid = request;
    grid.vMin = 1.0;
    grid.vMax = 1.0;
    EXPECT_TRUE(refused(good, grid));
    // A mask that cannot be tested leaves the rest of the eye.
    kv::EyeRequest mask = request;
    mask.mask = kv::DefaultEyeMask();
    mask.mask->ScaleTime = 0.0;
    const kv::EyeResult eye = kv::AnalyseEye(good.Trace(), mask);
    EXPECT_EQ(eye.refusal, "");
    EXPECT_EQ(eye.measure.maskHits, -1);

    // Levels whose span overflows leave no range to draw in, unless one is given;
    // a step (two samples at one time) and a mask reaching far are read as they are.
    Waveform extreme;
    extreme.Add(0.0, -1e308);
    extreme.Add(2 * kNs, 1e308);
    extreme.Add(2 * kNs, 0.0);
    extreme.Add(5 * kNs, 1.0);
    EXPECT_TRUE(refused(extreme, request));
    kv::EyeRequest given = request;
    given.timing.eyes = 3;
    given.vMin = 0.0;
    given.vMax = 1.0;
    given.mask = kv::DefaultEyeMask();
    given.mask->TCross2Max = 1e300;
    given.mask->PTopMax = 1e300;
    const kv::EyeResult far = kv::AnalyseEye(extreme.Trace(), given);
    EXPECT_EQ(far.refusal, "");
    EXPECT_NEAR(static_cast<double>(far.measure.samples), 5 * given.width / 3.0, 1.0);
}

}  // namespace
