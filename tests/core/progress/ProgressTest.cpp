#include <gtest/gtest.h>

#include <limits>

#include "core/progress/DelayedShow.h"
#include "core/progress/ProgressBarGeometry.h"
#include "core/progress/ProgressTextUpdate.h"
#include "core/shared/DialogUnits.h"

namespace {

TEST(ProgressBarGeometry, DonePartTruncatesAndStopsAtTheRightEdgeWhileTheLabelDoesNot) {
    EXPECT_EQ(kv::DoneRight(10, 199, -5), 10);
    EXPECT_EQ(kv::DoneRight(10, 199, 37), 10 + 73);  // 199 * 37 / 100 = 73.63
    EXPECT_EQ(kv::DoneRight(10, 199, 150), 209);
    EXPECT_EQ(kv::DoneRight(0, std::numeric_limits<int>::max(), 100),
              std::numeric_limits<int>::max());
    EXPECT_EQ(kv::ProgressLabel(-5, false), "-5%");

    const kv::BarLayout full = kv::LayoutProgressBar({0, 0, 200, 20}, 150, false, {13, 3});
    EXPECT_EQ(full.done.right, 200);
    EXPECT_EQ(full.remaining.left, 200);  // nothing left over
    EXPECT_EQ(full.label, "150%");
    EXPECT_EQ(full.labelCentreX, 100);
    EXPECT_EQ(full.labelBaseline, (0 + 20 - 3 + 13 + 1) / 2);

    const kv::BarLayout part = kv::LayoutProgressBar({4, 2, 104, 16}, 25, true, {10, 0});
    EXPECT_EQ(part.done.left, 4);
    EXPECT_EQ(part.done.right, 29);
    EXPECT_EQ(part.remaining.right, 104);
    EXPECT_EQ(part.done.top, 2);
    EXPECT_EQ(part.remaining.bottom, 16);
    EXPECT_EQ(part.label, "25");
    EXPECT_EQ(part.labelCentreX, 54);
}

TEST(ProgressTextUpdate, SingleUpdatesPumpAndThoseWithinSetAllRepaint) {
    using Mode = kv::TextUpdateMode;
    const struct {
        bool control;
        const char* stored;
        const char* next;
        Mode mode;
        bool store, set, repaint, pump;
    } cases[] = {
        {false, "old", "new", Mode::Single, true, false, false, false},  // only the text kept
        {false, "old", "new", Mode::WithinSetAll, true, false, false, false},
        {true, "step 3", "step 3", Mode::Single, false, false, false, true},
        {true, "step 3", "step 3", Mode::WithinSetAll, false, false, false, false},
        {true, "step 3", "step 4", Mode::Single, true, true, false, true},  // same length
        {true, "step", "step 4", Mode::WithinSetAll, true, true, true, false},
    };
    for (const auto& c : cases) {
        const kv::TextUpdatePlan plan = kv::PlanTextUpdate(c.control, c.stored, c.next, c.mode);
        EXPECT_EQ(plan.storeText, c.store) << c.stored << " -> " << c.next;
        EXPECT_EQ(plan.setControl, c.set) << c.stored << " -> " << c.next;
        EXPECT_EQ(plan.repaintNow, c.repaint) << c.stored << " -> " << c.next;
        EXPECT_EQ(plan.pumpMessages, c.pump) << c.stored << " -> " << c.next;
    }
}

TEST(DelayedShow, ShowsAtOnceWithoutDelayOrCounterAndWaitsForTheHostOnTheLargestDelay) {
    EXPECT_EQ(kv::PlanDelayedShow(0, true), kv::DelayedShowStart::ShowNow);
    EXPECT_EQ(kv::PlanDelayedShow(500, false), kv::DelayedShowStart::ShowNow);
    EXPECT_EQ(kv::PlanDelayedShow(0xFFFFFFFFu, true), kv::DelayedShowStart::WaitForHost);
    EXPECT_EQ(kv::PlanDelayedShow(0xFFFFFFFEu, true), kv::DelayedShowStart::WaitForTick);
    EXPECT_EQ(kv::DelayTimerPeriodMs(50), 50u);
    EXPECT_EQ(kv::DelayTimerPeriodMs(1000), 200u);
}

TEST(DelayedShow, TimeIsCountedInWholeMillisecondsAndOnlySlowWorkShowsAtTheFirstTick) {
    EXPECT_EQ(kv::ElapsedMilliseconds(5, 5 + 3579, 3'579'545), 0u);  // 0.9998 ms truncated
    EXPECT_EQ(kv::ElapsedMilliseconds(5, 5 + 3580, 3'579'545), 1u);
    EXPECT_EQ(kv::ElapsedMilliseconds(0, 10, 0), 0u);
    // A long-running counter: no overflow in the intermediate product.
    const uint64_t day = 86'400ull * 1'000'000'000ull;
    EXPECT_EQ(kv::ElapsedMilliseconds(0, 30 * day, 1'000'000'000), 2'592'000'000u);

    // 200 ms into a 1000 ms delay: half done is on time, a tenth is slow.
    EXPECT_FALSE(kv::ShowsAtFirstTick(200, 50, 1000));
    EXPECT_TRUE(kv::ShowsAtFirstTick(200, 10, 1000));
    EXPECT_FALSE(kv::ShowsAtFirstTick(200, 20, 1000));  // equal is not slower
    // The products wrap in 32 bits: 50'000'000 * 100 to 705'032'704, below 10 * 100'000'000,
    // and a negative percentage is a huge factor, so almost nothing is slower than it.
    EXPECT_FALSE(kv::ShowsAtFirstTick(50'000'000u, 10, 100'000'000u));
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
