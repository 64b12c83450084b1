// The progress bar, report and dialog as a host sees them: what the bar
// paints and when, the report driving the lines and bar of a host's dialog,
// and the progress dialog over a host's windows: delayed showing, cancelling
// and quitting while the host's job pumps. The geometry, text and timing rules
// are the core's (tests/core/progress).

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <climits>

#include "core/shared/ColorRef.h"
#include "tests/support/ManualClock.h"
#include "ui/progress/ProgressBarCtrl.h"
#include "ui/progress/ProgressDlg.h"
#include "ui/progress/ProgressReport.h"
#include "ui/shared/ControlIds.h"

using namespace Qt::StringLiterals;

namespace {

using kv::ui::FindControl;

const QColor kFill(0, 0, 200);
const QColor kEmpty(255, 255, 255);

class PaintCounter final : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

// Label pixels in `text` inside columns [from, to): nearer to `text` than to
// `background`, as the label is anti-aliased.
int TextPixels(const QImage& image, int from, int to, const QColor& text,
               const QColor& background) {
    const auto distance = [](const QColor& a, const QColor& b) {
        return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
               std::abs(a.blue() - b.blue());
    };
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = from; x < to; ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += distance(pixel, text) < distance(pixel, background) ? 1 : 0;
        }
    }
    return count;
}

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

// A host's own dialog with two text items and a bar placeholder, known by id.
struct HostDialog {
    HostDialog() {
        first = new QLabel(dialog);
        first->setObjectName(kv::ui::ControlObjectName(100));
        second = new QLabel(dialog);
        second->setObjectName(kv::ui::ControlObjectName(101));
        placeholder = new QWidget(dialog);
        placeholder->setObjectName(kv::ui::ControlObjectName(102));
    }
    QPointer<QDialog> dialog = new QDialog;
    QLabel* first;
    QLabel* second;
    QWidget* placeholder;
};

QPushButton* CancelButton(const kv::ui::CProgressDlg& dialog) {
    return FindControl<QPushButton>(&dialog, 2);
}

}  // namespace

class ProgressTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        g_cancelCalls = 0;
        g_cancelValue = 0;
    }

    void barPaintsTheDonePartAndItsLabelInvertedAcrossIt() {
        kv::ui::CProgressBarCtrl bar;
        QFont font = bar.font();
        font.setPixelSize(14);
        bar.setFont(font);
        bar.resize(200, 24);
        bar.SetFillColor(kv::MakeColorRef(0, 0, 200));
        bar.SetEmptyColor(kv::MakeColorRef(255, 255, 255));
        QCOMPARE(bar.GetHwnd(), &bar);
        for (const auto& [position, doneWidth] : {std::pair{37, 74}, std::pair{150, 200}}) {
            bar.SetPos(position, true);
            QCOMPARE(bar.GetPos(), position);  // stored unclamped
            const QImage image = bar.grab().toImage();
            // The top row holds no text: it shows the split alone.
            for (int x = 0; x < 200; ++x) {
                QCOMPARE(image.pixelColor(x, 0), x < doneWidth ? kFill : kEmpty);
            }
        }
        // Half way the split runs through the label: over the done part the
        // text is in the empty colour, over the rest in the fill colour.
        bar.SetPos(50, true);
        const QImage half = bar.grab().toImage();
        QVERIFY(TextPixels(half, 60, 100, kEmpty, kFill) > 5);
        QVERIFY(TextPixels(half, 100, 140, kFill, kEmpty) > 5);
        bar.SetPos(100, true);
        const int withSign = TextPixels(bar.grab().toImage(), 0, 200, kEmpty, kFill);
        bar.SetNoPercentSign(true);
        const int withoutSign = TextPixels(bar.grab().toImage(), 0, 200, kEmpty, kFill);
        QVERIFY(withoutSign > 0 && withoutSign < withSign);
    }

    void barRepaintsAtOnceOnlyForChangesOrForce() {
        kv::ui::CProgressBarCtrl bar;
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        bar.SetPos(40, true);
        PaintCounter counter;
        bar.installEventFilter(&counter);
        bar.SetPos(40, false);
        QCOMPARE(counter.paints, 0);
        bar.SetPos(40, true);
        QCOMPARE(counter.paints, 1);  // painted before SetPos returned
        bar.SetPos(41, false);
        QCOMPARE(counter.paints, 2);
        bar.SetNoPercentSign(true);  // waits for the next repaint
        QCOMPARE(counter.paints, 2);
        bar.SetFillColor(0);
        bar.SetEmptyColor(0);
        QCOMPARE(counter.paints, 4);
    }

    void reportShowsWhatItHoldsOnAttachAndAfter() {
        kv::ui::CProgressReport report;
        report.SetFirstText("Reading nets");
        report.SetSecondText(nullptr);  // ignored
        report.SetPercent(30);
        HostDialog host;
        report.Attach(host.dialog, 100, 101, 102);
        QCOMPARE(host.first->text(), u"Reading nets"_s);
        QCOMPARE(host.second->text(), QString());
        auto* bar = dynamic_cast<kv::ui::CProgressBarCtrl*>(report.GetProgressBar());
        QCOMPARE(bar->parentWidget(), host.placeholder);
        QCOMPARE(bar->GetPos(), 30);
        report.SetAll(nullptr, "Net GND", -1);  // only the second line changes
        QCOMPARE(host.first->text(), u"Reading nets"_s);
        QCOMPARE(host.second->text(), u"Net GND"_s);
        QCOMPARE(report.GetPercent(), 30);
        report.SetFirstText("Layer 2");
        QCOMPARE(host.first->text(), u"Layer 2"_s);
        report.SetPercent(-1);
        QCOMPARE(report.GetPercent(), 30);
        // A report without a progress dialog has no pump: the flag is as set.
        report.SetCancelled(true);
        QVERIFY(report.IsCancelled());
        delete host.dialog;
    }

    void reportReattachesAndOutlivesTheHostsDialog() {
        kv::ui::CProgressReport report;
        IProgressBarInterface* bar = report.GetProgressBar();
        HostDialog a;
        HostDialog b;
        report.Attach(a.dialog, 100, 101, 102);
        report.Attach(b.dialog, 100, 0, 102);
        report.SetAll("to b", "second", 5);
        QCOMPARE(a.first->text(), QString());
        QCOMPARE(b.first->text(), u"to b"_s);
        QCOMPARE(b.second->text(), QString());  // id 0: not taken over
        QCOMPARE(bar->GetHwnd()->parentWidget(), b.placeholder);
        delete b.dialog;
        QVERIFY(bar->GetHwnd()->parentWidget() == nullptr);
        report.SetAll("after", "the dialog", 70);
        QCOMPARE(bar->GetPos(), 70);
        QCOMPARE(report.GetProgressBar(), bar);
        delete a.dialog;
    }

    void dialogKeepsItsControlIdsAndCancelText() {
        kv::ui::CProgressDlg dialog;
        QWidget* placeholder = FindControl<QWidget>(&dialog, 1438);
        QCOMPARE(CancelButton(dialog)->text(), u"Cancel"_s);
        // The template is wider than high, and the button sits below the bar.
        QVERIFY(dialog.width() > 2 * dialog.height());
        QVERIFY(CancelButton(dialog)->y() > placeholder->geometry().bottom());
        HostWindows host;
        QVERIFY(dialog.Create(host.owner, 0));
        QCOMPARE(dialog.GetProgressBar()->GetHwnd()->parentWidget(), placeholder);
        dialog.GetReport()->SetAll("first", "second", 25);
        QCOMPARE(FindControl<QLabel>(&dialog, 534)->text(), u"first"_s);
        QCOMPARE(FindControl<QLabel>(&dialog, 421)->text(), u"second"_s);
        dialog.SetCancelText("Stop");
        QCOMPARE(CancelButton(dialog)->text(), u"Stop"_s);
        dialog.SetCancelText("");
        QCOMPARE(CancelButton(dialog)->text(), u"Cancel"_s);
        dialog.Destroy();
    }

    void delayedDialogDecidesOnTheFirstTick_data() {
        QTest::addColumn<uint>("delay");
        QTest::addColumn<int>("percent");
        QTest::addColumn<bool>("shown");
        QTest::newRow("half done after 200 of 1000 ms") << 1000u << 50 << false;
        QTest::newRow("a tenth done after 200 of 1000 ms") << 1000u << 10 << true;
        QTest::newRow("all ones: the host shows it") << 0xFFFFFFFFu << 10 << false;
    }
    void delayedDialogDecidesOnTheFirstTick() {
        QFETCH(uint, delay);
        QFETCH(int, percent);
        QFETCH(bool, shown);
        kv::test::ManualClock clock;
        kv::ui::CProgressDlg dialog(&clock);
        HostWindows host;
        QVERIFY(dialog.Create(host.owner, delay));
        QVERIFY(!dialog.isVisible());
        auto* timer = dialog.findChild<QTimer*>(u"delayTimer"_s);
        QCOMPARE(timer->isActive(), delay != 0xFFFFFFFFu);
        dialog.GetReport()->SetAll(nullptr, nullptr, percent);
        clock.ticks += 200;
        QTRY_VERIFY(!timer->isActive());  // stopped at its first tick
        QCOMPARE(dialog.isVisible(), shown);
        dialog.Show(1);
        QVERIFY(dialog.isVisible());
        QVERIFY(dialog.isEnabled());  // an owned window takes input while its owner does not
        dialog.Destroy();
    }

    void cancelByButtonEscapeAndClose() {
        kv::ui::CProgressDlg dialog;
        HostWindows host;
        dialog.SetCancelCallback(RecordCancel, 77);
        QVERIFY(dialog.Create(host.owner, 0));
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
        dialog.Destroy();
        // Created again: not cancelled, and cancelling still off.
        report->SetCancelled(true);
        QVERIFY(dialog.Create(host.owner, 0));
        QVERIFY(!report->IsCancelled());
        QVERIFY(CancelButton(dialog)->isHidden());
        dialog.EnableCancel(true, false);
        QVERIFY(!CancelButton(dialog)->isHidden());
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
        // The owner deleted first leaves the dialog alive.
        kv::ui::CProgressDlg dialog;
        auto* owner = new HostWindows;
        QVERIFY(dialog.Create(owner->owner, 0));
        delete owner;
        QVERIFY(dialog.parentWidget() == nullptr);
        dialog.GetReport()->SetPercent(50);
        dialog.Destroy();
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
        auto* inside = FindControl<QWidget>(&dialog, 1438);
        dialog.Destroy();
        QVERIFY(!dialog.Create(inside, 0));  // cannot own itself
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
};

QTEST_MAIN(ProgressTest)
#include "ProgressTest.moc"
