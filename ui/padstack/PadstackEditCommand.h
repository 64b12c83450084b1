#pragma once

#include <QUndoCommand>
#include <functional>

#include "core/padstack/PadstackEditModel.h"

namespace kv::ui {

// One accepted edit of the padstack, undone and redone by putting back the whole state from
// before or after it: the states are small, and a whole state cannot drift from the rules the
// way a replayed edit could.
class PadstackEditCommand final : public QUndoCommand {
public:
    using Restore = std::function<void(const PadstackEditState&)>;

    PadstackEditCommand(const QString& text, PadstackEditState before, PadstackEditState after,
                        Restore restore);

    void undo() override;
    // The first redo comes from the push, right after the edit itself: nothing to put back.
    void redo() override;

private:
    PadstackEditState m_before;
    PadstackEditState m_after;
    Restore m_restore;
    bool m_pushed = false;
};

}  // namespace kv::ui
