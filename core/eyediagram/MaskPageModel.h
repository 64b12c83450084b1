#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/eyediagram/MaskLibrary.h"
#include "core/eyediagram/MaskOutline.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusRules.h"

// What the eye mask page decides: the fifteen numbers of the stimulus's mask
// as the page shows them, each checked against its neighbours or its
// placement range when it is committed, the whole mask's order before the
// page is left, the check when the page first opens, and the library of
// named masks in the module's settings store. Messages go through the
// message port; the widget creates a control per field and shows what this
// holds.

namespace kv {

struct MaskField {
    int controlId;
    std::string_view label;
    const StimulusRule* rule;
    double shownFactor;  // the scales are shown in percent
};

class MaskPageModel {
public:
    // Edits the mask of `data`, the sheet's working copy.
    explicit MaskPageModel(CStimulusData& data);

    // In the order of the mask record.
    static std::span<const MaskField> Fields();

    // When the page first opens: a mask it cannot show is told and replaced
    // by the default mask. True when it was replaced.
    bool CheckOnOpen();

    // What a field shows, and what the user has typed into it (the drawing
    // follows every keystroke; nothing is checked until it is committed).
    const std::string& Text(int controlId) const;
    void Type(int controlId, std::string text);

    // Commits the typed text of one field: false after its message, and the
    // typed text stays until it is put right. A text that still reads as the
    // held value is left alone, so that a stored mask may keep equal
    // neighbours.
    bool Commit(int controlId);
    // Every field, then the order of the whole mask. The field that was
    // refused, 0 when the order was, none when everything passed.
    std::optional<int> CommitAll();

    // The sheet's OK: a mask that differs from the library's mask of its
    // name asks whether to keep it there; false when the user cancels.
    bool Apply();

    std::vector<std::string> LibraryNames() const;
    std::string_view Name() const { return MaskName(m_data.m_mask); }
    // Takes the library's mask of `name` once the typed fields pass and the
    // question about the current mask is answered; the refused field, as
    // CommitAll.
    std::optional<int> ChooseLibraryMask(std::string_view name);
    // Keeps the current mask in the library under `name` (trimmed).
    std::optional<int> SaveAs(std::string_view name);
    void Delete(std::string_view name);

    // The mask as the fields read now, typed values before they are checked,
    // placed on the bit interval.
    MaskOutline Outline() const;

private:
    void ShowMask();
    void SaveLibrary();

    CStimulusData& m_data;
    MaskLibrary m_library;
    std::map<int, std::string> m_texts;
    bool m_telling = false;  // a message is up: the field's own events wait
};

}  // namespace kv
