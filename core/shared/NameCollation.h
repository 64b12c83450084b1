#pragma once

// The order in which people expect lists of nets, layers and pins: numbers
// within names compare as numbers. A null text ends the process with a
// report.

namespace kv {

// Orders names the way a person sorts them: digit runs (with a sign right before them) compare
// as numbers, so "NET2" < "NET10" and "A-1" < "A+1", and the punctuation marks sort
// "," "/" "-" "+" ".". A number sorts where the digits sort among the other characters
// ("A+B" < "A1" < "A+1": the "+" of "A+1" is the number's sign). Without `caseSensitive`
// letters compare case-insensitively. The order is a strict weak ordering, fit for std::sort.
// Returns -1, 0 or +1.
int CompareNames(const char* a, const char* b, bool caseSensitive);

// Orders identifiers part by part: end of text, then "_", then digit runs (compared as
// numbers, leading zeros ignored), then other characters, then letters (case-insensitive).
// Returns -1, 0 or +1.
int CompareIdentifiers(const char* a, const char* b);

}  // namespace kv
