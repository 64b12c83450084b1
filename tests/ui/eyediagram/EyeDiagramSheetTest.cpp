// The eye-diagram sheet as a host drives it through the factory: which pages
// each flag combination shows, the page flags, hook and help, write-back on OK
// only, and each page's controls and charts reaching its model and showing
// what it holds. The models' rules are tested without a window
// (tests/core/eyediagram). Every modal is answered by the test.

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

#include "core/bitpattern/PatternPainters.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/SequenceType.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "module/KVComCtlFactory.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/ScriptedFileChooser.h"
#include "tests/support/SheetRunner.h"
#include "tests/support/TestSupport.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/chart/ChartControl.h"
#include "ui/eyediagram/EyeDiagramSheet.h"
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
std::vector<VEC2> CurveNamed(QDialog& sheet, const char* area, std::string_view name) {
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

bool AtNs(double seconds, double nanoseconds) {
    return qAbs(seconds / 1e-9 - nanoseconds) < 1e-9;
}

// Types into a field key by key, without finishing the edit.
void KeyIn(QDialog& sheet, int controlId, const QString& text) {
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

    // Every control of the editing page shows what the model holds, for every
    // kind, and the user's doings reach it.
    void editingPageShowsItsModel() {
        auto data = kv::test::NewData(g_factory);
        m_messages.QueueAnswer(kv::MessageAnswer::Ok);  // the cancel question
        bool ran = false;
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            ran = true;
            const kv::StimulusEditPageModel& model =
                sheet.findChild<kv::ui::CVelStimulusPage*>()->Model();
            auto* sequence = FindControl<QComboBox>(&sheet, id::kSequence);
            auto* pattern = FindControl<CBitPatternCtrl>(&sheet, id::kPattern);
            for (int position = 1; position <= kv::stimulus_edit::kListPositions; ++position) {
                sequence->setCurrentIndex(position - 1);
                QCOMPARE(model.Position(), position);
                for (const int controlId : kv::StimulusEditPageModel::ControlsWithVisibility()) {
                    QVERIFY2(
                        FindControl<QWidget>(&sheet, controlId)->isHidden() !=
                            model.IsShown(controlId),
                        qPrintable(u"control %1 at position %2"_s.arg(controlId).arg(position)));
                }
                for (const int label :
                     {id::kPeriodLabel, id::kRepetitionsLabel, id::kLevelLabel, id::kJitterLabel}) {
                    QCOMPARE(FindControl<QLabel>(&sheet, label)->text().toStdString(),
                             std::string(model.Label(label)));
                }
                for (const int list : {id::kLevel, id::kJitterUnit}) {
                    QCOMPARE(FindControl<QComboBox>(&sheet, list)->itemText(0).toStdString(),
                             std::string(model.ItemText(list, 0)));
                }
                QCOMPARE(pattern->IsReadOnly(), model.PatternReadOnly());
                QCOMPARE(BitsOf(pattern->m_bits.Data()), BitsOf(model.Bits()));
            }
            FindControl<QComboBox>(&sheet, id::kLevel)->setCurrentIndex(1);
            QCOMPARE(model.LevelIndex(), 1);
            FindControl<QComboBox>(&sheet, id::kDistribution)->setCurrentIndex(1);
            QCOMPARE(model.DistributionIndex(), 1);
            FindControl<QComboBox>(&sheet, id::kJitterUnit)->setCurrentIndex(1);
            QCOMPARE(model.JitterUnitIndex(), 1);
            FindControl<QCheckBox>(&sheet, id::kRepeatJitter)->setChecked(false);
            QVERIFY(!model.RepeatJitter());
            // Fields and spin boxes show the model's texts and refuse through it.
            sequence->setCurrentIndex(0);  // Oscillator
            Type(sheet, id::kHighTime, "1.32");
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kDuty)->text(), u"40.000"_s);
            FindControl<QSpinBox>(&sheet, id::kDutySpin)->setValue(30);
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kHighTime)->text(), u"0.990"_s);
            m_messages.Clear();
            Type(sheet, id::kPeriod, "0");
            QCOMPARE(m_messages.Requests().size(), std::size_t{1});
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kPeriod)->text(), u"0"_s);
            Type(sheet, id::kPeriod, "3.3");
            // Repetitions reach the Pulse painter.
            sequence->setCurrentIndex(2);
            FindControl<QSpinBox>(&sheet, id::kRepetitionsSpin)->setValue(7);
            const auto* painter =
                dynamic_cast<const kv::CRepetitionPaint*>(&pattern->Editor().Painter());
            QVERIFY(painter != nullptr);
            QCOMPARE(painter->Repetitions(), 7);
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QVERIFY(ran);
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
        auto data = kv::test::NewData(g_factory);
        data->SetSeqType(4);
        m_messages.QueueAnswer(kv::MessageAnswer::No);  // the apply question
        QVERIFY(Edit(data.get(), 0x80, [&](QDialog& sheet) {
            choose("good.bit");
            Click(sheet, id::kLoad);
            QCOMPARE(BitsOf(FindControl<CBitPatternCtrl>(&sheet, id::kPattern)->m_bits.Data()),
                     u"101"_s);
            const QString saved = choose("saved.bit");
            Click(sheet, id::kSaveBits);
            QCOMPARE(ReadText(saved.toStdString()), std::string("101"));
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kFileName)->text(), saved);

            auto* names = FindControl<QComboBox>(&sheet, id::kNameList);
            auto* nameEdit = FindControl<QLineEdit>(&sheet, id::kNameEdit);
            Click(sheet, id::kNew);
            QVERIFY(!nameEdit->isHidden() && names->isHidden());
            nameEdit->setText("clock");
            Click(sheet, id::kSave);
            QCOMPARE(names->currentText(), u"clock"_s);
            Type(sheet, id::kPeriod, "7");
            emit names->activated(names->findText("clock"));
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kPeriod)->text(), u"3.300"_s);
            Click(sheet, id::kRemove);
            QCOMPARE(names->count(), 0);
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QCOMPARE(BitsOf(*data), u"101"_s);
        QCOMPARE(m_messages.Requests().size(), std::size_t{1});
    }

    void maskPageWiring() {
        auto data = kv::test::NewData(g_factory);
        EYEMASK mask = kv::DefaultEyeMask();
        mask.ScaleTime = 3.0;
        data->SetMask(mask);
        // Made but not shown: nothing is checked.
        QVERIFY(!Edit(data.get(), 0x01,
                      [&](QDialog& sheet) { Click(sheet, kvcomctl_ids::kSheetCancel); }));
        QVERIFY(m_messages.Requests().empty());
        QVERIFY(Edit(data.get(), 0x02, [&](QDialog& sheet) {
            QCOMPARE(m_messages.Requests().size(), std::size_t{1});  // the mask was replaced
            QCOMPARE(FindControl<QLineEdit>(&sheet, mask_id::kScaleTime)->text(), u"100.000"_s);
            Type(sheet, mask_id::kCross, "4.5");  // refused: not below the top level
            QCOMPARE(FindControl<QLineEdit>(&sheet, mask_id::kCross)->text(), u"4.5"_s);
            QCOMPARE(m_messages.Requests().size(), std::size_t{2});
            Click(sheet, kvcomctl_ids::kSheetOk);  // the refused text keeps the sheet open
            QVERIFY(sheet.isVisible());
            Type(sheet, mask_id::kCross, "2.0");
            FindControl<QLineEdit>(&sheet, mask_id::kName)->setText("Low cross");
            Click(sheet, mask_id::kSaveAs);
            auto* library = FindControl<QComboBox>(&sheet, mask_id::kLibrary);
            QCOMPARE(library->currentText(), u"Low cross"_s);
            Type(sheet, mask_id::kCross, "2.25");
            emit library->activated(0);  // the question: Yes keeps the change
            QCOMPARE(FindControl<QLineEdit>(&sheet, mask_id::kCross)->text(), u"2.250"_s);
            Click(sheet, mask_id::kDelete);
            QCOMPARE(library->count(), 0);
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QCOMPARE(data->GetMask()->PCross, 2.25);
        QCOMPARE(data->GetMask()->ScaleTime, 1.0);
    }

    void eyeStimulusPageWiring() {
        auto data = kv::test::NewData(g_factory);
        QVERIFY(Edit(data.get(), 0x03, [&](QDialog& sheet) {
            Type(sheet, stim_id::kCycles, "2049");  // refused, and left as typed
            QCOMPARE(FindControl<QLineEdit>(&sheet, stim_id::kCycles)->text(), u"2049"_s);
            Type(sheet, stim_id::kCycles, "2");
            auto* maximum = FindControl<QLineEdit>(&sheet, stim_id::kMaxJitter);
            maximum->setText("0.5");  // typed, not yet committed
            Pages(sheet).setCurrentIndex(1);
            Pages(sheet).setCurrentIndex(0);
            FindControl<QRadioButton>(&sheet, stim_id::kAdvancedJitter)->setChecked(true);
            auto* uniform = FindControl<QCheckBox>(&sheet, stim_id::kComponentEnabled + 1);
            auto* magnitude = FindControl<QLineEdit>(&sheet, stim_id::kComponentMagnitude + 1);
            QVERIFY(!maximum->isEnabled() && uniform->isEnabled() && !magnitude->isEnabled());
            uniform->setChecked(true);
            auto* unit = FindControl<QComboBox>(&sheet, stim_id::kComponentUnit + 1);
            unit->setCurrentIndex(1);  // ns
            Type(sheet, stim_id::kComponentMagnitude + 1, "1.5");
            unit->setCurrentIndex(0);
            QCOMPARE(magnitude->text(), u"45.455"_s);
            auto* sequence = FindControl<QComboBox>(&sheet, stim_id::kSequence);
            auto* pattern = FindControl<CBitPatternCtrl>(&sheet, stim_id::kPattern);
            sequence->setCurrentIndex(1);  // 8B/10B
            QCOMPARE(pattern->m_bits.GetSize(), 20);
            sequence->setCurrentIndex(0);  // PRBS
            FindControl<QSpinBox>(&sheet, stim_id::kPolyDegree)->setValue(3);
            QCOMPARE(pattern->m_bits.GetSize(), 7);
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QCOMPARE(m_messages.Requests().size(), std::size_t{1});
        QCOMPARE(data->GetCycleCount(), 2);
        QCOMPARE(data->GetMaxJitter(), 0.5);
        QVERIFY(data->GetAdvancedJitter() && data->GetAddJitter(1));
        QCOMPARE(data->GetUniformMag(), 1.5 * 100 / 3.3);
        QCOMPARE(data->GetBitCount(), 7);
    }

    // The stimulus page's waveform preview follows the typed bits and the fields.
    void previewFollowsTypedBitsAndTheStimulusFields() {
        auto data = kv::test::NewData(g_factory);
        data->SetSeqType(kv::seq::kCustom);
        data->SetBits(nullptr, 0);
        data->SetPeriod(2.0);
        data->SetCycleCount(1);
        data->SetDutyCycle(50.0);
        std::vector<std::vector<VEC2>> seen;
        QVERIFY(!Edit(data.get(), 0x01, [&](QDialog& sheet) {
            const auto record = [&] {
                seen.push_back(CurveNamed(sheet, "waveformPreviewArea", "Stimulus"));
            };
            record();
            auto* pattern = FindControl<CBitPatternCtrl>(&sheet, stim_id::kPattern);
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
            sheet.done(QDialog::Rejected);
        }));
        QCOMPARE(seen.size(), std::size_t{5});
        QVERIFY(seen[0].empty());
        QVERIFY(AtNs(seen[1].back().x, 8.0));   // four bits of 2 ns
        QVERIFY(AtNs(seen[2].back().x, 16.0));  // of 4 ns
        QVERIFY(AtNs(seen[3].back().x, 48.0));  // three cycles
        QVERIFY(AtNs(seen[4][1].x, 1.0));       // toggling: high for a quarter of 4 ns
    }

    // The mask page's drawing follows the mask while it is typed and the bit
    // interval set on the stimulus page.
    void maskDrawingFollowsTypedValuesAndTheBitInterval() {
        auto data = kv::test::NewData(g_factory);
        data->SetPeriod(1.0);
        std::vector<std::vector<VEC2>> opening;
        QVERIFY(!Edit(data.get(), 0x03, [&](QDialog& sheet) {
            const auto record = [&] {
                opening.push_back(CurveNamed(sheet, "maskDrawingArea", "Mask opening"));
            };
            Pages(sheet).setCurrentIndex(1);
            record();
            QCOMPARE(CurveNamed(sheet, "maskDrawingArea", "Level limits").size(), std::size_t{2});
            KeyIn(sheet, mask_id::kCross1Max, "15");  // not yet committed
            record();
            KeyIn(sheet, mask_id::kOffsetVolt, "1");
            record();
            Pages(sheet).setCurrentIndex(0);
            Type(sheet, stim_id::kBitInterval, "2");
            Pages(sheet).setCurrentIndex(1);
            record();
            sheet.done(QDialog::Rejected);
        }));
        QCOMPARE(opening.size(), std::size_t{4});
        QVERIFY(AtNs(opening[0][0].x, 0.1));
        QCOMPARE(opening[0][0].y, 2.5);
        QVERIFY(AtNs(opening[1][0].x, 0.15));
        QCOMPARE(opening[2][0].y, 3.5);
        QVERIFY(AtNs(opening[3][3].x, 2.0));
    }
};

QTEST_MAIN(EyeDiagramSheetTest)
#include "EyeDiagramSheetTest.moc"
