#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "core/eyediagram/MaskOutline.h"
#include "kvcomctl/EyeMask.h"

// The eye mask laid over a folded eye, column by column of the eye's grid.
//
// Placement. The eye's time axis starts at a mean crossing (see EyeFold.h).
// The mask keeps the shape the mask page draws (MaskOutline: scaled about
// time 0 and 0 V, then shifted by the offsets, time points in percent of
// the interval) and is laid on the eye so that the middle of its own first
// crossing window, (TCross1Min + TCross1Max) / 2 percent before scale and
// offset, falls on the mean crossing. The mask's time windows say where the
// crossings may lie, so the eye's crossings belong in their middle: the
// default mask, unscaled and unshifted, then leaves 5 % of the interval
// between a clean eye's crossings and the corners of its opening, and a
// time offset or scale moves the mask off that place as the page shows it.
// The eye repeats every interval, so the mask is tested against every unit
// interval: a point is inside when it is inside the placed mask shifted by
// some whole number of intervals.
//
// Hits. A folded point is a hit when it lies inside the opening (the
// hexagon; its border is outside) or beyond the level limits (above the
// placed PTopMax or below the placed PBaseMin) at a time between the earliest
// first crossing and the latest second crossing. The crossing windows bound
// crossings, not points, and make no hits.
//
// Margin. The opening scaled about its centre, midway between its two
// corners at the crossing level, by 1 + margin / 100 just reaches the nearest
// folded point: a positive margin is how many percent the opening could grow
// before a hit, a negative one how many percent it must shrink to clear every
// point. The level limits take no part in it.

namespace kv {

// What the fold keeps per grid column. Volts throughout.
struct MaskColumn {
    // A point strictly between the two is inside the opening.
    double openBelow = 0.0;
    double openAbove = 0.0;
    // A point above `top` or below `bottom` is beyond the level limits.
    double top = std::numeric_limits<double>::infinity();
    double bottom = -std::numeric_limits<double>::infinity();
    // The lowest point folded at or above the crossing level, and the
    // highest below it: along a column the opening's scale needed to reach a
    // point grows with the point's distance from the crossing level, so these
    // two decide the column's margin.
    double nearestAbove = std::numeric_limits<double>::infinity();
    double nearestBelow = -std::numeric_limits<double>::infinity();
};

// The mask as drawn over the eye, in seconds from the mean crossing and volts.
MaskOutline PlaceMaskOnEye(const EYEMASK& mask, double interval);

class EyeMaskTest {
public:
    // None when the mask cannot be tested: a value that is not a finite
    // number, a scale not above 0, values out of order (FindMaskOrderError),
    // or an opening without width or height. `columns` columns cover `eyes`
    // intervals of `interval` seconds (interval > 0, eyes and columns >= 1).
    static std::optional<EyeMaskTest> Place(const EYEMASK& mask, double interval, int32_t eyes,
                                            int32_t columns);

    // The level that splits nearestAbove from nearestBelow: the placed PCross.
    double CrossingLevel() const { return m_crossing; }
    std::span<MaskColumn> Columns() { return m_columns; }
    // From the nearest points the fold has kept; not a number before any.
    double MarginPercent() const;

private:
    EyeMaskTest() = default;

    // The scale of the opening about its centre that reaches a point at
    // `height` (its distance from the crossing level over the opening's half
    // height on that side) and `offset` seconds from the centre.
    double Gauge(double height, double offset) const;
    // How deep a point at `offset` seconds from the centre lies in the
    // opening's time span: 1 between rise and fall delay, falling to 0 at the
    // corners, negative beyond.
    double Depth(double offset) const;

    double m_interval = 0.0;
    double m_centre = 0.0;      // seconds, eye time
    double m_halfWidth = 0.0;   // centre to either corner
    double m_riseInset = 0.0;   // corner to rise delay
    double m_fallInset = 0.0;   // fall delay to corner
    double m_crossing = 0.0;    // volts
    double m_topHeight = 0.0;   // crossing level to the opening's top
    double m_baseHeight = 0.0;  // opening's bottom to the crossing level
    std::vector<MaskColumn> m_columns;
    std::vector<double> m_columnOffsets;  // column time minus centre, seconds
};

}  // namespace kv
