#pragma once

#include <QCursor>

// The module's cursors of the bit pattern control: 130 for adding bits (a
// pen with a plus), 131 for dragging the pattern's end (a horizontal double
// arrow). Each call draws the cursor anew: hold on to it.

namespace kv::ui {

inline constexpr int kAddBitsCursorId = 130;
inline constexpr int kEndHandleCursorId = 131;

// The cursor with that id; the arrow for an unknown id.
QCursor ModuleCursor(int id);

}  // namespace kv::ui
