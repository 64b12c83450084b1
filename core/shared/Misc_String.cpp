#include "core/shared/Misc_String.h"

#include "core/shared/Assert.h"
#include "core/shared/LocalTime.h"
#include "core/shared/NumberText.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <span>
#include <string_view>
#include <system_error>

namespace kv {

namespace {

// The module name assertion reports show, in the form the host's other modules use too.
constexpr const char* kModuleName = "..\\shared\\Misc_String";

#define KV_ASSERT_TEXT(pointer) KV_ASSERT_IN(kModuleName, (pointer) != nullptr)

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsSign(char c) {
    return c == '+' || c == '-';
}
bool IsBlankOrControl(char c) {
    return static_cast<unsigned char>(c) <= 32;
}
bool IsAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
char FoldAsciiCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

template <typename T>
int SignOf(T difference) {
    return (difference > T{}) - (difference < T{});
}

// Deletes in place every character for which `drop` holds.
template <typename Predicate>
void RemoveWhere(char* text, Predicate drop) {
    char* kept = text;
    for (const char* read = text; *read != '\0'; ++read) {
        if (!drop(*read)) {
            *kept++ = *read;
        }
    }
    *kept = '\0';
}

// ---- Unit formatting -------------------------------------------------------------------

// One row of a unit table. Rows are tried in order and the first whose bound lies above the
// measured magnitude is taken; the last row takes whatever is left, including infinities and
// NaN, which is why out-of-range rows sit last.
struct UnitRange {
    double below;
    double scale;  // factor from the value to the printed number; 0 prints zero
    int decimals;  // digits after the point, or kOutOfRange for the text "999"
    const char* unit;
};

constexpr int kOutOfRange = -1;
// Below the smallest positive double lies only zero: rows with this bound catch exact zero.
constexpr double kOnlyZero = std::numeric_limits<double>::denorm_min();
constexpr double kRest = std::numeric_limits<double>::infinity();
// A scale of zero prints the value as zero: both the near-zero rows and the rows for exact
// zero, where it also keeps a negative zero from showing as "-0.0".
constexpr double kShowZero = 0.0;

// clang-format off
constexpr UnitRange kInchRanges[] = {
    {0.1,       1000,      1, "mils"},
    {kRest,     1,         2, "in"},
};

constexpr UnitRange kMetricRanges[] = {
    {0.0001,    1e6,       0, "um"},
    {0.01,      1000,      3, "mm"},
    {0.1,       100,       3, "cm"},
    {kRest,     1,         2, "m"},
};

// A vanishing capacitance reads "0.0 pF" but a vanishing inductance "0.0 nH": the two tables
// differ in their first row on purpose.
constexpr UnitRange kCapacitanceRanges[] = {
    {1e-18,     kShowZero, 1, "pF"},
    {1e-12,     1e15,      1, "fF"},
    {1e-9,      1e12,      1, "pF"},
    {1e-6,      1e9,       1, "nF"},
    {1e-3,      1e6,       1, "uF"},
    {1,         1000,      1, "mF"},
    {1000,      1,         1, "F"},
    {kRest,     0,         kOutOfRange, "F"},
};

constexpr UnitRange kInductanceRanges[] = {
    {1e-18,     kShowZero, 1, "nH"},
    {1e-12,     1e15,      1, "fH"},
    {1e-9,      1e12,      1, "pH"},
    {1e-6,      1e9,       1, "nH"},
    {1e-3,      1e6,       1, "uH"},
    {1,         1000,      1, "mH"},
    {1000,      1,         1, "H"},
    {kRest,     0,         kOutOfRange, "H"},
};

constexpr UnitRange kResistanceRanges[] = {
    {kOnlyZero, kShowZero, 1, "ohms"},
    {1,         1000,      1, "milliohms"},
    {1000,      1,         1, "ohms"},
    {1e6,       0.001,     1, "K ohms"},
    {1e9,       1e-6,      1, "M ohms"},
    {1e12,      1e-9,      1, "G ohms"},
    {kRest,     0,         kOutOfRange, "G ohms"},
};

constexpr UnitRange kFrequencyRanges[] = {
    {kOnlyZero, kShowZero, 1, "Hz"},
    {1,         1000,      1, "mHz"},
    {1000,      1,         1, "Hz"},
    {1e6,       0.001,     1, "KHz"},
    {1e9,       1e-6,      1, "MHz"},
    {1e12,      1e-9,      1, "GHz"},
    {kRest,     0,         kOutOfRange, "GHz"},
};

constexpr UnitRange kTimeRanges[] = {
    {kOnlyZero, kShowZero, 3, "s"},
    {1e-12,     1e15,      3, "fs"},
    {1e-9,      1e12,      3, "ps"},
    {1e-6,      1e9,       3, "ns"},
    {1e-3,      1e6,       3, "us"},
    {1,         1000,      3, "ms"},
    {1000,      1,         3, "s"},
    {kRest,     0,         kOutOfRange, "s"},
};

// From 100 V up the number gets three decimals again; that is intended, not a slip, and
// there is no out-of-range row.
constexpr UnitRange kVoltageRanges[] = {
    {kOnlyZero, kShowZero, 1, "V"},
    {0.001,     1e6,       3, "uV"},
    {0.1,       1000,      2, "mV"},
    {1,         1000,      1, "mV"},
    {10,        1,         2, "V"},
    {100,       1,         1, "V"},
    {kRest,     1,         3, "V"},
};
// clang-format on

// A formatted quantity before it is delivered into the caller's buffers.
struct Reading {
    std::string number;
    const char* unit;
    bool inRange;

    std::string Text() const { return number + ' ' + unit; }
};

// Picks the row for `measure` and prints `value` with it.
Reading Measure(std::span<const UnitRange> table, double measure, double value) {
    const UnitRange* row = &table.back();
    for (const UnitRange& candidate : table.first(table.size() - 1)) {
        if (measure < candidate.below) {
            row = &candidate;
            break;
        }
    }
    // A number text too long to show (or no number at all) is out of range
    // too, whatever the table says: "999" with the largest unit.
    const auto outOfRange = [&table] { return Reading{"999", table.back().unit, false}; };
    if (row->decimals == kOutOfRange) {
        return outOfRange();
    }
    const double shown = row->scale == kShowZero ? 0.0 : value * row->scale;
    if (!std::isfinite(shown)) {
        return outOfRange();
    }
    std::string number = FormatFixed(shown, row->decimals);
    if (number.size() > kNumberTextCapacity) {
        return outOfRange();
    }
    return {std::move(number), row->unit, true};
}

Reading MeasureLength(double value, bool metric) {
    if (metric) {
        return Measure(kMetricRanges, value, value);
    }
    // Through centimetres (x 100, then / 2.54) in that order: the rounding of this order is
    // what decides on which side of the 0.1 in threshold a borderline length lands.
    const double inches = value * 100 / 2.54;
    return Measure(kInchRanges, inches, inches);
}

Reading MeasureMagnitude(std::span<const UnitRange> table, double value) {
    return Measure(table, std::fabs(value), value);
}

bool Deliver(const Reading& reading, char* destination, std::size_t capacity, char* unit) {
    KV_ASSERT_TEXT(destination);
    if (unit != nullptr) {
        CopyBounded(destination, reading.number.c_str(), capacity);
        CopyBounded(unit, reading.unit, kUnitTextCapacity);
    } else {
        CopyBounded(destination, reading.Text().c_str(), capacity);
    }
    return reading.inRange;
}

// ---- Parsing ---------------------------------------------------------------------------

// Longest text looked at; the rest of a longer one is ignored.
constexpr std::size_t kParseCapacity = 328;

double PrefixMultiplier(char prefix, bool allowAmpere, bool spiceSuffixes, bool allowFarad) {
    switch (prefix) {
        case 'a':
        case 'A':
            return allowAmpere ? 1.0 : 1e-18;
        case 'f':
            return 1e-15;
        case 'F':
            return allowFarad ? 1.0 : 1e-15;
        case 'p':
        case 'P':
            return 1e-12;
        case 'n':
        case 'N':
            return 1e-9;
        case 'u':
        case 'U':
            return 1e-6;
        case 'm':
            return 1e-3;
        case 'M':
            return spiceSuffixes ? 1e-3 : 1e6;
        case 'x':
        case 'X':
            return spiceSuffixes ? 1e6 : 1.0;
        case 'k':
        case 'K':
            return 1e3;
        case 'G':
            return 1e9;
        case 'T':
            return 1e12;
        default:
            return 1.0;
    }
}

// ---- Name ordering ---------------------------------------------------------------------

using CollationTable = std::array<unsigned char, 128>;

// Identity on ASCII except that the separators people put between name parts sort
// "," "/" "-" "+" ".", and optionally with upper-case letters folded to lower case.
constexpr CollationTable MakeCollationTable(bool foldCase) {
    CollationTable keys{};
    for (std::size_t code = 0; code < keys.size(); ++code) {
        keys[code] = static_cast<unsigned char>(code);
    }
    if (foldCase) {
        for (char c = 'A'; c <= 'Z'; ++c) {
            keys[static_cast<std::size_t>(c)] = static_cast<unsigned char>(c - 'A' + 'a');
        }
    }
    keys[','] = 43;
    keys['/'] = 44;
    keys['-'] = 45;
    keys['+'] = 46;
    keys['.'] = 47;
    return keys;
}

constexpr CollationTable kCaseSensitiveKeys = MakeCollationTable(false);
constexpr CollationTable kCaseFoldingKeys = MakeCollationTable(true);

// Bytes 128-255 keep their own value: they sort after all of ASCII, and for UTF-8 names byte
// order is code point order. They are not case-folded.
unsigned CollationKey(char c, const CollationTable& keys) {
    const auto code = static_cast<unsigned char>(c);
    return code < keys.size() ? keys[code] : code;
}

// Compares two runs of decimal digits by value, whatever their length.
int CompareDigitValues(std::string_view a, std::string_view b) {
    const auto significant = [](std::string_view digits) {
        const std::size_t first = digits.find_first_not_of('0');
        return first == std::string_view::npos ? std::string_view{} : digits.substr(first);
    };
    a = significant(a);
    b = significant(b);
    if (a.size() != b.size()) {
        return SignOf(static_cast<long long>(a.size()) - static_cast<long long>(b.size()));
    }
    return SignOf(a.compare(b));
}

std::string_view DigitRunAt(const char* text) {
    std::size_t length = 0;
    while (IsDigit(text[length])) {
        ++length;
    }
    return {text, length};
}

struct SignedRun {
    bool negative;
    std::string_view digits;
    std::size_t spelledLength;  // with sign and leading zeros
};

// Smaller numbers first, negative before positive; of equal numbers the one written with
// more characters goes later, or earlier when negative.
int CompareSignedRuns(const SignedRun& a, const SignedRun& b) {
    if (a.negative != b.negative) {
        return a.negative ? -1 : 1;
    }
    int order = CompareDigitValues(a.digits, b.digits);
    if (order == 0) {
        order = SignOf(static_cast<long long>(a.spelledLength) -
                       static_cast<long long>(b.spelledLength));
    }
    return a.negative ? -order : order;
}

// A name is read as a sequence of parts: single characters, and signed integers (a run of
// digits with the "+" or "-" right before it). Parts compare by one order: characters by
// their collation key, integers by value, and every integer sits where the digits sit among
// the characters (after "." and before ":"). Comparing two names part by part in this one
// order makes the comparison a strict weak ordering, which sorting relies on; deciding at the
// first differing character whether it belongs to a number does not (it put "A+1" after "A1",
// "A1" after "A+B", and yet "A+1" before "A+B").
struct NamePart {
    bool isNumber = false;
    unsigned key = 0;  // the collation key of a character; 0 at the end of the text
    SignedRun number{};
    std::size_t length = 0;  // characters the part covers
};

constexpr unsigned kNumberKey = '0';

NamePart NamePartAt(const char* text, const CollationTable& keys) {
    const bool signedNumber = IsSign(text[0]) && IsDigit(text[1]);
    if (!signedNumber && !IsDigit(text[0])) {
        return {false, CollationKey(text[0], keys), {}, text[0] == '\0' ? 0u : 1u};
    }
    NamePart part{true, kNumberKey, {}, 0};
    const std::string_view digits = DigitRunAt(text + (signedNumber ? 1 : 0));
    // "-0" is no negative number.
    part.number.negative =
        text[0] == '-' && digits.find_first_not_of('0') != std::string_view::npos;
    part.number.digits = digits;
    part.number.spelledLength = digits.size() + (signedNumber ? 1 : 0);
    part.length = part.number.spelledLength;
    return part;
}

int CompareNameParts(const NamePart& a, const NamePart& b) {
    if (a.key != b.key) {
        return a.key < b.key ? -1 : 1;
    }
    // Only digits have the number key, and digits are always read as numbers.
    return a.isNumber ? CompareSignedRuns(a.number, b.number) : 0;
}

// The names' characters in collation order, for names whose parts are all alike ("+0" and
// "-0", "+05" and "005"): a tie-break that still keeps the order strict and weak.
int CompareCollationKeys(const char* a, const char* b, const CollationTable& keys) {
    for (;; ++a, ++b) {
        const unsigned keyA = CollationKey(*a, keys);
        const unsigned keyB = CollationKey(*b, keys);
        if (keyA != keyB) {
            return keyA < keyB ? -1 : 1;
        }
        if (*a == '\0') {
            return 0;
        }
    }
}

enum IdentifierClass { kEnd = 0, kUnderscore = 1, kDigit = 2, kOther = 3, kLetter = 6 };

IdentifierClass ClassOf(char c) {
    if (c == '\0') {
        return kEnd;
    }
    if (c == '_') {
        return kUnderscore;
    }
    if (IsDigit(c)) {
        return kDigit;
    }
    return IsAsciiLetter(c) ? kLetter : kOther;
}

// ---- Date stamps -----------------------------------------------------------------------

// Index 0 stays empty so that months count from 1; only the first three letters are shown.
constexpr const char* kMonthNames[13] = {"",     "Jan.", "Feb.", "Mar.", "Apr.", "May", "Jun.",
                                         "Jul.", "Aug.", "Sep.", "Oct.", "Nov.", "Dec."};

const char* MonthName(int zeroBasedMonth) {
    const bool known = zeroBasedMonth >= 0 && zeroBasedMonth < 12;
    return kMonthNames[known ? zeroBasedMonth + 1 : 0];
}

bool IsGiven(const char* text) {
    return text != nullptr && *text != '\0';
}

}  // namespace

// ---- Bounded copies --------------------------------------------------------------------

std::size_t CopyBounded(char* destination, const char* source, std::size_t capacity) {
    KV_ASSERT_TEXT(destination);
    KV_ASSERT_TEXT(source);
    std::size_t copied = 0;
    while (copied < capacity && source[copied] != '\0') {
        destination[copied] = source[copied];
        ++copied;
    }
    destination[copied] = '\0';
    return copied;
}

std::size_t AppendBounded(char* destination, const char* source, std::size_t capacity) {
    KV_ASSERT_TEXT(destination);
    KV_ASSERT_TEXT(source);
    const std::size_t length = std::strlen(destination);
    if (length >= capacity) {
        return length;
    }
    return length + CopyBounded(destination + length, source, capacity - length);
}

// ---- Unit formatters -------------------------------------------------------------------

bool FormatLength(double value, char* destination, std::size_t capacity, bool metric, char* unit) {
    return Deliver(MeasureLength(value, metric), destination, capacity, unit);
}

bool FormatCapacitance(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kCapacitanceRanges, value), destination, capacity, unit);
}

bool FormatInductance(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kInductanceRanges, value), destination, capacity, unit);
}

bool FormatResistance(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kResistanceRanges, value), destination, capacity, unit);
}

bool FormatFrequency(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kFrequencyRanges, value), destination, capacity, unit);
}

bool FormatTime(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kTimeRanges, value), destination, capacity, unit);
}

bool FormatVoltage(double value, char* destination, std::size_t capacity, char* unit) {
    return Deliver(MeasureMagnitude(kVoltageRanges, value), destination, capacity, unit);
}

// ---- Parsing ---------------------------------------------------------------------------

bool ParseEngineeringValue(const char* text, double& result, bool allowAmpere, bool spiceSuffixes,
                           bool allowFarad) {
    KV_ASSERT_TEXT(text);
    result = 0.0;
    std::array<char, kParseCapacity + 1> work;
    CopyBounded(work.data(), text, kParseCapacity);
    RemoveWhitespace(work.data());
    const char* end = work.data() + std::strlen(work.data());
    const char* start = std::strpbrk(work.data(), "0123456789-+.");
    if (start == nullptr) {
        return false;
    }
    const auto number =
        ReadNumberPrefix(std::string_view(start, static_cast<std::size_t>(end - start)));
    if (!number || number->outOfRange) {
        return false;
    }
    const char next = start[number->length];
    const double scaled =
        number->value * PrefixMultiplier(next, allowAmpere, spiceSuffixes, allowFarad);
    // "inf", "nan" and values that overflow when scaled are no usable quantity either.
    if (!std::isfinite(scaled)) {
        return false;
    }
    result = scaled;
    return true;
}

// ---- Blank removal ---------------------------------------------------------------------

void TrimLeadingBlanks(char* text) {
    KV_ASSERT_TEXT(text);
    const std::size_t blanks = std::strspn(text, " ");
    if (blanks > 0) {
        std::memmove(text, text + blanks, std::strlen(text + blanks) + 1);
    }
}

void RemoveWhitespace(char* text) {
    KV_ASSERT_TEXT(text);
    RemoveWhere(text, IsBlankOrControl);
}

void RemoveWhitespaceAndPoints(char* text) {
    KV_ASSERT_TEXT(text);
    RemoveWhere(text, [](char c) { return IsBlankOrControl(c) || c == '.'; });
}

// ---- Compact exponent ------------------------------------------------------------------

std::string FormatCompactExponentText(double value) {
    if (value == 0.0) {
        return "0.000000";
    }
    if (!std::isfinite(value)) {
        return std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
    }
    // Scientific printing rounds in decimal, so 9.9999996 becomes "1.000000e+01" and the
    // carry into the next decade is already in the exponent.
    const std::string scientific = PrintNumber(std::fabs(value), NumberStyle::Scientific, 6);
    const std::string_view digits = scientific;  // "d.dddddde[+-]xx"
    const std::size_t e = digits.find('e');
    const int exponent = ParseIntPrefix(digits.substr(e + 1)).value_or(0);

    std::string text = value < 0 ? "-" : "";
    text.append(digits.substr(0, e));
    if (exponent != 0) {
        text += 'e';
        text += std::to_string(exponent);
    }
    return text;
}

char* FormatCompactExponent(double value, char* destination) {
    KV_ASSERT_TEXT(destination);
    const std::string text = FormatCompactExponentText(value);
    return destination + CopyBounded(destination, text.c_str(), kCompactExponentSize - 1);
}

// ---- Name ordering ---------------------------------------------------------------------

int CompareNames(const char* a, const char* b, bool caseSensitive) {
    KV_ASSERT_TEXT(a);
    KV_ASSERT_TEXT(b);
    const CollationTable& keys = caseSensitive ? kCaseSensitiveKeys : kCaseFoldingKeys;
    const char* restA = a;
    const char* restB = b;
    for (;;) {
        const NamePart partA = NamePartAt(restA, keys);
        const NamePart partB = NamePartAt(restB, keys);
        if (const int order = CompareNameParts(partA, partB); order != 0) {
            return order;
        }
        if (partA.length == 0) {
            break;  // both texts ended
        }
        restA += partA.length;
        restB += partB.length;
    }
    return CompareCollationKeys(a, b, keys);
}

int CompareIdentifiers(const char* a, const char* b) {
    KV_ASSERT_TEXT(a);
    KV_ASSERT_TEXT(b);
    for (;;) {
        const IdentifierClass classA = ClassOf(*a);
        const IdentifierClass classB = ClassOf(*b);
        if (classA != classB) {
            return classA < classB ? -1 : 1;
        }
        switch (classA) {
            case kEnd:
                return 0;
            case kDigit: {
                const std::string_view digitsA = DigitRunAt(a);
                const std::string_view digitsB = DigitRunAt(b);
                if (const int order = CompareDigitValues(digitsA, digitsB); order != 0) {
                    return order;
                }
                a += digitsA.size();
                b += digitsB.size();
                continue;
            }
            case kLetter:
                if (FoldAsciiCase(*a) != FoldAsciiCase(*b)) {
                    return FoldAsciiCase(*a) < FoldAsciiCase(*b) ? -1 : 1;
                }
                break;
            case kUnderscore:
            case kOther:
                if (*a != *b) {
                    return static_cast<unsigned char>(*a) < static_cast<unsigned char>(*b) ? -1 : 1;
                }
                break;
        }
        ++a;
        ++b;
    }
}

// ---- Date stamps -----------------------------------------------------------------------

std::string FormatDateStampText(const char* prefix, const std::tm* time, const char* suffix) {
    std::tm local{};
    if (time == nullptr) {
        local = LocalTimeNow();
        time = &local;
    }
    const bool hasPrefix = IsGiven(prefix);
    const bool hasSuffix = IsGiven(suffix);
    const auto print = [&](char* out, std::size_t size) {
        return std::snprintf(out, size, "%s%s%.3s-%d-%d_%dh-%s%dm%s%s", hasPrefix ? prefix : "",
                             hasPrefix ? "_" : "", MonthName(time->tm_mon), time->tm_mday,
                             time->tm_year + 1900, time->tm_hour, time->tm_min < 10 ? "0" : "",
                             time->tm_min, hasSuffix ? "_" : "", hasSuffix ? suffix : "");
    };
    std::string text(static_cast<std::size_t>(print(nullptr, 0)), '\0');
    print(text.data(), text.size() + 1);
    return text;
}

void FormatDateStamp(char* destination, std::size_t size, const char* prefix, const std::tm* time,
                     const char* suffix) {
    KV_ASSERT_TEXT(destination);
    if (size == 0) {
        return;
    }
    CopyBounded(destination, FormatDateStampText(prefix, time, suffix).c_str(), size - 1);
    destination[size - 1] = '\0';
}

}  // namespace kv
