#include "core/eyediagram/PageFieldText.h"

#include <cmath>

#include "core/shared/NumberText.h"

namespace kv {

std::string FormatFieldValue(double value) {
    return FormatFixed(value, 3);
}

std::optional<double> ParseFieldValue(std::string_view text) {
    const std::optional<NumberPrefix> number = ReadNumberPrefix(text);
    if (!number || number->outOfRange || std::isnan(number->value)) {
        return std::nullopt;
    }
    const std::size_t end = text.find_first_not_of(" \t", number->length);
    if (end != std::string_view::npos) {
        return std::nullopt;  // more than the number, such as a decimal comma and digits
    }
    return number->value;
}

}  // namespace kv
