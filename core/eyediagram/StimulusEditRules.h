#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/ports/MessagePort.h"
#include "core/stimulus/StimulusData.h"

// What the stimulus editing page decides: which controls a sequence kind
// shows, how the pattern control behaves per kind, which pattern it shows,
// the showing and reading of its numeric fields and the reading and writing of .bit files
// with the page's own messages. The widget only carries these out.

namespace kv::stimulus_edit {

inline constexpr std::string_view kCaption = "Edit Stimulus";
inline constexpr std::string_view kCancelQuestion = "All changes will be lost.";
inline constexpr std::string_view kApplyQuestion = "Do you want to save the changes?";
inline constexpr int kListPositions = 7;

// Shows a box with the page's caption; the default answer is the first button.
MessageAnswer Ask(std::string_view text, MessageIcon icon, MessageButtons buttons);

// The sequence kind at a position of the "Se&quence:" list (1 to 7), and
// back; 0 for a kind the list does not offer.
int KindAtPosition(int position);
int PositionOfKind(int kind);

// Whether the control is shown for the list position; controls the table
// does not name are always shown.
bool IsShown(int controlId, int position);
// Every control the table names.
std::span<const int> ControlsWithVisibility();

// How the pattern control and the level list behave for a kind. A kind that
// keeps the level list as it is has no label and items here.
struct KindBehaviour {
    bool readOnly = true;
    int paintMode = 0;  // 0 normal, 1 cycle, 2 continuous, 3 repetition
    std::optional<std::string_view> levelLabel;
    std::array<std::string_view, 2> levelItems{};
};
// None for the kinds that change neither the control nor the list (5, 6, 7).
std::optional<KindBehaviour> BehaviourOf(int kind);

// The level list's first item ("High" / "Falling") stands for initial state
// 1, its second ("Low" / "Rising") for 0.
inline int InitStateOfLevel(int levelIndex) {
    return levelIndex == 0 ? 1 : 0;
}
inline int LevelOfInitState(int initState) {
    return initState != 0 ? 0 : 1;
}

// The pattern the control shows for a kind with the level list at
// `levelIndex`; generated kinds come from `data`'s settings, reversed when
// the bit order list says so and that list is shown for the kind (PRBS).
BitVector ShownPattern(int kind, int levelIndex, bool reversed, const CStimulusData& data);

// Numeric fields: three decimals on screen, always with a decimal point, as
// the fields' range messages write their numbers, whatever the locale.
std::string FormatField(double value);
// The number typed, or none for text that is no number. The decimal point is
// "." in every locale; a comma is no decimal point, so "1,5" is refused (and
// the field shows its range message) rather than read as 1 or as 1.5.
std::optional<double> ParseField(std::string_view text);

// Oscillator views of period and duty cycle.
inline double FrequencyMHz(double periodNs) {
    return 1000.0 / periodNs;
}
inline double HighTimeNs(double periodNs, double dutyPercent) {
    return periodNs * dutyPercent * 0.01;
}

// The bits of a .bit file, at most 32768, telling the user (with the page's
// caption) about a file that cannot be read, holds no sequence or is cut.
std::optional<BitVector> LoadPatternFile(const std::string& path);
// Writes the bits as '0' and '1', replacing the file atomically; false after
// a message when it cannot be written.
bool SavePatternFile(const std::string& path, const BitVector& bits);

}  // namespace kv::stimulus_edit
