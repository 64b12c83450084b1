// The canvas port's own polygon fill, which canvases without a polygon primitive inherit.

#include <gtest/gtest.h>

#include "tests/support/RecordingCanvas.h"

namespace {

using Kind = kv::test::RecordingCanvas::Kind;

TEST(CanvasPolygonFill, RowsCoverTheInsideByTheEvenOddRule) {
    kv::test::RecordingCanvas canvas;
    // A 10 x 4 rectangle given as a polygon: four rows, each 10 pixels wide.
    const kv::Point box[] = {{2, 1}, {12, 1}, {12, 5}, {2, 5}};
    canvas.ICanvas::FillPolygon(box, 0x123456);
    auto rows = canvas.Of(Kind::FillRect, 0x123456);
    ASSERT_EQ(rows.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(rows[i].rect, (kv::Rect{2, 1 + i, 12, 2 + i}));
    }

    // A triangle narrows row by row; its apex row is the narrowest.
    canvas.primitives.clear();
    const kv::Point triangle[] = {{0, 0}, {8, 8}, {-8, 8}};
    canvas.ICanvas::FillPolygon(triangle, 1);
    rows = canvas.Of(Kind::FillRect, 1);
    ASSERT_EQ(rows.size(), 8u);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_GT(rows[i].rect.Width(), rows[i - 1].rect.Width());
        EXPECT_EQ(rows[i].rect.left + rows[i].rect.right, 0);
    }

    // A bow tie crosses itself: the even-odd rule leaves its middle row split in two.
    canvas.primitives.clear();
    const kv::Point bowTie[] = {{0, 0}, {10, 10}, {10, 0}, {0, 10}};
    canvas.ICanvas::FillPolygon(bowTie, 2);
    EXPECT_EQ(canvas.Of(Kind::FillRect, 2).size(), 20u);

    canvas.primitives.clear();
    const kv::Point line[] = {{0, 0}, {5, 5}};
    canvas.ICanvas::FillPolygon(line, 3);
    EXPECT_TRUE(canvas.primitives.empty());
}

}  // namespace
