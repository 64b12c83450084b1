#include "core/chart/SiPrefix.h"

#include <cmath>

namespace kv {
namespace {

// The letters as four-byte cells, one letter and NUL padding each, from
// "Y" down to "f"; the rows point into them.
constexpr char kLetterCells[13][4] = {"Y", "Z", "E", "P", "T", "G", "M",
                                      "k", "m", "u", "n", "p", "f"};
constexpr char kNoLetter[4] = "";

}  // namespace

const std::array<SiPrefix, kSiPrefixCount>& SiPrefixes() {
    static const std::array<SiPrefix, kSiPrefixCount> rows{{
        {kLetterCells[12], 1e-15},
        {kLetterCells[11], 1e-12},
        {kLetterCells[10], 1e-9},
        {kLetterCells[9], 1e-6},
        {kLetterCells[8], 1e-3},
        {kNoLetter, 1},
        {kLetterCells[7], 1e3},
        {kLetterCells[6], 1e6},
        {kLetterCells[5], 1e9},
        {kLetterCells[4], 1e12},
        {kLetterCells[3], 1e15},
        {kLetterCells[2], 1e18},
        {kLetterCells[1], 1e21},
        {kLetterCells[0], 1e24},
    }};
    return rows;
}

int ChoosePrefixRow(double a, bool prefixes) {
    a = std::fabs(a);
    if (!prefixes || a == 0.0) {
        return kNoPrefixRow;
    }
    const auto& rows = SiPrefixes();
    for (int i = 0; i + 1 < kSiPrefixCount; ++i) {
        if (a <= rows[static_cast<size_t>(i) + 1].factor) {
            return i;
        }
    }
    return kSiPrefixCount - 1;
}

}  // namespace kv
