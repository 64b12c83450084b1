#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/ports/Canvas.h"

// What an interactive control needs from its window beyond drawing: the
// caret, the mouse cursor, mouse capture, timers, the horizontal scroll bar
// and repaints; and the clipboard in text form. The core's control logic
// drives these; the Qt widget carries them out, tests record them.

namespace kv {

enum class CursorShape {
    Arrow,
    IBeam,
    AddBits,    // module cursor 130
    EndHandle,  // module cursor 131
};

// The scroll bar's state as ranges, page and position; `mask` says which of
// them a record carries.
struct ScrollInfo {
    static constexpr unsigned kRange = 1;
    static constexpr unsigned kPage = 2;
    static constexpr unsigned kPosition = 4;
    static constexpr unsigned kAll = kRange | kPage | kPosition;

    unsigned mask = 0;
    int minimum = 0;
    int maximum = 0;
    int page = 0;
    int position = 0;
    friend bool operator==(const ScrollInfo&, const ScrollInfo&) = default;

    // Copies the parts `mask` names into `state`, as a scroll bar takes them.
    void ApplyTo(ScrollInfo& state) const {
        if (mask & kRange) {
            state.minimum = minimum;
            state.maximum = maximum;
        }
        if (mask & kPage) {
            state.page = page;
        }
        if (mask & kPosition) {
            state.position = position;
        }
    }
};

class IControlWindow {
public:
    virtual ~IControlWindow() = default;

    virtual void CreateCaret(int height) = 0;
    virtual void DestroyCaret() = 0;
    virtual void SetCaretPosition(Point position) = 0;
    virtual void ShowCaret() = 0;
    virtual void HideCaret() = 0;

    virtual void SetCursor(CursorShape shape) = 0;
    virtual void CaptureMouse() = 0;
    virtual void ReleaseMouse() = 0;

    // A repeating timer; starting a running id restarts it.
    virtual void StartTimer(int id, int periodMs) = 0;
    virtual void StopTimer(int id) = 0;

    // The fields of `info` its mask names go to the horizontal scroll bar.
    virtual void SetScrollInfo(const ScrollInfo& info, bool redraw) = 0;
    virtual ScrollInfo GetScrollInfo() const = 0;
    virtual void SetScrollPosition(int position) = 0;

    // The window is painted again soon.
    virtual void Invalidate() = 0;
};

class IClipboard {
public:
    virtual ~IClipboard() = default;
    // The clipboard's text; nothing when it holds no text or cannot be opened.
    virtual std::optional<std::string> GetText() const = 0;
    // Replaces the clipboard's content by `text`; false when it cannot be opened.
    virtual bool SetText(std::string_view text) = 0;
};

}  // namespace kv
