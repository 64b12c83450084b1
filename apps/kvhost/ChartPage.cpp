// The chart control on three kinds of data a signal-integrity engineer
// looks at: the PRBS waveform of the current stimulus beside a noisy sine
// of a million points, and a frequency response on logarithmic axes. Hosts
// meet the control by its class name inside their own layouts, which the
// factory does not hand out, so this page builds it from the project's
// widget library, the one part of kvhost that does (see CMakeLists.txt); the
// stimulus comes from the factory.

#include <QDir>
#include <QLabel>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "HostPage.h"
#include "core/ports/MessagePort.h"
#include "kvcomctl/kvcomctl.h"
#include "ui/canvas/CanvasExport.h"
#include "ui/chart/ChartControl.h"
#include "ui/ports/QtMessagePort.h"

namespace {

using kv::ChartAxis;
using kv::ui::CChartControl;

enum CurveId : uint32_t { kPrbs = 1, kSine = 2, kResponse = 3, kFirstOrder = 4 };

constexpr int kSinePoints = 1000000;

// The stimulus bits as a two-level waveform of 0 V and 1 V, one bit period
// (given in nanoseconds) per bit.
kv::Curve PrbsWaveform(IKVComCtlFactory& factory) {
    IEyeDiagramData* data = factory.CreateStimulusData();
    const double period = data->GetPeriod() * 1e-9;
    std::vector<VEC2> points;
    for (int i = 0; i < data->GetBitCount(); ++i) {
        const double level = data->GetBit(i) ? 1.0 : 0.0;
        points.push_back({i * period, level});
        points.push_back({(i + 1) * period, level});
    }
    factory.Destroy(data);
    kv::Curve curve(points.data(), static_cast<int>(points.size()), kv::MakeColorRef(0, 0, 200));
    curve.m_identifier = kPrbs;
    return curve;
}

// A 1 MHz sine with noise over the same time, a million samples.
kv::Curve NoisySine(double duration) {
    std::mt19937 random(5);
    std::normal_distribution<double> noise(0.0, 0.04);
    std::vector<double> x(kSinePoints);
    std::vector<double> y(kSinePoints);
    for (int i = 0; i < kSinePoints; ++i) {
        const double t = duration * i / (kSinePoints - 1);
        x[static_cast<size_t>(i)] = t;
        y[static_cast<size_t>(i)] =
            0.5 + 0.6 * std::sin(2 * M_PI * 4 * t / duration) + noise(random);
    }
    kv::Curve curve(x.data(), y.data(), kSinePoints, kv::MakeColorRef(220, 0, 0));
    curve.m_identifier = kSine;
    return curve;
}

// The magnitude of a second-order low-pass of 1 GHz corner, Q 0.8, and of a
// first-order one, from 1 MHz to 100 GHz.
kv::Curve LowPass(uint32_t identifier, bool secondOrder, uint32_t colour) {
    std::vector<VEC2> points;
    for (int i = 0; i <= 500; ++i) {
        const double f = std::pow(10.0, 6.0 + 5.0 * i / 500.0);
        const std::complex<double> s(0.0, f / 1e9);
        const std::complex<double> h =
            secondOrder ? 1.0 / (s * s + s / 0.8 + 1.0) : 1.0 / (s + 1.0);
        points.push_back({f, std::abs(h)});
    }
    kv::Curve curve(points.data(), static_cast<int>(points.size()), colour);
    curve.m_identifier = identifier;
    return curve;
}

void FillTimeChart(CChartControl& chart, IKVComCtlFactory& factory) {
    kv::Curve prbs = PrbsWaveform(factory);
    const double duration = prbs.m_maximum.x;
    chart.SetUnits("s", "V");
    chart.AddCurve(std::move(prbs));
    chart.AddCurve(NoisySine(duration));
    chart.SetCurveName(kPrbs, "PRBS stimulus");
    chart.SetCurveName(kSine, "noisy sine (10^6 points)");
    chart.Fit();
}

void FillFrequencyChart(CChartControl& chart) {
    chart.SetUnits("Hz", "");
    chart.AddCurve(LowPass(kResponse, true, kv::MakeColorRef(0, 140, 0)));
    chart.AddCurve(LowPass(kFirstOrder, false, kv::MakeColorRef(160, 0, 160)));
    chart.SetCurveName(kResponse, "2nd-order low-pass |H|");
    chart.SetCurveName(kFirstOrder, "1st-order low-pass |H|");
    chart.SetLogarithmic(ChartAxis::X, true);
    chart.SetLogarithmic(ChartAxis::Y, true);
}

QWidget* CreateChartWidget(IKVComCtlFactory& factory) {
    // The charts' questions ("Save image..." over a file) go through this page's own copy of the
    // message port, which the library's start-up does not reach: they are shown as boxes only
    // when the page installs the Qt port there itself.
    static kv::ui::QtMessagePort messagePort;
    kv::InstallMessagePort(&messagePort);

    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* time = new CChartControl;
    auto* frequency = new CChartControl;
    FillTimeChart(*time, factory);
    FillFrequencyChart(*frequency);
    layout->addWidget(new QLabel(QObject::tr(
        "Wheel: zoom about the pointer. Drag: zoom into a rectangle. Middle drag or "
        "Shift+drag: pan. Double click or Home: fit. Right click: scales, prefixes, images.")));
    layout->addWidget(time, 3);
    layout->addWidget(frequency, 2);
    return page;
}

void SaveChart(CChartControl& chart, const QDir& out, const QString& name, QTextStream& log) {
    const auto draw = [&chart](kv::ICanvas& canvas) { chart.GetChart().Paint(canvas); };
    const QString png = out.filePath(name + QStringLiteral(".png"));
    LogTourWrite(kv::ui::SaveCanvasPng(png, chart.size(), chart.font(), draw), png, log);
    const QString svg = out.filePath(name + QStringLiteral(".svg"));
    LogTourWrite(kv::ui::SaveCanvasSvg(svg, chart.size(), chart.font(),
                                       QStringLiteral("Chart: ") + name, draw),
                 svg, log);
}

void TourChart(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    CChartControl time;
    time.setAttribute(Qt::WA_DontShowOnScreen);
    time.resize(900, 480);
    time.show();
    FillTimeChart(time, factory);
    // The pointer on the PRBS waveform's first high bit, with its readout.
    kv::Chart& chart = time.GetChart();
    const auto& prbs = chart.Curves().front().m_points;
    const auto high = std::find_if(prbs.begin(), prbs.end(), [](const VEC2& p) { return p.y > 0; });
    const VEC2 target = high != prbs.end() ? *high : VEC2{0.0, 0.0};
    chart.OnMouseMove(chart.ToPixel({target.x, 1.0}));
    SaveChart(time, out, QStringLiteral("chart_time"), log);
    // Three wheel notches in about the middle of the plot.
    const kv::Rect plot = chart.PlotRect();
    chart.OnWheel({(plot.left + plot.right) / 2, (plot.top + plot.bottom) / 2}, 3.0);
    SaveChart(time, out, QStringLiteral("chart_zoomed"), log);

    CChartControl frequency;
    frequency.setAttribute(Qt::WA_DontShowOnScreen);
    frequency.resize(900, 420);
    frequency.show();
    FillFrequencyChart(frequency);
    SaveChart(frequency, out, QStringLiteral("chart_frequency"), log);
}

const HostPageRegistration kRegistration({QStringLiteral("Chart"), CreateChartWidget, TourChart});

}  // namespace
