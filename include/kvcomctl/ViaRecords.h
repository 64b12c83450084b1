#pragma once

#include <cstdint>
#include <type_traits>

// The board stackup, padstack and pad records that a host hands to the via
// visualizer and that the padstack editor edits. They are plain records with a
// fixed layout: a host compiled against another copy of this header must see
// the same bytes. Lengths are metres, angles degrees.
//
// Arrays are (count, pointer) pairs. An array placed into a record that a
// library object owns (IViaVizData) must come from `new[]` of its record type:
// the object frees it with `delete[]` when it is destroyed.

// Names are NUL-terminated UTF-8 of at most this many bytes before the NUL.
inline constexpr int VIA_NAME_CAPACITY = 63;

// STACKUPLAYER::kind
inline constexpr int32_t STACKUP_CONDUCTOR = 0;
inline constexpr int32_t STACKUP_DIELECTRIC = 1;

// STACKUPLAYER::usage of a conductor layer: these two mean a plane, any other
// value a signal layer.
inline constexpr int32_t STACKUP_USAGE_PLANE = 1;
inline constexpr int32_t STACKUP_USAGE_PLANE_SPLIT = 2;

// PADDATA::padType
inline constexpr int32_t PAD_TYPE_NONE = 0;
inline constexpr int32_t PAD_TYPE_PAD = 1;
inline constexpr int32_t PAD_TYPE_ANTIPAD = 2;

// PADDATA::shape (0 and 1 both mean no shape)
inline constexpr int32_t PAD_SHAPE_NONE = 0;
inline constexpr int32_t PAD_SHAPE_UNSET = 1;
inline constexpr int32_t PAD_SHAPE_ROUND = 2;
inline constexpr int32_t PAD_SHAPE_RECTANGLE = 3;
inline constexpr int32_t PAD_SHAPE_OVAL = 4;
inline constexpr int32_t PAD_SHAPE_OBLONG = 5;
inline constexpr int32_t PAD_SHAPE_CUSTOM = 6;

struct STACKUPLAYER {
    char name[VIA_NAME_CAPACITY + 1];
    int32_t kind;      // STACKUP_CONDUCTOR or STACKUP_DIELECTRIC
    int32_t usage;     // conductor layers: plane or signal
    double thickness;  // metres
};

// The stackup, top layer first.
struct STACKUPARRAY {
    int32_t count;
    STACKUPLAYER* layers;
};

struct PADDATA {
    int32_t padType;      // PAD_TYPE_*
    int32_t shape;        // PAD_SHAPE_*
    double pad_x;         // pad width
    double pad_y;         // pad height
    double angle;         // pad angle, degrees
    double antipad_x;     // anti-pad width
    double antipad_y;     // anti-pad height
    double antipadAngle;  // anti-pad angle, degrees
    // Zero in a record written without them, which reads as "not given" to the padstack
    // editor (see below).
    int32_t antipadShape;  // ANTIPAD_SHAPE_*
    int32_t shapeStyle;    // PAD_STYLE_* bits
    double clearance;      // clearance (anti-pad) size
};

// How the padstack editor's table shapes are kept in a PADDATA, so that a padstack written back
// and read again shows the same table:
//
//   pad shape       shape                 shapeStyle        padType
//   "<None>"        PAD_SHAPE_NONE (0)                      PAD_TYPE_ANTIPAD
//   "<Auto>"        PAD_SHAPE_UNSET (1)                     PAD_TYPE_PAD
//   "Round"         PAD_SHAPE_ROUND
//   "Square"        PAD_SHAPE_RECTANGLE   PAD_STYLE_SQUARE_PAD
//   "Rectangular"   PAD_SHAPE_RECTANGLE
//   "Oval"          PAD_SHAPE_OVAL
//   "Oblong"        PAD_SHAPE_OBLONG
//   "Custom"        PAD_SHAPE_CUSTOM
//
//   anti-pad shape  antipadShape              shapeStyle
//   "<None>"        ANTIPAD_SHAPE_NONE
//   "<Auto>"        ANTIPAD_SHAPE_AUTO
//   "Round"         PAD_SHAPE_ROUND
//   "Square"        PAD_SHAPE_RECTANGLE       PAD_STYLE_SQUARE_ANTIPAD
//   "Rectangular"   PAD_SHAPE_RECTANGLE
//   "Oval"          PAD_SHAPE_OVAL
//   "Oblong"        PAD_SHAPE_OBLONG
//   "Clearance"     ANTIPAD_SHAPE_CLEARANCE   (the pad's outline grown by `clearance`)
//
// Readers that know only the shape codes see "<Auto>" as no pad, since codes 0 and 1 both mean
// none; the editor tells them apart. A layer row with a pad is PAD_TYPE_PAD, one without
// ("<None>") PAD_TYPE_ANTIPAD; a layer with no row in the table is PAD_TYPE_NONE and keeps the
// rest of its record. In a PAD_TYPE_PAD record pad_x, pad_y and angle describe the pad,
// antipad_x, antipad_y and antipadAngle the anti-pad. A PAD_TYPE_ANTIPAD record keeps the layout
// readers of the shape codes know: `shape`, pad_x, pad_y and angle are the anti-pad's (`shape` is
// its outline code, PAD_SHAPE_NONE for "Clearance" and "<Auto>", which have none of their own),
// and antipad_x, antipad_y and antipadAngle hold the row's pad sizes, which a "<None>" pad keeps
// for the table only. So a plane layer read and written back unchanged is the same record.
//
// A record whose antipadShape is ANTIPAD_SHAPE_UNSET was written without an anti-pad shape. The
// editor then reads a PAD_TYPE_ANTIPAD record as an anti-pad of `shape` sized by pad_x and
// pad_y and turned by angle (when antipad_x is zero, and then with no pad size), and any other
// record as an anti-pad of the pad's shape when it has an anti-pad width, "Clearance" when it has
// only a clearance, and
// "<None>" otherwise.
inline constexpr int32_t ANTIPAD_SHAPE_UNSET = 0;
inline constexpr int32_t ANTIPAD_SHAPE_NONE = 1;
inline constexpr int32_t ANTIPAD_SHAPE_CLEARANCE = 6;
inline constexpr int32_t ANTIPAD_SHAPE_AUTO = 7;

// PADDATA::shapeStyle bits
inline constexpr int32_t PAD_STYLE_SQUARE_PAD = 1;
inline constexpr int32_t PAD_STYLE_SQUARE_ANTIPAD = 2;

struct PADSTACK {
    char name[VIA_NAME_CAPACITY + 1];
    double drill;        // drill diameter
    double drillExtra;   // kept for the host; the via views and the export do not read it
    double plating;      // plating thickness
    int32_t firstLayer;  // stackup index of the first layer of the via's span
    int32_t lastLayer;   // stackup index of the last layer of the span
    int32_t padCount;    // one pad per stackup layer, same index as the layer
    PADDATA* pads;
};

static_assert(std::is_standard_layout_v<STACKUPLAYER> &&
              std::is_trivially_copyable_v<STACKUPLAYER>);
static_assert(std::is_standard_layout_v<STACKUPARRAY> &&
              std::is_trivially_copyable_v<STACKUPARRAY>);
static_assert(std::is_standard_layout_v<PADDATA> && std::is_trivially_copyable_v<PADDATA>);
static_assert(std::is_standard_layout_v<PADSTACK> && std::is_trivially_copyable_v<PADSTACK>);
