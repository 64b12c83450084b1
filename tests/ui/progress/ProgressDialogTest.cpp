// The progress dialog over a host window: creation and its way back,
// delayed showing, cancelling and quitting while the host's job pumps.

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <climits>

#include "core/ports/Clock.h"
#include "tests/support/ManualClock.h"
#include "ui/progress/ProgressDlg.h"
#include "ui/shared/ControlIds.h"

namespace {

int g_cancelCalls = 0;
int32_t g_cancelValue = 0;
void RecordCancel(int32_t value) {
    ++g_cancelCalls;
    g_cancelValue = value;
}

// A host: a main window with a tool window over it, and a widget in that.
struct HostWindows {
    HostWindows() {
        main.resize(600, 400);
        toolWindow = new QWidget(&main, Qt::Window);
        toolWindow->setGeometry(100, 100, 300, 200);
        owner = new QWidget(toolWindow);
        main.show();
        toolWindow->show();
    }
    QWidget main;
    QWidget* toolWindow;
    QWidget* owner;
};

QPushButton* CancelButton(const kv::ui::CProgressDlg& dialog) {
    return kv::ui::FindControl<QPushButton>(&dialog, 2);
}

}  // namespace

class ProgressDialogTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        g_cancelCalls = 0;
        g_cancelValue = 0;
    }

    void layoutKeepsTheControlIds() {
        kv::ui::CProgressDlg dialog;
        QVERIFY(kv::ui::FindControl<QLabel>(&dialog, 534) != nullptr);
        QVERIFY(kv::ui::FindControl<QLabel>(&dialog, 421) != nullptr);
        QWidget* placeholder = kv::ui::FindControl<QWidget>(&dialog, 1438);
        QVERIFY(placeholder != nullptr);
        QCOMPARE(CancelButton(dialog)->text(), QStringLiteral("Cancel"));
        QVERIFY(dialog.windowTitle().isEmpty());
        // The template is wider than high, and the button sits below the bar.
        QVERIFY(dialog.width() > 2 * dialog.height());
        QVERIFY(CancelButton(dialog)->y() > placeholder->geometry().bottom());

        HostWindows host;
        QVERIFY(dialog.Create(host.owner, 0));
        QCOMPARE(dialog.GetProgressBar()->GetHwnd()->parentWidget(), placeholder);
        dialog.GetReport()->SetAll("first", "second", 25);
        QCOMPARE(kv::ui::FindControl<QLabel>(&dialog, 534)->text(), QStringLiteral("first"));
        QCOMPARE(kv::ui::FindControl<QLabel>(&dialog, 421)->text(), QStringLiteral("second"));
        dialog.SetCancelText("Stop");
        QCOMPARE(CancelButton(dialog)->text(), QStringLiteral("Stop"));
        dialog.SetCancelText("");
        QCOMPARE(CancelButton(dialog)->text(), QStringLiteral("Cancel"));
        dialog.Destroy();
    }

    void delayedDialogDecidesOnTheFirstTick_data() {
        QTest::addColumn<int>("percent");
        QTest::addColumn<bool>("shown");
        QTest::newRow("half done after 200 of 1000 ms") << 50 << false;
        QTest::newRow("a tenth done after 200 of 1000 ms") << 10 << true;
    }
    void delayedDialogDecidesOnTheFirstTick() {
        QFETCH(int, percent);
        QFETCH(bool, shown);
        kv::test::ManualClock clock;
        kv::ui::CProgressDlg dialog(&clock);
        HostWindows host;
        QVERIFY(dialog.Create(host.owner, 1000));
        QVERIFY(!dialog.isVisible());
        auto* timer = dialog.findChild<QTimer*>(QStringLiteral("delayTimer"));
        QVERIFY(timer != nullptr && timer->isActive());
        QCOMPARE(timer->interval(), 200);
        dialog.GetReport()->SetAll(nullptr, nullptr, percent);
        clock.ticks += 200;
        QTRY_VERIFY(!timer->isActive());  // stopped at its first tick
        QCOMPARE(dialog.isVisible(), shown);
        dialog.Destroy();
    }

    void allOnesDelayWaitsForTheHost() {
        kv::test::ManualClock clock;
        kv::ui::CProgressDlg dialog(&clock);
        HostWindows host;
        QVERIFY(dialog.Create(host.owner, 0xFFFFFFFFu));
        QVERIFY(!dialog.findChild<QTimer*>(QStringLiteral("delayTimer"))->isActive());
        QVERIFY(!dialog.isVisible());
        dialog.Show(1);
        QVERIFY(dialog.isVisible());
        QVERIFY(dialog.isEnabled());  // an owned window takes input while its owner does not
        dialog.Show(0);
        QVERIFY(!dialog.isVisible());
        dialog.Destroy();
    }

    void cancelByButtonEscapeAndClose() {
        kv::ui::CProgressDlg dialog;
        HostWindows host;
        dialog.SetCancelCallback(RecordCancel, 77);
        QVERIFY(dialog.Create(host.owner, 0));
        QVERIFY(dialog.isVisible());
        IProgressReportInterface* report = dialog.GetReport();
        QVERIFY(!report->IsCancelled());

        QTest::mouseClick(CancelButton(dialog), Qt::LeftButton);
        QVERIFY(report->IsCancelled());
        QCOMPARE(g_cancelCalls, 1);
        QCOMPARE(g_cancelValue, 77);
        QVERIFY(dialog.isVisible());  // the host ends the dialog, not the button

        report->SetCancelled(false);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(report->IsCancelled());
        QCOMPARE(g_cancelCalls, 2);
        QVERIFY(dialog.isVisible());

        report->SetCancelled(false);
        // A close request from the title bar cancels but keeps the dialog.
        QVERIFY(!dialog.windowHandle()->close());
        QVERIFY(report->IsCancelled());
        QCOMPARE(g_cancelCalls, 3);

        report->SetCancelled(false);
        dialog.EnableCancel(false, false);
        QVERIFY(CancelButton(dialog)->isHidden());
        QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.windowHandle()->close());  // ignored without cancelling
        QVERIFY(!report->IsCancelled());
        QCOMPARE(g_cancelCalls, 3);
        dialog.EnableCancel(true, false);
        QVERIFY(!CancelButton(dialog)->isHidden());
        dialog.Destroy();
    }

    void createClearsTheCancelledFlagAndKeepsCancelDisabled() {
        kv::ui::CProgressDlg dialog;
        HostWindows host;
        dialog.EnableCancel(false, false);
        dialog.GetReport()->SetCancelled(true);
        QVERIFY(dialog.Create(host.owner, 0));
        QVERIFY(!dialog.GetReport()->IsCancelled());
        QVERIFY(CancelButton(dialog)->isHidden());
        dialog.Destroy();
    }

    void quitWhilePumpingIsPassedOnAfterCancelling() {
        kv::ui::CProgressDlg dialog;
        HostWindows host;
        dialog.SetCancelCallback(RecordCancel, 5);
        int steps = 0;
        // The host's long job, run from its event loop; something asks the
        // application to quit while the job pumps.
        QTimer::singleShot(0, [&] {
            QVERIFY(dialog.Create(host.owner, 0));
            QTimer::singleShot(0, [] { QCoreApplication::quit(); });
            IProgressReportInterface* report = dialog.GetReport();
            while (steps < 100000 && !report->IsCancelled()) {
                report->SetPercent(++steps % 100);
            }
            dialog.Destroy();
        });
        // Should the request get lost, the loop ends with 1 after a while.
        QTimer::singleShot(5000, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);  // the host's loop saw the quit
        QVERIFY(steps < 100000);                // the job stopped on the cancel
        QCOMPARE(g_cancelCalls, 1);
        QCOMPARE(g_cancelValue, 5);
    }

    void ownerWindowsAreDisabledWhileTheDialogIsUp() {
        HostWindows host;
        {
            kv::ui::CProgressDlg dialog;
            QVERIFY(dialog.Create(host.owner, 0));
            QVERIFY(!host.toolWindow->isEnabled());
            QVERIFY(!host.main.isEnabled());  // the root of the chain too
            QVERIFY(dialog.isEnabled());
            dialog.Destroy();
            QVERIFY(host.toolWindow->isEnabled());
            QVERIFY(host.main.isEnabled());

            // An already disabled window stays disabled after Destroy.
            host.main.setEnabled(false);
            QVERIFY(dialog.Create(host.owner, 0));
            dialog.Destroy();
            QVERIFY(!host.main.isEnabled());
            host.main.setEnabled(true);

            // Given back to the factory while up: enabled all the same.
            QVERIFY(dialog.Create(host.owner, 0));
        }
        QVERIFY(host.toolWindow->isEnabled());
        QVERIFY(host.main.isEnabled());
    }

    void failedCreationEnablesTheOwnerAgain() {
        HostWindows first;
        HostWindows second;
        kv::ui::CProgressDlg dialog;
        QVERIFY(dialog.Create(first.owner, 0));
        QVERIFY(!dialog.Create(second.owner, 0));  // already up
        QVERIFY(second.toolWindow->isEnabled());
        QVERIFY(second.main.isEnabled());
        QVERIFY(!first.toolWindow->isEnabled());  // the first creation still holds
        auto* inside = kv::ui::FindControl<QWidget>(&dialog, 1438);
        dialog.Destroy();
        QVERIFY(!dialog.Create(inside, 0));  // cannot own itself
        QVERIFY(dialog.isEnabled());
        QVERIFY(first.toolWindow->isEnabled());
    }

    void placedAtTheGivenPointOrCentredOnTheOwner() {
        HostWindows host;
        kv::ui::CProgressDlg dialog;
        QVERIFY(dialog.CreateAt(host.owner, 0, 30, 40));
        QCOMPARE(dialog.pos(), QPoint(30, 40));
        dialog.Destroy();
        // Any point a host passes leaves the window a rectangle whose edges can be held.
        QVERIFY(dialog.CreateAt(host.owner, 0, INT_MAX, INT_MAX));
        QVERIFY(dialog.frameGeometry().right() > dialog.frameGeometry().left());
        QVERIFY(dialog.frameGeometry().bottom() > dialog.frameGeometry().top());
        dialog.Destroy();
        kv::ui::CProgressDlg centred;
        QVERIFY(centred.CreateAt(host.owner, 0, -1, 40));
        // Window frames are known only once shown: allow for their width.
        const QPoint ownerCentre = host.toolWindow->frameGeometry().center();
        QVERIFY((centred.frameGeometry().center() - ownerCentre).manhattanLength() <= 8);
        centred.Destroy();
    }

    void ownerDeletedFirstLeavesTheDialogAlive() {
        kv::ui::CProgressDlg dialog;
        auto* host = new HostWindows;
        QVERIFY(dialog.Create(host->owner, 0));
        delete host;
        QVERIFY(dialog.parentWidget() == nullptr);
        dialog.GetReport()->SetPercent(50);
        dialog.Destroy();
    }
};

QTEST_MAIN(ProgressDialogTest)
#include "ProgressDialogTest.moc"
