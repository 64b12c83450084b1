// The report driving the lines and the bar of a host's own dialog.

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QtTest>

#include "ui/progress/ProgressBarCtrl.h"
#include "ui/progress/ProgressReport.h"
#include "ui/shared/ControlIds.h"

namespace {

// A host dialog with two text items and a bar placeholder, known by id.
struct HostDialog {
    HostDialog() {
        first = new QLabel(dialog);
        first->setObjectName(kv::ui::ControlObjectName(100));
        second = new QLabel(dialog);
        second->setObjectName(kv::ui::ControlObjectName(101));
        placeholder = new QWidget(dialog);
        placeholder->setObjectName(kv::ui::ControlObjectName(102));
        placeholder->setGeometry(10, 60, 180, 20);
        dialog->resize(200, 100);
    }
    QPointer<QDialog> dialog = new QDialog;
    QLabel* first;
    QLabel* second;
    QWidget* placeholder;
};

}  // namespace

class ProgressReportTest : public QObject {
    Q_OBJECT

private slots:
    void storedStateIsShownOnAttach() {
        kv::ui::CProgressReport report;
        report.SetFirstText("Reading nets");
        report.SetSecondText(nullptr);  // ignored
        report.SetPercent(30);
        QCOMPARE(report.GetPercent(), 30);
        HostDialog host;
        report.Attach(host.dialog, 100, 101, 102);
        QCOMPARE(host.first->text(), QStringLiteral("Reading nets"));
        QCOMPARE(host.second->text(), QString());
        auto* bar = dynamic_cast<kv::ui::CProgressBarCtrl*>(report.GetProgressBar());
        QVERIFY(bar != nullptr);
        QCOMPARE(bar->parentWidget(), host.placeholder);
        QCOMPARE(bar->GetPos(), 30);
        delete host.dialog;
    }

    void updatesReachTheControlsAndNegativesAreIgnored() {
        kv::ui::CProgressReport report;
        HostDialog host;
        report.Attach(host.dialog, 100, 101, 102);
        report.SetAll("Layer 1", "Net VCC", 12);
        QCOMPARE(host.first->text(), QStringLiteral("Layer 1"));
        QCOMPARE(host.second->text(), QStringLiteral("Net VCC"));
        QCOMPARE(report.GetPercent(), 12);
        report.SetAll(nullptr, "Net GND", -1);  // only the second line changes
        QCOMPARE(host.first->text(), QStringLiteral("Layer 1"));
        QCOMPARE(host.second->text(), QStringLiteral("Net GND"));
        QCOMPARE(report.GetPercent(), 12);
        report.SetPercent(-1);
        QCOMPARE(report.GetPercent(), 12);
        report.SetFirstText("Layer 2");
        QCOMPARE(host.first->text(), QStringLiteral("Layer 2"));
        // A report without a progress dialog has no pump: the flag is as set.
        QVERIFY(!report.IsCancelled());
        report.SetCancelled(true);
        QVERIFY(report.IsCancelled());
        delete host.dialog;
    }

    void reattachingReleasesTheEarlierControls() {
        kv::ui::CProgressReport report;
        HostDialog a;
        HostDialog b;
        report.Attach(a.dialog, 100, 101, 102);
        report.Attach(b.dialog, 100, 0, 102);
        report.SetAll("to b", "second", 5);
        QCOMPARE(a.first->text(), QString());
        QCOMPARE(b.first->text(), QStringLiteral("to b"));
        QCOMPARE(b.second->text(), QString());  // id 0: not taken over
        QCOMPARE(report.GetProgressBar()->GetHwnd()->parentWidget(), b.placeholder);
        delete a.dialog;
        delete b.dialog;
    }

    void hostDeletingItsDialogLeavesTheReportWorking() {
        kv::ui::CProgressReport report;
        IProgressBarInterface* bar = report.GetProgressBar();
        {
            HostDialog host;
            report.Attach(host.dialog, 100, 101, 102);
            delete host.dialog;
        }
        QVERIFY(bar->GetHwnd()->parentWidget() == nullptr);
        report.SetAll("after", "the dialog", 70);
        QCOMPARE(bar->GetPos(), 70);
        QCOMPARE(report.GetProgressBar(), bar);
    }
};

QTEST_MAIN(ProgressReportTest)
#include "ProgressReportTest.moc"
