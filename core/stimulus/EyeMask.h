#pragma once

#include <optional>
#include <string_view>

#include "kvcomctl/EyeMask.h"

// The eye mask: its defaults, its name, the order of its levels and time
// points, and what the mask page says.

namespace kv {

// 5.5 / 4.5 / -0.5 / 0.5 / 2.5 V and 0 / 10 / 20 / 110 / 100 / 90, unit
// scale, no offset, empty name.
EYEMASK DefaultEyeMask();

// Copies at most 20 characters of `name` into the mask's name.
void SetMaskName(EYEMASK& mask, std::string_view name);
std::string_view MaskName(const EYEMASK& mask);

// The message of the first broken ordering rule, or none for a consistent
// mask. Equal neighbours pass: the rules speak of one value being less or
// greater than the next. The rules are rows of core/stimulus/StimulusRules,
// which also holds the mask's placement limits.
std::optional<std::string_view> FindMaskOrderError(const EYEMASK& mask);

inline constexpr std::string_view kMaskInvalidOnOpen =
    "One or more mask values are invalid\nUsing default values";
inline constexpr std::string_view kInvalidMaskScale =
    "Invalid scale value\nValid scale range is 50 - 200";
inline constexpr std::string_view kInvalidMaskTimeOffset =
    "Invalid time offset value\nValid offset range is 0 - 1000";
inline constexpr std::string_view kInvalidMaskVoltOffset =
    "Invalid voltage offset value\nValid offset range is -10 - +10";
inline constexpr std::string_view kMaskDiffersFromLibrary =
    "Current mask and corresponding library mask are different\nDo you want to save your "
    "changes?";

// Messages for one value edited between its neighbours.
namespace mask_field_message {
inline constexpr std::string_view kRiseDelay =
    "Invalid Rise Delay value\nThe value must be greater then Cross1 Max value\nand less then "
    "Fall Delay value";
inline constexpr std::string_view kFallDelay =
    "Invalid Fall Delay value\nThe value must be greater then Rise Delay value\nand less then "
    "Cross2 Min value";
inline constexpr std::string_view kCross2Min =
    "Invalid Cross2 Min value\nThe value must be greater then Fall Delay value\nand less then "
    "Cross2 Max value";
inline constexpr std::string_view kCross2Max =
    "Invalid Cross2 Max value\nThe value must be greater then Cross2 Min value";
inline constexpr std::string_view kCross1Min =
    "Invalid Cross1 Min value\nThe value must be less then Cross1 Max value";
inline constexpr std::string_view kCross1Max =
    "Invalid Cross1 Max value\nThe value must be greater then Cross1 Min value\nand less then "
    "Rise Delay value";
inline constexpr std::string_view kTopMin =
    "Invalid Top Min value\nThe value must be greater than Cross value\nand less than Top Max "
    "value";
inline constexpr std::string_view kTopMax =
    "Invalid Top Max value\nThe value must be greater than Top MIn value";
inline constexpr std::string_view kCross =
    "Invalid Cross value\nThe value must be greater than Base Max value\nand less than Top Min "
    "value";
inline constexpr std::string_view kBaseMin =
    "Invalid Base Min value\nThe value must be less than Base Max value";
inline constexpr std::string_view kBaseMax =
    "Invalid Base Max value\nThe value must be greater than Base Min value\nand less than Cross "
    "value";
}  // namespace mask_field_message

}  // namespace kv
