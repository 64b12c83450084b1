// The via views' geometry on a recording canvas, and the control's model behind them: a small
// stackup drawn to scale, pads and barrel where the padstack puts them, a pair side by side.

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <filesystem>
#include <limits>

#include "core/via/PadOutline.h"
#include "core/via/ViaSideView.h"
#include "core/via/ViaTopView.h"
#include "core/via/ViaViewStyle.h"
#include "core/via/ViaVisualizer.h"
#include "tests/support/RecordingCanvas.h"
#include "tests/support/TestSupport.h"

namespace {

namespace style = kv::via_view;
using kv::test::RecordingCanvas;
using Kind = RecordingCanvas::Kind;
using Primitive = RecordingCanvas::Primitive;

constexpr double kUm = 1e-6;
constexpr kv::Rect kClient{0, 0, 800, 600};

PADDATA Pad(int32_t type, int32_t shape, double x, double y = 0.0, double angle = 0.0,
            double antipad = 0.0) {
    return {type, shape, x, y > 0.0 ? y : x, angle, antipad, antipad, 0, 0, 0, 0};
}

bool Shows(const RecordingCanvas& canvas, const std::string& text) {
    const std::vector<std::string> texts = canvas.Texts();
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// TOP (signal 50 um), 200 um dielectric, GND (plane 50 um), 300 um dielectric, BOT (signal
// 50 um); a 200 um drill with 25 um plating from TOP to BOT.
class ViaView : public ::testing::Test {
protected:
    void SetUp() override {
        m_model.SetPair(true);
        for (int v = 0; v < 2; ++v) {
            kv::CViaVizData& data = *m_model.ViaData(v);
            const STACKUPLAYER layers[] = {
                {"TOP", STACKUP_CONDUCTOR, 0, 50 * kUm},
                {"D1", STACKUP_DIELECTRIC, 0, 200 * kUm},
                {"GND", STACKUP_CONDUCTOR, STACKUP_USAGE_PLANE, 50 * kUm},
                {"D2", STACKUP_DIELECTRIC, 0, 300 * kUm},
                {"BOT", STACKUP_CONDUCTOR, 0, 50 * kUm}};
            data.SetStackupLayers(layers);
            const PADDATA pads[] = {Pad(PAD_TYPE_PAD, PAD_SHAPE_ROUND, 500 * kUm, 0, 0, 800 * kUm),
                                    Pad(PAD_TYPE_NONE, PAD_SHAPE_NONE, 0),
                                    Pad(PAD_TYPE_ANTIPAD, PAD_SHAPE_ROUND, 700 * kUm),
                                    Pad(PAD_TYPE_NONE, PAD_SHAPE_NONE, 0),
                                    Pad(PAD_TYPE_PAD, PAD_SHAPE_RECTANGLE, 600 * kUm, 400 * kUm)};
            data.SetPads(pads);
            PADSTACK& padstack = *data.GetPadstack();
            kv::SetRecordName(padstack.name, "VIA8");
            padstack.drill = 200 * kUm;
            padstack.plating = 25 * kUm;
            padstack.lastLayer = 4;
        }
        m_model.SetPair(false);
        const VIAELEMENT inductance{1, 0, 2, 0, 4, 2e-10, 0.0, 5e-14, 0.0};
        m_model.SetElements(0, &inductance, 1);
        const int32_t ports[] = {0, 4};
        m_model.SetPorts(0, ports, 2);
    }

    void Paint() {
        m_input = m_model.Input();
        m_layout = kv::LayOutSideView(m_input, kClient, m_canvas);
        kv::PaintSideView(m_canvas, m_input, m_layout);
    }

    // Fills of `color` that lie within layer `layer`'s band.
    std::vector<Primitive> FillsOn(uint32_t color, int layer) const {
        std::vector<Primitive> found = m_canvas.Of(Kind::FillRect, color);
        std::erase_if(found, [&](const Primitive& p) {
            return p.rect.top != m_layout.layerY[layer] ||
                   p.rect.bottom != m_layout.layerY[layer + 1];
        });
        return found;
    }

    int Px(double metres) const { return static_cast<int>(std::lround(metres * m_layout.scale)); }

    kv::ViaVisualizer m_model;
    kv::SpiceExportInput m_input;
    kv::SideViewLayout m_layout;
    RecordingCanvas m_canvas;
};

TEST_F(ViaView, SideViewBandsAreToScaleAndFitTheControl) {
    Paint();
    ASSERT_EQ(m_layout.LayerCount(), 5);
    const double thickness[] = {50, 200, 50, 300, 50};
    for (int i = 0; i < 5; ++i) {
        EXPECT_NEAR(m_layout.layerY[i + 1] - m_layout.layerY[i], Px(thickness[i] * kUm), 1) << i;
    }
    EXPECT_GE(m_layout.layerY.front(), kClient.top);
    EXPECT_LE(m_layout.layerY.back(), kClient.bottom);
    EXPECT_EQ(FillsOn(style::kDielectric, 3).size(), 1u);
    EXPECT_EQ(FillsOn(style::kPlaneLayer, 2).size(), 1u);
    EXPECT_EQ(FillsOn(style::kSignalLayer, 0).size(), 1u);
    EXPECT_EQ(m_layout.LayerAt(m_layout.layerY[2]), 2);
    EXPECT_EQ(m_layout.LayerAt(m_layout.layerY[5]), -1);
    EXPECT_TRUE(Shows(m_canvas, "DIEL  11.8 mils"));
    m_model.SetMetric(true);
    Paint();
    EXPECT_TRUE(Shows(m_canvas, "DIEL  0.300 mm"));
}

TEST_F(ViaView, BarrelSpansExactlyTheLayerSpanAndPadsAreToScale) {
    m_model.ViaData(0)->GetPadstack()->lastLayer = 2;
    Paint();
    const auto plating = m_canvas.Of(Kind::FillRect, style::kPlating);
    ASSERT_EQ(plating.size(), 1u);
    EXPECT_EQ(plating[0].rect.top, m_layout.layerY[0]);
    EXPECT_EQ(plating[0].rect.bottom, m_layout.layerY[3]);
    EXPECT_NEAR(plating[0].rect.Width(), 2 * Px(125 * kUm), 1);
    EXPECT_NEAR(m_canvas.Of(Kind::FillRect, style::kHole).back().rect.Width(), Px(200 * kUm), 1);

    const auto top = FillsOn(style::kPad, 0);
    ASSERT_EQ(top.size(), 1u);
    EXPECT_NEAR(top[0].rect.Width(), Px(500 * kUm), 2);
    EXPECT_NEAR((top[0].rect.left + top[0].rect.right) / 2, m_layout.viaX[0], 1);
    // A rectangle is cut along its width; the anti-pad clears the plane around the barrel.
    ASSERT_EQ(FillsOn(style::kPad, 4).size(), 1u);
    EXPECT_NEAR(FillsOn(style::kPad, 4)[0].rect.Width(), Px(600 * kUm), 2);
    ASSERT_EQ(FillsOn(style::kClearance, 2).size(), 1u);
    EXPECT_NEAR(FillsOn(style::kClearance, 2)[0].rect.Width(), Px(700 * kUm), 2);
    EXPECT_TRUE(FillsOn(style::kPad, 2).empty());
}

TEST_F(ViaView, PairStandsSideBySideWithViaZeroOnTheRight) {
    m_model.SetPair(true);
    Paint();
    ASSERT_EQ(m_layout.viaX.size(), 2u);
    // Centres two and a half of the widest reach (the 800 um anti-pad) apart.
    EXPECT_NEAR(m_layout.viaX[0] - m_layout.viaX[1], Px(2.5 * 400 * kUm), 2);
    EXPECT_EQ(FillsOn(style::kPad, 0).size(), 2u);
    EXPECT_TRUE(Shows(m_canvas, "Right Via"));
    EXPECT_TRUE(Shows(m_canvas, "Left Via"));
    EXPECT_GT(m_layout.viaX[1] - m_layout.viaReach, m_layout.board.left);
    EXPECT_LT(m_layout.viaX[0] + m_layout.viaReach, m_layout.board.right);

    // The top view shares one scale: via 0 on the right, its pad twice as wide as via 1's.
    m_model.ViaData(1)->GetPadstack()->pads[0].pad_x = 250 * kUm;
    m_model.SetView(1);
    EXPECT_FALSE(m_model.SetView(2));
    RecordingCanvas top;
    m_model.Paint(top, kClient);
    const auto pads = top.Of(Kind::FillPolygon, style::kPad);
    ASSERT_EQ(pads.size(), 2u);
    EXPECT_GT(pads[0].rect.left, pads[1].rect.right);
    EXPECT_NEAR(pads[0].rect.Width(), 2 * pads[1].rect.Width(), 2);
}

TEST_F(ViaView, ModelNonFunctionalLayersAndHoverAreShown) {
    Paint();
    const auto labels = m_canvas.Of(Kind::Text);
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const Primitive& p) {
        return p.text == "GND" && p.color == style::kNonFunctional;
    }));
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const Primitive& p) {
        return p.text == "TOP" && p.color == style::kText;
    }));
    EXPECT_FALSE(kv::IsNonFunctionalLayer(m_input, 0, 1));  // a dielectric
    EXPECT_EQ(m_canvas.Of(Kind::FillRect, style::kPort).size(), 2u);
    // The inductance runs from under TOP to the top of BOT, with its end capacitance.
    const auto bars = m_canvas.Of(Kind::FillRect, style::kInductance);
    ASSERT_EQ(bars.size(), 1u);
    EXPECT_EQ(bars[0].rect.top, m_layout.layerY[1] + 1);
    EXPECT_EQ(bars[0].rect.bottom, m_layout.layerY[4] - 1);
    EXPECT_TRUE(Shows(m_canvas, "L 200.0 pH C 50.0 fF"));
    // In a narrow control a label drops its capacitance, or goes, rather than leave the board.
    RecordingCanvas narrow;
    const kv::SideViewLayout tight = kv::LayOutSideView(m_input, {0, 0, 400, 400}, narrow);
    kv::PaintSideView(narrow, m_input, tight);
    const auto label = narrow.Of(Kind::Text, style::kInductance);
    ASSERT_EQ(label.size(), 1u);
    EXPECT_EQ(label[0].text, "L 200.0 pH");
    EXPECT_LE(label[0].from.x + narrow.TextExtent(label[0].text).width, tight.board.right);

    const int plane = (m_layout.layerY[2] + m_layout.layerY[3]) / 2;
    EXPECT_EQ(m_model.HoverText({400, plane}, kClient, m_canvas),
              "3 GND: plane, 2.0 mils\nVia: anti-pad RND 27.6 mils, non-functional");
    EXPECT_EQ(m_model.HoverText({400, m_layout.layerY[0]}, kClient, m_canvas),
              "1 TOP: signal, 2.0 mils\nVia: pad RND 19.7 mils, anti-pad 31.5 mils, port\n"
              "  L 200.0 pH C 50.0 fF");
    EXPECT_EQ(m_model.HoverText({400, 599}, kClient, m_canvas), "");
}

TEST_F(ViaView, InconsistentDataIsDrawnWithoutReadingOutside) {
    kv::CViaVizData& data = *m_model.ViaData(0);
    data.SetPads(std::vector<PADDATA>(2, Pad(PAD_TYPE_PAD, PAD_SHAPE_OVAL, 1e-3)));
    data.GetPadstack()->firstLayer = 7;
    data.GetPadstack()->lastLayer = -3;
    data.GetStackup()->layers[1].thickness = std::numeric_limits<double>::quiet_NaN();
    const VIAELEMENT outside{4, 2, 2, 3, 99, 50.0, 1e-15, 1e-15, 1e-12};
    m_model.SetElements(0, &outside, 1);
    const int32_t port = -1;
    m_model.SetPorts(0, &port, 1);
    Paint();
    EXPECT_TRUE(m_canvas.Of(Kind::FillRect, style::kPlating).empty());
    EXPECT_TRUE(m_canvas.Of(Kind::FillRect, style::kLine).empty());
    EXPECT_EQ(m_layout.layerY[1], m_layout.layerY[2]);
    // Neither these data nor a control without any are exported.
    const TestFolder folder;
    EXPECT_FALSE(m_model.ExportToSpiceFile(folder.File("never.cir")));
    const kv::ViaVisualizer empty;
    EXPECT_FALSE(empty.ExportToSpiceFile(folder.File("empty.cir")));
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));

    // A host may ask for the top view of any layer number.
    m_model.SetView(1);
    m_model.SetTopViewLayer(std::numeric_limits<int32_t>::max());
    RecordingCanvas top;
    m_model.Paint(top, kClient);
    EXPECT_TRUE(Shows(top, "layer 2147483648 is not in the stackup"));

    RecordingCanvas canvas;
    empty.Paint(canvas, kClient);
    EXPECT_EQ(canvas.Texts(), std::vector<std::string>{"No via data"});
}

TEST(PadOutline, ShapesAreCutAlongTheirTurnedWidth) {
    const auto oblong = kv::PadOutline(PAD_SHAPE_OBLONG, 3.0, 1.0, 0.0);
    EXPECT_NEAR(kv::CutAlongX(oblong).right, 1.5, 1e-9);
    const auto above = [](const kv::PointM& a, const kv::PointM& b) { return a.y < b.y; };
    EXPECT_NEAR(std::min_element(oblong.begin(), oblong.end(), above)->y, -0.5, 1e-9);
    EXPECT_NEAR(kv::CutAlongX(kv::PadOutline(PAD_SHAPE_OVAL, 4.0, 2.0, 90.0)).right, 1.0, 1e-3);
    EXPECT_TRUE(kv::PadOutline(PAD_SHAPE_ROUND, -1.0, 1.0, 0.0).empty());
    EXPECT_TRUE(kv::PadOutline(PAD_SHAPE_NONE, 1.0, 1.0, 0.0).empty());
    // Without an anti-pad size, a pad's anti-pad is the pad grown by the clearance; with one,
    // it takes its own outline only when the record names one.
    PADDATA pad = Pad(PAD_TYPE_PAD, PAD_SHAPE_ROUND, 1.0);
    pad.clearance = 0.25;
    EXPECT_NEAR(kv::CutAlongX(kv::PadShapesOf(pad, 0.5).antipad).right, 0.75, 1e-9);
    pad.antipad_x = 1.5;
    pad.antipadShape = PAD_SHAPE_OVAL;
    EXPECT_EQ(kv::PadGeometryOf(pad, 0.5).antipad.shape, PAD_SHAPE_OVAL);
    pad.antipadShape = ANTIPAD_SHAPE_AUTO;  // no outline of its own: the pad's, as before
    EXPECT_EQ(kv::PadGeometryOf(pad, 0.5).antipad.shape, PAD_SHAPE_ROUND);
}

// A host's QApplication sets the process locale from the desktop; the legend keeps its
// decimal point.
TEST(PadTopView, LayerIsDrawnToOneScaleWithItsValues) {
    const bool german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    RecordingCanvas canvas;
    const PADDATA pad = Pad(PAD_TYPE_PAD, PAD_SHAPE_RECTANGLE, 600 * kUm, 400 * kUm, 90.0);
    const kv::PadTopViewInput input{&pad, 200 * kUm, 25 * kUm, false, "layer 1 TOP"};
    const kv::Rect into{0, 0, 400, 400};
    kv::DrawLayerPadTopView(canvas, into, input);
    const PADDATA turned = Pad(PAD_TYPE_PAD, PAD_SHAPE_RECTANGLE, 600 * kUm, 400 * kUm, 22.5);
    RecordingCanvas legend;
    kv::DrawLayerPadTopView(legend, into, {&turned, 200 * kUm, 25 * kUm, false, "TOP"});
    if (german) {
        std::setlocale(LC_NUMERIC, "C");
    }
    EXPECT_TRUE(Shows(legend, "Pad: RECT 23.6 mils x 15.7 mils, 22.5 deg"));
    const double scale = kv::PlacePadTopView(into, kv::PadTopViewExtent(input), canvas).scale;
    const auto pads = canvas.Of(Kind::FillPolygon, style::kPad);
    ASSERT_EQ(pads.size(), 1u);
    EXPECT_NEAR(pads[0].rect.Width(), 400 * kUm * scale, 1.0);  // turned a quarter
    EXPECT_NEAR(pads[0].rect.Height(), 600 * kUm * scale, 1.0);
    const auto plating = canvas.Of(Kind::FillPolygon, style::kPlating);
    const auto hole = canvas.Of(Kind::FillPolygon, style::kHole);
    ASSERT_EQ(plating.size(), 1u);
    ASSERT_EQ(hole.size(), 1u);
    EXPECT_NEAR(plating[0].rect.Width(), 250 * kUm * scale, 1.0);
    EXPECT_NEAR(hole[0].rect.Width(), 200 * kUm * scale, 1.0);
    for (const char* expected :
         {"layer 1 TOP", "Pad: RECT 23.6 mils x 15.7 mils, 90 deg", "Anti-pad: none",
          "Drill: 9.8 mils, finished hole: 7.9 mils", "pad 15.7 mils"}) {
        EXPECT_TRUE(Shows(canvas, expected)) << expected;
    }
}

TEST(ViaVisualizerModel, ListsAreCopiedOrIgnoredAsTheContractSays) {
    kv::ViaVisualizer model;
    EXPECT_EQ(model.ViaData(1), nullptr);
    model.SetPair(true);
    EXPECT_NE(model.ViaData(1), nullptr);
    EXPECT_EQ(model.ViaData(2), nullptr);
    EXPECT_EQ(model.ViaData(-1), nullptr);

    VIAELEMENT element{1, 0, 0, 0, 0, 1e-9, 0, 0, 0};
    EXPECT_TRUE(model.SetElements(1, &element, 1));
    element.value = 5.0;  // copied, not referred to
    EXPECT_DOUBLE_EQ(model.Input().vias[1].elements.at(0).value, 1e-9);
    EXPECT_FALSE(model.SetElements(1, &element, -1));
    EXPECT_FALSE(model.SetElements(1, nullptr, 3));
    EXPECT_FALSE(model.SetElements(2, &element, 1));
    EXPECT_EQ(model.Input().vias[1].elements.size(), 1u);
    EXPECT_TRUE(model.SetElements(1, nullptr, 0));
    EXPECT_TRUE(model.Input().vias[1].elements.empty());
    const int32_t ports[] = {3, 5};
    EXPECT_TRUE(model.SetPorts(0, ports, 2));
    EXPECT_FALSE(model.SetPorts(0, nullptr, 1));
    EXPECT_EQ(model.Input().vias[0].ports.size(), 2u);

    model.SetNames(nullptr, "base", nullptr);
    EXPECT_EQ(model.Names().baseName, "base");
    EXPECT_EQ(model.Input().subcircuitName, "");
}

}  // namespace
