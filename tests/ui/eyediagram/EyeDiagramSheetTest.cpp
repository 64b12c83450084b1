// The eye-diagram sheet as a host drives it through the factory: which pages
// each flag combination shows, the page flags, hook and help, write-back on OK
// only and the pages working together; then each page on its own, its
// controls and charts reaching its model and showing what it holds. The
// models' rules are tested without a window (tests/core/eyediagram). Every
// modal is answered by the test.

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <memory>

#include "core/bitpattern/PatternPainters.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "module/KVComCtlFactory.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/ScriptedFileChooser.h"
#include "tests/support/SheetRunner.h"
#include "tests/support/TestSupport.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/chart/ChartControl.h"
#include "ui/eyediagram/EyeDiagramMaskPage.h"
#include "ui/eyediagram/EyeDiagramSheet.h"
#include "ui/eyediagram/EyeDiagramStimulusPage.h"
#include "ui/eyediagram/VelStimulusPage.h"

using namespace Qt::StringLiterals;

namespace {

namespace id = kvcomctl_ids::stimulus_edit;
namespace mask_id = kvcomctl_ids::eye_mask;
namespace stim_id = kvcomctl_ids::eye_stimulus;
using kv::test::Click;
using kv::test::Type;
using kv::ui::CBitPatternCtrl;
using kv::ui::CChartControl;
using kv::ui::FindControl;

kv::module::CKVComCtlFactory g_factory;

struct HookAndHelp final : IEyeDiagramEditHook, IEyeDiagramHelpHandler {
    void OnEdit(IEyeDiagramData* data) override { edited = data; }
    void OnHelp(QWidget* sheet, int page, int reserved) override {
        helped.push_back({sheet, page, reserved});
    }
    struct Help {
        QWidget* sheet;
        int page;
        int reserved;
    };
    IEyeDiagramData* edited = nullptr;
    std::vector<Help> helped;
};

template <class Bits>
QString BitsOf(const Bits& bits) {
    QString text;
    for (const uint8_t bit : bits) {
        text += bit != 0 ? '1' : '0';
    }
    return text;
}

QString BitsOf(IEyeDiagramData& data) {
    QString bits;
    for (int i = 0; i < data.GetBitCount(); ++i) {
        bits += data.GetBit(i) ? '1' : '0';
    }
    return bits;
}

QTabWidget& Pages(QDialog& sheet) {
    return *sheet.findChild<QTabWidget*>(u"pages"_s);
}

// The points of the curve the legend lists under `name`; empty without one.
std::vector<VEC2> CurveNamed(QWidget& sheet, const char* area, std::string_view name) {
    const kv::Chart& chart = sheet.findChild<QWidget*>(QString::fromLatin1(area))
                                 ->findChild<CChartControl*>()
                                 ->GetChart();
    for (const kv::Curve& curve : chart.Curves()) {
        if (chart.CurveName(curve.m_identifier) == name) {
            return curve.m_points;
        }
    }
    return {};
}

QString TextOf(QWidget& page, int controlId) {
    return FindControl<QLineEdit>(&page, controlId)->text();
}

bool AtNs(double seconds, double nanoseconds) {
    return qAbs(seconds / 1e-9 - nanoseconds) < 1e-9;
}

// Types into a field key by key, without finishing the edit.
void KeyIn(QWidget& sheet, int controlId, const QString& text) {
    auto* field = FindControl<QLineEdit>(&sheet, controlId);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
}

}  // namespace

class EyeDiagramSheetTest : public QObject {
    Q_OBJECT

    IEyeDiagramDialog* m_sheet = nullptr;
    kv::test::RecordingMessagePort m_messages;
    std::unique_ptr<kv::ScopedMessagePort> m_messageScope;

    // Runs the sheet on `data` while `act` works it, active as under a user's hands.
    bool Edit(IEyeDiagramData* data, int flags, const std::function<void(QDialog&)>& act,
              int startPage = 0) {
        return kv::test::WithSheet(
            [&] { return m_sheet->Edit(data, nullptr, startPage, flags, 0, 0); },
            [&act](QDialog& open) {
                open.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&open));
                act(open);
            });
    }

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
        g_factory.Destroy(static_cast<IEyeDiagramDialog*>(nullptr));
    }

    void flagsChooseThePages_data() {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QStringList>("pages");
        QTest::addColumn<QString>("title");
        const QString configure = u"Configure Eye Diagram"_s;
        const QString editStimulus = u"Edit Stimulus"_s;
        QTest::newRow("mask only") << 0x02 << QStringList{"page596"} << configure;
        QTest::newRow("stimulus only") << 0x01 << QStringList{"page595"} << configure;
        QTest::newRow("both") << 0x03 << QStringList{"page595", "page596"} << configure;
        QTest::newRow("edit title") << 0x10 << QStringList{"page595"} << editStimulus;
        QTest::newRow("edit title and mask")
            << 0x12 << QStringList{"page595", "page596"} << editStimulus;
        QTest::newRow("editing page wins") << 0x83 << QStringList{"page4018"} << editStimulus;
    }
    void flagsChooseThePages() {
        QFETCH(int, flags);
        QFETCH(QStringList, pages);
        QFETCH(QString, title);
        auto data = kv::test::NewData(g_factory);
        QStringList shown;
        QString shownTitle;
        QVERIFY(!Edit(data.get(), flags, [&](QDialog& sheet) {
            for (int i = 0; i < Pages(sheet).count(); ++i) {
                shown << Pages(sheet).widget(i)->objectName();
            }
            shownTitle = sheet.windowTitle();
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QCOMPARE(shown, pages);
        QCOMPARE(shownTitle, title);
        QVERIFY(m_messages.Requests().empty());
    }

    void pageFlagsStartPageAndLastPage() {
        QCOMPARE(m_sheet->GetLastPageIndex(), 1);
        QCOMPARE(m_sheet->GetLastPageFlag(), 2);
        auto data = kv::test::NewData(g_factory);
        auto* sheet = dynamic_cast<kv::ui::CEyeDiagramSheet*>(m_sheet);
        int startIndex = -1;
        QWidget host;  // the sheet sits over the host's window only while it runs
        host.show();
        QWidget* parentWhileOpen = nullptr;
        const auto editWithFlag = [&](int pageFlag, int switchTo) {
            return kv::test::WithSheet(
                [&] { return m_sheet->EditWithPageFlag(data.get(), &host, pageFlag, 0x03, 0, 0); },
                [&](QDialog& open) {
                    parentWhileOpen = open.parentWidget();
                    startIndex = Pages(open).currentIndex();
                    Pages(open).setCurrentIndex(switchTo);
                    Click(open, kvcomctl_ids::kSheetOk);
                });
        };
        QVERIFY(editWithFlag(3, 0));
        QCOMPARE(parentWhileOpen, &host);
        QCOMPARE(sheet->parentWidget(), nullptr);
        QCOMPARE(startIndex, 0);
        QCOMPARE(sheet->PageFlagUnknown(), 1);
        QCOMPARE(m_sheet->GetLastPageIndex(), 0);
        QCOMPARE(m_sheet->GetLastPageFlag(), 1);
        QVERIFY(editWithFlag(2, 1));
        QCOMPARE(startIndex, 1);
        QCOMPARE(sheet->PageFlagUnknown(), 0);
        QCOMPARE(m_sheet->GetLastPageFlag(), 2);
        // A start page the sheet does not have opens the first.
        QVERIFY(editWithFlag(4, 0));
        QCOMPARE(startIndex, 0);
    }

    void hookAndHelpSeeTheCallersData() {
        HookAndHelp host;
        QCOMPARE(m_sheet->SetEditHook(&host), &host);
        QCOMPARE(m_sheet->GetEditHook(), &host);
        QCOMPARE(m_sheet->SetHelpHandler(&host), &host);
        bool opened = false;
        QVERIFY(!Edit(nullptr, 0x03, [&](QDialog&) { opened = true; }));
        QVERIFY(!opened);
        QCOMPARE(host.edited, nullptr);
        auto data = kv::test::NewData(g_factory);
        QWidget* helpedSheet = nullptr;
        QVERIFY(!Edit(
            data.get(), 0x03,
            [&](QDialog& sheet) {
                helpedSheet = &sheet;
                Click(sheet, kvcomctl_ids::kSheetHelp);
                QVERIFY(sheet.isVisible());  // help leaves the sheet open
                Click(sheet, kvcomctl_ids::kSheetCancel);
            },
            1));
        QCOMPARE(host.edited, data.get());
        QCOMPARE(host.helped.size(), std::size_t{1});
        QCOMPARE(host.helped[0].sheet, helpedSheet);
        QCOMPARE(host.helped[0].page, 1);
        QCOMPARE(host.helped[0].reserved, 0);
        m_sheet->SetEditHook(nullptr);
        m_sheet->SetHelpHandler(nullptr);
    }

    // The questions are the model's; here Cancel to them keeps the sheet open,
    // and what was typed, bits included, reaches the caller only on OK.
    void editedStimulusReachesTheCallerOnOkOnly() {
        auto data = kv::test::NewData(g_factory);
        data->SetSeqType(4);
        data->SetBits(nullptr, 0);
        m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
        m_messages.QueueAnswer(kv::MessageAnswer::No);
        bool stayed = false;
        QVERIFY(Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* pattern = FindControl<CBitPatternCtrl>(&sheet, id::kPattern);
            pattern->setFocus();
            QTest::keyClicks(pattern, "0110");
            Type(sheet, id::kPeriod, "2.5");
            Click(sheet, kvcomctl_ids::kSheetOk);
            stayed = sheet.isVisible();
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QVERIFY(stayed);
        QCOMPARE(BitsOf(*data), u"0110"_s);
        QCOMPARE(data->GetPeriod(), 2.5);

        m_messages.Clear();
        m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
        m_messages.QueueAnswer(kv::MessageAnswer::Ok);
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            FindControl<QComboBox>(&sheet, id::kSequence)->setCurrentIndex(0);
            Type(sheet, id::kPeriod, "1.5");
            Click(sheet, kvcomctl_ids::kSheetCancel);
            stayed = sheet.isVisible();
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QVERIFY(stayed);
        QCOMPARE(m_messages.Requests().size(), std::size_t{2});
        QCOMPARE(data->GetPeriod(), 2.5);
        QCOMPARE(BitsOf(*data), u"0110"_s);
    }

    // Leaving a page commits what was typed on it, a page that refuses to be
    // left keeps the sheet open, and the mask page draws for the bit interval
    // set on the stimulus page.
    void pagesShareTheStimulusAcrossTabs() {
        auto data = kv::test::NewData(g_factory);
        data->SetPeriod(1.0);
        std::vector<VEC2> opening;
        bool stayed = false;
        QVERIFY(Edit(data.get(), 0x03, [&](QDialog& sheet) {
            Type(sheet, stim_id::kBitInterval, "2");
            FindControl<QLineEdit>(&sheet, stim_id::kMaxJitter)->setText("0.5");  // not committed
            Pages(sheet).setCurrentIndex(1);
            opening = CurveNamed(sheet, "maskDrawingArea", "Mask opening");
            Type(sheet, mask_id::kCross, "4.5");  // refused: not below the top level
            Click(sheet, kvcomctl_ids::kSheetOk);
            stayed = sheet.isVisible();
            Type(sheet, mask_id::kCross, "2.5");
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QVERIFY(stayed);
        QVERIFY(AtNs(opening.at(3).x, 2.0));
        QCOMPARE(data->GetPeriod(), 2.0);
        QCOMPARE(data->GetMaxJitter(), 0.5);
    }

    // Every control of the editing page shows what its model holds, for every
    // kind, and the user's doings reach the model.
    void editingPageShowsItsModel() {
        kv::CStimulusData data;
        kv::ui::CVelStimulusPage page(data, 0);
        page.show();
        const kv::StimulusEditPageModel& model = page.Model();
        auto* sequence = FindControl<QComboBox>(&page, id::kSequence);
        auto* pattern = FindControl<CBitPatternCtrl>(&page, id::kPattern);
        for (int position = 1; position <= kv::stimulus_edit::kListPositions; ++position) {
            sequence->setCurrentIndex(position - 1);
            QCOMPARE(model.Position(), position);
            for (const int controlId : kv::StimulusEditPageModel::ControlsWithVisibility()) {
                QVERIFY2(
                    FindControl<QWidget>(&page, controlId)->isHidden() != model.IsShown(controlId),
                    qPrintable(u"control %1 at position %2"_s.arg(controlId).arg(position)));
            }
            for (const int label :
                 {id::kPeriodLabel, id::kRepetitionsLabel, id::kLevelLabel, id::kJitterLabel}) {
                QCOMPARE(FindControl<QLabel>(&page, label)->text().toStdString(),
                         std::string(model.Label(label)));
            }
            for (const int list : {id::kLevel, id::kJitterUnit}) {
                QCOMPARE(FindControl<QComboBox>(&page, list)->itemText(0).toStdString(),
                         std::string(model.ItemText(list, 0)));
            }
            QCOMPARE(pattern->IsReadOnly(), model.PatternReadOnly());
            QCOMPARE(BitsOf(pattern->m_bits.Data()), BitsOf(model.Bits()));
        }
        FindControl<QComboBox>(&page, id::kLevel)->setCurrentIndex(1);
        QCOMPARE(model.LevelIndex(), 1);
        FindControl<QComboBox>(&page, id::kDistribution)->setCurrentIndex(1);
        QCOMPARE(model.DistributionIndex(), 1);
        FindControl<QComboBox>(&page, id::kJitterUnit)->setCurrentIndex(1);
        QCOMPARE(model.JitterUnitIndex(), 1);
        FindControl<QCheckBox>(&page, id::kRepeatJitter)->setChecked(false);
        QVERIFY(!model.RepeatJitter());
        // Fields and spin boxes show the model's texts and refuse through it.
        sequence->setCurrentIndex(0);  // Oscillator
        Type(page, id::kHighTime, "1.32");
        QCOMPARE(TextOf(page, id::kDuty), u"40.000"_s);
        FindControl<QSpinBox>(&page, id::kDutySpin)->setValue(30);
        QCOMPARE(TextOf(page, id::kHighTime), u"0.990"_s);
        Type(page, id::kPeriod, "0");  // refused, and left as typed
        QCOMPARE(m_messages.Requests().size(), std::size_t{1});
        QCOMPARE(TextOf(page, id::kPeriod), u"0"_s);
        QVERIFY(!page.OnKillActive());
        Type(page, id::kPeriod, "3.3");
        // Repetitions reach the Pulse painter.
        sequence->setCurrentIndex(2);
        FindControl<QSpinBox>(&page, id::kRepetitionsSpin)->setValue(7);
        const auto* painter =
            dynamic_cast<const kv::CRepetitionPaint*>(&pattern->Editor().Painter());
        QVERIFY(painter != nullptr);
        QCOMPARE(painter->Repetitions(), 7);
    }

    void editingPageFilesAndNames() {
        QTemporaryDir folder;
        WriteText(folder.filePath("good.bit").toStdString(), "1, 0; 1\r\n");
        kv::test::ScriptedFileChooser chooser;
        const kv::ScopedFileChooser chooserScope(chooser);
        const auto choose = [&](const char* name) {
            chooser.answer = kv::ChosenFile{folder.path().toStdString(), name};
            return folder.filePath(QString::fromLatin1(name));
        };
        kv::CStimulusData data;
        data.SetSeqType(4);
        kv::ui::CVelStimulusPage page(data, 0);
        page.show();
        choose("good.bit");
        Click(page, id::kLoad);
        QCOMPARE(BitsOf(FindControl<CBitPatternCtrl>(&page, id::kPattern)->m_bits.Data()),
                 u"101"_s);
        const QString saved = choose("saved.bit");
        Click(page, id::kSaveBits);
        QCOMPARE(ReadText(saved.toStdString()), std::string("101"));
        QCOMPARE(TextOf(page, id::kFileName), saved);

        auto* names = FindControl<QComboBox>(&page, id::kNameList);
        auto* nameEdit = FindControl<QLineEdit>(&page, id::kNameEdit);
        Click(page, id::kNew);
        QVERIFY(!nameEdit->isHidden() && names->isHidden());
        nameEdit->setText("clock");
        Click(page, id::kSave);
        QCOMPARE(names->currentText(), u"clock"_s);
        Type(page, id::kPeriod, "7");
        emit names->activated(names->findText("clock"));
        QCOMPARE(TextOf(page, id::kPeriod), u"3.300"_s);
        Click(page, id::kRemove);
        QCOMPARE(names->count(), 0);
        m_messages.QueueAnswer(kv::MessageAnswer::No);  // the apply question
        QVERIFY(page.OnApply());
        QCOMPARE(BitsOf(static_cast<IEyeDiagramData&>(data)), u"101"_s);
    }

    void maskPageWiring() {
        kv::CStimulusData data;
        data.SetPeriod(1.0);
        EYEMASK mask = kv::DefaultEyeMask();
        mask.ScaleTime = 3.0;
        data.SetMask(mask);
        kv::ui::CEyeDiagramMaskPage page(data);
        QVERIFY(m_messages.Requests().empty());  // made but not shown: nothing is checked
        page.show();
        QCOMPARE(m_messages.Requests().size(), std::size_t{1});  // the mask was replaced
        QCOMPARE(TextOf(page, mask_id::kScaleTime), u"100.000"_s);
        // The drawing follows a value while it is typed.
        const auto opening = [&] { return CurveNamed(page, "maskDrawingArea", "Mask opening"); };
        QVERIFY(AtNs(opening().at(0).x, 0.1));
        QCOMPARE(CurveNamed(page, "maskDrawingArea", "Level limits").size(), std::size_t{2});
        KeyIn(page, mask_id::kCross1Max, "15");
        QVERIFY(AtNs(opening().at(0).x, 0.15));
        Type(page, mask_id::kCross1Max, "10");
        Type(page, mask_id::kCross, "4.5");  // refused, and left as typed
        QCOMPARE(TextOf(page, mask_id::kCross), u"4.5"_s);
        QCOMPARE(m_messages.Requests().size(), std::size_t{2});
        QVERIFY(!page.OnKillActive());
        Type(page, mask_id::kCross, "2.0");
        FindControl<QLineEdit>(&page, mask_id::kName)->setText("Low cross");
        Click(page, mask_id::kSaveAs);
        auto* library = FindControl<QComboBox>(&page, mask_id::kLibrary);
        QCOMPARE(library->currentText(), u"Low cross"_s);
        Type(page, mask_id::kCross, "2.25");
        emit library->activated(0);  // the question: Yes keeps the change
        QCOMPARE(TextOf(page, mask_id::kCross), u"2.250"_s);
        Click(page, mask_id::kDelete);
        QCOMPARE(library->count(), 0);
        QVERIFY(page.OnKillActive() && page.OnApply());
        QCOMPARE(data.GetMask()->PCross, 2.25);
        QCOMPARE(data.GetMask()->ScaleTime, 1.0);
    }

    // The eye-diagram stimulus page and its waveform preview, which follows
    // the typed bits and the fields.
    void eyeStimulusPageWiringAndPreview() {
        kv::CStimulusData data;
        data.SetSeqType(kv::seq::kCustom);
        data.SetBits(nullptr, 0);
        data.SetPeriod(2.0);
        data.SetCycleCount(1);
        // Shown on its own, as a host may show it: destroyed below with a field in focus, the
        // page must not hear that field's focus-out after its own members are gone.
        auto owned = std::make_unique<kv::ui::CEyeDiagramStimulusPage>(data, 0, 0);
        auto& page = *owned;
        page.show();
        page.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&page));
        const auto preview = [&] { return CurveNamed(page, "waveformPreviewArea", "Stimulus"); };
        QVERIFY(preview().empty());
        auto* pattern = FindControl<CBitPatternCtrl>(&page, stim_id::kPattern);
        pattern->setFocus();
        QTest::keyClicks(pattern, "0110");
        QVERIFY(AtNs(preview().back().x, 8.0));  // four bits of 2 ns
        Type(page, stim_id::kBitInterval, "4");
        QVERIFY(AtNs(preview().back().x, 16.0));
        Type(page, stim_id::kCycles, "2049");  // refused, and left as typed
        QCOMPARE(TextOf(page, stim_id::kCycles), u"2049"_s);
        Type(page, stim_id::kCycles, "2");
        auto* maximum = FindControl<QLineEdit>(&page, stim_id::kMaxJitter);
        maximum->setText("0.5");  // typed, not yet committed
        QVERIFY(page.OnKillActive());
        FindControl<QRadioButton>(&page, stim_id::kAdvancedJitter)->setChecked(true);
        auto* uniform = FindControl<QCheckBox>(&page, stim_id::kComponentEnabled + 1);
        auto* magnitude = FindControl<QLineEdit>(&page, stim_id::kComponentMagnitude + 1);
        QVERIFY(!maximum->isEnabled() && uniform->isEnabled() && !magnitude->isEnabled());
        uniform->setChecked(true);
        auto* unit = FindControl<QComboBox>(&page, stim_id::kComponentUnit + 1);
        unit->setCurrentIndex(1);  // ns
        Type(page, stim_id::kComponentMagnitude + 1, "1.5");
        unit->setCurrentIndex(0);
        QCOMPARE(magnitude->text(), u"37.500"_s);
        auto* sequence = FindControl<QComboBox>(&page, stim_id::kSequence);
        sequence->setCurrentIndex(sequence->findData(kv::seq::k8b10b));
        QCOMPARE(pattern->m_bits.GetSize(), 20);
        sequence->setCurrentIndex(sequence->findData(kv::seq::kPrbs));
        FindControl<QSpinBox>(&page, stim_id::kPolyDegree)->setValue(3);
        QCOMPARE(pattern->m_bits.GetSize(), 7);
        QVERIFY(page.OnApply());
        QCOMPARE(m_messages.Requests().size(), std::size_t{1});
        QCOMPARE(data.GetCycleCount(), 2);
        QCOMPARE(data.GetMaxJitter(), 0.5);
        QVERIFY(data.GetAdvancedJitter() && data.GetAddJitter(1));
        QCOMPARE(data.GetUniformMag(), 37.5);
        QCOMPARE(data.GetBitCount(), 7);
    }
};

QTEST_MAIN(EyeDiagramSheetTest)
#include "EyeDiagramSheetTest.moc"
