#pragma once

#include <array>
#include <optional>
#include <string_view>

// Codes of the bit-sequence kinds and the names under which the pages offer
// them. Both lists map to the same codes; which one a page shows depends on
// the data object's list mode.

namespace kv {

namespace seq {
inline constexpr int kPrbs = 0;
inline constexpr int k8b10b = 1;
inline constexpr int kToggling = 2;
inline constexpr int kUsbCompliance = 3;
inline constexpr int kCustom = 4;
inline constexpr int kConstructionDefault = 7;  // generated exactly like kPrbs
inline constexpr int kEdge = 8;
inline constexpr int kPulse = 9;
}  // namespace seq

struct SequenceTypeName {
    int code;
    std::string_view name;
};

// In the order the eye-diagram pages show them (list mode 0).
inline constexpr std::array<SequenceTypeName, 5> kEyeDiagramSequenceList{{
    {seq::kPrbs, "PRBS (pseudo random)"},
    {seq::k8b10b, "8B/10B"},
    {seq::kToggling, "Toggling"},
    {seq::kUsbCompliance, "USB 2.0 compliance"},
    {seq::kCustom, "<Custom>"},
}};

// In the order the stimulus pages show them (list mode not 0).
inline constexpr std::array<SequenceTypeName, 7> kStimulusSequenceList{{
    {seq::kToggling, "Oscillator"},
    {seq::kEdge, "Edge"},
    {seq::kPulse, "Pulse"},
    {seq::kPrbs, "PRBS (pseudo random)"},
    {seq::k8b10b, "8B/10B"},
    {seq::kUsbCompliance, "USB 2.0 compliance"},
    {seq::kCustom, "<Custom>"},
}};

// The name a list shows for a code, if the list offers it.
std::optional<std::string_view> SequenceTypeNameFor(int code, int listMode);

}  // namespace kv
