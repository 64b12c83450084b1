#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "core/walker/CrossSection.h"
#include "core/walker/RegionCaption.h"
#include "tests/support/RecordingCanvas.h"

namespace kv {
namespace {

using test::RecordingCanvas;
namespace color = crosssection_colors;

STACKUPLAYER Layer(const char* name, int32_t kind, int32_t usage, double thickness) {
    STACKUPLAYER layer{};
    std::strncpy(layer.name, name, sizeof layer.name - 1);
    layer.kind = kind;
    layer.usage = usage;
    layer.thickness = thickness;
    return layer;
}

CROSSSECTIONTRACE Trace(int32_t layer, double x, double width, int32_t role, const char* net) {
    CROSSSECTIONTRACE trace{};
    trace.layer = layer;
    trace.x = x;
    trace.width = width;
    trace.role = role;
    std::strncpy(trace.net, net, sizeof trace.net - 1);
    return trace;
}

// A 1 mm stackup of four layers, the current net on the top with a coupled
// net 0.3 mm (edge to edge) to its right and another net below.
struct Board {
    STACKUPLAYER layers[4] = {Layer("TOP", STACKUP_CONDUCTOR, 0, 0.0001),
                              Layer("D1", STACKUP_DIELECTRIC, 0, 0.0004),
                              Layer("GND", STACKUP_CONDUCTOR, STACKUP_USAGE_PLANE, 0.0001),
                              Layer("D2", STACKUP_DIELECTRIC, 0, 0.0004)};
    STACKUPARRAY stackup{4, layers};
    CROSSSECTIONTRACE traces[4] = {Trace(0, 0.0, 0.0002, CROSSSECTION_ROLE_CURRENT, "CLK"),
                                   Trace(0, 0.0005, 0.0002, CROSSSECTION_ROLE_COUPLED, "D0"),
                                   Trace(2, -0.0004, 0.0002, CROSSSECTION_ROLE_OTHER, "X"),
                                   Trace(9, 0.0, 0.0002, CROSSSECTION_ROLE_OTHER, "OFF")};
    CrossSectionData data = CrossSectionData::Copy(&stackup, traces, 4);
};

TEST(CrossSection, BandsAndTracesToOneScaleInTheirColoursWithTheSeparationDimensioned) {
    Board board;
    RecordingCanvas canvas;
    const Rect client{0, 0, 400, 300};
    const CrossSectionLayout layout = ComputeCrossSectionLayout(board.data, client, "X", canvas);
    ASSERT_EQ(layout.bands.size(), 4u);
    for (std::size_t i = 1; i < layout.bands.size(); ++i) {
        EXPECT_EQ(layout.bands[i].rect.top, layout.bands[i - 1].rect.bottom);
    }
    const int stack = layout.bands.back().rect.bottom - layout.bands.front().rect.top;
    EXPECT_NEAR(stack, 0.001 * layout.pixelsPerMetre, 1.0);
    EXPECT_EQ(layout.bands[2].color, color::kPlane);
    EXPECT_EQ(layout.bands[1].color, color::kDielectric);
    EXPECT_LE(layout.area.right, client.right);
    EXPECT_GE(layout.bands.front().rect.top, client.top);
    EXPECT_LE(layout.bands.back().rect.bottom, client.bottom);
    // The widest reach (0.6 mm) with room around it decides the scale here.
    EXPECT_NEAR(layout.pixelsPerMetre, layout.area.Width() / (2 * 0.0006 * 1.25), 1e-6);

    // Traces sit on their layer's band, the same width a thickness would be.
    ASSERT_EQ(layout.traces.size(), 3u);  // the one on layer 9 is left out
    const Rect victim = layout.traces[0].rect;
    EXPECT_EQ(victim.top, layout.bands[0].rect.top);
    EXPECT_EQ(victim.bottom, layout.bands[0].rect.bottom);
    EXPECT_EQ((victim.left + victim.right) / 2, layout.centreX);
    EXPECT_NEAR(victim.Width(), 0.0002 * layout.pixelsPerMetre, 1.0);
    EXPECT_EQ(layout.traces[2].rect.top, layout.bands[2].rect.top);
    EXPECT_LT(layout.traces[2].rect.right, layout.centreX);
    EXPECT_EQ(layout.traces[0].color, color::kCurrentNet);
    EXPECT_EQ(layout.traces[1].color, color::kCoupledNet);
    EXPECT_TRUE(layout.traces[2].highlighted);
    EXPECT_FALSE(layout.traces[1].highlighted);
    EXPECT_EQ(ComputeCrossSectionLayout(board.data, client, "", canvas).traces[2].color,
              color::kOtherNet);

    // Only the coupled net shares the current layer: one dimension, edge to edge, above it.
    ASSERT_EQ(layout.dimensions.size(), 1u);
    const CrossSectionDimension& d = layout.dimensions[0];
    EXPECT_EQ(d.text, "0.300 mm");
    EXPECT_EQ(d.x1, layout.traces[0].rect.right);
    EXPECT_EQ(d.x2, layout.traces[1].rect.left);
    EXPECT_LT(d.y, layout.bands[0].rect.top);

    // The highlighted trace is drawn over everything else and outlined.
    PaintCrossSection(canvas, layout);
    const auto fills = canvas.Of(RecordingCanvas::Kind::FillRect);
    ASSERT_EQ(fills.back().color, color::kHighlighted);
    EXPECT_EQ(fills.back().rect, layout.traces[2].rect);
    EXPECT_EQ(canvas.Of(RecordingCanvas::Kind::Rectangle).size(), 1u);
    const auto texts = canvas.Texts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "0.300 mm"), texts.end());
    EXPECT_NE(std::find(texts.begin(), texts.end(), "GND"), texts.end());
}

TEST(CrossSection, MissingOrBrokenInputDrawsAMessageNotAPicture) {
    RecordingCanvas canvas;
    const CrossSectionData none = CrossSectionData::Copy(nullptr, nullptr, -3);
    EXPECT_TRUE(none.layers.empty());
    const CrossSectionLayout layout = ComputeCrossSectionLayout(none, {0, 0, 200, 100}, "", canvas);
    PaintCrossSection(canvas, layout);
    EXPECT_EQ(canvas.Texts(), std::vector<std::string>{"No cross-section for this region"});

    // A net name that fills its 64 bytes without a NUL is cut there.
    CROSSSECTIONTRACE full = Trace(0, 0, 0.001, 0, "");
    std::memset(full.net, 'N', sizeof full.net);
    EXPECT_EQ(CrossSectionData::Copy(nullptr, &full, 1).traces[0].net, std::string(64, 'N'));

    // A trace at no finite place cannot be drawn; the others still are.
    const CROSSSECTIONTRACE mixed[] = {
        Trace(0, std::numeric_limits<double>::infinity(), 1e-4, 0, "A"),
        Trace(0, 0, std::numeric_limits<double>::quiet_NaN(), 0, "B"),
        Trace(0, 1e-4, 1e-4, 0, "C")};
    const CrossSectionData kept = CrossSectionData::Copy(nullptr, mixed, 3);
    ASSERT_EQ(kept.traces.size(), 1u);
    EXPECT_EQ(kept.traces[0].net, "C");
}

TEST(RegionCaption, CountsFromOneAndStopsAtTheEnds) {
    RegionState first = DescribeRegion(0, 5, "Breakout");
    EXPECT_EQ(first.caption, "Region 1 of 5: Breakout");
    EXPECT_FALSE(first.canGoBack);
    EXPECT_TRUE(first.canGoOn);
    RegionState second = DescribeRegion(1, 5, nullptr);
    EXPECT_EQ(second.caption, "Region 2 of 5");
    EXPECT_TRUE(second.canGoBack && second.canGoOn);
    RegionState last = DescribeRegion(4, 5, "");
    EXPECT_TRUE(last.canGoBack);
    EXPECT_FALSE(last.canGoOn);
    RegionState none = DescribeRegion(0, 0, "x");
    EXPECT_EQ(none.caption, "No coupling region");
    EXPECT_FALSE(none.canGoBack || none.canGoOn);
}

}  // namespace
}  // namespace kv
