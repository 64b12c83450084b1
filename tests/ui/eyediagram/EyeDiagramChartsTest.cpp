// The charts of the eye-diagram pages as a host's user sees them: the
// stimulus page's waveform preview follows the fields, the sequence and the
// typed bits; the mask page's drawing follows the mask while it is typed and
// the bit interval set on the other page.

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QTabWidget>
#include <QtTest>
#include <functional>

#include "core/stimulus/SequenceType.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "kvcomctl/kvcomctl.h"
#include "module/KVComCtlFactory.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/SheetRunner.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/chart/ChartControl.h"
#include "ui/shared/ControlIds.h"

namespace {

namespace mask_id = kvcomctl_ids::eye_mask;
namespace stim_id = kvcomctl_ids::eye_stimulus;
using kv::test::Type;
using kv::ui::CChartControl;
using kv::ui::FindControl;

constexpr double kNs = 1e-9;

kv::module::CKVComCtlFactory g_factory;

kv::test::DataPtr NewData() {
    return kv::test::NewData(g_factory);
}

// Runs the sheet on `data` while `act` works it, then cancels it.
void WithSheet(IEyeDiagramDialog& sheet, IEyeDiagramData* data, int flags,
               const std::function<void(QDialog&)>& act) {
    kv::test::WithSheet([&] { return sheet.Edit(data, nullptr, 0, flags, 0, 0); },
                        [&act](QDialog& open) {
                            open.activateWindow();
                            QVERIFY(QTest::qWaitForWindowActive(&open));
                            act(open);
                            open.done(QDialog::Rejected);
                        });
}

CChartControl& ChartIn(QDialog& sheet, const char* area) {
    return *sheet.findChild<QWidget*>(QString::fromLatin1(area))->findChild<CChartControl*>();
}

// The points of the curve the legend lists under `name`; empty without one.
std::vector<VEC2> CurveNamed(const CChartControl& chart, std::string_view name) {
    for (const kv::Curve& curve : chart.GetChart().Curves()) {
        if (chart.GetChart().CurveName(curve.m_identifier) == name) {
            return curve.m_points;
        }
    }
    return {};
}

// Types into a field key by key, without finishing the edit.
void KeyIn(QDialog& sheet, int controlId, const QString& text) {
    auto* field = FindControl<QLineEdit>(&sheet, controlId);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
}

}  // namespace

class EyeDiagramChartsTest : public QObject {
    Q_OBJECT

    IEyeDiagramDialog* m_sheet = nullptr;
    kv::test::RecordingMessagePort m_messages;
    std::unique_ptr<kv::ScopedMessagePort> m_messageScope;

private slots:
    void init() {
        m_sheet = g_factory.CreateEyeDiagramSheet();
        QVERIFY(m_sheet != nullptr);
        m_messages = {};
        m_messageScope = std::make_unique<kv::ScopedMessagePort>(m_messages);
    }
    void cleanup() {
        m_messageScope.reset();
        g_factory.Destroy(m_sheet);
    }

    void previewFollowsTypedBitsAndTheStimulusFields() {
        auto data = NewData();
        data->SetSeqType(kv::seq::kCustom);
        data->SetBits(nullptr, 0);
        data->SetPeriod(2.0);
        data->SetCycleCount(1);
        data->SetDutyCycle(50.0);
        std::vector<std::vector<VEC2>> seen;
        WithSheet(*m_sheet, data.get(), 0x01, [&](QDialog& sheet) {
            const CChartControl& chart = ChartIn(sheet, "waveformPreviewArea");
            QCOMPARE(chart.GetChart().Axis(kv::ChartAxis::X).unit, std::string("s"));
            QCOMPARE(chart.GetChart().Axis(kv::ChartAxis::Y).unit, std::string("V"));
            const auto record = [&] { seen.push_back(CurveNamed(chart, "Stimulus")); };
            record();
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, stim_id::kPattern);
            pattern->setFocus();
            QTest::keyClicks(pattern, "0110");
            record();
            Type(sheet, stim_id::kBitInterval, "4");
            record();
            Type(sheet, stim_id::kCycles, "3");
            record();
            auto* sequence = FindControl<QComboBox>(&sheet, stim_id::kSequence);
            sequence->setCurrentIndex(sequence->findData(kv::seq::kToggling));
            Type(sheet, stim_id::kDutyCycle, "25");
            record();
        });
        QCOMPARE(m_messages.Requests().size(), std::size_t{0});
        QCOMPARE(seen.size(), std::size_t{5});
        QVERIFY(seen[0].empty());
        // 0110 at 2 ns: corners at 0, 2, 2.2, 6, 6.2, 8 ns, 0 V low and 5 V high.
        QCOMPARE(seen[1].size(), std::size_t{6});
        QCOMPARE(seen[1][2].y, 5.0);
        QVERIFY(qAbs(seen[1][2].x / kNs - 2.2) < 1e-9);
        QVERIFY(qAbs(seen[1].back().x / kNs - 8.0) < 1e-9);
        QVERIFY(qAbs(seen[2][1].x / kNs - 4.0) < 1e-9);
        QVERIFY(qAbs(seen[2].back().x / kNs - 16.0) < 1e-9);
        QVERIFY(qAbs(seen[3].back().x / kNs - 48.0) < 1e-9);
        // Toggling: high for a quarter of each 4 ns interval, three cycles.
        QCOMPARE(seen[4].size(), std::size_t{12});
        QCOMPARE(seen[4][0].y, 5.0);
        QVERIFY(qAbs(seen[4][1].x / kNs - 1.0) < 1e-9);
        QVERIFY(qAbs(seen[4].back().x / kNs - 12.0) < 1e-9);
    }

    void maskDrawingFollowsTypedValuesAndTheBitInterval() {
        auto data = NewData();
        data->SetPeriod(1.0);
        std::vector<std::vector<VEC2>> opening;
        std::vector<VEC2> limit;
        WithSheet(*m_sheet, data.get(), 0x03, [&](QDialog& sheet) {
            auto* tabs = sheet.findChild<QTabWidget*>(QStringLiteral("pages"));
            tabs->setCurrentIndex(1);
            const CChartControl& chart = ChartIn(sheet, "maskDrawingArea");
            QCOMPARE(chart.GetChart().Axis(kv::ChartAxis::X).unit, std::string("s"));
            const auto record = [&] { opening.push_back(CurveNamed(chart, "Mask opening")); };
            record();
            limit = CurveNamed(chart, "Level limits");
            KeyIn(sheet, mask_id::kCross1Max, "15");  // not yet committed
            record();
            KeyIn(sheet, mask_id::kOffsetVolt, "1");
            record();
            // A longer bit interval on the stimulus page widens the mask.
            tabs->setCurrentIndex(0);
            Type(sheet, stim_id::kBitInterval, "2");
            tabs->setCurrentIndex(1);
            record();
        });
        QCOMPARE(opening.size(), std::size_t{4});
        QCOMPARE(opening[0].size(), std::size_t{7});
        QVERIFY(qAbs(opening[0][0].x / kNs - 0.1) < 1e-9);
        QCOMPARE(opening[0][0].y, 2.5);
        QCOMPARE(limit.size(), std::size_t{2});
        QCOMPARE(limit[0].y, 5.5);
        QVERIFY(qAbs(limit[1].x / kNs - 1.1) < 1e-9);
        QVERIFY(qAbs(opening[1][0].x / kNs - 0.15) < 1e-9);
        QCOMPARE(opening[2][0].y, 3.5);
        QVERIFY(qAbs(opening[3][3].x / kNs - 2.0) < 1e-9);
    }
};

QTEST_MAIN(EyeDiagramChartsTest)
#include "EyeDiagramChartsTest.moc"
