#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/ports/ControlWindow.h"

namespace kv::test {

// The window of a control, remembered instead of shown: caret, cursor,
// capture, timers and the scroll bar's state.
class FakeControlWindow final : public IControlWindow {
public:
    void CreateCaret(int height) override {
        caretExists = true;
        caretHeight = height;
    }
    void DestroyCaret() override { caretExists = false; }
    void SetCaretPosition(Point position) override { caretPosition = position; }
    void ShowCaret() override { caretVisible = true; }
    void HideCaret() override { caretVisible = false; }
    void SetCursor(CursorShape shape) override { cursor = shape; }
    void CaptureMouse() override { captured = true; }
    void ReleaseMouse() override { captured = false; }
    void StartTimer(int id, int periodMs) override {
        runningTimer = id;
        timerPeriod = periodMs;
    }
    void StopTimer(int id) override {
        if (runningTimer == id) {
            runningTimer = 0;
        }
    }
    void SetScrollInfo(const ScrollInfo& info, bool /*redraw*/) override {
        info.ApplyTo(scroll);
        ++scrollInfoUpdates;
    }
    ScrollInfo GetScrollInfo() const override { return scroll; }
    void SetScrollPosition(int position) override { scroll.position = position; }
    void Invalidate() override { ++invalidations; }

    bool caretExists = false;
    bool caretVisible = false;
    int caretHeight = 0;
    Point caretPosition;
    CursorShape cursor = CursorShape::Arrow;
    bool captured = false;
    int runningTimer = 0;
    int timerPeriod = 0;
    ScrollInfo scroll{ScrollInfo::kAll, 0, 0, 0, 0};
    int scrollInfoUpdates = 0;
    int invalidations = 0;
};

class FakeClipboard final : public IClipboard {
public:
    std::optional<std::string> GetText() const override { return text; }
    bool SetText(std::string_view newText) override {
        if (!opens) {
            return false;
        }
        text = std::string(newText);
        return true;
    }
    std::optional<std::string> text;
    bool opens = true;
};

}  // namespace kv::test
