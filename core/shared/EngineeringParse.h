#pragma once

// The engineering parser: a number with an optional prefix letter, as a
// person types it into a field or a SPICE deck holds it. The number is read
// with a "." whatever the process locale is.

namespace kv {

// Reads a number with an optional engineering prefix letter right after it ("1.5 n", "3M",
// "10 kOhm"). Blanks and control characters anywhere are ignored, text before the first
// digit, sign or point is skipped, and only the first character after the number is taken
// as prefix. `allowAmpere` and `allowFarad` read a trailing "A"/"a" or "F" as the unit rather
// than atto or femto; `spiceSuffixes` reads "M" as milli and "X"/"x" as mega. Returns false
// and sets `result` to 0 when there is no number or it does not fit a finite double.
bool ParseEngineeringValue(const char* text, double& result, bool allowAmpere = false,
                           bool spiceSuffixes = false, bool allowFarad = false);

}  // namespace kv
