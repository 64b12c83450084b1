// The rules over the whole padstack: rows added and removed, the layer span with the layers
// vias already use, and the checks before the table is written back, in their order.

#include "tests/core/padstack/PadstackFixture.h"

namespace {

using namespace kv;
using namespace kv::test;
namespace text = kv::padstack_text;

TEST_F(PadstackTest, RowsComeAndGoButTheDefaultAndOneLayerStay) {
    ASSERT_EQ(model.GridRowCount(), 6);
    EXPECT_EQ(model.CellText(1, kLayerNameColumn), "<default>");
    EXPECT_FALSE(model.RemoveRow(1));
    EXPECT_EQ(TakeMessage(), Titled(text::kCantDeleteDefault));
    ASSERT_TRUE(model.RemoveRow(3));
    EXPECT_EQ(model.CellText(3, kLayerNameColumn), "SIG");

    // The free layer is taken first, with shapes from the default row.
    const int added = model.AddRow();
    EXPECT_EQ(model.CellText(added, kLayerNameColumn), "GND");
    EXPECT_EQ(model.CellText(added, kPadShapeColumn), "<Auto>");
    EXPECT_EQ(model.CellText(added, kAntiPadShapeColumn), "<Auto>");

    while (model.GridRowCount() > 3) {
        ASSERT_TRUE(model.RemoveRow(2));
    }
    EXPECT_FALSE(model.RemoveRow(2));
    EXPECT_EQ(TakeMessage(), Titled(text::kCantDeleteAll));
    EXPECT_EQ(model.GridRowCount(), 3);
}

TEST_F(PadstackTest, SpanNamesTopAndBottomAndKeepsUsedLayers) {
    EXPECT_EQ(model.SpanChoices(),
              (std::vector<std::string>{"<top>", "TOP", "GND", "SIG", "BOTTOM", "<bottom>"}));
    EXPECT_EQ(model.FirstLayerText(), "<top>");
    EXPECT_EQ(model.LastLayerText(), "<bottom>");

    model.SetUsedLayers({0, 4});
    EXPECT_FALSE(model.SetFirstLayer("GND"));
    EXPECT_EQ(TakeMessage(), Titled("Some via that uses this padstack is already connected to TOP "
                                    "layer.\nLayer span has to include TOP layer!"));
    EXPECT_FALSE(model.SetLastLayer("GND"));
    EXPECT_EQ(TakeMessage(), Titled("Some via that uses this padstack is already connected to SIG "
                                    "layer.\nLayer span has to include SIG layer!"));
    EXPECT_EQ(model.State().lastLayer, 6);
    EXPECT_TRUE(model.SetLastLayer("SIG"));
    EXPECT_EQ(model.LastLayerText(), "SIG");

    // A start below the end, or a layer that is no conductor, cannot be chosen.
    model.SetUsedLayers({});
    EXPECT_FALSE(model.SetFirstLayer("<bottom>"));
    EXPECT_EQ(TakeMessage(), Titled(text::kBadStartLayer));
    EXPECT_FALSE(model.SetFirstLayer("D1"));
    EXPECT_EQ(TakeMessage(), Titled(text::kBadStartLayer));
    EXPECT_TRUE(model.SetFirstLayer("GND"));
    EXPECT_FALSE(model.SetLastLayer("<top>"));
    EXPECT_EQ(TakeMessage(), Titled(text::kBadEndLayer));
}

TEST_F(PadstackTest, SoundTableAndEachWholeTableFailure) {
    EXPECT_TRUE(model.CheckTable());
    EXPECT_EQ(TakeMessage(), "");

    PadstackEditModel duplicate = model;
    duplicate.AddRow();  // every layer has a row: the new one repeats the top layer
    EXPECT_FALSE(duplicate.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled(text::kOnePadPerLayer));

    PadstackEditModel thickDrill = model;
    ASSERT_EQ(thickDrill.EditDrill("28").outcome, EditOutcome::Accepted);  // actual 30
    EXPECT_FALSE(thickDrill.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled(text::kDrillBelowAntiPads));

    PadstackEditModel drillOverPads = model;
    ASSERT_EQ(drillOverPads.EditDrill("16").outcome, EditOutcome::Accepted);  // actual 18
    EXPECT_FALSE(drillOverPads.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled(text::kDrillBelowPads));
    // A pad as large as the actual drill passes, as it does in a cell.
    ASSERT_EQ(drillOverPads.EditDrill("14").outcome, EditOutcome::Accepted);  // actual 16
    EXPECT_TRUE(drillOverPads.CheckTable());

    PadstackEditModel swollen = model;  // an oblong turned square outgrows its oval anti-pad
    ASSERT_EQ(swollen.EditCell(5, kPadWidthColumn, "28").outcome, EditOutcome::Accepted);
    ASSERT_EQ(swollen.EditCell(5, kPadShapeColumn, "Square").outcome, EditOutcome::Accepted);
    EXPECT_FALSE(swollen.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled(text::kAntiPadGreater));

    // Vias that reach a layer after the span was narrowed: the last check tells.
    PadstackEditModel narrowed = model;
    ASSERT_TRUE(narrowed.SetLastLayer("SIG"));
    narrowed.SetUsedLayers({6});
    EXPECT_FALSE(narrowed.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled("Some via that uses this padstack is already connected to "
                                    "BOTTOM layer.\nLayer span has to include BOTTOM layer!"));
}

TEST_F(PadstackTest, CustomPadNeedsItsOwnOrTheDefaultClearance) {
    PADSTACK& padstack = *board.data.GetPadstack();
    padstack.pads[6] = Pad(TableShape::Custom, 20, 20, TableShape::Clearance, 0, 0, 0, 4);
    board.LoadInto(model);
    EXPECT_TRUE(model.CheckTable());
    ASSERT_EQ(model.EditCell(5, kAntiPadShapeColumn, "<Auto>").outcome, EditOutcome::Accepted);
    EXPECT_FALSE(model.CheckTable());  // the default's anti-pad is round
    EXPECT_EQ(TakeMessage(), Titled(text::kCustomWithoutClearance));
    ASSERT_EQ(model.EditCell(1, kAntiPadShapeColumn, "Clearance").outcome, EditOutcome::Accepted);
    EXPECT_TRUE(model.CheckTable());

    // A Custom default pad needs its own Clearance anti-pad.
    board.defaultPad = Pad(TableShape::Custom, 20, 20, TableShape::Auto, 0, 0);
    board.LoadInto(model);
    EXPECT_FALSE(model.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled(text::kCustomWithoutClearance));
}

TEST_F(PadstackTest, FirstFailingCheckInOrderIsTheOneShown) {
    // Two rows for one layer and a drill through the anti-pads: the duplicate is told.
    model.AddRow();
    ASSERT_EQ(model.EditDrill("28").outcome, EditOutcome::Accepted);
    EXPECT_FALSE(model.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled(text::kOnePadPerLayer));
    ASSERT_TRUE(model.RemoveRow(model.GridRowCount() - 1));
    // Drill through both pads and anti-pads: the anti-pads come first.
    EXPECT_FALSE(model.CheckTable());
    EXPECT_EQ(TakeMessage(), Titled(text::kDrillBelowAntiPads));
}

}  // namespace
