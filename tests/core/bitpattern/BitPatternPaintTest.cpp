// What the bit pattern control draws, recorded primitive by primitive.

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "tests/core/bitpattern/BitPatternFixture.h"
#include "tests/support/RecordingCanvas.h"

namespace kv {
namespace {

using Kind = test::RecordingCanvas::Kind;
namespace color = bitpattern_colors;

struct Segment {
    Point from;
    Point to;
    friend bool operator==(const Segment&, const Segment&) = default;
};

class BitPatternPaintTest : public test::BitPatternFixture {
protected:
    test::RecordingCanvas Paint() const {
        test::RecordingCanvas canvas;
        editor.Paint(canvas);
        return canvas;
    }
    static std::vector<Segment> Waveform(const test::RecordingCanvas& canvas) {
        std::vector<Segment> segments;
        for (const auto& line : canvas.Of(Kind::Line, color::kInk)) {
            if (line.penWidth == 2) {
                segments.push_back({line.from, line.to});
            }
        }
        return segments;
    }
    static std::vector<std::string> Digits(const test::RecordingCanvas& canvas) {
        std::vector<std::string> digits;
        for (const auto& text : canvas.Of(Kind::CentredText)) {
            digits.push_back(text.text);
        }
        return digits;
    }
    static int CellMiddle(int cell) { return 13 + cell * 14 + 7; }
};

TEST_F(BitPatternPaintTest, EmptyPatternShowsTwoRedSquaresAndItsLength) {
    const auto canvas = Paint();
    ASSERT_FALSE(canvas.primitives.empty());
    EXPECT_EQ(canvas.primitives.front().rect, (Rect{0, 0, 600, 100}));
    EXPECT_EQ(canvas.primitives.front().color, color::kBackground);
    const auto red = canvas.Of(Kind::FillRect, color::kStartSquare);
    ASSERT_EQ(red.size(), 2u);
    EXPECT_EQ(red[0].rect, (Rect{9, 8, 17, 16}));
    EXPECT_EQ(red[1].rect, (Rect{9, 57, 17, 65}));
    const auto texts = canvas.Of(Kind::Text);
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].text, "Sequence length: 0");
    EXPECT_EQ(texts[0].from, (Point{13, 83}));
    EXPECT_EQ(canvas.Of(Kind::Rectangle).at(0).rect, (Rect{12, 66, 588, 82}));
    EXPECT_TRUE(Waveform(canvas).empty());
}

TEST_F(BitPatternPaintTest, NormalPaintDrawsEdgesLevelsAndSelectedDigits) {
    SetBits("1001");
    editor.OnFocusGained();
    editor.OnKey(BitKey::Right, {});
    editor.OnKey(BitKey::Right, {false, true});
    editor.OnKey(BitKey::Right, {false, true});
    const auto canvas = Paint();
    EXPECT_EQ(Waveform(canvas), (std::vector<Segment>{{{13, 61}, {13, 12}},
                                                      {{13, 12}, {27, 12}},
                                                      {{27, 12}, {27, 61}},
                                                      {{27, 61}, {41, 61}},
                                                      {{41, 61}, {55, 61}},
                                                      {{55, 61}, {55, 12}},
                                                      {{55, 12}, {69, 12}}}));
    EXPECT_EQ(Digits(canvas), (std::vector<std::string>{"1", "0", "0", "1"}));
    const auto inverted = canvas.Of(Kind::CentredText, color::kBackground);
    ASSERT_EQ(inverted.size(), 2u);
    EXPECT_EQ(inverted[0].rect, (Rect{27, 67, 41, 80}));
    EXPECT_EQ(canvas.Of(Kind::FillRect, color::kInk).size(), 2u);
    const auto band = canvas.Of(Kind::FillRect, color::kSelectionBand);
    ASSERT_EQ(band.size(), 1u);
    EXPECT_EQ(band[0].rect, (Rect{27, 12, 55, 61}));
    // No marker: the caret's bit is named on the right, ending at the pattern's end.
    const auto caption = canvas.Of(Kind::Text).back();
    EXPECT_EQ(caption.text, "bit 3");
    EXPECT_EQ(caption.from, (Point{587 - 5 * 7, 83}));
}

TEST_F(BitPatternPaintTest, CyclePassesAdvanceByCountMinusOneCellsPlusTheLeftMargin) {
    SetBits("10");
    editor.SetPaintMode(1, 0);
    const auto canvas = Paint();
    const auto wave = Waveform(canvas);
    // First pass: bit 0 ends one pixel past its cell, bit 1 likewise.
    EXPECT_EQ(wave[0], (Segment{{13, 61}, {13, 12}}));
    EXPECT_EQ(wave[1], (Segment{{13, 12}, {28, 12}}));
    EXPECT_EQ(wave[2], (Segment{{28, 12}, {27, 61}}));
    EXPECT_EQ(wave[3], (Segment{{27, 61}, {42, 61}}));
    // The second pass starts (2 - 1) * 14 + 13 = 27 pixels after the first.
    EXPECT_EQ(wave[4], (Segment{{42, 61}, {40, 12}}));
    EXPECT_EQ(wave[5], (Segment{{40, 12}, {55, 12}}));
    // Passes end at 41 + 27 p; the 22nd is the first to end beyond x 587.
    EXPECT_EQ(Digits(canvas).size(), 44u);
    const auto cells = canvas.Of(Kind::CentredText);
    EXPECT_EQ(cells[2].rect, (Rect{40, 67, 54, 80}));
    EXPECT_TRUE(canvas.Of(Kind::Text).empty());  // no sequence length
    EXPECT_EQ(window.scroll.maximum, 0);         // and nothing to scroll
    editor.SetPaintMode(7, 0);                   // an unknown mode keeps the painter
    EXPECT_EQ(Digits(Paint()).size(), 44u);
    editor.SetPaintMode(0, 0);
    EXPECT_EQ(window.scroll.maximum, 14 * 32768);
}

TEST_F(BitPatternPaintTest, RepetitionAndContinuousCarryTheLastLevelToTheEdge) {
    SetBits("1001");
    editor.SetPaintMode(3, 2);
    auto wave = Waveform(Paint());
    ASSERT_EQ(wave.size(), 7u + 7u + 1u);
    EXPECT_EQ(wave[6], (Segment{{55, 12}, {69, 12}}));       // exact end, no extra pixel
    EXPECT_EQ(wave[7], (Segment{{69, 12}, {13 + 55, 12}}));  // second pass at 13 + 3 * 14 + 13
    EXPECT_EQ(wave.back(), (Segment{{13 + 55 + 56, 12}, {587, 12}}));
    EXPECT_EQ(Digits(Paint()).size(), 8u);

    editor.SetPaintMode(3, 0);
    auto canvas = Paint();
    EXPECT_EQ(Waveform(canvas), (std::vector<Segment>{{{13, 61}, {587, 12}}}));
    EXPECT_TRUE(Digits(canvas).empty());

    // Continuous: one pass without digits, its last level to the right edge.
    SetBits("10");
    editor.SetPaintMode(2, 0);
    canvas = Paint();
    EXPECT_EQ(Waveform(canvas), (std::vector<Segment>{{{13, 61}, {13, 12}},
                                                      {{13, 12}, {27, 12}},
                                                      {{27, 12}, {27, 61}},
                                                      {{27, 61}, {41, 61}},
                                                      {{41, 61}, {587, 61}}}));
    EXPECT_TRUE(Digits(canvas).empty());
}

TEST_F(BitPatternPaintTest, HoverAndDragBeyondTheEndNameTheBitsToAdd) {
    SetBits("101");
    editor.OnMouseMove({CellMiddle(7), 63});
    const auto canvas = Paint();
    const auto band = canvas.Of(Kind::Line, color::kRubberBand);
    ASSERT_EQ(band.size(), 2u);
    EXPECT_EQ(band[0].from, (Point{55, 12}));
    EXPECT_EQ(band[0].to, (Point{55, 61}));
    EXPECT_EQ(band[1].to, (Point{111, 61}));
    EXPECT_EQ(band[0].penWidth, 2);
    EXPECT_EQ(canvas.Of(Kind::Text).back().text, "bit 7, 4 Low-state to add");
    const auto marker = canvas.Of(Kind::FillRect, color::kMarker);
    ASSERT_EQ(marker.size(), 1u);
    EXPECT_EQ(marker[0].rect, (Rect{107, 57, 115, 65}));

    // Dragging the end names the bits in series, and shows no start squares.
    SetBits("100");
    editor.OnMouseDown({55, 61});
    editor.OnMouseMove({CellMiddle(5), 14});
    const auto dragged = Paint();
    EXPECT_EQ(dragged.Of(Kind::Text).back().text, "bit 6, 2 High-state in series");
    EXPECT_TRUE(dragged.Of(Kind::FillRect, color::kStartSquare).empty());
}

TEST_F(BitPatternPaintTest, ReadOnlyUsesTheButtonFaceAndHidesTheEditingAids) {
    editor.SetButtonFaceColor(MakeColorRef(212, 208, 200));
    editor.SetReadOnly(true);
    const auto canvas = Paint();
    EXPECT_EQ(canvas.primitives.front().color, MakeColorRef(212, 208, 200));
    EXPECT_TRUE(canvas.Of(Kind::Rectangle).empty());
    EXPECT_TRUE(canvas.Of(Kind::FillRect, color::kStartSquare).empty());
}

// Only what the view shows is drawn; what it shows is the same as when
// every cell of the grid and every bit is drawn.
TEST_F(BitPatternPaintTest, ClippingToTheViewDrawsTheSameVisibleGridAndWaveform) {
    std::mt19937 random(7);
    std::string bits;
    for (int i = 0; i < 32768; ++i) {
        bits.push_back(random() % 2 != 0 ? '1' : '0');
    }
    SetBits(bits);
    editor.OnHScroll(ScrollRequest::ThumbPosition, 14 * 16000 + 5);
    const auto visible = [](const test::RecordingCanvas& canvas, uint32_t lineColor) {
        std::set<std::tuple<int, int, int, int, int>> seen;
        for (const auto& p : canvas.primitives) {
            const int x0 = std::min(p.from.x, p.to.x) - p.origin.x;
            const int x1 = std::max(p.from.x, p.to.x) - p.origin.x;
            const bool line = p.kind == Kind::Line && p.color == lineColor;
            const int cellLeft = p.rect.left - p.origin.x;
            if (line && x1 >= 0 && x0 < 600) {
                seen.insert({0, p.from.x, p.from.y, p.to.x, p.to.y});
            } else if (p.kind == Kind::CentredText && cellLeft + 14 >= 0 && cellLeft < 600) {
                seen.insert({1, p.rect.left, p.text[0], 0, 0});
            }
        }
        return seen;
    };
    const auto clipped = Paint();
    editor.SetDrawEverything(true);
    const auto everything = Paint();
    EXPECT_EQ(visible(clipped, color::kLevelLine), visible(everything, color::kLevelLine));
    EXPECT_EQ(visible(clipped, color::kInk), visible(everything, color::kInk));
    EXPECT_GT(everything.Of(Kind::Line, color::kLevelLine).size(), 32768u);
    EXPECT_LT(clipped.Of(Kind::Line, color::kLevelLine).size(), 100u);
    EXPECT_LT(clipped.primitives.size(), 500u);
}

}  // namespace
}  // namespace kv
