#pragma once

#include <array>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports/FileChooser.h"
#include "core/ports/MessagePort.h"
#include "core/stimulus/StimulusData.h"

// What the stimulus editing page decides: the sequence kind and which
// controls, labels and level items it shows, how the pattern control
// behaves and which pattern it shows, the numeric fields (bit interval or
// period, duty cycle, repetitions, the oscillator's frequency and high and
// low times, the jitter amount) with their units, checks and messages, the
// .bit files, the named stimuli, and the questions on Apply and Cancel. Its
// messages carry the page's caption. The widget creates a control per id
// (kvcomctl/EyeDiagramControlIds.h), forwards what the user does and shows
// what this holds.

namespace kv {

namespace stimulus_edit {
inline constexpr std::string_view kCaption = "Edit Stimulus";
inline constexpr std::string_view kCancelQuestion = "All changes will be lost.";
inline constexpr std::string_view kApplyQuestion = "Do you want to save the changes?";
// Positions of the "Se&quence:" list: Oscillator, Edge, Pulse, PRBS, 8B/10B,
// USB 2.0 compliance, <Custom>.
inline constexpr int kListPositions = 7;

// Shows a box with the page's caption; the default answer is the first button.
MessageAnswer Ask(std::string_view text, MessageIcon icon, MessageButtons buttons);
}  // namespace stimulus_edit

class StimulusEditPageModel {
public:
    // Edits `data`, the sheet's working copy.
    explicit StimulusEditPageModel(CStimulusData& data);

    // The controls the visibility table shows or hides by the list position.
    static std::span<const int> ControlsWithVisibility();

    // When the page first opens: values it cannot work with are told and
    // put back to their defaults. True when anything was replaced.
    bool CheckOnOpen();

    // The list position shown, and the user's choice of one.
    int Position() const { return m_position; }
    int Kind() const;
    void ChoosePosition(int position);
    bool IsShown(int controlId) const;
    // Labels and list items that change with the kind and the distribution:
    // 2193, 4169, 1014 and 4053; items of 1013 and the first of 2190.
    std::string_view Label(int controlId) const;
    std::string_view ItemText(int controlId, int item) const;

    int LevelIndex() const { return m_levelIndex; }
    void SetLevelIndex(int index);
    int BitOrderIndex() const { return m_bitOrderIndex; }
    void SetBitOrderIndex(int index);
    // 0 percent of the bit interval, 1 nanoseconds. The pattern control's
    // paint modes: 0 normal, 1 cycle, 2 continuous, 3 repetition.
    int JitterUnitIndex() const { return m_jitterUnitIndex; }
    void SetJitterUnitIndex(int index);
    int DistributionIndex() const { return m_distributionIndex; }
    void SetDistributionIndex(int index);
    bool RepeatJitter() const { return m_data.m_jitterRepeatable; }
    void SetRepeatJitter(bool repeat);

    // What a numeric field shows and what the user typed into it; a commit
    // refuses a value out of range after its message (the typed text stays)
    // and takes any other, leaving the data alone when the text still reads
    // as shown.
    const std::string& Text(int controlId) const;
    void Type(int controlId, std::string text);
    bool Commit(int controlId);
    // A spin box beside a field: its whole value typed and committed.
    bool Spin(int fieldId, int count);
    int SpinValue(int spinId) const;
    // Every shown field; the one refused, none when all passed.
    std::optional<int> CommitAll();

    // The pattern control: its bits (the user draws custom ones; each
    // change made here counts up the revision, so the control is given them
    // again), and how it behaves (a new look counts up its own revision).
    const BitVector& Bits() const { return m_bits; }
    void SetBits(BitVector bits) { m_bits = std::move(bits); }
    int BitsRevision() const { return m_bitsRevision; }
    bool PatternReadOnly() const { return m_readOnly; }
    int PaintMode() const { return m_paintMode; }
    int PaintRepetitions() const { return m_paintRepetitions; }
    int LookRevision() const { return m_lookRevision; }
    const std::string& FileName() const { return m_fileName; }

    // Load... and Save... of .bit files through `chooser`; true when the
    // bits were replaced by a file's (the control puts its caret back).
    bool LoadBits(IFileChooser& chooser);
    void SaveBits(IFileChooser& chooser);

    // The named stimuli: the list shown (or, after New, the name typed),
    // and the commands.
    const std::vector<std::string>& Names() const { return m_names; }
    const std::string& SelectedName() const { return m_selectedName; }
    bool NamingNew() const { return m_namingNew; }
    void StartNewName();
    void OpenNamed(const std::string& name);
    bool SaveNamed();
    void RemoveNamed();
    // Open... of a stimulus file: invalid data is told and replaced by the
    // defaults, as every load does.
    void OpenFile(IFileChooser& chooser);

    // Whether anything changed since the page opened.
    bool IsModified() const;
    // The sheet's OK: a changed page asks whether to save the stimulus under
    // its name; false when the user cancels (or saving fails).
    bool Apply();
    // The sheet's Cancel: a changed page asks first.
    bool QueryCancel() const;

private:
    void ShowData();
    void ShowLook(int kind);
    void ShowTexts();
    void RebuildPattern();
    void StoreToData();
    void FillNames(const std::string& selected);
    std::string CurrentName() const;
    double JitterInNs(double shown) const;
    std::optional<std::string_view> Check(int controlId, double value) const;
    void Store(int controlId, double value);

    CStimulusData& m_data;
    BitVector m_openedBits;  // the bits when the page opened, to tell an edit
    bool m_modified = false;
    bool m_telling = false;  // a message is up: the field's own events wait

    int m_position = 1;
    int m_levelIndex = 0;
    int m_bitOrderIndex = 0;
    int m_jitterUnitIndex = 0;
    int m_distributionIndex = 0;
    std::string_view m_levelLabel;
    std::array<std::string_view, 2> m_levelItems;

    std::map<int, std::string> m_texts;
    int m_dutySpin = 0;

    BitVector m_bits;
    int m_bitsRevision = 0;
    bool m_readOnly = true;
    int m_paintMode = 0;
    int m_paintRepetitions = 0;
    int m_lookRevision = 0;
    std::string m_fileName;

    std::vector<std::string> m_names;
    std::string m_selectedName;
    bool m_namingNew = false;
    std::string m_newName;
};

}  // namespace kv
