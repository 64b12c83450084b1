#pragma once

#include <array>

#include "core/shared/DialogUnits.h"

// The progress dialog's layout in dialog units, and the ids its controls are
// known by (a host or a test finds a control by its id).

namespace kv::progress {

inline constexpr int kIdFirstText = 534;
inline constexpr int kIdSecondText = 421;
inline constexpr int kIdBar = 1438;
inline constexpr int kIdCancel = 2;

enum class ControlKind { Text, BarPlaceholder, PushButton };

struct TemplateControl {
    int id;
    ControlKind kind;
    DialogRect place;
};

inline constexpr DialogRect kDialogSize{0, 0, 192, 74};

inline constexpr std::array<TemplateControl, 4> kControls{{
    {kIdFirstText, ControlKind::Text, {8, 8, 176, 9}},
    {kIdSecondText, ControlKind::Text, {8, 17, 176, 9}},
    {kIdBar, ControlKind::BarPlaceholder, {8, 33, 176, 14}},
    {kIdCancel, ControlKind::PushButton, {71, 54, 50, 14}},
}};

inline constexpr const char* kDefaultCancelText = "Cancel";

// Where the dialog goes: at the stored position when both coordinates are
// non-negative, otherwise centred on its owner.
inline bool UsesStoredPosition(int x, int y) {
    return x >= 0 && y >= 0;
}

}  // namespace kv::progress
