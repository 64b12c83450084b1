#pragma once

#include <string>
#include <string_view>

// The padstack editor's messages. Most carry the editor's own title; the three pad-size
// messages of a pad width or height edit go to the module's plain box instead, as users of
// the editor have always seen them.

namespace kv {

inline constexpr std::string_view kPadstackEditorTitle = "Padstack Editor";

enum class MessageTitle { PadstackEditor, Plain };

namespace padstack_text {
inline constexpr std::string_view kDrillNegative = "Drill size can not be negative!";
inline constexpr std::string_view kSizesPositive = "Pad sizes and Clearance must be positive!";
inline constexpr std::string_view kAntiPadGreater =
    "Anti-pad sizes must be greater than pad sizes!";
inline constexpr std::string_view kPadAboveDrill =
    "Pad size must be greater than actual drill size!";
inline constexpr std::string_view kPadBelowMaximum = "Pad size must be less than ";
inline constexpr std::string_view kAntiPadAboveDrill =
    "Anti-pad sizes must be greater than actual drill size!";
inline constexpr std::string_view kNoCustomPad =
    "You can't create Custom pad in Padstack Editor.\n It could be created only in other tools!";
inline constexpr std::string_view kDefaultNotAuto = "Default pad can't have \"<Auto>\" pad shape!";
inline constexpr std::string_view kCustomAntiPad =
    "Only Clearance and <Auto> anti-pad shapes are allowed for Custom pad";
inline constexpr std::string_view kCustomWithoutClearance =
    "There is Custom pad in padstack without Clearance anti-pad specified on layer or for "
    "<default> pad. Only Clearance and <Auto> anti-pad shapes are allowed for Custom pad";
inline constexpr std::string_view kDrillBelowAntiPads =
    "Actual drill size must be less then all anti-pad sizes!";
inline constexpr std::string_view kDrillBelowPads =
    "Actual drill size must be less then all pad sizes!";
inline constexpr std::string_view kOnePadPerLayer =
    "There must be only one pad defined for each layer";
inline constexpr std::string_view kCantDeleteAll = "Can't delete all entries!";
inline constexpr std::string_view kBadStartLayer =
    "Can't set this layer as the start layer.\nPlease choose another one.";

// Messages of this editor for input its dialog never produces but the model must still refuse.
inline constexpr std::string_view kBadEndLayer =
    "Can't set this layer as the end layer.\nPlease choose another one.";
inline constexpr std::string_view kDrillNotNumber = "Drill size must be a number!";
inline constexpr std::string_view kAngleNotNumber = "Pad and anti-pad angles must be numbers!";
inline constexpr std::string_view kNotAShapeChoice = "This shape can't be chosen here.";
inline constexpr std::string_view kDefaultHasNoLayer = "The <default> pad belongs to no layer.";
inline constexpr std::string_view kNoSuchLayer = "There is no conductor layer of this name.";
inline constexpr std::string_view kCantDeleteDefault = "The <default> pad can't be deleted.";
}  // namespace padstack_text

// "Pad size must be less than %.2f" of the maximum in display units.
std::string PadBelowMaximumText(std::string_view maximumShown);

// "Some via that uses this padstack is already connected to <layer> layer.\nLayer span has to
// include <layer> layer!"
std::string SpanLeavesOutUsedLayerText(std::string_view layerName);

// Shows `text` as a warning through the message port, with the editor's title or the plain one.
void ShowPadstackMessage(std::string_view text, MessageTitle title = MessageTitle::PadstackEditor);

}  // namespace kv
