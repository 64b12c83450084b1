// Single cell edits of the padstack table: every rule with its message, its title and the text
// the cell shows afterwards, then the values an accepted edit stores beside the cell.

#include "tests/core/padstack/PadstackFixture.h"

namespace {

using namespace kv;
using namespace kv::test;
namespace text = kv::padstack_text;

struct CellCase {
    const char* name;
    int row;
    int column;
    std::string typed;
    EditOutcome outcome;
    std::string message;  // "caption|text", "" for none
    std::string cellText;
};

void PrintTo(const CellCase& c, std::ostream* out) {
    *out << c.name;
}

class PadstackCellEdit : public PadstackTest, public ::testing::WithParamInterface<CellCase> {};

TEST_P(PadstackCellEdit, RefusesOrStoresWithItsMessage) {
    const CellCase& c = GetParam();
    const PadstackEditState before = model.State();
    const CellEditResult result = model.EditCell(c.row, c.column, c.typed);
    EXPECT_EQ(result.outcome, c.outcome);
    EXPECT_EQ(TakeMessage(), c.message);
    EXPECT_EQ(result.cellText, c.cellText);
    EXPECT_EQ(model.CellText(c.row, c.column), c.cellText);
    EXPECT_EQ(model.Modified(), c.outcome == EditOutcome::Accepted);
    if (c.outcome != EditOutcome::Accepted) {
        EXPECT_EQ(model.State(), before) << "a refused or unchanged edit stores nothing";
    }
}

const EditOutcome kAccepted = EditOutcome::Accepted;
const EditOutcome kRefused = EditOutcome::Refused;
const EditOutcome kUnchanged = EditOutcome::Unchanged;

INSTANTIATE_TEST_SUITE_P(
    SizeRules, PadstackCellEdit,
    ::testing::Values(
        CellCase{"ZeroWidth", 2, kPadWidthColumn, "0", kRefused, Titled(text::kSizesPositive),
                 "20.00"},
        CellCase{"WordClearance", 4, kClearanceColumn, "abc", kRefused,
                 Titled(text::kSizesPositive), "5.00"},
        CellCase{"ZeroClearance", 4, kClearanceColumn, "0.0", kRefused,
                 Titled(text::kSizesPositive), "5.00"},
        CellCase{"NegativeWidthMeetsTheDrillTest", 4, kPadWidthColumn, "-1", kRefused,
                 Plain(text::kPadAboveDrill), "20.00"},
        CellCase{"WidthEqualToActualDrill", 4, kPadWidthColumn, "12", kAccepted, "", "12.00"},
        CellCase{"WidthBelowActualDrill", 4, kPadWidthColumn, "11.99", kRefused,
                 Plain(text::kPadAboveDrill), "20.00"},
        CellCase{"WidthEqualToMaximum", 4, kPadWidthColumn, "50", kAccepted, "", "50.00"},
        CellCase{"WidthAboveMaximum", 4, kPadWidthColumn, "50.01", kRefused,
                 Plain("Pad size must be less than 50.00"), "20.00"},
        CellCase{"HeightAboveMaximum", 4, kPadHeightColumn, "51", kRefused,
                 Plain("Pad size must be less than 50.00"), "16.00"},
        CellCase{"HeightBelowDrill", 4, kPadHeightColumn, "11", kRefused,
                 Plain(text::kPadAboveDrill), "16.00"},
        CellCase{"RoundWidthReachingAntiPad", 2, kPadWidthColumn, "30", kRefused,
                 Titled(text::kAntiPadGreater), "20.00"},
        CellCase{"RoundWidthInsideAntiPad", 2, kPadWidthColumn, " 25 ", kAccepted, "", "25.00"},
        CellCase{"HeightReachingAntiPadIsPlain", 5, kPadHeightColumn, "26", kRefused,
                 Plain(text::kAntiPadGreater), "16.00"},
        CellCase{"HeightInsideAntiPad", 5, kPadHeightColumn, "25", kAccepted, "", "25.00"},
        CellCase{"AntiPadWidthEqualToActualDrill", 4, kAntiPadWidthColumn, "12", kRefused,
                 Titled(text::kAntiPadAboveDrill), "0.00"},
        CellCase{"AntiPadWidthAboveActualDrill", 4, kAntiPadWidthColumn, "12.01", kAccepted, "",
                 "12.01"},
        CellCase{"AntiPadWidthOnPad", 2, kAntiPadWidthColumn, "20", kRefused,
                 Titled(text::kAntiPadGreater), "30.00"},
        CellCase{"AntiPadHeightOnPad", 5, kAntiPadHeightColumn, "16", kRefused,
                 Titled(text::kAntiPadGreater), "26.00"},
        CellCase{"AntiPadHeightHasNoDrillTest", 4, kAntiPadHeightColumn, "5", kAccepted, "",
                 "5.00"},
        CellCase{"NegativeClearanceStoredAsGiven", 4, kClearanceColumn, "-3", kAccepted, "",
                 "-3.00"},
        CellCase{"UnchangedText", 2, kPadWidthColumn, "20.00", kUnchanged, "", "20.00"},
        CellCase{"ZeroAngleIsNoSize", 5, kPadAngleColumn, "0", kAccepted, "", "0.00"},
        CellCase{"NegativeAngle", 4, kAntiPadAngleColumn, "-30", kAccepted, "", "-30.00"},
        CellCase{"WordAngle", 4, kPadAngleColumn, "steep", kRefused, Titled(text::kAngleNotNumber),
                 "0.00"},
        CellCase{"TitleRow", 0, kPadWidthColumn, "Width", kUnchanged, "", "Pad Width"},
        CellCase{"RowNumbers", 3, kRowNumberColumn, "x", kUnchanged, "", "3"}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    ShapeAndLayerRules, PadstackCellEdit,
    ::testing::Values(
        CellCase{"CustomPad", 2, kPadShapeColumn, "Custom", kRefused, Titled(text::kNoCustomPad),
                 "Round"},
        CellCase{"AutoInDefaultRow", 1, kPadShapeColumn, "<Auto>", kRefused,
                 Titled(text::kDefaultNotAuto), "Round"},
        CellCase{"AutoInLayerRow", 2, kPadShapeColumn, "<Auto>", kAccepted, "", "<Auto>"},
        CellCase{"NoneAntiPadNotOffered", 2, kAntiPadShapeColumn, "<None>", kRefused,
                 Titled(text::kNotAShapeChoice), "Round"},
        CellCase{"ClearanceIsNoPadShape", 2, kPadShapeColumn, "Clearance", kRefused,
                 Titled(text::kNotAShapeChoice), "Round"},
        CellCase{"SameShapeAgain", 5, kAntiPadShapeColumn, "Oval", kUnchanged, "", "Oval"},
        CellCase{"OtherLayer", 2, kLayerNameColumn, "BOTTOM", kRefused,
                 Titled(text::kOnePadPerLayer), "TOP"},
        CellCase{"DielectricIsNoLayerChoice", 2, kLayerNameColumn, "D1", kRefused,
                 Titled(text::kNoSuchLayer), "TOP"},
        CellCase{"SameLayerAgain", 2, kLayerNameColumn, "TOP", kUnchanged, "", "TOP"},
        CellCase{"DefaultRowKeepsItsName", 1, kLayerNameColumn, "TOP", kRefused,
                 Titled(text::kDefaultHasNoLayer), "<default>"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(PadstackTest, RoundAndSquareOutlinesKeepTheirHeightEqualToTheirWidth) {
    ASSERT_EQ(model.EditCell(2, kPadWidthColumn, "25").outcome, EditOutcome::Accepted);
    EXPECT_DOUBLE_EQ(model.RowAt(2).padHeight, Mils(25));
    ASSERT_EQ(model.EditCell(2, kAntiPadWidthColumn, "40").outcome, EditOutcome::Accepted);
    EXPECT_DOUBLE_EQ(model.RowAt(2).antiPadHeight, Mils(40));
    // A rectangle keeps its height; turned square it takes its width at once.
    ASSERT_EQ(model.EditCell(4, kPadWidthColumn, "22").outcome, EditOutcome::Accepted);
    EXPECT_DOUBLE_EQ(model.RowAt(4).padHeight, Mils(16));
    ASSERT_EQ(model.EditCell(4, kPadShapeColumn, "Square").outcome, EditOutcome::Accepted);
    EXPECT_EQ(model.CellText(4, kPadHeightColumn), "22.00");
    EXPECT_EQ(TakeMessage(), "");
}

TEST_F(PadstackTest, AntiPadAngleFollowsThePadAngleForOutlinedAntiPadsOnly) {
    ASSERT_EQ(model.EditCell(5, kPadAngleColumn, "45").outcome, EditOutcome::Accepted);
    EXPECT_EQ(model.CellText(5, kAntiPadAngleColumn), "45.00");  // oval anti-pad
    ASSERT_EQ(model.EditCell(4, kPadAngleColumn, "45").outcome, EditOutcome::Accepted);
    EXPECT_EQ(model.CellText(4, kAntiPadAngleColumn), "0.00");  // clearance anti-pad
    // Turned unlike the pad, the anti-pad no longer has to enclose it.
    ASSERT_EQ(model.EditCell(5, kAntiPadAngleColumn, "10").outcome, EditOutcome::Accepted);
    EXPECT_EQ(model.EditCell(5, kPadHeightColumn, "40").outcome, EditOutcome::Accepted);
}

TEST_F(PadstackTest, CustomPadsKeepClearanceOrAutoAntiPads) {
    board.data.GetPadstack()->pads[6] =
        Pad(TableShape::Custom, 20, 20, TableShape::Clearance, 0, 0, 0, 4);
    board.LoadInto(model);
    EXPECT_EQ(model.EditCell(5, kAntiPadShapeColumn, "Round").outcome, EditOutcome::Refused);
    EXPECT_EQ(TakeMessage(), Titled(text::kCustomAntiPad));
    EXPECT_EQ(model.EditCell(5, kAntiPadShapeColumn, "<Auto>").outcome, EditOutcome::Accepted);
    // Leaving Custom is allowed; going back is not.
    EXPECT_EQ(model.EditCell(5, kPadShapeColumn, "Round").outcome, EditOutcome::Accepted);
    EXPECT_EQ(model.EditCell(5, kPadShapeColumn, "Custom").outcome, EditOutcome::Refused);
    EXPECT_EQ(TakeMessage(), Titled(text::kNoCustomPad));
}

TEST_F(PadstackTest, MetricUnitsShowAndReadMillimetres) {
    model.SetMetric(true);
    EXPECT_EQ(model.CellText(2, kPadWidthColumn), "0.51");
    ASSERT_EQ(model.EditCell(2, kPadWidthColumn, "0.6").outcome, EditOutcome::Accepted);
    EXPECT_DOUBLE_EQ(model.RowAt(2).padWidth, 0.0006);
    EXPECT_EQ(model.EditCell(4, kPadWidthColumn, "1.28").outcome, EditOutcome::Refused);
    EXPECT_EQ(TakeMessage(), Plain("Pad size must be less than 1.27"));
    EXPECT_EQ(model.CellText(2, kPadAngleColumn), "0.00");
}

TEST_F(PadstackTest, DrillEditRefusesNegativeSizesAndRewritesBothFields) {
    EXPECT_EQ(model.DrillText(), "10.00");
    EXPECT_EQ(model.ActualDrillText(), "12.00");
    DrillEditResult result = model.EditDrill("8");
    EXPECT_EQ(result.outcome, EditOutcome::Accepted);
    EXPECT_EQ(result.actualDrillText, "10.00");
    EXPECT_TRUE(model.Modified());
    result = model.EditDrill("0");
    EXPECT_EQ(result.outcome, EditOutcome::Accepted);
    EXPECT_EQ(result.actualDrillText, "2.00");
    EXPECT_EQ(TakeMessage(), "");

    model.SetMetric(true);
    result = model.EditDrill("-0.01");
    EXPECT_EQ(result.outcome, EditOutcome::Refused);
    EXPECT_EQ(TakeMessage(), Titled(text::kDrillNegative));
    EXPECT_EQ(result.drillText, "0.00");
    result = model.EditDrill("wide");
    EXPECT_EQ(TakeMessage(), Titled(text::kDrillNotNumber));
    EXPECT_EQ(model.State().drill, 0.0);
    EXPECT_EQ(model.EditDrill("0.00").outcome, EditOutcome::Unchanged);
}

}  // namespace
