#pragma once

#include <array>

// The fourteen SI prefixes the chart labels its axes with, from femto to
// yotta, and the choice of one for a magnitude.

namespace kv {

struct SiPrefix {
    const char* text;  // "" for the row without a prefix
    double factor;
};

inline constexpr int kSiPrefixCount = 14;
// The row of factor 1, used when prefixes are off or the magnitude is 0.
inline constexpr int kNoPrefixRow = 5;

// The rows in order of rising factor: "f" (1e-15) first, "Y" (1e24) last.
const std::array<SiPrefix, kSiPrefixCount>& SiPrefixes();

// The row for magnitude `a` (taken as |a|): the first row whose next
// row's factor is at least a, so a / factor lies above 1 and at most 1000;
// the last row beyond the table. Without prefixes, or for 0, the row of
// factor 1.
int ChoosePrefixRow(double a, bool prefixes);

}  // namespace kv
