// The coupling region walker as a host drives it: region stepping, row
// selection both ways, closing and destroying its window, the Nets pane's
// columns and sorting. Captions, column widths and the cross-section's
// drawing are the core's (tests/core/walker).

#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSizeGrip>
#include <QWindow>
#include <QtTest>
#include <numeric>
#include <string>
#include <vector>

#include "core/ports/MessagePort.h"
#include "tests/support/RecordingMessagePort.h"
#include "ui/shared/ControlIds.h"
#include "ui/walker/CoupRgnWalkerDlg.h"
#include "ui/walker/CrossSectionCtrl.h"
#include "ui/walker/FramelessListView.h"

using namespace Qt::StringLiterals;

namespace {

using kv::ui::CCoupRgnWalkerDlg;
using kv::ui::FindControl;

struct RecordingHost final : ICRWDHost {
    std::vector<int32_t> steps;
    std::vector<int32_t> selected;
    int closed = 0;
    void OnRegionStep(int32_t step) override { steps.push_back(step); }
    void OnNetSelected(int32_t index) override { selected.push_back(index); }
    void OnWalkerClosed() override { ++closed; }
};

// Keeps a window open whatever asks it to close.
struct CloseRefuser final : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Close) {
            return false;
        }
        event->ignore();
        return true;
    }
};

QPoint RowCentre(kv::ui::CFramelessListView& view, int row) {
    return view.visualRect(view.model()->index(row, 0)).center();
}

}  // namespace

class CoupRgnWalkerDlgTest : public QObject {
    Q_OBJECT

    kv::test::RecordingMessagePort m_port;
    std::unique_ptr<kv::ScopedMessagePort> m_installed;

private slots:
    void init() {
        m_port.Clear();
        m_installed = std::make_unique<kv::ScopedMessagePort>(m_port);
    }
    void cleanup() { m_installed.reset(); }

    void regionButtonsCallTheHostAndStopAtTheEnds() {
        QWidget owner;
        CCoupRgnWalkerDlg dialog;
        RecordingHost host;
        ICouplingRgnWalkerDlg* walker = dialog.Access();
        QVERIFY(static_cast<void*>(walker) != static_cast<void*>(&dialog));
        QVERIFY(walker->CreateWindow(&owner, &host));
        walker->Show(true);
        auto* previous = FindControl<QPushButton>(&dialog, CCoupRgnWalkerDlg::kIdPrevious);
        auto* next = FindControl<QPushButton>(&dialog, CCoupRgnWalkerDlg::kIdNext);
        auto* caption = FindControl<QLabel>(&dialog, CCoupRgnWalkerDlg::kIdRegionCaption);

        walker->SetRegion(0, 5, "Breakout");
        QCOMPARE(caption->text(), u"Region 1 of 5: Breakout"_s);
        QVERIFY(!previous->isEnabled());
        QTest::mouseClick(next, Qt::LeftButton);
        walker->SetRegion(1, 5, "Bus");
        QTest::mouseClick(previous, Qt::LeftButton);
        walker->SetRegion(4, 5, nullptr);
        QVERIFY(!next->isEnabled());
        QTest::mouseClick(next, Qt::LeftButton);  // disabled: nothing reaches the host
        QCOMPARE(host.steps, (std::vector<int32_t>{+1, -1}));

        QTest::mouseClick(FindControl<QPushButton>(&dialog, CCoupRgnWalkerDlg::kIdClose),
                          Qt::LeftButton);
        QCOMPARE(host.closed, 1);
        QVERIFY(!dialog.isVisible());
        QVERIFY(walker->DestroyWindow());  // closing hid the window; it still existed
        QCOMPARE(host.closed, 1);          // the host's own destroy is not a user's close
        QVERIFY(m_port.Requests().empty());
    }

    void rowsSelectFromBothSidesAndHighlightTheTrace() {
        CCoupRgnWalkerDlg dialog;
        RecordingHost host;
        ICouplingRgnWalkerDlg* walker = dialog.Access();
        ICRWDCoupledNetsList* list = walker->GetNetsList();
        list->AddNet("NET10", "0.30 mm", "TOP", "0.10 mm");
        list->AddNet("NET2", "0.20 mm", "TOP", "0.10 mm");
        list->AddNet("net3", nullptr, "L3", "0.12 mm");
        QVERIFY(walker->CreateWindow(nullptr, &host));
        walker->Show(true);
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto& pane = dialog.NetsPane();
        QCOMPARE(pane.RowCount(), 3);
        QCOMPARE(pane.CellText(2, 1), QString());

        QTest::mouseClick(pane.viewport(), Qt::LeftButton, {}, RowCentre(pane, 1));
        QCOMPARE(host.selected, (std::vector<int32_t>{1}));
        QCOMPARE(dialog.CrossSectionPane().HighlightedNet(), std::string("NET2"));

        // Sorting by name puts NET2 before net3 before NET10; the entry
        // index still names the row.
        pane.sortByColumn(0, Qt::AscendingOrder);
        QCOMPARE(pane.CellText(0, 0), u"NET2"_s);
        QCOMPARE(pane.CellText(2, 0), u"NET10"_s);
        QVERIFY(walker->SelectNet(0));
        QCOMPARE(pane.currentIndex().row(), 2);
        QCOMPARE(dialog.CrossSectionPane().HighlightedNet(), std::string("NET10"));
        QCOMPARE(host.selected.size(), std::size_t{1});  // the host is not told its own choice

        QVERIFY(!walker->SelectNet(7));
        QCOMPARE(m_port.Requests().size(), std::size_t{1});
        QCOMPARE(m_port.Requests()[0].text,
                 std::string("Unable to select an entry in the Nets pane."));

        // A refill from the list keeps the sort and drops the highlight.
        list->AddNet("NET1", "1 mm", "TOP", "0.1 mm");
        walker->RefreshNets();
        QCOMPARE(pane.RowCount(), 4);
        QCOMPARE(pane.CellText(0, 0), u"NET1"_s);
        QCOMPARE(dialog.CrossSectionPane().HighlightedNet(), std::string());
    }

    void columnsShareTheWidthOfTheNetsPaneAndNamesLeaveItsSize() {
        CCoupRgnWalkerDlg dialog;
        dialog.Access()->GetNetsList()->AddNet("A", "1 mm", "TOP", "0.1 mm");
        QVERIFY(dialog.Access()->CreateWindow(nullptr, nullptr));
        dialog.Access()->Show(true);
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto& pane = dialog.NetsPane();
        QCOMPARE(pane.header()->count(), 4);
        QCOMPARE(pane.model()->headerData(1, Qt::Horizontal).toString(),
                 u"Separation From Current Net"_s);
        QCOMPARE(pane.CellText(0, 3), u"0.1 mm"_s);
        // The widths the list worked out fill the pane.
        int sum = 0;
        for (int column = 0; column < 4; ++column) {
            sum += pane.columnWidth(column);
        }
        QCOMPARE(sum, pane.viewport()->width());
        // Names of any length leave the window its size.
        const QSize size = dialog.size();
        const std::string name(40000, 'N');
        dialog.Access()->SetCurrentNet(name.c_str());
        dialog.Access()->SetRegion(0, 1, name.c_str());
        QCoreApplication::processEvents();
        QCOMPARE(dialog.size(), size);
        QVERIFY(dialog.minimumSizeHint().width() <= size.width());
    }

    void destroyingTheWindowReportsWhatStandsInTheWay() {
        CCoupRgnWalkerDlg dialog;
        ICouplingRgnWalkerDlg* walker = dialog.Access();
        QVERIFY(!walker->DestroyWindow());
        QCOMPARE(m_port.Requests().back().text,
                 std::string("The Coupling Region Walker dialog has no window to destroy."));

        RecordingHost host;
        QVERIFY(walker->CreateWindow(nullptr, &host));
        QVERIFY(!walker->CreateWindow(nullptr, &host));
        walker->Show(true);
        CloseRefuser refuser;
        dialog.installEventFilter(&refuser);
        QVERIFY(!walker->DestroyWindow());
        QCOMPARE(m_port.Requests().back().text,
                 std::string("Unable to destroy the Coupling Region Walker dialog window"));
        QVERIFY(dialog.isVisible());
        dialog.removeEventFilter(&refuser);
        QVERIFY(walker->DestroyWindow());
        QVERIFY(!dialog.HasWindow());
        QCOMPARE(m_port.Requests().size(), std::size_t{2});
        QCOMPARE(host.closed, 0);
    }

    void theHostMayDestroyTheWindowWhileItCloses() {
        struct DestroyingHost final : ICRWDHost {
            ICouplingRgnWalkerDlg* walker = nullptr;
            bool destroyed = false;
            void OnRegionStep(int32_t) override {}
            void OnNetSelected(int32_t) override {}
            void OnWalkerClosed() override { destroyed = walker->DestroyWindow(); }
        } host;
        CCoupRgnWalkerDlg dialog;
        host.walker = dialog.Access();
        QVERIFY(host.walker->CreateWindow(nullptr, &host));
        host.walker->Show(true);
        QTest::mouseClick(FindControl<QPushButton>(&dialog, CCoupRgnWalkerDlg::kIdClose),
                          Qt::LeftButton);
        QVERIFY(host.destroyed);
        QVERIFY(!dialog.HasWindow());
        QVERIFY(!dialog.isVisible());
        QVERIFY(m_port.Requests().empty());
    }

    // A press on the size grip while the window has no native window (as
    // between a host's re-parenting and the next show) does nothing.
    void sizeGripWithoutANativeWindowIgnoresThePointer() {
        CCoupRgnWalkerDlg dialog;
        dialog.show();
        auto* grip = dialog.findChild<QSizeGrip*>();
        QVERIFY(grip != nullptr);
        dialog.windowHandle()->destroy();
        QTest::mousePress(grip, Qt::LeftButton, {}, grip->rect().center());
        QTest::mouseRelease(grip, Qt::LeftButton, {}, grip->rect().center());
        QCOMPARE(dialog.size(), QSize(1000, 560));
    }

    void crossSectionIsCopiedAndAListOutlivesItsDialog() {
        STACKUPLAYER layer{};
        layer.kind = STACKUP_CONDUCTOR;
        layer.thickness = 35e-6;
        STACKUPARRAY stackup{1, &layer};
        CROSSSECTIONTRACE trace{0, 0.0, 1e-4, CROSSSECTION_ROLE_CURRENT, "CLK"};
        ICRWDCoupledNetsList* kept = nullptr;
        {
            CCoupRgnWalkerDlg dialog;
            dialog.Access()->SetCrossSection(&stackup, &trace, 1);
            trace.width = 9;  // the host's record may change or go
            QCOMPARE(dialog.CrossSectionPane().Data().traces.at(0).width, 1e-4);
            QVERIFY(dialog.Access()->CreateWindow(nullptr, nullptr));
            dialog.Access()->SetReport("Region 1\nDDR_DQ2  0.152 mm");
            auto* report = FindControl<QPlainTextEdit>(&dialog, CCoupRgnWalkerDlg::kIdReport);
            QCOMPARE(report->toPlainText(), u"Region 1\nDDR_DQ2  0.152 mm"_s);
            QVERIFY(report->isReadOnly());
            QVERIFY(report->textInteractionFlags() & Qt::TextSelectableByKeyboard);
            dialog.Access()->SetReport(nullptr);
            QVERIFY(report->toPlainText().isEmpty());
            kept = dialog.Access()->GetNetsList();
            QCOMPARE(kept->AddRef(), 2);
        }
        kept->CopyFrom(kept);  // refills no pane: the dialog took it along
        QCOMPARE(kept->Release(), 0);
    }
};

QTEST_MAIN(CoupRgnWalkerDlgTest)
#include "CoupRgnWalkerDlgTest.moc"
