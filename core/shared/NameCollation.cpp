#include "core/shared/NameCollation.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "core/shared/AsciiText.h"
#include "core/shared/TextArgument.h"

namespace kv {
namespace {

template <typename T>
int SignOf(T difference) {
    return (difference > T{}) - (difference < T{});
}

bool IsSign(char c) {
    return c == '+' || c == '-';
}

using CollationTable = std::array<unsigned char, 128>;

// Identity on ASCII except that the separators people put between name parts sort
// "," "/" "-" "+" ".", and optionally with upper-case letters folded to lower case.
constexpr CollationTable MakeCollationTable(bool foldCase) {
    CollationTable keys{};
    for (std::size_t code = 0; code < keys.size(); ++code) {
        const auto c = static_cast<char>(code);
        keys[code] = static_cast<unsigned char>(foldCase ? FoldAsciiCase(c) : c);
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
    while (IsAsciiDigit(text[length])) {
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
    const bool signedNumber = IsSign(text[0]) && IsAsciiDigit(text[1]);
    if (!signedNumber && !IsAsciiDigit(text[0])) {
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
    if (IsAsciiDigit(c)) {
        return kDigit;
    }
    return IsAsciiLetter(c) ? kLetter : kOther;
}

}  // namespace

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

}  // namespace kv
