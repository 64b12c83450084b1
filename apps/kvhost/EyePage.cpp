// The eye view as a host uses it: the stimulus adaptor builds a jittered PRBS stimulus, the
// host sends it through its channel (here a lossy line as a first-order low-pass the page
// computes), and the view folds the far end at the stimulus's bit interval and measures it
// against the stimulus's (default) mask. Every component comes from the factory.

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>
#include <cmath>
#include <vector>

#include "HostPage.h"
#include "kvcomctl/kvcomctl.h"

namespace {

// The default mask's levels: 0 V and 5 V, edges of a tenth of the 1 ns interval.
constexpr double kLow = 0.0;
constexpr double kHigh = 5.0;
constexpr double kPeriodNs = 1.0;
constexpr double kRamp = 0.1e-9;
constexpr int kCycles = 64;         // of the 31-bit PRBS the stimulus starts with
constexpr int kSamplesPerBit = 64;  // of the channel's output
constexpr int kTimeConstant = 10;   // percent of the bit interval
constexpr double kJitterRmsPs = 20.0;

struct Waveform {
    std::vector<double> time;
    std::vector<double> volts;
};

// The output of a first-order low-pass of time constant `tau` driven by the piecewise-linear
// input, sampled every `step` seconds. Within a segment of slope b starting at level a, the
// output follows a + b (t - t0) - b tau + (y0 - a + b tau) exp(-(t - t0) / tau) exactly, so the
// samples carry no integration error; the input starts settled.
Waveform LowPass(const STIMPOINT* input, int32_t count, double tau, double step) {
    Waveform out;
    if (count < 2) {
        return out;
    }
    double y0 = input[0].level;
    double next = input[0].time;
    for (int32_t i = 0; i + 1 < count; ++i) {
        const double t0 = input[i].time;
        const double t1 = input[i + 1].time;
        if (!(t1 > t0)) {
            continue;  // a step takes no time: the output has not moved yet
        }
        const double a = input[i].level;
        const double b = (input[i + 1].level - a) / (t1 - t0);
        const auto at = [&](double t) {
            return a + b * (t - t0) - b * tau + (y0 - a + b * tau) * std::exp(-(t - t0) / tau);
        };
        for (; next < t1; next += step) {
            out.time.push_back(next);
            out.volts.push_back(at(next));
        }
        y0 = at(t1);
    }
    return out;
}

// The host's stimulus, adaptor and eye view, given back to the factory before the page's
// children go.
class EyePageWidget final : public QWidget {
public:
    explicit EyePageWidget(IKVComCtlFactory& factory)
        : m_factory(factory),
          m_data(factory.CreateStimulusData()),
          m_adaptor(factory.CreateEyeStimAdaptor()),
          m_eye(factory.CreateEyeViewCtrl()) {
        m_data->SetPeriod(kPeriodNs);
        m_data->SetCycleCount(kCycles);
        m_data->SetAdvancedJitter(false);
        m_data->SetJitterType(0);  // Gaussian
        m_data->SetJitterRepeatable(true);
    }
    ~EyePageWidget() override {
        m_factory.DestroyEyeViewCtrl(m_eye);
        m_factory.Destroy(m_adaptor);
        m_factory.Destroy(m_data);
    }
    EyePageWidget(const EyePageWidget&) = delete;
    EyePageWidget& operator=(const EyePageWidget&) = delete;

    // The view in this page; false when the library handed none out.
    bool CreateView() { return m_eye != nullptr && m_eye->Create(this); }
    IEyeViewCtrl& Eye() const { return *m_eye; }

    // Builds the jittered stimulus, sends it through the channel and shows its eye.
    bool Show(double jitterRmsPs, int timeConstantPercent, int eyes) {
        m_data->SetMaxJitter(jitterRmsPs * 1e-3);  // nanoseconds
        m_data->SetEyeCount(eyes);
        const int32_t points = m_adaptor->BuildJittered(m_data, kLow, kHigh, kRamp, kRamp);
        const double interval = kPeriodNs * 1e-9;
        const Waveform farEnd =
            LowPass(m_adaptor->GetPoints(), points, interval * timeConstantPercent / 100.0,
                    interval / kSamplesPerBit);
        return m_eye->SetWaveform(farEnd.time.data(), farEnd.volts.data(),
                                  static_cast<int32_t>(farEnd.time.size())) &&
               m_eye->SetTiming(m_data);
    }

private:
    IKVComCtlFactory& m_factory;
    IEyeDiagramData* m_data;
    IEyeDiagramStimAdaptor* m_adaptor;
    IEyeViewCtrl* m_eye;
};

QWidget* CreateEyeWidget(IKVComCtlFactory& factory) {
    auto* page = new EyePageWidget(factory);
    auto* layout = new QVBoxLayout(page);
    if (!page->CreateView()) {
        layout->addWidget(new QLabel(QObject::tr("The library handed out no eye view.")));
        return page;
    }
    auto* form = new QFormLayout;
    auto* jitter = new QDoubleSpinBox;
    jitter->setRange(0.0, 200.0);
    jitter->setSuffix(QStringLiteral(" ps"));
    jitter->setValue(kJitterRmsPs);
    auto* timeConstant = new QSpinBox;
    timeConstant->setRange(1, 200);
    timeConstant->setSuffix(QStringLiteral(" % of the bit interval"));
    timeConstant->setValue(kTimeConstant);
    auto* eyes = new QComboBox;
    eyes->addItems({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")});
    auto* mask = new QCheckBox(QObject::tr("Show the mask and its hits"));
    mask->setChecked(true);
    form->addRow(QObject::tr("Gaussian edge jitter (RMS)"), jitter);
    form->addRow(QObject::tr("Channel time constant"), timeConstant);
    form->addRow(QObject::tr("Eyes"), eyes);
    form->addRow(QString(), mask);
    layout->addLayout(form);
    layout->addWidget(new QLabel(QObject::tr(
        "A 1 Gb/s PRBS of 0 V and 5 V through a first-order low-pass, folded at its bit interval "
        "with the default mask. Wheel: zoom. Drag: zoom into a rectangle. Shift+drag: pan. "
        "Double click: fit.")));
    layout->addWidget(page->Eye().GetWindow(), 1);

    const auto show = [page, jitter, timeConstant, eyes] {
        page->Show(jitter->value(), timeConstant->value(), eyes->currentIndex() + 1);
    };
    QObject::connect(jitter, &QDoubleSpinBox::valueChanged, page, show);
    QObject::connect(timeConstant, &QSpinBox::valueChanged, page, show);
    QObject::connect(eyes, &QComboBox::currentIndexChanged, page, show);
    QObject::connect(mask, &QCheckBox::toggled, page,
                     [page](bool on) { page->Eye().ShowMask(on); });
    show();
    return page;
}

// Qt writes numbers with a "." whatever the desktop's locale; a host has no part of the
// library's own number printer.
QString Number(double value) {
    return QString::number(value, 'g', 6);
}

QString MeasureText(const EYEMEASURE& m) {
    QString text;
    QTextStream out(&text);
    out << "samples " << m.samples << "\nunit intervals " << m.unitIntervals << "\nlevel0 "
        << Number(m.level0) << " V\nlevel1 " << Number(m.level1) << " V\nnoise0 "
        << Number(m.noise0) << " V\nnoise1 " << Number(m.noise1) << " V\neye height "
        << Number(m.eyeHeight) << " V\neye width " << Number(m.eyeWidth) << " s\neye centre "
        << Number(m.eyeCentreTime) << " s\njitter rms " << Number(m.crossingJitterRms)
        << " s\njitter peak to peak " << Number(m.crossingJitterPeakToPeak) << " s\nmask hits "
        << m.maskHits << "\nmask margin " << Number(m.maskMarginPercent) << " %\n";
    return text;
}

void TourEye(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    EyePageWidget page(factory);
    page.setAttribute(Qt::WA_DontShowOnScreen);
    page.show();
    EYEMEASURE measure{};
    if (!page.CreateView() || !page.Show(kJitterRmsPs, kTimeConstant, 1) ||
        !page.Eye().GetMeasure(&measure)) {
        LogTourWrite(false, out.filePath(QStringLiteral("eye.png")), log);
        return;
    }
    page.Eye().GetWindow()->resize(1000, 560);
    for (const QString& name : {QStringLiteral("eye.png"), QStringLiteral("eye.svg")}) {
        const QString path = out.filePath(name);
        LogTourWrite(page.Eye().SaveImage(path.toUtf8().constData()), path, log);
    }
    SaveText(MeasureText(measure), out, QStringLiteral("eye.txt"), log);
}

const HostPageRegistration kRegistration({QStringLiteral("Eye view"), CreateEyeWidget, TourEye});

}  // namespace
