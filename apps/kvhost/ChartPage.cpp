// The chart control as a host uses it, on three kinds of data a signal-integrity engineer looks
// at: the PRBS waveform of the current stimulus beside a noisy sine of a million points, and a
// frequency response on logarithmic axes. Both charts and the stimulus come from the factory.

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMouseEvent>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QWidget>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "HostPage.h"
#include "kvcomctl/kvcomctl.h"

namespace {

enum CurveId : uint32_t { kPrbs = 1, kSine = 2, kResponse = 3, kFirstOrder = 4 };

constexpr int kSinePoints = 1000000;

struct Series {
    std::vector<double> x;
    std::vector<double> y;
    void Add(double at, double value) {
        x.push_back(at);
        y.push_back(value);
    }
};

bool AddSeries(IChartCtrl& chart, const Series& series, uint32_t colour, uint32_t identifier) {
    return chart.AddCurve(series.x.data(), series.y.data(), static_cast<int32_t>(series.x.size()),
                          colour, identifier);
}

constexpr uint32_t ColorRef(uint32_t red, uint32_t green, uint32_t blue) {
    return red | green << 8 | blue << 16;
}

// The stimulus bits as a two-level waveform of 0 V and 1 V, one bit period (given in
// nanoseconds) per bit.
Series PrbsWaveform(IKVComCtlFactory& factory) {
    IEyeDiagramData* data = factory.CreateStimulusData();
    const double period = data->GetPeriod() * 1e-9;
    Series waveform;
    for (int i = 0; i < data->GetBitCount(); ++i) {
        const double level = data->GetBit(i) ? 1.0 : 0.0;
        waveform.Add(i * period, level);
        waveform.Add((i + 1) * period, level);
    }
    factory.Destroy(data);
    return waveform;
}

// A sine of four periods with noise over the same time, a million samples.
Series NoisySine(double duration) {
    std::mt19937 random(5);
    std::normal_distribution<double> noise(0.0, 0.04);
    Series sine;
    for (int i = 0; i < kSinePoints; ++i) {
        const double t = duration * i / (kSinePoints - 1);
        sine.Add(t, 0.5 + 0.6 * std::sin(2 * M_PI * 4 * t / duration) + noise(random));
    }
    return sine;
}

// The magnitude of a second-order low-pass of 1 GHz corner, Q 0.8, or of a first-order one,
// from 1 MHz to 100 GHz.
Series LowPass(bool secondOrder) {
    Series response;
    for (int i = 0; i <= 500; ++i) {
        const double f = std::pow(10.0, 6.0 + 5.0 * i / 500.0);
        const std::complex<double> s(0.0, f / 1e9);
        const std::complex<double> h =
            secondOrder ? 1.0 / (s * s + s / 0.8 + 1.0) : 1.0 / (s + 1.0);
        response.Add(f, std::abs(h));
    }
    return response;
}

void FillTimeChart(IChartCtrl& chart, IKVComCtlFactory& factory) {
    const Series prbs = PrbsWaveform(factory);
    AddSeries(chart, prbs, ColorRef(0, 0, 200), kPrbs);
    AddSeries(chart, NoisySine(prbs.x.back()), ColorRef(220, 0, 0), kSine);
    chart.SetUnits("s", "V");
    chart.SetCurveName(kPrbs, "PRBS stimulus");
    chart.SetCurveName(kSine, "noisy sine (10^6 points)");
    chart.Fit();
}

void FillFrequencyChart(IChartCtrl& chart) {
    AddSeries(chart, LowPass(true), ColorRef(0, 140, 0), kResponse);
    AddSeries(chart, LowPass(false), ColorRef(160, 0, 160), kFirstOrder);
    chart.SetUnits("Hz", "");
    chart.SetCurveName(kResponse, "2nd-order low-pass |H|");
    chart.SetCurveName(kFirstOrder, "1st-order low-pass |H|");
    chart.SetLogarithmic(true, true);
}

// The host's charts, given back to the factory before the page's children go.
class ChartPageWidget final : public QWidget {
public:
    explicit ChartPageWidget(IKVComCtlFactory& factory)
        : m_factory(factory),
          m_time(factory.CreateChartCtrl()),
          m_frequency(factory.CreateChartCtrl()) {}
    ~ChartPageWidget() override {
        m_factory.DestroyChartCtrl(m_time);
        m_factory.DestroyChartCtrl(m_frequency);
    }
    ChartPageWidget(const ChartPageWidget&) = delete;
    ChartPageWidget& operator=(const ChartPageWidget&) = delete;

    IChartCtrl* Time() const { return m_time; }
    IChartCtrl* Frequency() const { return m_frequency; }

private:
    IKVComCtlFactory& m_factory;
    IChartCtrl* m_time;
    IChartCtrl* m_frequency;
};

QWidget* CreateChartWidget(IKVComCtlFactory& factory) {
    auto* page = new ChartPageWidget(factory);
    auto* layout = new QVBoxLayout(page);
    if (page->Time() == nullptr || page->Frequency() == nullptr || !page->Time()->Create(page) ||
        !page->Frequency()->Create(page)) {
        layout->addWidget(new QLabel(QObject::tr("The library handed out no chart.")));
        return page;
    }
    FillTimeChart(*page->Time(), factory);
    FillFrequencyChart(*page->Frequency());
    layout->addWidget(new QLabel(QObject::tr(
        "Wheel: zoom about the pointer. Drag: zoom into a rectangle. Middle drag or "
        "Shift+drag: pan. Double click or Home: fit. Right click: scales, prefixes, images.")));
    layout->addWidget(page->Time()->GetWindow(), 3);
    layout->addWidget(page->Frequency()->GetWindow(), 2);
    return page;
}

void SaveChart(IChartCtrl& chart, const QDir& out, const QString& name, QTextStream& log) {
    for (const QString& extension : {QStringLiteral(".png"), QStringLiteral(".svg")}) {
        const QString path = out.filePath(name + extension);
        LogTourWrite(chart.SaveImage(path.toUtf8().constData()), path, log);
    }
}

// What the user's pointer does, sent to the chart's window as Qt delivers it.
void MovePointer(QWidget& window, QPointF at) {
    QMouseEvent move(QEvent::MouseMove, at, window.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&window, &move);
}

void TurnWheel(QWidget& window, QPointF at, int notches) {
    QWheelEvent wheel(at, window.mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&window, &wheel);
}

void TourChart(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    ChartPageWidget page(factory);
    page.setAttribute(Qt::WA_DontShowOnScreen);
    page.show();
    if (page.Time() == nullptr || page.Frequency() == nullptr || !page.Time()->Create(&page) ||
        !page.Frequency()->Create(&page)) {
        LogTourWrite(false, out.filePath(QStringLiteral("chart_time.png")), log);
        return;
    }
    QWidget& time = *page.Time()->GetWindow();
    time.resize(900, 480);
    FillTimeChart(*page.Time(), factory);
    // The pointer in the plot, with the readout below it.
    const QPointF inside(time.width() * 0.4, time.height() * 0.3);
    MovePointer(time, inside);
    SaveChart(*page.Time(), out, QStringLiteral("chart_time"), log);
    // Three wheel notches in about the middle of the plot.
    TurnWheel(time, QPointF(time.width() * 0.5, time.height() * 0.45), 3);
    SaveChart(*page.Time(), out, QStringLiteral("chart_zoomed"), log);

    page.Frequency()->GetWindow()->resize(900, 420);
    FillFrequencyChart(*page.Frequency());
    SaveChart(*page.Frequency(), out, QStringLiteral("chart_frequency"), log);
}

const HostPageRegistration kRegistration({QStringLiteral("Chart"), CreateChartWidget, TourChart});

}  // namespace
