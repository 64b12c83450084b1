#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// The shapes a padstack table cell can show. Pads and anti-pads share most of them; "Custom" is
// a pad's only, "Clearance" an anti-pad's only.

namespace kv {

enum class TableShape : uint8_t {
    Square,
    Round,
    Rectangular,
    Oval,
    Oblong,
    Custom,
    Clearance,
    Auto,
    None,
};

std::string_view TableShapeText(TableShape shape);
std::optional<TableShape> TableShapeFromText(std::string_view text);

// The choices a shape cell offers, one per line.
inline constexpr std::string_view kLayerPadShapeChoices =
    "Square\nRound\nRectangular\nOval\nOblong\nCustom\n<Auto>\n<None>";
inline constexpr std::string_view kDefaultPadShapeChoices =
    "Square\nRound\nRectangular\nOval\nOblong\nCustom\n<None>";
inline constexpr std::string_view kAntiPadShapeChoices =
    "Square\nRound\nRectangular\nOval\nOblong\nClearance\n<Auto>";

// Whether `shape` is one of the lines of `choices`.
bool IsOffered(std::string_view choices, TableShape shape);

// Round and square outlines keep their height equal to their width.
constexpr bool KeepsHeightEqualToWidth(TableShape shape) {
    return shape == TableShape::Round || shape == TableShape::Square;
}

// Anti-pads with an outline of their own turn with the pad.
constexpr bool AngleFollowsPad(TableShape antiPadShape) {
    return antiPadShape == TableShape::Square || antiPadShape == TableShape::Rectangular ||
           antiPadShape == TableShape::Oval || antiPadShape == TableShape::Oblong;
}

// Shapes whose width and height are sizes the size checks compare.
constexpr bool HasOwnOutline(TableShape shape) {
    return AngleFollowsPad(shape) || shape == TableShape::Round;
}

}  // namespace kv
