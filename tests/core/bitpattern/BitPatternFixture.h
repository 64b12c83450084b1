#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/bitpattern/BitPatternEditor.h"
#include "tests/support/FakeControlWindow.h"

namespace kv::test {

// An editor with a remembered window and clipboard. "00" measures 14 x 13;
// in the 600 x 100 client the layout is: handle 4, pattern left 13, high y
// 12, low y 61 (middle 36), 41 cells of 14 up to x 587, digit row y 67..80.
class BitPatternFixture : public testing::Test {
protected:
    BitPatternFixture() : editor(window, clipboard) {
        editor.SetTextMetrics(14, 13);
        editor.SetClientRect({0, 0, 600, 100});
    }

    // Puts a pattern written as '0' and '1' characters in the editor.
    void SetBits(const std::string& text) {
        std::vector<uint8_t> bits;
        for (const char c : text) {
            bits.push_back(c == '1' ? 1 : 0);
        }
        editor.SetPattern(bits, false);
    }

    FakeControlWindow window;
    FakeClipboard clipboard;
    BitPatternEditor editor;
};

}  // namespace kv::test
