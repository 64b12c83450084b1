#include <gtest/gtest.h>

#include <limits>

#include "core/progress/DelayedShow.h"
#include "core/progress/ProgressBarGeometry.h"
#include "core/progress/ProgressTextUpdate.h"
#include "core/shared/DialogUnits.h"

namespace {

TEST(ProgressBarGeometry, DonePartTruncatesTowardZeroAndStopsAtTheRightEdge) {
    EXPECT_EQ(kv::DoneRight(10, 199, 0), 10);
    EXPECT_EQ(kv::DoneRight(10, 199, 37), 10 + 73);  // 199 * 37 / 100 = 73.63
    EXPECT_EQ(kv::DoneRight(10, 199, 100), 209);
    EXPECT_EQ(kv::DoneRight(10, 199, 150), 209);
    EXPECT_EQ(kv::DoneRight(0, std::numeric_limits<int>::max(), 100),
              std::numeric_limits<int>::max());
}

TEST(ProgressBarGeometry, LabelShowsTheUnclampedPosition) {
    EXPECT_EQ(kv::ProgressLabel(37, false), "37%");
    EXPECT_EQ(kv::ProgressLabel(150, false), "150%");
    EXPECT_EQ(kv::ProgressLabel(-5, false), "-5%");
    EXPECT_EQ(kv::ProgressLabel(42, true), "42");
}

TEST(ProgressBarGeometry, LayoutSplitsTheBarAndCentresTheLabel) {
    const kv::BarLayout full = kv::LayoutProgressBar({0, 0, 200, 20}, 150, false, {13, 3});
    EXPECT_EQ(full.done.right, 200);
    EXPECT_EQ(full.remaining.left, 200);  // nothing left over
    EXPECT_EQ(full.label, "150%");
    EXPECT_EQ(full.labelCentreX, 100);
    EXPECT_EQ(full.labelBaseline, (0 + 20 - 3 + 13 + 1) / 2);

    const kv::BarLayout part = kv::LayoutProgressBar({4, 2, 104, 16}, 25, true, {10, 0});
    EXPECT_EQ(part.done.left, 4);
    EXPECT_EQ(part.done.right, 29);
    EXPECT_EQ(part.remaining.left, 29);
    EXPECT_EQ(part.remaining.right, 104);
    EXPECT_EQ(part.done.top, 2);
    EXPECT_EQ(part.remaining.bottom, 16);
    EXPECT_EQ(part.label, "25");
    EXPECT_EQ(part.labelCentreX, 54);
}

TEST(ProgressTextUpdate, WithoutControlOnlyTheTextIsKept) {
    for (const auto mode : {kv::TextUpdateMode::Single, kv::TextUpdateMode::WithinSetAll}) {
        const kv::TextUpdatePlan plan = kv::PlanTextUpdate(false, "old", "new", mode);
        EXPECT_TRUE(plan.storeText);
        EXPECT_FALSE(plan.setControl || plan.repaintNow || plan.pumpMessages);
    }
}

TEST(ProgressTextUpdate, SameTextPumpsOnlyWhenSingle) {
    const auto single = kv::PlanTextUpdate(true, "step 3", "step 3", kv::TextUpdateMode::Single);
    EXPECT_FALSE(single.storeText || single.setControl || single.repaintNow);
    EXPECT_TRUE(single.pumpMessages);
    const auto all = kv::PlanTextUpdate(true, "step 3", "step 3", kv::TextUpdateMode::WithinSetAll);
    EXPECT_FALSE(all.storeText || all.setControl || all.repaintNow || all.pumpMessages);
}

TEST(ProgressTextUpdate, NewTextIsShownThenPumpedOrRepainted) {
    // Same length, other characters: still a change.
    const auto single = kv::PlanTextUpdate(true, "step 3", "step 4", kv::TextUpdateMode::Single);
    EXPECT_TRUE(single.storeText && single.setControl && single.pumpMessages);
    EXPECT_FALSE(single.repaintNow);
    const auto all = kv::PlanTextUpdate(true, "step", "step 4", kv::TextUpdateMode::WithinSetAll);
    EXPECT_TRUE(all.storeText && all.setControl && all.repaintNow);
    EXPECT_FALSE(all.pumpMessages);
}

TEST(DelayedShow, ShowsAtOnceWithoutDelayOrCounterAndWaitsForTheHostOnTheLargestDelay) {
    EXPECT_EQ(kv::PlanDelayedShow(0, true), kv::DelayedShowStart::ShowNow);
    EXPECT_EQ(kv::PlanDelayedShow(500, false), kv::DelayedShowStart::ShowNow);
    EXPECT_EQ(kv::PlanDelayedShow(500, true), kv::DelayedShowStart::WaitForTick);
    EXPECT_EQ(kv::PlanDelayedShow(0xFFFFFFFFu, true), kv::DelayedShowStart::WaitForHost);
    EXPECT_EQ(kv::PlanDelayedShow(0xFFFFFFFEu, true), kv::DelayedShowStart::WaitForTick);
}

TEST(DelayedShow, TimerPeriodIsTheDelayButAtMost200) {
    EXPECT_EQ(kv::DelayTimerPeriodMs(50), 50u);
    EXPECT_EQ(kv::DelayTimerPeriodMs(200), 200u);
    EXPECT_EQ(kv::DelayTimerPeriodMs(1000), 200u);
}

TEST(DelayedShow, ElapsedMillisecondsTruncateAndDoNotOverflow) {
    EXPECT_EQ(kv::ElapsedMilliseconds(1000, 1000 + 200'000'000, 1'000'000'000), 200u);
    EXPECT_EQ(kv::ElapsedMilliseconds(5, 5 + 3579, 3'579'545), 0u);  // 0.9998 ms truncated
    EXPECT_EQ(kv::ElapsedMilliseconds(5, 5 + 3580, 3'579'545), 1u);
    EXPECT_EQ(kv::ElapsedMilliseconds(0, 10, 0), 0u);
    // A long-running counter: no overflow in the intermediate product.
    const uint64_t day = 86'400ull * 1'000'000'000ull;
    EXPECT_EQ(kv::ElapsedMilliseconds(0, 30 * day, 1'000'000'000), 2'592'000'000u);
}

TEST(DelayedShow, FirstTickShowsOnlySlowWork) {
    // 200 ms into a 1000 ms delay: half done is on time, a tenth is slow.
    EXPECT_FALSE(kv::ShowsAtFirstTick(200, 50, 1000));
    EXPECT_TRUE(kv::ShowsAtFirstTick(200, 10, 1000));
    EXPECT_FALSE(kv::ShowsAtFirstTick(200, 20, 1000));  // equal is not slower
    EXPECT_TRUE(kv::ShowsAtFirstTick(1, 0, 1000));
}

TEST(DelayedShow, SlowWorkComparisonWrapsIn32Bits) {
    // 50'000'000 * 100 wraps to 705'032'704, below 10 * 100'000'000.
    EXPECT_FALSE(kv::ShowsAtFirstTick(50'000'000u, 10, 100'000'000u));
    // A negative percentage is a huge unsigned factor: 0xFFFFFFFF * 2 wraps to
    // 0xFFFFFFFE, so almost nothing is slower than it.
    EXPECT_FALSE(kv::ShowsAtFirstTick(1000, -1, 2));
}

TEST(DialogUnits, RoundToTheNearestPixelThroughTheFontsBaseUnits) {
    const kv::DialogBaseUnits base = kv::BaseUnitsFromFont(52 * 6 + 20, 13);
    EXPECT_EQ(base.x, 6);  // 332 / 52 = 6.38
    EXPECT_EQ(base.y, 13);
    const kv::DialogRect pixels = kv::DialogUnitsToPixels({71, 54, 50, 14}, base);
    EXPECT_EQ(pixels.x, 107);  // 106.5 rounds up
    EXPECT_EQ(pixels.y, 88);   // 87.75
    EXPECT_EQ(pixels.width, 75);
    EXPECT_EQ(pixels.height, 23);  // 22.75
}

}  // namespace
