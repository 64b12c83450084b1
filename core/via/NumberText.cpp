#include "core/via/NumberText.h"

#include <array>
#include <charconv>
#include <limits>
#include <stdexcept>

namespace kv {
namespace {

// Sign, every integer digit of the largest double, point, decimals: ample for both forms.
constexpr std::size_t kTextCapacity = 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + 32;
constexpr int kGeneralPrecision = 6;

template <typename... Format>
std::string Print(double value, Format... format) {
    std::array<char, kTextCapacity> text;
    const auto printed = std::to_chars(text.data(), text.data() + text.size(), value, format...);
    if (printed.ec != std::errc()) {
        throw std::length_error("number text does not fit");
    }
    return std::string(text.data(), printed.ptr);
}

}  // namespace

std::string FixedText(double value, int decimals) {
    return Print(value, std::chars_format::fixed, decimals);
}

std::string GeneralText(double value) {
    return Print(value, std::chars_format::general, kGeneralPrecision);
}

}  // namespace kv
