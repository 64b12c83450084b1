#include <array>
#include <optional>
#include <utility>

#include "core/padstack/PadstackRow.h"

// The table's shapes in a pad record. The layout is documented beside the record in
// ViaRecords.h; the tables here are the one place that carries it out, both ways.

namespace kv {
namespace {

struct ShapeCode {
    TableShape shape;
    int32_t code;
    bool square;
};

constexpr std::array<ShapeCode, 8> kPadCodes{{
    {TableShape::None, PAD_SHAPE_NONE, false},
    {TableShape::Auto, PAD_SHAPE_UNSET, false},
    {TableShape::Round, PAD_SHAPE_ROUND, false},
    {TableShape::Square, PAD_SHAPE_RECTANGLE, true},
    {TableShape::Rectangular, PAD_SHAPE_RECTANGLE, false},
    {TableShape::Oval, PAD_SHAPE_OVAL, false},
    {TableShape::Oblong, PAD_SHAPE_OBLONG, false},
    {TableShape::Custom, PAD_SHAPE_CUSTOM, false},
}};

constexpr std::array<ShapeCode, 8> kAntiPadCodes{{
    {TableShape::None, ANTIPAD_SHAPE_NONE, false},
    {TableShape::Auto, ANTIPAD_SHAPE_AUTO, false},
    {TableShape::Round, PAD_SHAPE_ROUND, false},
    {TableShape::Square, PAD_SHAPE_RECTANGLE, true},
    {TableShape::Rectangular, PAD_SHAPE_RECTANGLE, false},
    {TableShape::Oval, PAD_SHAPE_OVAL, false},
    {TableShape::Oblong, PAD_SHAPE_OBLONG, false},
    {TableShape::Clearance, ANTIPAD_SHAPE_CLEARANCE, false},
}};

template <std::size_t N>
std::pair<int32_t, bool> CodeOf(const std::array<ShapeCode, N>& codes, TableShape shape) {
    for (const ShapeCode& entry : codes) {
        if (entry.shape == shape) {
            return {entry.code, entry.square};
        }
    }
    // A pad cannot be "Clearance" nor an anti-pad "Custom"; the editor never stores them.
    return {codes.front().code, false};
}

// Unknown codes read as no shape: the table cannot show them, and "<None>" loses no size.
template <std::size_t N>
TableShape ShapeOf(const std::array<ShapeCode, N>& codes, int32_t code, bool square) {
    std::optional<TableShape> found;
    for (const ShapeCode& entry : codes) {
        if (entry.code == code && (!found || entry.square == square)) {
            found = entry.shape;
        }
    }
    return found.value_or(TableShape::None);
}

// The code readers of shape codes draw for an anti-pad of table code `antiPadCode`: its own
// outline, or none for the shapes without one ("Clearance" is drawn around the drilled hole).
int32_t ReaderOutlineCode(int32_t antiPadCode) {
    return antiPadCode >= PAD_SHAPE_ROUND && antiPadCode <= PAD_SHAPE_OBLONG ? antiPadCode
                                                                             : PAD_SHAPE_NONE;
}

// A record written without an anti-pad shape: see ViaRecords.h.
TableShape UnsetAntiPadShape(const PADDATA& record, TableShape padShape) {
    if (record.padType == PAD_TYPE_ANTIPAD) {
        return ShapeOf(kAntiPadCodes,
                       record.shape == PAD_SHAPE_CUSTOM ? ANTIPAD_SHAPE_CLEARANCE : record.shape,
                       false);
    }
    if (record.antipad_x > 0.0) {
        return padShape == TableShape::Custom ? TableShape::Clearance : padShape;
    }
    return record.clearance > 0.0 ? TableShape::Clearance : TableShape::None;
}

}  // namespace

PADDATA PadRecordFromRow(const PadstackRow& row) {
    PADDATA record{};
    const auto [padCode, squarePad] = CodeOf(kPadCodes, row.padShape);
    const auto [antiPadCode, squareAntiPad] = CodeOf(kAntiPadCodes, row.antiPadShape);
    record.padType = row.padShape == TableShape::None ? PAD_TYPE_ANTIPAD : PAD_TYPE_PAD;
    record.shape = padCode;
    record.antipadShape = antiPadCode;
    record.shapeStyle =
        (squarePad ? PAD_STYLE_SQUARE_PAD : 0) | (squareAntiPad ? PAD_STYLE_SQUARE_ANTIPAD : 0);
    record.pad_x = row.padWidth;
    record.pad_y = row.padHeight;
    record.angle = row.padAngle;
    record.antipad_x = row.antiPadWidth;
    record.antipad_y = row.antiPadHeight;
    record.antipadAngle = row.antiPadAngle;
    record.clearance = row.clearance;
    if (record.padType == PAD_TYPE_ANTIPAD) {
        // The via views and the export read an anti-pad record's shape and pad fields as the
        // anti-pad: put it there, so a plane layer written back unchanged is the record it was
        // read from, and park the row's unused pad sizes in the anti-pad fields.
        record.shape = ReaderOutlineCode(antiPadCode);
        std::swap(record.pad_x, record.antipad_x);
        std::swap(record.pad_y, record.antipad_y);
        std::swap(record.angle, record.antipadAngle);
    }
    return record;
}

PadstackRow RowFromPadRecord(const PADDATA& record, int32_t layer) {
    PadstackRow row;
    row.layer = layer;
    row.padWidth = record.pad_x;
    row.padHeight = record.pad_y;
    row.padAngle = record.angle;
    row.antiPadWidth = record.antipad_x;
    row.antiPadHeight = record.antipad_y;
    row.antiPadAngle = record.antipadAngle;
    row.clearance = record.clearance;
    if (record.antipadShape == ANTIPAD_SHAPE_UNSET && record.padType == PAD_TYPE_ANTIPAD) {
        // The older layout: the record's shape and pad sizes are the anti-pad's, and the layer
        // has no pad to size.
        row.padShape = TableShape::None;
        row.antiPadShape = UnsetAntiPadShape(record, row.padShape);
        if (row.antiPadWidth == 0.0) {
            row.antiPadWidth = record.pad_x;
            row.antiPadHeight = record.pad_y;
            row.antiPadAngle = record.angle;
            row.padWidth = 0.0;
            row.padHeight = 0.0;
            row.padAngle = 0.0;
        }
        return row;
    }
    if (record.padType == PAD_TYPE_ANTIPAD) {
        // Written by PadRecordFromRow: the anti-pad in the shape and pad fields.
        row.padShape = TableShape::None;
        row.antiPadShape = ShapeOf(kAntiPadCodes, record.antipadShape,
                                   (record.shapeStyle & PAD_STYLE_SQUARE_ANTIPAD) != 0);
        std::swap(row.padWidth, row.antiPadWidth);
        std::swap(row.padHeight, row.antiPadHeight);
        std::swap(row.padAngle, row.antiPadAngle);
        return row;
    }
    row.padShape =
        ShapeOf(kPadCodes, record.shape, (record.shapeStyle & PAD_STYLE_SQUARE_PAD) != 0);
    row.antiPadShape = record.antipadShape == ANTIPAD_SHAPE_UNSET
                           ? UnsetAntiPadShape(record, row.padShape)
                           : ShapeOf(kAntiPadCodes, record.antipadShape,
                                     (record.shapeStyle & PAD_STYLE_SQUARE_ANTIPAD) != 0);
    return row;
}

PadstackRow RowAsDrawn(const PadstackRow& row, const PadstackRow& defaults) {
    PadstackRow drawn = row;
    if (row.padShape == TableShape::Auto) {
        drawn.padShape = defaults.padShape;
        drawn.padWidth = defaults.padWidth;
        drawn.padHeight = defaults.padHeight;
        drawn.padAngle = defaults.padAngle;
    }
    if (row.antiPadShape == TableShape::Auto) {
        drawn.antiPadShape = defaults.antiPadShape;
        drawn.antiPadWidth = defaults.antiPadWidth;
        drawn.antiPadHeight = defaults.antiPadHeight;
        drawn.antiPadAngle = defaults.antiPadAngle;
        drawn.clearance = defaults.clearance;
    }
    return drawn;
}

}  // namespace kv
