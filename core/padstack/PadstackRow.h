#pragma once

#include <cstdint>
#include <string_view>

#include "core/padstack/PadstackShapes.h"
#include "kvcomctl/ViaRecords.h"

// One row of the padstack table: the pad and anti-pad of one layer, or of the "<default>" row
// that layers with "<Auto>" shapes take theirs from. Lengths in metres, angles in degrees.

namespace kv {

inline constexpr std::string_view kDefaultRowName = "<default>";
// The layer of the "<default>" row: none.
inline constexpr int32_t kDefaultRowLayer = -1;

struct PadstackRow {
    int32_t layer = kDefaultRowLayer;  // stackup index
    TableShape padShape = TableShape::Auto;
    TableShape antiPadShape = TableShape::Auto;
    double padWidth = 0.0;
    double padHeight = 0.0;
    double padAngle = 0.0;
    double antiPadWidth = 0.0;
    double antiPadHeight = 0.0;
    double antiPadAngle = 0.0;
    double clearance = 0.0;

    bool IsDefault() const { return layer == kDefaultRowLayer; }
    bool operator==(const PadstackRow&) const = default;
};

// The record of a row, as ViaRecords.h lays the table's shapes out in it.
PADDATA PadRecordFromRow(const PadstackRow& row);

// The row as it is drawn: an "<Auto>" pad or anti-pad takes its shape and sizes from `defaults`
// (the "<default>" row), since a record of it names no outline of its own.
PadstackRow RowAsDrawn(const PadstackRow& row, const PadstackRow& defaults);

// The row a record reads as; `layer` is not kept in the record. Records written without an
// anti-pad shape are read as ViaRecords.h tells.
PadstackRow RowFromPadRecord(const PADDATA& record, int32_t layer);

}  // namespace kv
