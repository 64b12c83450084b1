#include "core/shared/EngineeringParse.h"

#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

#include "core/shared/BlankRemoval.h"
#include "core/shared/BoundedCopy.h"
#include "core/shared/NumberText.h"
#include "core/shared/TextArgument.h"

namespace kv {
namespace {

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

}  // namespace

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

}  // namespace kv
