#pragma once

#include <string_view>

// How a text line of a progress report reacts to a new text. A line updated
// on its own pumps messages so that the host's window repaints it; a line
// updated as part of SetAll repaints at once and leaves the single pump to
// the end of SetAll.

namespace kv {

enum class TextUpdateMode { Single, WithinSetAll };

struct TextUpdatePlan {
    bool storeText = false;     // the report keeps the new text
    bool setControl = false;    // the line's control shows it
    bool repaintNow = false;    // the control repaints before returning
    bool pumpMessages = false;  // pending messages are handled afterwards
};

TextUpdatePlan PlanTextUpdate(bool controlExists, std::string_view stored, std::string_view next,
                              TextUpdateMode mode);

}  // namespace kv
