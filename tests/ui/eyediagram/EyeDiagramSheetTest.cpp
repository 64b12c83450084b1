// The eye-diagram sheet as a host drives it through the factory: which pages
// each flag combination shows, the page flags, hooks and help, write-back on
// OK only, and the stimulus editing page's kinds, fields and .bit loads,
// every modal answered by the test.

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>
#include <fstream>
#include <functional>

#include "core/bitpattern/PatternPainters.h"
#include "core/ports/FileChooser.h"
#include "core/stimulus/EyeMask.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "kvcomctl/kvcomctl.h"
#include "module/KVComCtlFactory.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/ScriptedFileChooser.h"
#include "tests/support/SheetRunner.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/eyediagram/EyeDiagramSheet.h"
#include "ui/eyediagram/VelStimulusPage.h"
#include "ui/shared/ControlIds.h"

namespace {

namespace id = kvcomctl_ids::stimulus_edit;
namespace mask_id = kvcomctl_ids::eye_mask;
namespace stim_id = kvcomctl_ids::eye_stimulus;
using kv::test::Click;
using kv::test::Type;
using kv::test::WithSheet;
using kv::ui::FindControl;

kv::module::CKVComCtlFactory g_factory;

struct EditHook final : IEyeDiagramEditHook {
    void OnEdit(IEyeDiagramData* data) override { seen = data; }
    IEyeDiagramData* seen = nullptr;
};

struct HelpHandler final : IEyeDiagramHelpHandler {
    void OnHelp(QWidget* sheet, int page, int reserved) override {
        calls.push_back({sheet, page, reserved});
    }
    struct Call {
        QWidget* sheet;
        int page;
        int reserved;
    };
    std::vector<Call> calls;
};

QStringList PageNames(QDialog& sheet) {
    QStringList names;
    auto* tabs = sheet.findChild<QTabWidget*>(QStringLiteral("pages"));
    for (int i = 0; i < tabs->count(); ++i) {
        names << tabs->widget(i)->objectName();
    }
    return names;
}

QString BitsOf(IEyeDiagramData& data) {
    QString bits;
    for (int i = 0; i < data.GetBitCount(); ++i) {
        bits += data.GetBit(i) ? '1' : '0';
    }
    return bits;
}

QString BitsOf(kv::ui::CBitPatternCtrl& control) {
    QString bits;
    for (const uint8_t bit : control.m_bits.Data()) {
        bits += bit ? '1' : '0';
    }
    return bits;
}

std::string BitsText(const kv::BitVector& bits) {
    std::string text;
    for (const uint8_t bit : bits) {
        text += bit != 0 ? '1' : '0';
    }
    return text;
}

kv::test::DataPtr NewData() {
    return kv::test::NewData(g_factory);
}

}  // namespace

class EyeDiagramSheetTest : public QObject {
    Q_OBJECT

    IEyeDiagramDialog* m_sheet = nullptr;
    kv::test::RecordingMessagePort m_messages;
    std::unique_ptr<kv::ScopedMessagePort> m_messageScope;

    bool Edit(IEyeDiagramData* data, int flags, const std::function<void(QDialog&)>& act,
              int startPage = 0) {
        return WithSheet([&] { return m_sheet->Edit(data, nullptr, startPage, flags, 0, 0); }, act);
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

    void newSheetAndNullData() {
        QCOMPARE(m_sheet->GetLastPageIndex(), 1);
        QCOMPARE(m_sheet->GetLastPageFlag(), 2);
        bool opened = false;
        QVERIFY(!Edit(nullptr, 0x03, [&](QDialog& sheet) {
            opened = true;
            sheet.reject();
        }));
        QVERIFY(!opened);
    }

    void flagsChooseThePages_data() {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QStringList>("pages");
        QTest::addColumn<QString>("title");
        const QString configure = QStringLiteral("Configure Eye Diagram");
        const QString editStimulus = QStringLiteral("Edit Stimulus");
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
        auto data = NewData();
        QStringList shown;
        QString shownTitle;
        QVERIFY(!Edit(data.get(), flags, [&](QDialog& sheet) {
            shown = PageNames(sheet);
            shownTitle = sheet.windowTitle();
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QCOMPARE(shown, pages);
        QCOMPARE(shownTitle, title);
        QVERIFY(m_messages.Requests().empty());
    }

    void pageFlagsStartPageAndLastPage() {
        auto data = NewData();
        auto* sheet = dynamic_cast<kv::ui::CEyeDiagramSheet*>(m_sheet);
        QVERIFY(sheet != nullptr);
        int startIndex = -1;
        QWidget host;  // the sheet sits over the host's window only while it runs
        host.show();
        QWidget* parentWhileOpen = nullptr;
        const auto editWithFlag = [&](int pageFlag, int switchTo) {
            return WithSheet(
                [&] { return m_sheet->EditWithPageFlag(data.get(), &host, pageFlag, 0x03, 0, 0); },
                [&](QDialog& open) {
                    parentWhileOpen = open.parentWidget();
                    auto* tabs = open.findChild<QTabWidget*>(QStringLiteral("pages"));
                    startIndex = tabs->currentIndex();
                    tabs->setCurrentIndex(switchTo);
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
        QCOMPARE(m_sheet->GetLastPageIndex(), 1);
        QCOMPARE(m_sheet->GetLastPageFlag(), 2);

        // A start page the sheet does not have opens the first.
        QVERIFY(editWithFlag(4, 0));
        QCOMPARE(startIndex, 0);
        QCOMPARE(sheet->PageFlagUnknown(), 0);
    }

    void hookAndHelpSeeTheCallersData() {
        auto data = NewData();
        EditHook hook;
        HelpHandler help;
        QCOMPARE(m_sheet->SetEditHook(&hook), &hook);
        QCOMPARE(m_sheet->GetEditHook(), &hook);
        QCOMPARE(m_sheet->SetHelpHandler(&help), &help);
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
        QCOMPARE(hook.seen, data.get());
        QCOMPARE(help.calls.size(), std::size_t{1});
        QCOMPARE(help.calls[0].sheet, helpedSheet);
        QCOMPARE(help.calls[0].page, 1);
        QCOMPARE(help.calls[0].reserved, 0);
        m_sheet->SetEditHook(nullptr);
        m_sheet->SetHelpHandler(nullptr);
    }

    // The questions are the model's; here Cancel to them keeps the sheet open,
    // and what was typed, bits included, reaches the caller only on OK.
    void editedStimulusReachesTheCallerOnOkOnly() {
        auto data = NewData();
        data->SetSeqType(4);
        data->SetBits(nullptr, 0);
        m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
        m_messages.QueueAnswer(kv::MessageAnswer::No);
        bool stayed = false;
        QVERIFY(Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, id::kPattern);
            sheet.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&sheet));
            pattern->setFocus();
            QTest::keyClicks(pattern, "0110");
            Type(sheet, id::kPeriod, "2.5");
            Click(sheet, kvcomctl_ids::kSheetOk);
            stayed = sheet.isVisible();
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QVERIFY(stayed);
        QCOMPARE(BitsOf(*data), QStringLiteral("0110"));
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
        QCOMPARE(BitsOf(*data), QStringLiteral("0110"));
    }

    // The editing page's rules are its model's (tests/core/eyediagram); here
    // every control shows what the model holds, for every kind, and the
    // user's doings reach it.
    void editingPageShowsItsModel() {
        auto data = NewData();
        m_messages.QueueAnswer(kv::MessageAnswer::Ok);  // the cancel question
        bool ran = false;
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            ran = true;
            auto* page = sheet.findChild<kv::ui::CVelStimulusPage*>();
            const kv::StimulusEditPageModel& model = page->Model();
            auto* sequence = FindControl<QComboBox>(&sheet, id::kSequence);
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, id::kPattern);
            auto* level = FindControl<QComboBox>(&sheet, id::kLevel);
            for (int position = 1; position <= kv::stimulus_edit::kListPositions; ++position) {
                sequence->setCurrentIndex(position - 1);
                QCOMPARE(model.Position(), position);
                for (const int controlId : kv::StimulusEditPageModel::ControlsWithVisibility()) {
                    QVERIFY2(FindControl<QWidget>(&sheet, controlId)->isHidden() !=
                                 model.IsShown(controlId),
                             qPrintable(QStringLiteral("control %1 at position %2")
                                            .arg(controlId)
                                            .arg(position)));
                }
                for (const int label :
                     {id::kPeriodLabel, id::kRepetitionsLabel, id::kLevelLabel, id::kJitterLabel}) {
                    QCOMPARE(FindControl<QLabel>(&sheet, label)->text().toStdString(),
                             std::string(model.Label(label)));
                }
                QCOMPARE(level->itemText(0).toStdString(),
                         std::string(model.ItemText(id::kLevel, 0)));
                QCOMPARE(FindControl<QComboBox>(&sheet, id::kJitterUnit)->itemText(0).toStdString(),
                         std::string(model.ItemText(id::kJitterUnit, 0)));
                QCOMPARE(pattern->IsReadOnly(), model.PatternReadOnly());
                QCOMPARE(BitsOf(*pattern), QString::fromStdString(BitsText(model.Bits())));
            }
            level->setCurrentIndex(1);
            QCOMPARE(model.LevelIndex(), 1);
            // Fields show the model's texts and refuse through it.
            sequence->setCurrentIndex(0);  // Oscillator
            Type(sheet, id::kHighTime, "1.32");
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kDuty)->text(), QStringLiteral("40.000"));
            QCOMPARE(FindControl<QSpinBox>(&sheet, id::kDutySpin)->value(), 40);
            FindControl<QSpinBox>(&sheet, id::kDutySpin)->setValue(30);
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kHighTime)->text(),
                     QStringLiteral("0.990"));
            m_messages.Clear();
            Type(sheet, id::kPeriod, "0");
            QCOMPARE(m_messages.Requests().size(), std::size_t{1});
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kPeriod)->text(), QStringLiteral("0"));
            Click(sheet, kvcomctl_ids::kSheetOk);  // refused again: the sheet stays
            QVERIFY(sheet.isVisible());
            QCOMPARE(m_messages.Requests().size(), std::size_t{2});
            Type(sheet, id::kPeriod, "3.3");
            // Repetitions reach the Pulse painter; the distribution names the amount.
            sequence->setCurrentIndex(2);
            FindControl<QSpinBox>(&sheet, id::kRepetitionsSpin)->setValue(7);
            const auto* painter =
                dynamic_cast<const kv::CRepetitionPaint*>(&pattern->Editor().Painter());
            QVERIFY(painter != nullptr);
            QCOMPARE(painter->Repetitions(), 7);
            FindControl<QComboBox>(&sheet, id::kDistribution)->setCurrentIndex(1);
            QCOMPARE(FindControl<QLabel>(&sheet, id::kJitterLabel)->text(),
                     QStringLiteral("Amount (p-p):"));
            FindControl<QComboBox>(&sheet, id::kJitterUnit)->setCurrentIndex(1);
            QCOMPARE(model.JitterUnitIndex(), 1);
            FindControl<QCheckBox>(&sheet, id::kRepeatJitter)->setChecked(false);
            QVERIFY(!model.RepeatJitter());
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QVERIFY(ran);
    }

    void editingPageFilesAndNames() {
        QTemporaryDir folder;
        QVERIFY(folder.isValid());
        const std::string good = folder.filePath("good.bit").toStdString();
        std::ofstream(good, std::ios::binary) << "1, 0; 1\r\n";
        kv::test::ScriptedFileChooser chooser;
        const kv::ScopedFileChooser chooserScope(chooser);
        const auto choose = [&](const std::string& path) {
            const std::filesystem::path chosen(path);
            chooser.answer = kv::ChosenFile{chosen.parent_path(), chosen.filename().string()};
        };
        auto data = NewData();
        data->SetSeqType(4);
        m_messages.QueueAnswer(kv::MessageAnswer::No);  // the apply question
        QStringList seen;
        QVERIFY(Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, id::kPattern);
            auto* fileName = FindControl<QLineEdit>(&sheet, id::kFileName);
            choose(good);
            Click(sheet, id::kLoad);
            seen << BitsOf(*pattern) << fileName->text();
            const std::string saved = folder.filePath("saved.bit").toStdString();
            choose(saved);
            Click(sheet, id::kSaveBits);
            std::ifstream savedFile(saved, std::ios::binary);
            seen << QString::fromStdString(
                std::string{std::istreambuf_iterator<char>(savedFile), {}});
            seen << QString::number(fileName->text() == QString::fromStdString(saved));

            auto* names = FindControl<QComboBox>(&sheet, id::kNameList);
            auto* nameEdit = FindControl<QLineEdit>(&sheet, id::kNameEdit);
            Click(sheet, id::kNew);
            seen << QString::number(!nameEdit->isHidden() && names->isHidden());
            nameEdit->setText("clock");
            Click(sheet, id::kSave);
            seen << names->currentText() << QString::number(nameEdit->isHidden());
            Type(sheet, id::kPeriod, "7");
            emit names->activated(names->findText("clock"));
            seen << FindControl<QLineEdit>(&sheet, id::kPeriod)->text();
            Click(sheet, id::kRemove);
            seen << QString::number(names->count());
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QCOMPARE(seen, (QStringList{"101", QString::fromStdString(good), "101", "1", "1", "clock",
                                    "1", "3.300", "0"}));
        QCOMPARE(BitsOf(*data), QStringLiteral("101"));
        QVERIFY(m_messages.Requests().size() == 1);
    }

    // The mask page's rules are the model's (tests/core/eyediagram); here
    // its controls reach the model and show what it holds.
    void maskPageWiring() {
        auto data = NewData();
        EYEMASK mask = kv::DefaultEyeMask();
        mask.ScaleTime = 3.0;
        data->SetMask(mask);
        // Made but not shown: nothing is checked.
        QVERIFY(!Edit(data.get(), 0x01,
                      [&](QDialog& sheet) { Click(sheet, kvcomctl_ids::kSheetCancel); }));
        QVERIFY(m_messages.Requests().empty());
        QString timeScale;
        bool stayed = false;
        QStringList libraryNames;
        QVERIFY(Edit(data.get(), 0x02, [&](QDialog& sheet) {
            timeScale = FindControl<QLineEdit>(&sheet, mask_id::kScaleTime)->text();
            Type(sheet, mask_id::kCross, "4.5");  // refused: not below the top level
            auto* cross = FindControl<QLineEdit>(&sheet, mask_id::kCross);
            stayed = cross->text() == "4.5" && m_messages.Requests().size() == 2;
            Click(sheet, kvcomctl_ids::kSheetOk);  // the refused text keeps the sheet open
            stayed = stayed && sheet.isVisible() && m_messages.Requests().size() == 3;
            Type(sheet, mask_id::kCross, "2.0");
            FindControl<QLineEdit>(&sheet, mask_id::kName)->setText("Low cross");
            Click(sheet, mask_id::kSaveAs);
            auto* library = FindControl<QComboBox>(&sheet, mask_id::kLibrary);
            libraryNames << library->currentText();
            Type(sheet, mask_id::kCross, "2.25");
            emit library->activated(0);  // the question: Yes keeps the change
            libraryNames << FindControl<QLineEdit>(&sheet, mask_id::kCross)->text();
            Click(sheet, mask_id::kDelete);
            libraryNames << QString::number(library->count());
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QVERIFY(stayed);
        QCOMPARE(timeScale, QStringLiteral("100.000"));
        QCOMPARE(m_messages.Requests()[0].text,
                 std::string("One or more mask values are invalid\nUsing default values"));
        QCOMPARE(m_messages.Requests()[3].text,
                 std::string("Current mask and corresponding library mask are different\n"
                             "Do you want to save your changes?"));
        QCOMPARE(libraryNames, (QStringList{"Low cross", "2.250", "0"}));
        QCOMPARE(data->GetMask()->PCross, 2.25);
        QCOMPARE(data->GetMask()->ScaleTime, 1.0);
    }

    // The eye-diagram stimulus page's rules are its model's
    // (tests/core/eyediagram); here its controls reach the model and show
    // what it holds, and what was typed reaches the host.
    void eyeStimulusPageWiring() {
        auto data = NewData();
        bool refused = false;
        bool shown = false;
        QVERIFY(Edit(data.get(), 0x03, [&](QDialog& sheet) {
            Type(sheet, stim_id::kCycles, "2049");
            refused = m_messages.Requests().size() == 1 &&
                      FindControl<QLineEdit>(&sheet, stim_id::kCycles)->text() == "2049";
            Type(sheet, stim_id::kCycles, "2");
            auto* maximum = FindControl<QLineEdit>(&sheet, stim_id::kMaxJitter);
            maximum->setText("0.5");  // typed, not yet committed
            auto* tabs = sheet.findChild<QTabWidget*>(QStringLiteral("pages"));
            tabs->setCurrentIndex(1);
            tabs->setCurrentIndex(0);
            FindControl<QRadioButton>(&sheet, stim_id::kAdvancedJitter)->setChecked(true);
            auto* uniform = FindControl<QCheckBox>(&sheet, stim_id::kComponentEnabled + 1);
            auto* magnitude = FindControl<QLineEdit>(&sheet, stim_id::kComponentMagnitude + 1);
            shown = !maximum->isEnabled() && uniform->isEnabled() && !magnitude->isEnabled();
            uniform->setChecked(true);
            auto* unit = FindControl<QComboBox>(&sheet, stim_id::kComponentUnit + 1);
            unit->setCurrentIndex(1);  // ns
            Type(sheet, stim_id::kComponentMagnitude + 1, "1.5");
            unit->setCurrentIndex(0);
            shown = shown && magnitude->isEnabled() && magnitude->text() == "45.455";
            FindControl<QComboBox>(&sheet, stim_id::kSequence)->setCurrentIndex(1);  // 8B/10B
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, stim_id::kPattern);
            shown = shown && pattern->m_bits.GetSize() == 20;
            FindControl<QComboBox>(&sheet, stim_id::kSequence)->setCurrentIndex(0);  // PRBS
            FindControl<QSpinBox>(&sheet, stim_id::kPolyDegree)->setValue(3);
            shown = shown && pattern->m_bits.GetSize() == 7;
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QVERIFY(refused);
        QVERIFY(shown);
        QCOMPARE(m_messages.Requests().size(), std::size_t{1});
        QCOMPARE(data->GetCycleCount(), 2);
        QCOMPARE(data->GetMaxJitter(), 0.5);
        QVERIFY(data->GetAdvancedJitter());
        QVERIFY(data->GetAddJitter(1));
        QCOMPARE(data->GetUniformMag(), 1.5 * 100 / 3.3);
        QCOMPARE(data->GetSeqType(), 0);
        QCOMPARE(data->GetPolyDegree(), 3);
        QCOMPARE(data->GetBitCount(), 7);
    }
};

QTEST_MAIN(EyeDiagramSheetTest)
#include "EyeDiagramSheetTest.moc"
