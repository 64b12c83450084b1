// The stimulus data object as a host sees it: a new object's values and
// bits, read through IEyeDiagramData.

#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>
#include <memory>

#include "HostPage.h"
#include "kvcomctl/kvcomctl.h"

namespace {

QString BitsText(const IEyeDiagramData& data) {
    QString text;
    for (int i = 0; i < data.GetBitCount(); ++i) {
        text += data.GetBit(i) ? QLatin1Char('1') : QLatin1Char('0');
    }
    return text;
}

QList<QPair<QString, QString>> Values(IEyeDiagramData& data) {
    const EYEMASK& mask = *data.GetMask();
    // "%.15g" as the settings store writes reals; Qt writes the "." whatever the locale.
    const auto number = [](double value) { return QString::number(value, 'g', 15); };
    return {
        {"Cycles", QString::number(data.GetCycleCount())},
        {"Skip bits", QString::number(data.GetSkipBits())},
        {"Eyes", QString::number(data.GetEyeCount())},
        {"Period (ns)", number(data.GetPeriod())},
        {"Duty cycle (%)", number(data.GetDutyCycle())},
        {"Max jitter", number(data.GetMaxJitter())},
        {"Jitter type", QString::number(data.GetJitterType())},
        {"Jitter repeatable", data.GetJitterRepeatable() ? "yes" : "no"},
        {"Sequence type", QString::number(data.GetSeqType())},
        {"Polynomial degree", QString::number(data.GetPolyDegree())},
        {"First bit", QString::number(data.GetInitState())},
        {"Bit count", QString::number(data.GetBitCount())},
        {"Mask top (V)", number(mask.PTopMin) + " .. " + number(mask.PTopMax)},
        {"Mask base (V)", number(mask.PBaseMin) + " .. " + number(mask.PBaseMax)},
        {"Mask crossing (V)", number(mask.PCross)},
    };
}

using DataPtr = std::unique_ptr<IEyeDiagramData, std::function<void(IEyeDiagramData*)>>;

DataPtr NewData(IKVComCtlFactory& factory) {
    return DataPtr(factory.CreateStimulusData(),
                   [&factory](IEyeDiagramData* data) { factory.Destroy(data); });
}

QWidget* CreateStimulusWidget(IKVComCtlFactory& factory) {
    auto* page = new QWidget;
    auto data = NewData(factory);
    auto* layout = new QVBoxLayout(page);
    auto* form = new QFormLayout;
    for (const auto& [name, value] : Values(*data)) {
        form->addRow(name + ":", new QLabel(value));
    }
    layout->addLayout(form);
    auto* bits = new QLabel(BitsText(*data));
    bits->setFont(QFont(QStringLiteral("monospace")));
    bits->setWordWrap(true);
    bits->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(new QLabel(QObject::tr("Bits of one cycle:")));
    layout->addWidget(bits);
    layout->addStretch();
    return page;
}

void TourStimulus(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    auto data = NewData(factory);
    QString text;
    for (const auto& [name, value] : Values(*data)) {
        text += name + ": " + value + '\n';
    }
    text += "Bits: " + BitsText(*data) + '\n';
    SaveText(text, out, "stimulus.txt", log);
    std::unique_ptr<QWidget> widget(CreateStimulusWidget(factory));
    widget->resize(420, 480);
    SaveWidgetPng(*widget, out, "stimulus.png", log);
}

const HostPageRegistration kRegistration{{"Stimulus data", CreateStimulusWidget, TourStimulus}};

}  // namespace
