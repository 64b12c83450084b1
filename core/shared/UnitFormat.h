#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

// The engineering unit formatters: a quantity in SI base units as a short
// number text with its unit, as every view and export shows it. Numbers are
// written with a "." whatever the process locale is.

namespace kv {

// Longest unit text a formatter delivers; a separate unit buffer needs one byte more.
inline constexpr std::size_t kUnitTextCapacity = 15;
// Longest number text a formatter delivers.
inline constexpr std::size_t kNumberTextCapacity = 39;

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

// The same "<number> <unit>" texts as strings, for callers that build longer texts from them.
// `inRange`, when given, receives what the formatter returned.
std::string LengthText(double metres, bool metric, bool* inRange = nullptr);
using UnitFormatter = bool (*)(double value, char* destination, std::size_t capacity, char* unit);
std::string UnitText(UnitFormatter format, double value, bool* inRange = nullptr);

// A quantity the command line and the Python module format by name.
struct UnitQuantity {
    std::string_view name;      // "capacitance"
    std::string_view baseUnit;  // the SI unit its values come in, spelt out: "farads"
    UnitFormatter format;
};

// Every quantity with a formatter of its own, in the order they are offered. Lengths are not
// among them: their formatter also asks for inches or metric units.
std::span<const UnitQuantity> UnitQuantities();

}  // namespace kv
