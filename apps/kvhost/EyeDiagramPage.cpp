// The eye-diagram sheet as a host uses it: open it on the host's own
// stimulus with one of the flag combinations, show what came back after OK,
// and turn the stimulus into a waveform through the stimulus adaptor.

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <functional>

#include "HostPage.h"
#include "kvcomctl/kvcomctl.h"

namespace {

struct FlagVariant {
    const char* name;
    int flags;
};

constexpr FlagVariant kFlagVariants[] = {
    {"Stimulus editing page (0x80)", 0x80},
    {"Eye-diagram stimulus and mask pages (0x03)", 0x03},
    {"Eye-diagram stimulus page (0x01)", 0x01},
    {"Eye mask page (0x02)", 0x02},
    {"Edit Stimulus title, stimulus page (0x10)", 0x10},
    {"Edit Stimulus title, both pages (0x12)", 0x12},
};

// Levels and edges the host drives its simulation with.
constexpr double kLowLevel = 0.0;
constexpr double kHighLevel = 3.3;
constexpr double kRiseTime = 0.1e-9;
constexpr double kFallTime = 0.1e-9;

// The host's stimulus, sheet and adaptor, given back to the factory when the
// page goes.
class EyeDiagramHost final : public QObject {
public:
    EyeDiagramHost(IKVComCtlFactory& factory, QObject* parent)
        : QObject(parent),
          m_factory(factory),
          m_data(factory.CreateStimulusData()),
          m_sheet(factory.CreateEyeDiagramSheet()),
          m_adaptor(factory.CreateEyeStimAdaptor()) {
        m_data->SetSeqType(4);  // a drawn sequence the user can type into
        const bool bits[] = {true, false, true, true, false, false, true, false};
        m_data->SetBits(bits, 8);
    }
    ~EyeDiagramHost() override {
        m_factory.Destroy(m_adaptor);
        m_factory.Destroy(m_sheet);
        m_factory.Destroy(m_data);
    }
    IEyeDiagramData& Data() { return *m_data; }
    IEyeDiagramDialog* Sheet() { return m_sheet; }
    IEyeDiagramStimAdaptor& Adaptor() { return *m_adaptor; }
    int32_t BuildWaveform() {
        return m_adaptor->Build(m_data, kLowLevel, kHighLevel, kRiseTime, kFallTime);
    }

private:
    IKVComCtlFactory& m_factory;
    IEyeDiagramData* m_data;
    IEyeDiagramDialog* m_sheet;
    IEyeDiagramStimAdaptor* m_adaptor;
};

// Qt writes numbers with a "." whatever the desktop's locale; a host has no part of the
// library's own number printer.
QString Number(double value) {
    return QString::number(value, 'g', 6);
}

QString Summary(EyeDiagramHost& host, int32_t points) {
    IEyeDiagramData& data = host.Data();
    QString bits;
    for (int i = 0; i < data.GetBitCount() && i < 64; ++i) {
        bits += data.GetBit(i) ? '1' : '0';
    }
    if (data.GetBitCount() > 64) {
        bits += "...";
    }
    return QStringLiteral(
               "Sequence type %1, %2 bits: %3\nPeriod %4 ns, duty cycle %5 %, %6 cycles\n"
               "Waveform: %7 points over %8 ns")
        .arg(data.GetSeqType())
        .arg(data.GetBitCount())
        .arg(bits)
        .arg(Number(data.GetPeriod()))
        .arg(Number(data.GetDutyCycle()))
        .arg(data.GetCycleCount())
        .arg(points)
        .arg(Number(host.Adaptor().GetDuration() * 1e9));
}

QWidget* CreateEyeDiagramWidget(IKVComCtlFactory& factory) {
    auto* page = new QWidget;
    auto* host = new EyeDiagramHost(factory, page);
    auto* layout = new QVBoxLayout(page);
    auto* form = new QFormLayout;
    auto* variants = new QComboBox;
    for (const FlagVariant& variant : kFlagVariants) {
        variants->addItem(QString::fromLatin1(variant.name), variant.flags);
    }
    form->addRow(QObject::tr("Pages:"), variants);
    layout->addLayout(form);
    auto* open = new QPushButton(QObject::tr("Configure Eye Diagram..."));
    layout->addWidget(open);
    auto* result = new QLabel(Summary(*host, host->BuildWaveform()));
    result->setObjectName(QStringLiteral("eyeDiagramResult"));
    result->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(result);
    layout->addStretch();
    QObject::connect(open, &QPushButton::clicked, page, [=] {
        const bool confirmed =
            host->Sheet() != nullptr &&
            host->Sheet()->Edit(&host->Data(), page, 0, variants->currentData().toInt(), 0, 0);
        const int32_t points = host->BuildWaveform();
        result->setText((confirmed ? QObject::tr("OK\n") : QObject::tr("Cancelled\n")) +
                        Summary(*host, points));
    });
    return page;
}

// Opens the sheet with `flags`, saves a picture of every page and cancels.
void TourSheet(EyeDiagramHost& host, int flags, const QString& name, const QDir& out,
               QTextStream& log) {
    QTimer step;
    step.setSingleShot(true);
    QObject::connect(&step, &QTimer::timeout, [&] {
        auto* sheet = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (sheet == nullptr) {
            return;
        }
        auto* tabs = sheet->findChild<QTabWidget*>(QStringLiteral("pages"));
        for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            SaveWidgetPng(
                *sheet, out,
                QStringLiteral("eyediagram-%1-%2.png").arg(name, tabs->widget(i)->objectName()),
                log);
        }
        sheet->done(QDialog::Rejected);
    });
    step.start(0);
    host.Sheet()->Edit(&host.Data(), nullptr, 0, flags, 0, 0);
}

void TourEyeDiagram(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    QObject owner;
    auto* host = new EyeDiagramHost(factory, &owner);
    if (host->Sheet() != nullptr) {
        TourSheet(*host, 0x80, QStringLiteral("edit"), out, log);
        TourSheet(*host, 0x03, QStringLiteral("pages"), out, log);
    }
    const int32_t points = host->BuildWaveform();
    const QString pwl = out.filePath(QStringLiteral("eyediagram-stimulus.cir"));
    LogTourWrite(points > 0 && host->Adaptor().WritePwl(pwl.toUtf8().constData(), "STIM", "in"),
                 pwl, log);
    SaveText(Summary(*host, points) + '\n', out, QStringLiteral("eyediagram.txt"), log);
    std::unique_ptr<QWidget> widget(CreateEyeDiagramWidget(factory));
    widget->resize(480, 240);
    SaveWidgetPng(*widget, out, QStringLiteral("eyediagram.png"), log);
}

const HostPageRegistration kRegistration{{"Eye diagram", CreateEyeDiagramWidget, TourEyeDiagram}};

}  // namespace
