#pragma once

// Text helpers shared by every view and exporter that shows a physical quantity: engineering
// unit formatting and parsing, bounded copies into caller buffers, blank removal, the natural
// ordering of net, layer and pin names, and date stamps for file names.
//
// Caller buffers come as (pointer, capacity): capacity counts the characters that may be
// written without the terminating NUL, so the caller provides capacity + 1 bytes. Text
// arguments are NUL-terminated; a null text is a programming error and ends the process with
// a report naming this module and the line. Nothing here keeps state, so every function may be
// called from any thread as long as buffers are not shared. Numbers are read and written with
// a "." decimal point whatever the process locale is.

#include <cstddef>
#include <ctime>
#include <string>

namespace kv {

// Longest unit text a formatter delivers; a separate unit buffer needs one byte more.
inline constexpr std::size_t kUnitTextCapacity = 15;
// Longest number text a formatter delivers.
inline constexpr std::size_t kNumberTextCapacity = 39;

// Bytes FormatCompactExponent may write, NUL included: "-4.940656e-324" is the longest text.
inline constexpr std::size_t kCompactExponentSize = 15;

// Copies `source` until its end or until `capacity` characters, then writes a NUL.
// Returns the number of characters copied.
std::size_t CopyBounded(char* destination, const char* source, std::size_t capacity);

// Appends `source` to the text in `destination` while the total stays within `capacity`
// characters. A destination already `capacity` or more characters long is left as it is.
// Returns the resulting length.
std::size_t AppendBounded(char* destination, const char* source, std::size_t capacity);

// Unit formatters. With `unit` null, `destination` receives "<number> <unit>"; otherwise it
// receives the number alone and `unit` (at least kUnitTextCapacity + 1 bytes) the unit text.
// Either way the text in `destination` is cut at `capacity` characters. A magnitude beyond the
// largest unit prints "999" with that unit and returns false; so does a value whose number text
// would not fit kNumberTextCapacity characters (such as 1e308 V) or that is no number at all
// (NaN, infinity). Otherwise the result is true.

// Lengths in metres, shown in inches or mils, or in um, mm, cm or m when `metric`. The value
// is compared as signed, so every negative length shows in the smallest unit.
bool FormatLength(double value, char* destination, std::size_t capacity, bool metric,
                  char* unit = nullptr);
bool FormatCapacitance(double value, char* destination, std::size_t capacity, char* unit = nullptr);
bool FormatInductance(double value, char* destination, std::size_t capacity, char* unit = nullptr);
bool FormatResistance(double value, char* destination, std::size_t capacity, char* unit = nullptr);
bool FormatFrequency(double value, char* destination, std::size_t capacity, char* unit = nullptr);
bool FormatTime(double value, char* destination, std::size_t capacity, char* unit = nullptr);
// Volts; the number of decimals follows the magnitude.
bool FormatVoltage(double value, char* destination, std::size_t capacity, char* unit = nullptr);

// Reads a number with an optional engineering prefix letter right after it ("1.5 n", "3M",
// "10 kOhm"). Blanks and control characters anywhere are ignored, text before the first
// digit, sign or point is skipped, and only the first character after the number is taken
// as prefix. `allowAmpere` and `allowFarad` read a trailing "A"/"a" or "F" as the unit rather
// than atto or femto; `spiceSuffixes` reads "M" as milli and "X"/"x" as mega. Returns false
// and sets `result` to 0 when there is no number or it does not fit a finite double.
bool ParseEngineeringValue(const char* text, double& result, bool allowAmpere = false,
                           bool spiceSuffixes = false, bool allowFarad = false);

// In place: drops leading blanks (character 32 only).
void TrimLeadingBlanks(char* text);
// In place: drops every character with a code of 32 or below.
void RemoveWhitespace(char* text);
// In place: drops every character with a code of 32 or below, and every ".".
void RemoveWhitespaceAndPoints(char* text);

// Writes `value` rounded to seven significant digits as "d.dddddd" with "e<exponent>" when
// the exponent is not zero ("-1.234568e-5", "2.000000", "1.000000e3"); zero is "0.000000".
// `destination` must hold kCompactExponentSize bytes. Returns the terminating NUL.
char* FormatCompactExponent(double value, char* destination);
std::string FormatCompactExponentText(double value);

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

// Writes "[prefix_]Mon-D-YYYY_Hh-MMm[_suffix]", e.g. "eye_Jun-5-2012_14h-07m", for `time`, or
// for the local time now when `time` is null. A null or empty prefix or suffix is left out
// together with its "_". `size` is the whole buffer in bytes, NUL included, and the text is
// cut to fit.
void FormatDateStamp(char* destination, std::size_t size, const char* prefix, const std::tm* time,
                     const char* suffix);
std::string FormatDateStampText(const char* prefix, const std::tm* time, const char* suffix);

}  // namespace kv
