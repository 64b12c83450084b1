#include "ui/padstack/PadstackEditCommand.h"

namespace kv::ui {

PadstackEditCommand::PadstackEditCommand(const QString& text, PadstackEditState before,
                                         PadstackEditState after, Restore restore)
    : QUndoCommand(text),
      m_before(std::move(before)),
      m_after(std::move(after)),
      m_restore(std::move(restore)) {}

void PadstackEditCommand::undo() {
    m_restore(m_before);
}

void PadstackEditCommand::redo() {
    if (!m_pushed) {
        m_pushed = true;
        return;
    }
    m_restore(m_after);
}

}  // namespace kv::ui
