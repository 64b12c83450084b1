// The axis arithmetic of the chart: range widening, interval counting, the
// step chooser, label intervals, decade lines, prefixes and the texts built
// from them.

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "core/chart/AxisArithmetic.h"
#include "core/chart/AxisScale.h"
#include "core/chart/AxisText.h"
#include "core/chart/SiPrefix.h"

using namespace kv;

namespace {

TEST(ChartAxisTest, DegenerateRangesWidenAndOthersStay) {
    const struct {
        Range given;
        bool logarithmic;
        Range expected;
    } cases[] = {
        {{0.0, 0.0}, false, {-0.5, 0.5}},
        {{0.0, 0.0}, true, {0.0, 0.0}},  // both ends scaled, 0 stays 0
        {{5.0, 5.0}, true, {0.5, 50.0}},
        {{1.0, 1.0 + 1e-13}, false, {0.5, 1.5 + 1e-13}},  // below 1e-12 of the sum
        {{1.0, 1.0 + 1e-11}, false, {1.0, 1.0 + 1e-11}},
        {{-1.0, 1.0}, false, {-1.0, 1.0}},  // a sum of 0 is no degenerate range
        {{2.0, 1.0}, false, {1.5, 1.5}},    // reversed counts as degenerate
    };
    for (const auto& c : cases) {
        const Range widened = WidenRange(c.given, c.logarithmic);
        EXPECT_DOUBLE_EQ(widened.lo, c.expected.lo) << c.given.lo << " " << c.given.hi;
        EXPECT_DOUBLE_EQ(widened.hi, c.expected.hi) << c.given.lo << " " << c.given.hi;
    }
}

TEST(ChartAxisTest, CountingSnapsToLinesWithinRoundingAndCapsTheCount) {
    // 0.3 / 0.1 is a hair below 3 and 0.9 / 0.1 a hair above 9: both ends
    // count as on a line, six intervals rather than eight.
    const auto snapped = CountIntervals(0.3, 0.9, 0.1);
    ASSERT_TRUE(snapped);
    EXPECT_EQ(snapped->count, 6);
    EXPECT_DOUBLE_EQ(snapped->first, 0.3);
    EXPECT_DOUBLE_EQ(snapped->last, 0.9);

    const auto plain = CountIntervals(-0.7, 7.0, 2.0);
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->first, -2.0);
    EXPECT_EQ(plain->last, 8.0);
    EXPECT_EQ(plain->count, 5);

    EXPECT_EQ(CountIntervals(0.0, 1e10, 1e-3)->count, 2147483647);
    EXPECT_FALSE(CountIntervals(0.0, 1.0, 0.0));
    EXPECT_FALSE(CountIntervals(2.0, 1.0, 0.5));  // reversed
}

TEST(ChartAxisTest, LinearStepWastesLeastRoomAndPrefersTheFiner) {
    const struct {
        double lo;
        double hi;
        int pixels;
        double step;
    } cases[] = {
        {0.0, 1.0, 200, 0.1},  {0.0, 0.93, 100, 0.2},  {0.0, 7.0, 100, 2.5},
        {-7.0, 0.0, 100, 2.5}, {0.0, 100.0, 400, 5.0}, {0.0, 1.0, 59, 0.5},
        {0.0, 0.3, 60, 0.1},   {-0.5, 0.5, 100, 0.25}, {0.0, 1e-9, 200, 1e-10},
    };
    for (const auto& c : cases) {
        EXPECT_DOUBLE_EQ(ChooseLinearStep(c.lo, c.hi, c.pixels), c.step)
            << "[" << c.lo << ", " << c.hi << "] over " << c.pixels;
    }
    // Scored in this order, which decides between near equals.
    EXPECT_EQ(StepCandidates(0.0, 0.93, 100), (std::vector<double>{1.0, 0.2, 0.25, 0.5}));
    EXPECT_THROW(ChooseLinearStep(3.0, 3.0, 100), std::invalid_argument);
}

TEST(ChartAxisTest, LabelIntervalFallsOnRoundMultiples) {
    const struct {
        double step;
        int intervals;
        int pixels;
        int spacing;
        bool logarithmic;
        int expected;
    } cases[] = {
        {1e15, 10, 200, 56, false, 5},    // 3 -> 4 -> 5 for digits 1
        {2e-9, 10, 200, 56, false, 5},    // and for 2
        {0.25, 10, 200, 56, false, 4},    // 3 -> 4, right for 2.5
        {5e12, 10, 200, 56, false, 4},    // 3 -> 4, right for 5
        {0.1, 10, 200, 56, true, 3},      // logarithmic: as counted
        {0.1, 10, 200, 0, false, 1},      // any room is enough
        {1.0, 10, 200, 40, false, 2},     // 20 + 20 reaches 40
        {2.5e-7, 20, 200, 55, false, 8},  // 6 -> 8: every 20 units of 2.5
        {2.5, 20, 200, 45, false, 8},     // 5 -> 8
        {2.5, 20, 200, 85, false, 10},    // 9 -> 10
        {1.0, 20, 200, 55, false, 10},    // 6 -> 10
        {5.0, 20, 200, 45, false, 5},     // 5 stays
        {1.0, 3, 300, 1000, false, 5},    // stops at the interval count, then 3 -> 4 -> 5
        {1.0, 100, 100, 1000, true, 10},  // never beyond 10
        {1.0, 0, 100, 50, false, 1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(LabelInterval(c.step, c.intervals, c.pixels, c.spacing, c.logarithmic),
                  c.expected)
            << c.step << " " << c.intervals << " " << c.pixels << " " << c.spacing;
    }
}

TEST(ChartAxisTest, DecadeLinesSubdivideTheDecadeBelow) {
    const std::vector<double> fifths = DecadeLineValues(1e-6, 0.2);
    ASSERT_EQ(fifths.size(), 4u);
    EXPECT_DOUBLE_EQ(fifths.front(), 2e-7);
    EXPECT_DOUBLE_EQ(fifths.back(), 8e-7);
    EXPECT_EQ(DecadeLineValues(10.0, 0.5), std::vector<double>{5.0});
    EXPECT_TRUE(DecadeLineValues(10.0, 1.0).empty());
    EXPECT_TRUE(DecadeLineValues(10.0, 0.0).empty());
}

TEST(ChartAxisTest, PrefixesFromFemtoToYottaAndTheLabelsBuiltOnThem) {
    // Twice each row's factor, labelled in that row: a letter from pico to
    // tera, exponent notation beyond.
    const char* twice[] = {" 2.00e-15 ", " 2p ",       " 2n ",       " 2u ",      " 2m ",
                           " 2 ",        " 2k ",       " 2M ",       " 2G ",      " 2T ",
                           " 2.00e+15 ", " 2.00e+18 ", " 2.00e+21 ", " 2.00e+24 "};
    for (int row = 0; row < kSiPrefixCount; ++row) {
        EXPECT_EQ(LabelText(2 * SiPrefixes()[static_cast<size_t>(row)].factor, row, ""),
                  twice[row]);
    }
    // The row whose next factor first reaches the magnitude.
    const std::pair<double, int> choices[] = {
        {1000.0, 5}, {1000.5, 6}, {1e-12, 0}, {1.1e-12, 1}, {-0.0005, 3},
        {0.0, 5},    {1e24, 12},  {1e27, 13}, {1e40, 13},   {1e-20, 0},
    };
    for (const auto& [magnitude, row] : choices) {
        EXPECT_EQ(ChoosePrefixRow(magnitude, true), row) << magnitude;
    }
    EXPECT_EQ(ChoosePrefixRow(0.001, false), kNoPrefixRow);

    EXPECT_EQ(LabelText(0.0005, ChoosePrefixRow(0.001, true), "V"), " 500uV ");
    EXPECT_EQ(LabelText(12345.0, kNoPrefixRow, "V"), " 1.23e+04V ");
    EXPECT_EQ(LabelText(1000.0, ChoosePrefixRow(1000.0, true), ""), " 1000 ");
    EXPECT_EQ(LabelText(5.0, kNoPrefixRow, "deg"), " 5.00e+00deg ");  // an "e" in the unit
    EXPECT_EQ(LabelText(5.0, kNoPrefixRow, "E"), " 5E ");             // only lower case counts
    EXPECT_EQ(LabelText(-0.25, 4, "A"), " -250mA ");
}

TEST(ChartAxisTest, ReadoutWithAndWithoutACurveName) {
    ReadoutRequest request;
    request.x = 1.5e-6;
    request.y = 0.25;
    request.xUnit = "s";
    request.yUnit = "V";
    request.curveName = "sine";
    EXPECT_EQ(ReadoutText(request), "sine   1.5us ,250mV");
    request.curveName = "";
    request.x = 2e15;  // "P" lies outside the band
    request.y = 0.0;
    EXPECT_EQ(ReadoutText(request), "   2.000e+15s ,0V");
    request.prefixes = false;
    request.x = 123456.0;
    request.y = -1e-3;
    EXPECT_EQ(ReadoutText(request), "   1.2346e+05s ,-0.001V");
}

TEST(ChartAxisTest, ScaledAxisListsEveryLineAndLabelsEveryKth) {
    AxisRequest request;
    request.lo = 0.0;
    request.hi = 1.0;
    request.pixels = 200;
    request.minLabelSpacing = 15;
    const AxisScale x = ScaleAxis(request);
    EXPECT_EQ(x.labelInterval, 1);
    ASSERT_EQ(x.lines.size(), 11u);
    EXPECT_EQ(x.lines[3].label, " 300m ");
    request.yAxis = true;  // twice the spacing
    const AxisScale y = ScaleAxis(request);
    EXPECT_EQ(y.labelInterval, 2);
    EXPECT_EQ(y.lines[1].label, "");
    EXPECT_EQ(y.lines[2].label, " 200m ");
    request.lo = request.hi = 1.0;
    request.logarithmic = true;
    request.yAxis = false;
    EXPECT_EQ(ScaleAxis(request).range, (Range{0.1, 10.0}));
}

TEST(ChartAxisTest, LogarithmicAxisOverManyDecades) {
    AxisRequest request;
    request.lo = 3e-9;
    request.hi = 700.0;
    request.pixels = 200;
    request.logarithmic = true;
    request.minLabelSpacing = 56;
    const AxisScale scale = ScaleAxis(request);
    EXPECT_EQ(scale.step, 1.0);
    EXPECT_EQ(scale.labelInterval, 4);  // 17 pixels a decade
    ASSERT_EQ(scale.lines.size(), 13u);
    EXPECT_DOUBLE_EQ(scale.lines.front().value, 1e-9);
    EXPECT_DOUBLE_EQ(scale.lines.back().value, 1000.0);
    std::vector<std::string> labels;
    for (const GridLine& line : scale.lines) {
        if (!line.label.empty()) {
            labels.push_back(line.label);
        }
    }
    // Axis magnitude 700 keeps factor 1; the small values fall back to
    // exponent notation.
    EXPECT_EQ(labels, (std::vector<std::string>{" 1.00e-09 ", " 1.00e-05 ", " 0.1 ", " 1000 "}));

    request.lo = -5.0;
    EXPECT_THROW(ScaleAxis(request), std::invalid_argument);
}

}  // namespace
