// What the eye view draws, recorded: the colour image built once per density and view, the
// density only where the grid is, the mask once per eye with its hits marked while shown, the
// fit around the eye and the mask, and the panel; and how pixels pick cells and colours.

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/eye/EyeView.h"
#include "core/stimulus/EyeMask.h"
#include "tests/support/RecordingCanvas.h"

namespace {

using kv::test::RecordingCanvas;
using Kind = RecordingCanvas::Kind;

constexpr double kInterval = 1e-9;

// A clean 0 V / 1 V NRZ eye of a fixed bit pattern, ramps of a tenth of the interval.
struct CleanEye {
    std::vector<double> time{0.0};
    std::vector<double> volts{0.0};
    CleanEye() {
        const int bits[] = {0, 1, 1, 0, 1, 0, 0, 0, 1, 1, 1, 0, 1, 0, 1, 1};
        double level = 0.0;
        for (int i = 1; i < 128; ++i) {
            const double next = bits[i % 16];
            if (next != level) {
                time.insert(time.end(), {(i - 0.05) * kInterval, (i + 0.05) * kInterval});
                volts.insert(volts.end(), {level, next});
            }
            level = next;
        }
        time.push_back(128 * kInterval);
        volts.push_back(level);
    }
};

// The default mask as drawn for a 1 V eye (clear of it), or at its own 5 V (the 1 V level runs
// through its opening).
EYEMASK Mask(bool fitsTheEye) {
    EYEMASK mask = kv::DefaultEyeMask();
    mask.ScaleVolt = fitsTheEye ? 0.2 : 1.0;
    return mask;
}

struct ViewFixture {
    kv::EyeView view;
    explicit ViewFixture(int eyes = 1, bool maskFits = true) {
        view.SetClientRect({0, 0, 1000, 600});
        const CleanEye eye;
        EXPECT_TRUE(view.SetWaveform(eye.time, eye.volts));
        EXPECT_TRUE(view.SetTiming({kInterval, eyes, 0}, Mask(maskFits)));
    }
    RecordingCanvas Paint() const {
        RecordingCanvas canvas;
        view.Paint(canvas);
        EXPECT_EQ(canvas.images.size(), 1u);
        return canvas;
    }
    size_t HitPixels() const {
        const std::vector<uint32_t> image = Paint().images.front();
        return static_cast<size_t>(std::count(image.begin(), image.end(), kv::eye_pixels::kHit));
    }
};

size_t Openings(const RecordingCanvas& canvas) {
    return canvas.Of(Kind::Polyline, kv::eye_view_colors::kMaskOpening).size();
}

TEST(EyeView, ColourImageIsBuiltOncePerDensityAndView) {
    ViewFixture f;
    kv::Chart& chart = f.view.GetChart();
    EXPECT_EQ(f.Paint().Of(Kind::Image)[0].rect, chart.PlotRect());
    f.Paint();
    const kv::Point inside{chart.PlotRect().left + 50, chart.PlotRect().top + 50};
    chart.OnMouseMove(inside);  // the readout changes, the view not
    f.Paint();
    EXPECT_EQ(f.view.ColourMapBuilds(), 1);
    chart.OnWheel(inside, 1.0);
    f.Paint();
    EXPECT_EQ(f.view.ColourMapBuilds(), 2);
    f.view.ShowMask(false);  // no hits to mark, and fitted again
    f.Paint();
    EXPECT_EQ(f.view.ColourMapBuilds(), 3);
    const CleanEye eye;
    f.view.SetWaveform(eye.time, eye.volts);  // a new density, the same view
    f.Paint();
    f.Paint();
    EXPECT_EQ(f.view.ColourMapBuilds(), 4);
}

TEST(EyeView, DensityFillsTheGridsColumnsAndTheMaskIsDrawnOncePerEyeWithItsHits) {
    for (const int eyes : {1, 2}) {
        ViewFixture f(eyes);
        const kv::Chart& chart = f.view.GetChart();
        const RecordingCanvas canvas = f.Paint();
        const std::vector<uint32_t>& image = canvas.images.front();
        const kv::Rect plot = chart.PlotRect();
        const int left = chart.ToPixel({0.0, 0.0}).x - plot.left;
        const int right = chart.ToPixel({eyes * kInterval, 0.0}).x - plot.left;
        for (int x = 0; x < plot.Width(); ++x) {
            bool drawn = false;
            for (int y = 0; y < plot.Height(); ++y) {
                drawn = drawn || image[static_cast<size_t>(y * plot.Width() + x)] != 0;
            }
            // Every column of the grid has its two levels; none beyond it. The pixels at its
            // edges may show a cell or not.
            if (x != left && x != right) {
                EXPECT_EQ(drawn, x > left && x < right) << "column " << x;
            }
        }
        EXPECT_EQ(Openings(canvas), 6u * static_cast<size_t>(eyes));  // six sides per eye
        EXPECT_EQ(f.view.Measure()->maskHits, 0);
        EXPECT_EQ(f.HitPixels(), 0u);
    }
    ViewFixture hit(1, false);
    ASSERT_GT(hit.view.Measure()->maskHits, 0);
    EXPECT_GT(hit.HitPixels(), 0u);
    hit.view.ShowMask(false);
    EXPECT_EQ(hit.HitPixels(), 0u);
    EXPECT_EQ(Openings(hit.Paint()), 0u);
    EXPECT_GT(hit.view.Measure()->maskHits, 0);  // shown or not, the test stands

    ViewFixture broken;
    EYEMASK unordered = Mask(true);
    unordered.PTopMin = unordered.PCross - 1.0;
    ASSERT_TRUE(broken.view.SetTiming({kInterval, 1, 0}, unordered));
    EXPECT_EQ(Openings(broken.Paint()), 0u);
    EXPECT_EQ(broken.view.Measure()->maskHits, -1);
    EXPECT_EQ(broken.view.PanelLines().back().second, "-");
}

TEST(EyeView, FitCoversTheGridAndTheShownMasksLimits) {
    ViewFixture f(1, false);
    const kv::Chart& chart = f.view.GetChart();
    const kv::Range masked = chart.Axis(kv::ChartAxis::Y).visible;
    // The limits at -0.5 V and 5.5 V, a twentieth of their distance inside the plot.
    EXPECT_LE(masked.lo, -0.8);
    EXPECT_GE(masked.hi, 5.8);
    f.view.ShowMask(false);
    const kv::Range bare = chart.Axis(kv::ChartAxis::Y).visible;
    EXPECT_LE(bare.lo, -0.05);
    EXPECT_GE(bare.hi, 1.05);
    EXPECT_LT(bare.hi, 2.0);
    const kv::Range time = chart.Axis(kv::ChartAxis::X).visible;
    EXPECT_LE(time.lo, 0.0);
    EXPECT_GE(time.hi, kInterval);
    EXPECT_LT(time.hi, 1.5 * kInterval);
}

TEST(EyeView, StatusUntilThereIsAnEyeThenThePanel) {
    kv::EyeView view;
    view.SetClientRect({0, 0, 900, 500});
    const auto centred = [&view] {
        RecordingCanvas canvas;
        view.Paint(canvas);
        const auto texts = canvas.Of(Kind::CentredText);
        return texts.empty() ? std::string() : texts.front().text;
    };
    EXPECT_EQ(centred(), kv::kNoWaveformStatus);
    const CleanEye eye;
    ASSERT_TRUE(view.SetWaveform(eye.time, eye.volts));
    EXPECT_EQ(centred(), kv::kNoTimingStatus);
    EXPECT_TRUE(view.PanelLines().empty());
    ASSERT_TRUE(view.SetTiming({kInterval, 1, 200}, Mask(true)));  // skips the whole waveform
    EXPECT_EQ(view.Status(), "No waveform is left to fold");
    EXPECT_FALSE(view.Measure());

    ASSERT_TRUE(view.SetTiming({kInterval, 1, 0}, Mask(true)));
    EXPECT_EQ(centred(), "");
    const auto lines = view.PanelLines();
    const auto value = [&lines](const std::string& label) {
        const auto line = std::find_if(lines.begin(), lines.end(),
                                       [&](const auto& l) { return l.first == label; });
        return line != lines.end() ? line->second : "(none)";
    };
    EXPECT_EQ(value("Level 1"), "1.00 V");
    EXPECT_EQ(value("Eye height"), "1.00 V");
    EXPECT_EQ(value("Level 0"), "0.0 V");
    EXPECT_EQ(value("Mask hits"), "0");
    // Drawn in the panel beside the chart.
    RecordingCanvas canvas;
    view.Paint(canvas);
    const kv::Rect panel = view.PanelRect();
    EXPECT_GE(panel.left, view.GetChart().ClientRect().right);
    const auto texts = canvas.Of(Kind::Text);
    const auto height = std::find_if(texts.begin(), texts.end(),
                                     [](const auto& t) { return t.text == "Eye height"; });
    ASSERT_NE(height, texts.end());
    EXPECT_GT(height->from.x, panel.left);
}

TEST(EyeColourMap, EveryCellShownZoomedOutAndNoGapZoomedIn) {
    // 100 pixels over 1000 cells: each cell in exactly one pixel, in order.
    int32_t next = 0;
    for (const kv::CellSpan& span :
         kv::CellsOfPixels({{0.0, 1000.0}, false, 0, 99}, 0, 100, 0.0, 1.0, 1000)) {
        ASSERT_FALSE(span.Empty());
        EXPECT_EQ(span.first, next);
        next = span.last + 1;
    }
    EXPECT_EQ(next, 1000);
    // 100 pixels over 10 cells: each pixel whose centre lies on the grid shows the one cell
    // under it, about ten pixels each; the last pixel's centre is the grid's end.
    const auto narrow = kv::CellsOfPixels({{0.0, 10.0}, false, 0, 99}, 0, 100, 0.0, 1.0, 10);
    std::vector<int> pixelsOfCell(10);
    for (size_t p = 0; p + 1 < narrow.size(); ++p) {
        ASSERT_EQ(narrow[p].first, narrow[p].last) << "pixel " << p;
        EXPECT_GE(narrow[p].first, p > 0 ? narrow[p - 1].first : 0);
        ++pixelsOfCell[static_cast<size_t>(narrow[p].first)];
    }
    EXPECT_TRUE(narrow.back().Empty());
    for (const int count : pixelsOfCell) {
        EXPECT_NEAR(count, 10, 1);
    }
    // A view beside the grid, and one far from it, show nothing.
    for (const kv::Range away : {kv::Range{-20.0, -10.0}, kv::Range{1e300, 1.1e300}}) {
        const auto none = kv::CellsOfPixels({away, false, 0, 99}, 0, 100, 0.0, 1.0, 10);
        EXPECT_TRUE(std::all_of(none.begin(), none.end(), [](auto s) { return s.Empty(); }));
    }

    // Counts coloured on a logarithmic scale.
    const kv::DensityPalette palette(10000);
    EXPECT_EQ(palette.Colour(0), kv::eye_pixels::kEmpty);
    EXPECT_EQ(palette.Colour(1), 0xFF1428C8u);      // the fewest: dark blue
    EXPECT_EQ(palette.Colour(100), 0xFF00BE3Cu);    // half way in logarithm: green
    EXPECT_EQ(palette.Colour(10000), 0xFFDC1400u);  // the most: red
    EXPECT_EQ(palette.Colour(70000), palette.Colour(10000));
}

}  // namespace
