#pragma once

#include <string_view>

// Dialog layouts are described in dialog units, which scale with the dialog's
// font: a horizontal unit is a quarter of the font's average character width,
// a vertical unit an eighth of its height. Converting through the font keeps
// a layout's proportions whatever font the host runs with.

namespace kv {

struct DialogRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

struct DialogBaseUnits {
    int x = 0;  // average character width in pixels
    int y = 0;  // character height in pixels
};

// The letters whose mean width makes the horizontal base unit.
inline constexpr std::string_view kBaseUnitSample =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// Base units from the pixel width of kBaseUnitSample and the font height:
// the mean width is rounded to the nearest pixel.
DialogBaseUnits BaseUnitsFromFont(int sampleWidth, int fontHeight);

// A rectangle in dialog units to pixels, each value rounded to nearest.
DialogRect DialogUnitsToPixels(const DialogRect& units, const DialogBaseUnits& base);

}  // namespace kv
