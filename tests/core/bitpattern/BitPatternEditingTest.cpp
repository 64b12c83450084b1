// The bit pattern control's editing, driven through its events and commands
// with a remembered window and clipboard.

#include <gtest/gtest.h>

#include <string>

#include "tests/core/bitpattern/BitPatternFixture.h"

namespace kv {
namespace {

class BitPatternEditingTest : public test::BitPatternFixture {
protected:
    std::string Bits() const {
        std::string text;
        for (const uint8_t bit : editor.Bits().Data()) {
            text.push_back(bit != 0 ? '1' : '0');
        }
        return text;
    }
    static int CellMiddle(int cell) { return 13 + cell * 14 + 7; }
    static Point InDigitRow(int cell) { return {CellMiddle(cell), 72}; }
    // The caret at `index`, as a click in the digit row puts it there.
    void ClickDigit(int cell) {
        editor.OnMouseDown(InDigitRow(cell));
        editor.OnMouseUp();
    }
    bool Key(BitKey key, bool ctrl = false, bool shift = false) {
        return editor.OnKey(key, {ctrl, shift});
    }
};

TEST(BitArrayTest, GrowsInStepsOfAnEighthBetweenFourAndAThousandAndTwentyFour) {
    BitArray bits;
    bits.Add(1);
    EXPECT_EQ(bits.Capacity(), 4);
    for (int i = 0; i < 4; ++i) {
        bits.Add(0);
    }
    EXPECT_EQ(bits.Capacity(), 8);
    std::vector<uint8_t> many(800, 1);
    BitArray large(many);
    large.Add(0);
    EXPECT_EQ(large.Capacity(), 900);
    std::vector<uint8_t> huge(16384, 0);
    BitArray largest(huge);
    largest.Add(0);
    EXPECT_EQ(largest.Capacity(), 16384 + 1024);
    EXPECT_THROW(bits.GetAt(5), std::out_of_range);
    EXPECT_THROW(bits.RemoveAt(4, 2), std::out_of_range);
    EXPECT_THROW(bits.InsertAt(6, 1), std::out_of_range);
}

TEST_F(BitPatternEditingTest, LaysOutFromTheClientAndTheTextSize) {
    const BitPatternLayout& l = editor.Layout();
    EXPECT_EQ(l.handleSize, 4);
    EXPECT_EQ(l.left, 13);
    EXPECT_EQ(l.highY, 12);
    EXPECT_EQ(l.right, 13 + 41 * 14);
    EXPECT_EQ(l.lowY, 61);
    EXPECT_EQ(l.digitRow, (Rect{13, 67, 587, 80}));
    // The normal painter scrolls over the whole grid, a page being the pattern width.
    EXPECT_EQ(window.scroll.maximum, 14 * 32768);
    EXPECT_EQ(window.scroll.page, 574);

    const BitPatternLayout wide = ComputeBitPatternLayout({0, 0, 300, 80}, 16, 14);
    EXPECT_EQ((std::vector{wide.handleSize, wide.left, wide.highY, wide.right, wide.lowY}),
              (std::vector{4, 14, 13, 14 + 17 * 16, 38}));
    EXPECT_EQ(wide.digitRow, (Rect{14, 44, 286, 58}));
    const BitPatternLayout coarse = ComputeBitPatternLayout({0, 0, 100, 60}, 40, 20);
    EXPECT_EQ((std::vector{coarse.handleSize, coarse.left, coarse.right, coarse.lowY}),
              (std::vector{10, 20, 60, 0}));
}

TEST_F(BitPatternEditingTest, CaretKeepsItsBitOnResizingAndGoesWithTheFocus) {
    SetBits("10110");
    editor.OnFocusGained();
    EXPECT_TRUE(window.caretExists);
    EXPECT_EQ(window.caretHeight, 13);
    editor.SetCaretIndex(4);
    editor.SetTextMetrics(20, 13);
    EXPECT_EQ(editor.GetCaretIndex(), 4);
    EXPECT_EQ(window.caretPosition, (Point{13 + 80, editor.Layout().digitRow.top}));
    editor.SetCaretIndex(99);
    EXPECT_EQ(editor.GetCaretIndex(), 5);  // clamped to the count
    Key(BitKey::Home, false, true);
    editor.OnFocusLost();
    EXPECT_FALSE(editor.HasSelection());
    EXPECT_FALSE(window.caretExists);
}

TEST_F(BitPatternEditingTest, EmptyPatternIsStartedByDraggingAStartSquare) {
    editor.OnFocusGained();
    editor.OnMouseMove({13, 14});
    EXPECT_EQ(editor.MarkerRect(), (Rect{9, 8, 17, 16}));
    EXPECT_EQ(window.cursor, CursorShape::EndHandle);
    editor.OnMouseDown({13, 14});
    EXPECT_TRUE(editor.IsDragging());
    EXPECT_TRUE(window.captured);
    EXPECT_FALSE(editor.IsCaretShown());
    editor.OnMouseMove({CellMiddle(1), 14});
    EXPECT_EQ(Bits(), "1");
    editor.OnMouseMove({CellMiddle(4), 58});
    EXPECT_EQ(Bits(), "1000");
    editor.OnMouseMove({CellMiddle(2), 58});  // back left: cut to the cell under the mouse
    EXPECT_EQ(Bits(), "10");
    editor.OnMouseUp();
    EXPECT_FALSE(window.captured);
    EXPECT_FALSE(editor.IsDragging());
    EXPECT_TRUE(editor.HasMarker());  // stays until the mouse moves again
}

TEST_F(BitPatternEditingTest, ClickingBeyondTheEndOnALevelAppendsUpToThatCell) {
    SetBits("101");
    editor.OnMouseMove({CellMiddle(7), 63});
    EXPECT_EQ(window.cursor, CursorShape::AddBits);
    EXPECT_EQ(editor.MarkerRect(), (Rect{13 + 98 - 4, 57, 13 + 98 + 4, 65}));
    editor.OnMouseDown({CellMiddle(7), 63});
    EXPECT_EQ(Bits(), "1010000");
    EXPECT_FALSE(editor.IsDragging());
    // Off the level lines nothing is offered or added; over the digits it is text.
    editor.OnMouseMove({CellMiddle(12), 36});
    EXPECT_FALSE(editor.HasMarker());
    EXPECT_EQ(window.cursor, CursorShape::Arrow);
    editor.OnMouseMove(InDigitRow(2));
    EXPECT_EQ(window.cursor, CursorShape::IBeam);
    editor.OnMouseDown({CellMiddle(12), 36});
    EXPECT_EQ(Bits(), "1010000");
}

TEST_F(BitPatternEditingTest, DraggingPastTheEdgeAutoScrollsOneBitPerTick) {
    SetBits("11");
    editor.OnMouseDown({13 + 28, 12});
    ASSERT_TRUE(editor.IsDragging());
    editor.OnMouseMove({598, 12});
    EXPECT_EQ(window.runningTimer, BitPatternEditor::kScrollRightTimer);
    EXPECT_EQ(window.timerPeriod, 17);
    const std::string before = Bits();
    editor.OnTimer(BitPatternEditor::kScrollRightTimer, 12);
    EXPECT_EQ(window.scroll.position, 2);
    EXPECT_EQ(Bits().size(), before.size() + 1);
    editor.OnMouseMove({300, 12});  // back inside: the timer stops
    EXPECT_EQ(window.runningTimer, 0);
    editor.OnMouseMove({1, 12});
    EXPECT_EQ(window.runningTimer, BitPatternEditor::kScrollLeftTimer);
    editor.OnMouseUp();
    EXPECT_EQ(window.runningTimer, 0);
}

TEST_F(BitPatternEditingTest, SweepingInTheDigitRowSelectsAndMovesTheCaret) {
    SetBits("1011001");
    editor.OnMouseDown(InDigitRow(5));
    editor.OnMouseMove(InDigitRow(2));
    editor.OnMouseUp();
    EXPECT_EQ(editor.SelectionMin(), 2);
    EXPECT_EQ(editor.SelectionMax(), 5);
    EXPECT_EQ(editor.GetCaretIndex(), 2);
    EXPECT_TRUE(window.caretVisible);
    editor.Copy();
    EXPECT_EQ(clipboard.text, "110");
}

TEST_F(BitPatternEditingTest, KeysEditAndMoveOnlyWithTheirModifiers) {
    SetBits("");
    editor.OnFocusGained();
    EXPECT_TRUE(Key(BitKey::One));
    EXPECT_TRUE(Key(BitKey::Zero, false, true));
    EXPECT_TRUE(Key(BitKey::One));
    EXPECT_FALSE(Key(BitKey::One, true));
    EXPECT_EQ(Bits(), "101");
    EXPECT_EQ(editor.GetCaretIndex(), 3);

    EXPECT_TRUE(Key(BitKey::Left, false, true));
    EXPECT_TRUE(Key(BitKey::Left, false, true));
    EXPECT_EQ(editor.SelectionAnchor(), 3);
    EXPECT_EQ(editor.SelectionEnd(), 1);
    EXPECT_FALSE(Key(BitKey::Left, true));
    EXPECT_TRUE(Key(BitKey::C, true));
    EXPECT_EQ(clipboard.text, "01");
    EXPECT_FALSE(Key(BitKey::C, true, true));
    EXPECT_TRUE(Key(BitKey::Home));
    EXPECT_FALSE(editor.HasSelection());
    EXPECT_TRUE(Key(BitKey::End, false, true));
    EXPECT_EQ(editor.SelectionMin(), 0);
    EXPECT_EQ(editor.SelectionMax(), 3);
    EXPECT_TRUE(Key(BitKey::Insert, true));  // Ctrl+Insert copies
    EXPECT_EQ(clipboard.text, "101");
    EXPECT_TRUE(Key(BitKey::Delete, false, true));  // Shift+Delete cuts
    EXPECT_EQ(Bits(), "");
    EXPECT_EQ(editor.GetCaretIndex(), 0);
    EXPECT_TRUE(Key(BitKey::Insert, false, true));  // Shift+Insert pastes
    EXPECT_EQ(Bits(), "101");
    EXPECT_TRUE(Key(BitKey::Right, false, false));  // clamped at the end
    EXPECT_EQ(editor.GetCaretIndex(), 3);
    EXPECT_FALSE(Key(BitKey::Other));
    EXPECT_FALSE(Key(BitKey::X));
}

TEST_F(BitPatternEditingTest, TypingReplacesTheSelectionAndBackspaceStopsAtTheStart) {
    SetBits("1111");
    editor.OnFocusGained();
    ClickDigit(1);
    Key(BitKey::Right, false, true);
    Key(BitKey::Right, false, true);
    Key(BitKey::Zero);
    EXPECT_EQ(Bits(), "101");
    EXPECT_EQ(editor.GetCaretIndex(), 2);
    EXPECT_TRUE(Key(BitKey::Back));
    EXPECT_EQ(Bits(), "11");
    EXPECT_EQ(editor.GetCaretIndex(), 1);
    Key(BitKey::Home);
    Key(BitKey::Back);
    EXPECT_EQ(Bits(), "11");
    EXPECT_EQ(editor.GetCaretIndex(), 0);
    Key(BitKey::Delete);  // removes the bit after the caret; the caret stays
    EXPECT_EQ(Bits(), "1");
    EXPECT_EQ(editor.GetCaretIndex(), 0);
}

// Paste goes to the caret index from before the selection was removed, and
// a refused paste still moves the caret by the text's length.
TEST_F(BitPatternEditingTest, PasteMovesTheCaretFromWhereItWas) {
    SetBits("000000");
    editor.OnFocusGained();
    ClickDigit(1);
    Key(BitKey::Right, false, true);
    Key(BitKey::Right, false, true);  // 1..3 selected, caret at 3
    clipboard.text = "11";
    editor.Paste();
    EXPECT_EQ(Bits(), "000110");
    EXPECT_EQ(editor.GetCaretIndex(), 5);

    SetBits("0000");
    ClickDigit(2);
    Key(BitKey::End, false, true);  // 2..4 selected, caret at 4: past the end once removed
    editor.Paste();
    EXPECT_EQ(Bits(), "0011");
    EXPECT_EQ(editor.GetCaretIndex(), 4);

    SetBits("10101");
    ClickDigit(1);
    clipboard.text = "012";
    editor.Paste();
    EXPECT_EQ(Bits(), "10101");
    EXPECT_EQ(editor.GetCaretIndex(), 4);
    editor.Paste();
    EXPECT_EQ(editor.GetCaretIndex(), 5);  // clamped to the end
    clipboard.text.reset();
    editor.Paste();
    EXPECT_EQ(Bits(), "10101");
}

TEST_F(BitPatternEditingTest, ReadOnlySelectsAnywhereCopiesAndChangesNothing) {
    SetBits("1100");
    editor.SetReadOnly(true);
    editor.OnFocusGained();
    editor.OnMouseMove({13 + 56, 61});  // the end handle offers nothing
    EXPECT_FALSE(editor.HasMarker());
    editor.OnMouseDown({CellMiddle(1), 30});  // above the digits: still a sweep
    editor.OnMouseMove({CellMiddle(3), 30});
    editor.OnMouseUp();
    EXPECT_EQ(editor.SelectionMin(), 1);
    EXPECT_EQ(editor.SelectionMax(), 3);
    EXPECT_TRUE(Key(BitKey::C, true));
    EXPECT_EQ(clipboard.text, "10");
    EXPECT_FALSE(Key(BitKey::One));
    EXPECT_FALSE(Key(BitKey::Back));
    Key(BitKey::Delete);
    Key(BitKey::X, true);
    Key(BitKey::V, true);
    EXPECT_EQ(Bits(), "1100");
    const EditCommandState menu = editor.PrepareContextMenu(InDigitRow(2));
    EXPECT_EQ((std::vector{menu.cut, menu.copy, menu.paste, menu.del}),
              (std::vector{false, true, false, false}));
}

TEST_F(BitPatternEditingTest, ContextMenuMovesTheCaretAndOffersWhatApplies) {
    SetBits("1100");
    editor.OnFocusGained();
    ClickDigit(0);
    Key(BitKey::Right, false, true);
    Key(BitKey::Right, false, true);
    clipboard.text = "0110";
    EditCommandState menu = editor.PrepareContextMenu(InDigitRow(1));
    EXPECT_EQ(editor.GetCaretIndex(), 1);
    EXPECT_TRUE(editor.HasSelection());
    EXPECT_EQ((std::vector{menu.cut, menu.copy, menu.paste, menu.del}),
              (std::vector{true, true, true, true}));
    clipboard.text = "01x";
    menu = editor.PrepareContextMenu({CellMiddle(9), 72});  // outside: selection dropped
    EXPECT_EQ(editor.GetCaretIndex(), 4);
    EXPECT_EQ((std::vector{menu.cut, menu.copy, menu.paste, menu.del}),
              (std::vector{false, false, false, true}));
}

TEST_F(BitPatternEditingTest, ScrollingStaysWithinTheRangeAndFollowsTheCaret) {
    editor.OnHScroll(ScrollRequest::LineLeft, 0);
    EXPECT_EQ(window.scroll.position, 0);
    editor.OnHScroll(ScrollRequest::PageRight, 0);
    EXPECT_EQ(window.scroll.position, 574);
    editor.OnHScroll(ScrollRequest::ThumbTrack, 1 << 30);
    EXPECT_EQ(window.scroll.position, 14 * 32768);
    editor.OnHScroll(ScrollRequest::ThumbPosition, 0);

    SetBits(std::string(100, '1'));
    editor.OnFocusGained();
    Key(BitKey::End);
    EXPECT_EQ(window.scroll.position, 13 + 1400 - 587);
    EXPECT_EQ(editor.GetCaretIndex(), 100);
    EXPECT_EQ(window.caretPosition.x, 587);
    Key(BitKey::Home);
    EXPECT_EQ(window.scroll.position, 0);
}

}  // namespace
}  // namespace kv
