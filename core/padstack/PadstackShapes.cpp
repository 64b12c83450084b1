#include "core/padstack/PadstackShapes.h"

#include <array>
#include <utility>

namespace kv {
namespace {

constexpr std::array<std::pair<TableShape, std::string_view>, 9> kShapeTexts{{
    {TableShape::Square, "Square"},
    {TableShape::Round, "Round"},
    {TableShape::Rectangular, "Rectangular"},
    {TableShape::Oval, "Oval"},
    {TableShape::Oblong, "Oblong"},
    {TableShape::Custom, "Custom"},
    {TableShape::Clearance, "Clearance"},
    {TableShape::Auto, "<Auto>"},
    {TableShape::None, "<None>"},
}};

}  // namespace

std::string_view TableShapeText(TableShape shape) {
    for (const auto& [known, text] : kShapeTexts) {
        if (known == shape) {
            return text;
        }
    }
    return {};
}

std::optional<TableShape> TableShapeFromText(std::string_view text) {
    for (const auto& [shape, known] : kShapeTexts) {
        if (known == text) {
            return shape;
        }
    }
    return std::nullopt;
}

bool IsOffered(std::string_view choices, TableShape shape) {
    const std::string_view wanted = TableShapeText(shape);
    while (!choices.empty()) {
        const std::size_t end = choices.find('\n');
        if (choices.substr(0, end) == wanted) {
            return true;
        }
        if (end == std::string_view::npos) {
            break;
        }
        choices.remove_prefix(end + 1);
    }
    return false;
}

}  // namespace kv
