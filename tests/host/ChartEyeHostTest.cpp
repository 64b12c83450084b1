// The chart control and the eye view as a Qt host uses them: made through factory slots 18 to
// 21, placed in the host's window, filled, measured, saved as pictures and given back; every
// bad argument refused without a change to what they show or measure.

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QWidget>
#include <QXmlStreamReader>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "kvcomctl/kvcomctl.h"
#include "tests/host/QtHost.h"

namespace {

using kv::test::g_factory;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string PathIn(const QTemporaryDir& folder, const char* name) {
    return folder.filePath(QString::fromUtf8(name)).toStdString();
}

// The picture a control saves as PNG now.
QImage Picture(const std::function<bool(const char*)>& save, const QTemporaryDir& folder) {
    const std::string path = PathIn(folder, "now.png");
    EXPECT_TRUE(save(path.c_str()));
    return QImage(QString::fromStdString(path));
}

// Both formats written at the window's size: the PNG decodes to it, laid out for it (the
// picture reaches its right edge, though the window has not been shown since it was resized),
// and the SVG is an XML document whose root is an svg element.
void ExpectBothImages(const std::function<bool(const char*)>& save, QWidget* window,
                      const QTemporaryDir& folder) {
    const std::string png = PathIn(folder, "picture.png");
    const std::string svg = PathIn(folder, "picture.SVG");
    ASSERT_TRUE(save(png.c_str()));
    ASSERT_TRUE(save(svg.c_str()));
    const QImage image(QString::fromStdString(png));
    EXPECT_EQ(image.size(), window->size());
    bool drawnAtTheRight = false;
    for (int x = image.width() * 9 / 10; x < image.width() && !drawnAtTheRight; ++x) {
        for (int y = 0; y < image.height() && !drawnAtTheRight; ++y) {
            drawnAtTheRight = image.pixel(x, y) != qRgb(255, 255, 255);
        }
    }
    EXPECT_TRUE(drawnAtTheRight);
    QFile file(QString::fromStdString(svg));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    ASSERT_TRUE(xml.readNextStartElement());
    EXPECT_EQ(xml.name(), QStringLiteral("svg"));
    while (!xml.atEnd()) {
        xml.readNext();
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
}

// Calls that must answer false (or, for those without an answer, do nothing).
struct BadCall {
    const char* what;
    std::function<bool()> call;
};

TEST(HostChart, CreatedFilledSavedAndDestroyedThroughTheFactory) {
    g_factory->DestroyChartCtrl(nullptr);
    IChartCtrl* chart = g_factory->CreateChartCtrl();
    ASSERT_NE(chart, nullptr);
    QTemporaryDir folder;
    const auto save = [chart](const char* path) { return chart->SaveImage(path); };
    EXPECT_EQ(chart->GetWindow(), nullptr);
    EXPECT_FALSE(chart->SaveImage(PathIn(folder, "early.png").c_str()));
    EXPECT_FALSE(chart->Create(nullptr));

    QWidget window;
    window.resize(900, 500);
    ASSERT_TRUE(chart->Create(&window));
    EXPECT_FALSE(chart->Create(&window));
    ASSERT_NE(chart->GetWindow(), nullptr);
    EXPECT_EQ(chart->GetWindow()->parentWidget(), &window);
    chart->GetWindow()->resize(640, 360);

    std::vector<double> x;
    std::vector<double> y;
    for (int i = 0; i < 200; ++i) {
        x.push_back(i * 1e-9);
        y.push_back(std::sin(i * 0.05));
    }
    EXPECT_TRUE(chart->AddCurve(x.data(), y.data(), 200, 0x0000C0, 3));
    chart->SetCurveName(3, "sine");
    chart->SetUnits("s", "V");
    chart->SetLogarithmic(false, false);
    chart->Fit();
    ExpectBothImages(save, chart->GetWindow(), folder);

    const QImage before = Picture(save, folder);
    const double nan[] = {0.0, kNaN};
    const double inf[] = {0.0, kInfinity};
    const std::vector<BadCall> calls{
        {"null x", [&] { return chart->AddCurve(nullptr, y.data(), 2, 0, 1); }},
        {"null y", [&] { return chart->AddCurve(x.data(), nullptr, 2, 0, 1); }},
        {"one point", [&] { return chart->AddCurve(x.data(), y.data(), 1, 0, 1); }},
        {"negative count", [&] { return chart->AddCurve(x.data(), y.data(), -4, 0, 1); }},
        {"NaN x", [&] { return chart->AddCurve(nan, y.data(), 2, 0, 1); }},
        {"infinite y", [&] { return chart->AddCurve(x.data(), inf, 2, 0, 1); }},
        {"null name", [&] { return chart->SetCurveName(3, nullptr), false; }},
        {"null x unit", [&] { return chart->SetUnits(nullptr, "A"), false; }},
        {"null y unit", [&] { return chart->SetUnits("m", nullptr), false; }},
        {"null path", [&] { return chart->SaveImage(nullptr); }},
        {"other format", [&] { return chart->SaveImage(PathIn(folder, "chart.bmp").c_str()); }},
        {"no extension", [&] { return chart->SaveImage(PathIn(folder, "png").c_str()); }},
        {"missing folder", [&] { return chart->SaveImage(PathIn(folder, "no/x.png").c_str()); }},
    };
    for (const BadCall& bad : calls) {
        EXPECT_FALSE(bad.call()) << bad.what;
    }
    EXPECT_EQ(Picture(save, folder), before);
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("chart.bmp"))));

    chart->RemoveAllCurves();
    EXPECT_NE(Picture(save, folder), before);
    g_factory->DestroyChartCtrl(chart);
    EXPECT_TRUE(window.children().isEmpty());
}

// A clean NRZ waveform of the stimulus's bits: 0 V and 1 V, ramps of a tenth of the interval
// centred on the bit boundaries, given by its corners alone.
struct Waveform {
    std::vector<double> time;
    std::vector<double> volts;
};

Waveform CleanNrz(IEyeDiagramData& data, int cycles) {
    const double interval = data.GetPeriod() * 1e-9;
    const int bits = data.GetBitCount();
    Waveform wave;
    double level = data.GetBit(0) ? 1.0 : 0.0;
    wave.time.push_back(0.0);
    wave.volts.push_back(level);
    for (int i = 1; i < bits * cycles; ++i) {
        const double next = data.GetBit(i % bits) ? 1.0 : 0.0;
        if (next != level) {
            wave.time.insert(wave.time.end(), {(i - 0.05) * interval, (i + 0.05) * interval});
            wave.volts.insert(wave.volts.end(), {level, next});
            level = next;
        }
    }
    wave.time.push_back(bits * cycles * interval);
    wave.volts.push_back(level);
    return wave;
}

bool SameMeasure(const EYEMEASURE& a, const EYEMEASURE& b) {
    const auto same = [](double p, double q) { return p == q || (std::isnan(p) && std::isnan(q)); };
    return a.samples == b.samples && a.unitIntervals == b.unitIntervals &&
           same(a.level0, b.level0) && same(a.level1, b.level1) && same(a.noise0, b.noise0) &&
           same(a.noise1, b.noise1) && same(a.eyeHeight, b.eyeHeight) &&
           same(a.eyeWidth, b.eyeWidth) && same(a.eyeCentreTime, b.eyeCentreTime) &&
           same(a.crossingJitterRms, b.crossingJitterRms) &&
           same(a.crossingJitterPeakToPeak, b.crossingJitterPeakToPeak) &&
           a.maskHits == b.maskHits && same(a.maskMarginPercent, b.maskMarginPercent);
}

TEST(HostEyeView, CleanNrzEyeMeasuredSavedAndDestroyedThroughTheFactory) {
    g_factory->DestroyEyeViewCtrl(nullptr);
    IEyeViewCtrl* eye = g_factory->CreateEyeViewCtrl();
    ASSERT_NE(eye, nullptr);
    QTemporaryDir folder;
    const auto save = [eye](const char* path) { return eye->SaveImage(path); };
    IEyeDiagramData* data = g_factory->CreateStimulusData();
    data->GetMask()->ScaleVolt = 0.2;  // the default mask on a 1 V eye
    const double interval = data->GetPeriod() * 1e-9;
    const Waveform wave = CleanNrz(*data, 20);
    const auto count = static_cast<int32_t>(wave.time.size());

    EYEMEASURE measure{};
    EXPECT_EQ(eye->GetWindow(), nullptr);
    EXPECT_FALSE(eye->SaveImage(PathIn(folder, "early.png").c_str()));
    ASSERT_TRUE(eye->SetWaveform(wave.time.data(), wave.volts.data(), count));
    EXPECT_FALSE(eye->GetMeasure(&measure));  // no timing yet
    ASSERT_TRUE(eye->SetTiming(data));
    data->SetPeriod(1.0);  // read once: the view keeps its own timing
    ASSERT_TRUE(eye->GetMeasure(&measure));
    EXPECT_DOUBLE_EQ(measure.level0, 0.0);
    EXPECT_DOUBLE_EQ(measure.level1, 1.0);
    EXPECT_NEAR(measure.eyeHeight, 1.0, 1e-9);
    EXPECT_NEAR(measure.eyeWidth, interval, 1e-6 * interval);
    EXPECT_NEAR(measure.crossingJitterPeakToPeak, 0.0, 1e-6 * interval);
    EXPECT_GE(measure.unitIntervals, 31 * 20 - 1);
    EXPECT_NEAR(static_cast<double>(measure.samples), 31 * 20 * 1000.0, 1000.0);
    EXPECT_EQ(measure.maskHits, 0);
    EXPECT_GT(measure.maskMarginPercent, 0.0);

    QWidget window;
    window.resize(1000, 600);
    EXPECT_FALSE(eye->Create(nullptr));
    ASSERT_TRUE(eye->Create(&window));
    EXPECT_FALSE(eye->Create(&window));
    EXPECT_EQ(eye->GetWindow()->parentWidget(), &window);
    eye->GetWindow()->resize(900, 420);
    eye->ShowMask(true);
    ExpectBothImages(save, eye->GetWindow(), folder);

    const QImage before = Picture(save, folder);
    const double nan[] = {0.0, kNaN};
    const double inf[] = {0.0, kInfinity};
    const double backwards[] = {1e-9, 0.0};
    const double levels[] = {0.0, 1.0};
    IEyeDiagramData* bad = g_factory->CreateStimulusData();
    const auto timing = [&](const std::function<void()>& spoil) {
        return [&, spoil] {
            bad->SetPeriod(3.3);
            bad->SetEyeCount(1);
            bad->SetSkipBits(0);
            spoil();
            return eye->SetTiming(bad);
        };
    };
    const std::vector<BadCall> calls{
        {"null times", [&] { return eye->SetWaveform(nullptr, levels, 2); }},
        {"null levels", [&] { return eye->SetWaveform(wave.time.data(), nullptr, 2); }},
        {"one sample", [&] { return eye->SetWaveform(wave.time.data(), levels, 1); }},
        {"no samples", [&] { return eye->SetWaveform(wave.time.data(), levels, 0); }},
        {"negative count", [&] { return eye->SetWaveform(wave.time.data(), levels, -2); }},
        {"NaN time", [&] { return eye->SetWaveform(nan, levels, 2); }},
        {"NaN level", [&] { return eye->SetWaveform(levels, nan, 2); }},
        {"infinite level", [&] { return eye->SetWaveform(levels, inf, 2); }},
        {"decreasing times", [&] { return eye->SetWaveform(backwards, levels, 2); }},
        {"null data", [&] { return eye->SetTiming(nullptr); }},
        {"NaN period", timing([&] { bad->SetPeriod(kNaN); })},
        {"zero period", timing([&] { bad->SetPeriod(0.0); })},
        {"negative period", timing([&] { bad->SetPeriod(-3.3); })},
        {"infinite period", timing([&] { bad->SetPeriod(kInfinity); })},
        {"no eyes", timing([&] { bad->SetEyeCount(0); })},
        {"four eyes", timing([&] { bad->SetEyeCount(4); })},
        {"negative skip", timing([&] { bad->SetSkipBits(-1); })},
        {"null measure", [&] { return eye->GetMeasure(nullptr); }},
        {"null path", [&] { return eye->SaveImage(nullptr); }},
        {"other format", [&] { return eye->SaveImage(PathIn(folder, "eye.jpg").c_str()); }},
        {"missing folder", [&] { return eye->SaveImage(PathIn(folder, "no/eye.svg").c_str()); }},
    };
    for (const BadCall& call : calls) {
        EXPECT_FALSE(call.call()) << call.what;
    }
    EYEMEASURE after{};
    ASSERT_TRUE(eye->GetMeasure(&after));
    EXPECT_TRUE(SameMeasure(after, measure));
    EXPECT_EQ(Picture(save, folder), before);
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("eye.jpg"))));

    eye->ShowMask(false);
    EXPECT_NE(Picture(save, folder), before);
    g_factory->Destroy(bad);
    g_factory->Destroy(data);
    g_factory->DestroyEyeViewCtrl(eye);
    EXPECT_TRUE(window.children().isEmpty());
}

}  // namespace
