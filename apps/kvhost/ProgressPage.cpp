// Progress reporting as a host uses it: a long job on the user-interface
// thread that reports through a delayed progress dialog and stops when the
// user cancels, and stand-alone bars.

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>
#include <cmath>
#include <memory>

#include "HostPage.h"
#include "kvcomctl/kvcomctl.h"

namespace {

constexpr int kBarPercents[] = {0, 37, 100, 150};

// A bar handed out by the factory, given back to it when the holder goes.
class BarHolder final : public QObject {
public:
    BarHolder(IKVComCtlFactory& factory, QObject* parent)
        : QObject(parent), m_factory(factory), m_bar(factory.CreateProgressBarCtrl()) {}
    ~BarHolder() override { m_factory.Destroy(m_bar); }
    IProgressBarInterface* Bar() const { return m_bar; }

private:
    IKVComCtlFactory& m_factory;
    IProgressBarInterface* m_bar;
};

struct JobResult {
    bool cancelled = false;
    int percent = 0;
    bool dialogShown = false;
};

// Busy work that keeps the thread occupied between two progress updates.
double Crunch(int rounds) {
    double sum = 0;
    for (int i = 1; i <= rounds; ++i) {
        sum += std::sqrt(static_cast<double>(i));
    }
    return sum;
}

// The host's long job: `durationMs` of computation on this thread, reported
// through a progress dialog that appears only if the job is slow.
JobResult RunLongJob(IKVComCtlFactory& factory, QWidget* owner, int durationMs, uint32_t delayMs) {
    JobResult result;
    IProgressDialogInterface* dialog = factory.CreateProgressDlg();
    dialog->SetTitle("Long job");
    if (!dialog->Create(owner, delayMs)) {
        factory.Destroy(dialog);
        return result;
    }
    IProgressReportInterface* report = dialog->GetReport();
    QElapsedTimer clock;
    clock.start();
    volatile double sink = 0;
    int step = 0;
    while (clock.elapsed() < durationMs) {
        sink = sink + Crunch(20000);
        ++step;
        result.percent = static_cast<int>(clock.elapsed() * 100 / durationMs);
        const QByteArray line = QStringLiteral("Step %1").arg(step).toUtf8();
        report->SetAll("Crunching numbers", line.constData(), result.percent);
        result.dialogShown = result.dialogShown || dialog->GetHwnd()->isVisible();
        if (report->IsCancelled()) {
            result.cancelled = true;
            break;
        }
    }
    dialog->Destroy();
    factory.Destroy(dialog);
    return result;
}

QWidget* CreateProgressWidget(IKVComCtlFactory& factory) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);

    auto* jobRow = new QHBoxLayout;
    auto* seconds = new QSpinBox;
    seconds->setRange(1, 30);
    seconds->setValue(5);
    seconds->setSuffix(QObject::tr(" s"));
    auto* run = new QPushButton(QObject::tr("Run long job"));
    auto* status = new QLabel(QObject::tr("The dialog appears after 500 ms if the job is slow."));
    jobRow->addWidget(new QLabel(QObject::tr("Duration:")));
    jobRow->addWidget(seconds);
    jobRow->addWidget(run);
    jobRow->addStretch();
    layout->addLayout(jobRow);
    layout->addWidget(status);
    QObject::connect(run, &QPushButton::clicked, page, [&factory, page, seconds, status] {
        const JobResult result = RunLongJob(factory, page, seconds->value() * 1000, 500);
        status->setText(result.cancelled ? QObject::tr("Cancelled at %1%.").arg(result.percent)
                                         : QObject::tr("Finished."));
    });

    layout->addWidget(new QLabel(QObject::tr("Stand-alone bars:")));
    for (const int percent : kBarPercents) {
        auto* holder = new BarHolder(factory, page);
        holder->Bar()->SetPos(percent, false);
        holder->Bar()->GetHwnd()->setMinimumHeight(22);
        layout->addWidget(holder->Bar()->GetHwnd());
    }
    layout->addStretch();
    return page;
}

void TourProgress(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    for (const int percent : kBarPercents) {
        BarHolder holder(factory, nullptr);
        holder.Bar()->SetPos(percent, false);
        QWidget& bar = *holder.Bar()->GetHwnd();
        bar.setFixedSize(240, 22);  // keeps its size through the PNG helper
        SaveWidgetPng(bar, out, QStringLiteral("progress_bar_%1.png").arg(percent), log);
    }

    QWidget owner;
    owner.resize(480, 320);
    owner.show();
    IProgressDialogInterface* dialog = factory.CreateProgressDlg();
    dialog->SetTitle("Long job");
    dialog->Create(&owner, 0);
    dialog->GetReport()->SetAll("Crunching numbers", "Step 37 of 100", 37);
    SaveWidgetPng(*dialog->GetHwnd(), out, "progress_dialog.png", log);
    dialog->Destroy();
    factory.Destroy(dialog);

    // A quick job never shows its delayed dialog; a slow one does.
    QString text;
    const JobResult quick = RunLongJob(factory, &owner, 100, 1000);
    text += QStringLiteral("0.1 s job, 1000 ms delay: dialog shown: %1\n")
                .arg(quick.dialogShown ? "yes" : "no");
    const JobResult slow = RunLongJob(factory, &owner, 1500, 300);
    text += QStringLiteral("1.5 s job, 300 ms delay: dialog shown: %1\n")
                .arg(slow.dialogShown ? "yes" : "no");
    text += QStringLiteral("owner enabled afterwards: %1\n").arg(owner.isEnabled() ? "yes" : "no");
    SaveText(text, out, "progress.txt", log);
}

const HostPageRegistration kRegistration{{"Progress", CreateProgressWidget, TourProgress}};

}  // namespace
