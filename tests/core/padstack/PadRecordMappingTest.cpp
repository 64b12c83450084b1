// The table's shapes kept in pad records: every row the editor can hold survives the trip to a
// record and back, records written before the anti-pad shape existed read sensibly, and a whole
// padstack written back and loaded again is the same.

#include <array>
#include <cstring>

#include "tests/core/padstack/PadstackFixture.h"

namespace {

using namespace kv;
using namespace kv::test;

constexpr std::array kPadShapes{TableShape::Square, TableShape::Round,  TableShape::Rectangular,
                                TableShape::Oval,   TableShape::Oblong, TableShape::Custom,
                                TableShape::Auto,   TableShape::None};
constexpr std::array kAntiPadShapes{TableShape::Square, TableShape::Round,  TableShape::Rectangular,
                                    TableShape::Oval,   TableShape::Oblong, TableShape::Clearance,
                                    TableShape::Auto,   TableShape::None};

TEST(PadRecordMapping, EveryPairOfShapesSurvivesARecord) {
    int variant = 0;
    for (const TableShape pad : kPadShapes) {
        for (const TableShape antiPad : kAntiPadShapes) {
            ++variant;
            PadstackRow row;
            row.layer = 4;
            row.padShape = pad;
            row.antiPadShape = antiPad;
            row.padWidth = Mils(10 + variant);
            row.padHeight = Mils(20 + variant);
            row.padAngle = variant;
            row.antiPadWidth = Mils(30 + variant);
            row.antiPadHeight = Mils(40 + variant);
            row.antiPadAngle = -variant;
            row.clearance = Mils(variant);
            const PADDATA record = PadRecordFromRow(row);
            EXPECT_EQ(RowFromPadRecord(record, 4), row)
                << TableShapeText(pad) << " in " << TableShapeText(antiPad);
            // Readers that know only the shape codes see what they know.
            EXPECT_EQ(record.padType, pad == TableShape::None ? PAD_TYPE_ANTIPAD : PAD_TYPE_PAD);
            EXPECT_GE(record.shape, PAD_SHAPE_NONE);
            EXPECT_LE(record.shape, PAD_SHAPE_CUSTOM);
        }
    }
}

TEST(PadRecordMapping, SquareAndAutoUseTheSpareCodesReadersAlreadyKnow) {
    const PADDATA square = Pad(TableShape::Square, 20, 20, TableShape::Square, 30, 30);
    EXPECT_EQ(square.shape, PAD_SHAPE_RECTANGLE);
    EXPECT_EQ(square.antipadShape, PAD_SHAPE_RECTANGLE);
    EXPECT_EQ(square.shapeStyle, PAD_STYLE_SQUARE_PAD | PAD_STYLE_SQUARE_ANTIPAD);
    const PADDATA automatic = Pad(TableShape::Auto, 0, 0, TableShape::Auto, 0, 0);
    EXPECT_EQ(automatic.shape, PAD_SHAPE_UNSET);
    EXPECT_EQ(automatic.antipadShape, ANTIPAD_SHAPE_AUTO);
}

TEST(PadRecordMapping, RecordsWithoutAnAntiPadShapeReadAsTheirSizesSay) {
    PADDATA plane{};
    plane.padType = PAD_TYPE_ANTIPAD;
    plane.shape = PAD_SHAPE_ROUND;
    plane.pad_x = plane.pad_y = Mils(34);
    plane.clearance = Mils(6);
    PadstackRow row = RowFromPadRecord(plane, 2);
    EXPECT_EQ(row.padShape, TableShape::None);
    EXPECT_EQ(row.antiPadShape, TableShape::Round);
    EXPECT_DOUBLE_EQ(row.antiPadWidth, Mils(34));
    EXPECT_EQ(row.padWidth, 0.0);

    PADDATA pad{};
    pad.padType = PAD_TYPE_PAD;
    pad.shape = PAD_SHAPE_OVAL;
    pad.pad_x = Mils(20);
    pad.antipad_x = Mils(30);
    EXPECT_EQ(RowFromPadRecord(pad, 0).antiPadShape, TableShape::Oval);
    pad.antipad_x = 0.0;
    pad.clearance = Mils(5);
    EXPECT_EQ(RowFromPadRecord(pad, 0).antiPadShape, TableShape::Clearance);
    pad.clearance = 0.0;
    EXPECT_EQ(RowFromPadRecord(pad, 0).antiPadShape, TableShape::None);
    pad.shape = 42;  // no code the table knows
    EXPECT_EQ(RowFromPadRecord(pad, 0).padShape, TableShape::None);
}

// Readers of the shape codes look at type, shape and sizes; only the table's own anti-pad shape
// may be added when a plane layer read from an older record is written back.
TEST(PadRecordMapping, PlaneLayerWrittenBackIsTheRecordReadersKnew) {
    PADDATA plane{};
    plane.padType = PAD_TYPE_ANTIPAD;
    plane.shape = PAD_SHAPE_OVAL;
    plane.pad_x = Mils(34);
    plane.pad_y = Mils(40);
    plane.angle = 45;
    plane.clearance = Mils(6);
    PADDATA again = PadRecordFromRow(RowFromPadRecord(plane, 2));
    EXPECT_EQ(again.antipadShape, PAD_SHAPE_OVAL);
    again.antipadShape = plane.antipadShape;
    EXPECT_EQ(std::memcmp(&again, &plane, sizeof plane), 0);
    // Shapes without an outline of their own give readers none, not a code they would draw.
    const PADDATA clearance = Pad(TableShape::None, 12, 12, TableShape::Clearance, 0, 0, 0, 5);
    EXPECT_EQ(clearance.padType, PAD_TYPE_ANTIPAD);
    EXPECT_EQ(clearance.shape, PAD_SHAPE_NONE);
    EXPECT_EQ(RowFromPadRecord(clearance, 0).antiPadShape, TableShape::Clearance);
    EXPECT_DOUBLE_EQ(RowFromPadRecord(clearance, 0).padWidth, Mils(12));
}

TEST_F(PadstackTest, WrittenBackPadstackLoadsAsTheSameTable) {
    ASSERT_EQ(model.EditCell(1, kPadShapeColumn, "Square").outcome, EditOutcome::Accepted);
    ASSERT_EQ(model.EditCell(2, kPadShapeColumn, "<Auto>").outcome, EditOutcome::Accepted);
    ASSERT_EQ(model.EditCell(5, kPadAngleColumn, "30").outcome, EditOutcome::Accepted);
    ASSERT_TRUE(model.RemoveRow(3));  // GND loses its anti-pad
    ASSERT_EQ(model.EditDrill("9").outcome, EditOutcome::Accepted);
    ASSERT_TRUE(model.SetFirstLayer("GND"));

    PADSTACK& padstack = *board.data.GetPadstack();
    const PADDATA dielectric = padstack.pads[1];
    model.WriteTo(padstack);
    EXPECT_EQ(padstack.pads[2].padType, PAD_TYPE_NONE);
    EXPECT_DOUBLE_EQ(padstack.pads[2].pad_x, Mils(30)) << "a layer without a row keeps the rest";
    EXPECT_EQ(std::memcmp(&padstack.pads[1], &dielectric, sizeof dielectric), 0);
    EXPECT_EQ(padstack.firstLayer, 2);

    PadstackEditModel again;
    ASSERT_TRUE(again.Load(*board.data.GetStackup(), padstack, model.DefaultPadRecord()));
    EXPECT_EQ(again.State(), model.State());
    EXPECT_EQ(again.FirstLayerText(), "GND");
    EXPECT_EQ(again.LastLayerText(), "<bottom>");
}

TEST_F(PadstackTest, ShortPadArrayGrowsToTheStackupAndEmptyStackupLoadsNothing) {
    PADSTACK padstack{};
    padstack.pads = new PADDATA[1]{};
    padstack.padCount = 1;
    model.WriteTo(padstack);
    ASSERT_EQ(padstack.padCount, 7);
    EXPECT_EQ(padstack.pads[6].shape, PAD_SHAPE_OBLONG);
    delete[] padstack.pads;

    const STACKUPARRAY empty{0, nullptr};
    PadstackEditModel other;
    EXPECT_FALSE(other.Load(empty, padstack, PADDATA{}));
}

}  // namespace
