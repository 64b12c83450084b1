// The eye-diagram sheet as a host drives it through the factory: which pages
// each flag combination shows, the page flags, hooks and help, write-back on
// OK only, and the stimulus editing page's kinds, fields and .bit loads,
// every modal answered by the test.

#include <QApplication>
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
#include <QTimer>
#include <QtTest>
#include <algorithm>
#include <fstream>
#include <functional>
#include <map>

#include "core/bitpattern/PatternPainters.h"
#include "core/eyediagram/StimulusLibrary.h"
#include "core/ports/FileChooser.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/PageMessages.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "kvcomctl/kvcomctl.h"
#include "module/KVComCtlFactory.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/ScriptedFileChooser.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/eyediagram/EyeDiagramSheet.h"
#include "ui/shared/ControlIds.h"

namespace {

namespace id = kvcomctl_ids::stimulus_edit;
namespace mask_id = kvcomctl_ids::eye_mask;
namespace stim_id = kvcomctl_ids::eye_stimulus;
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

QDialog* OpenSheet() {
    return qobject_cast<QDialog*>(QApplication::activeModalWidget());
}

// Runs `edit` (which opens the sheet) while `act` works the open sheet as a
// user would. A sheet still open five seconds later is closed, so a failed
// step ends the test instead of hanging it.
bool WithSheet(const std::function<bool()>& edit, const std::function<void(QDialog&)>& act) {
    // Owned here, so that a sheet that never opened leaves no step behind.
    QTimer step;
    step.setSingleShot(true);
    QObject::connect(&step, &QTimer::timeout, [&act] {
        if (QDialog* sheet = OpenSheet()) {
            act(*sheet);
        }
    });
    step.start(0);
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, [] {
        if (QDialog* sheet = OpenSheet()) {
            sheet->done(QDialog::Rejected);
        }
    });
    watchdog.start(5000);
    return edit();
}

void Click(QDialog& sheet, int controlId) {
    FindControl<QPushButton>(&sheet, controlId)->click();
}

QStringList PageNames(QDialog& sheet) {
    QStringList names;
    auto* tabs = sheet.findChild<QTabWidget*>(QStringLiteral("pages"));
    for (int i = 0; i < tabs->count(); ++i) {
        names << tabs->widget(i)->objectName();
    }
    return names;
}

void Type(QDialog& sheet, int controlId, const QString& text) {
    auto* field = FindControl<QLineEdit>(&sheet, controlId);
    field->setText(text);
    emit field->editingFinished();
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

using DataPtr = std::unique_ptr<IEyeDiagramData, void (*)(IEyeDiagramData*)>;
DataPtr NewData() {
    return DataPtr(g_factory.CreateStimulusData(),
                   [](IEyeDiagramData* data) { g_factory.Destroy(data); });
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

    void typedCustomBitsReachTheCallerOnOk() {
        auto data = NewData();
        data->SetSeqType(4);
        data->SetBits(nullptr, 0);
        data->SetPeriod(2.0);
        QVERIFY(Edit(data.get(), 0x80, [](QDialog& sheet) {
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, id::kPattern);
            QVERIFY(!pattern->IsReadOnly());
            sheet.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&sheet));
            pattern->setFocus();
            QTest::keyClicks(pattern, "0110");
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QCOMPARE(BitsOf(*data), QStringLiteral("0110"));
        QCOMPARE(data->GetSeqType(), 4);
        QCOMPARE(data->GetPeriod(), 2.0);
        QCOMPARE(m_messages.Requests().size(), std::size_t{1});
        const kv::MessageRequest& question = m_messages.Requests()[0];
        QCOMPARE(question.text, std::string("Do you want to save the changes?"));
        QCOMPARE(question.caption, std::string("Edit Stimulus"));
        QCOMPARE(question.buttons, kv::MessageButtons::YesNoCancel);
        QCOMPARE(question.icon, kv::MessageIcon::Warning);
    }

    void applyQuestionAnswers() {
        // No: nothing is stored under the stimulus's name, and yet the sheet
        // closes with OK and the caller gets every edit.
        auto data = NewData();
        m_messages.QueueAnswer(kv::MessageAnswer::No);
        QVERIFY(Edit(data.get(), 0x80, [](QDialog& sheet) {
            Click(sheet, id::kNew);
            FindControl<QLineEdit>(&sheet, id::kNameEdit)->setText("kept");
            Click(sheet, id::kSave);  // stored as opened
            Type(sheet, id::kPeriod, "2.5");
            FindControl<QComboBox>(&sheet, id::kSequence)->setCurrentIndex(0);  // Oscillator
            FindControl<QComboBox>(&sheet, id::kLevel)->setCurrentIndex(1);     // Low
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QCOMPARE(data->GetPeriod(), 2.5);
        QCOMPARE(data->GetSeqType(), 2);
        QCOMPARE(BitsOf(*data), QStringLiteral("10"));
        kv::CStimulusData named;
        QVERIFY(kv::stimulus_library::Open(named, "kept"));
        QCOMPARE(named.GetPeriod(), 3.3);

        // Cancel keeps the sheet open; Yes then stores the stimulus under its
        // name and the caller gets it too.
        m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
        m_messages.QueueAnswer(kv::MessageAnswer::Yes);
        bool stayed = false;
        QVERIFY(Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* names = FindControl<QComboBox>(&sheet, id::kNameList);
            names->setCurrentIndex(names->findText("kept"));
            emit names->activated(names->currentIndex());
            Type(sheet, id::kPeriod, "2.0");
            Click(sheet, kvcomctl_ids::kSheetOk);
            stayed = sheet.isVisible();
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QVERIFY(stayed);
        QCOMPARE(data->GetPeriod(), 2.0);
        QVERIFY(kv::stimulus_library::Open(named, "kept"));
        QCOMPARE(named.GetPeriod(), 2.0);
        QVERIFY(kv::stimulus_library::Remove("kept"));
        QCOMPARE(m_messages.Requests().size(), std::size_t{3});
    }

    void cancelWithChangesAsksAndLeavesTheCallerUntouched() {
        auto data = NewData();
        const QString bitsBefore = BitsOf(*data);
        m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
        m_messages.QueueAnswer(kv::MessageAnswer::Ok);
        bool stayed = false;
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            FindControl<QComboBox>(&sheet, id::kSequence)->setCurrentIndex(6);  // <Custom>
            Type(sheet, id::kPeriod, "1.5");
            Click(sheet, kvcomctl_ids::kSheetCancel);
            stayed = sheet.isVisible();
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QVERIFY(stayed);
        QCOMPARE(m_messages.Requests().size(), std::size_t{2});
        QCOMPARE(m_messages.Requests()[0].text, std::string("All changes will be lost."));
        QCOMPARE(m_messages.Requests()[0].buttons, kv::MessageButtons::OkCancel);
        QCOMPARE(m_messages.Requests()[0].icon, kv::MessageIcon::Warning);
        QCOMPARE(m_messages.Requests()[0].caption, std::string("Edit Stimulus"));
        QCOMPARE(data->GetPeriod(), 3.3);
        QCOMPARE(data->GetSeqType(), 7);
        QCOMPARE(BitsOf(*data), bitsBefore);

        // Without a change nothing is asked.
        m_messages.Clear();
        QVERIFY(!Edit(data.get(), 0x80,
                      [](QDialog& sheet) { Click(sheet, kvcomctl_ids::kSheetCancel); }));
        QVERIFY(m_messages.Requests().empty());
    }

    void everyKindShowsItsControls() {
        // Per list position (Oscillator, Edge, Pulse, PRBS, 8B/10B, USB 2.0,
        // Custom): the controls that are shown.
        const std::map<int, QString> shownAt{
            {id::kLoad, "......x"},
            {id::kSaveBits, "......x"},
            {id::kBitOrderLabel, "...x..."},
            {id::kBitOrder, "...x..."},
            {id::kLevelLabel, "xxxxx.."},
            {id::kLevel, "xxxxx.."},
            {id::kStimulusGroup, "x.xxxxx"},
            {id::kPeriodLabel, "x.xxxxx"},
            {id::kPeriod, "x.xxxxx"},
            {id::kPeriodUnit, "x.xxxxx"},
            {id::kRepetitionsLabel, "x.xxxxx"},
            {id::kDutyLabel, "x......"},
            {id::kDuty, "x......"},
            {id::kDutySpin, "x......"},
            {id::kDutyUnit, "x......"},
            {id::kRepetitions, "..xxxxx"},
            {id::kRepetitionsSpin, "..xxxxx"},
            {id::kFrequency, "x......"},
            {id::kFrequencyUnit, "x......"},
            {id::kHighLabel, "x......"},
            {id::kHighTime, "x......"},
            {id::kHighUnit, "x......"},
            {id::kLowLabel, "x......"},
            {id::kLowTime, "x......"},
            {id::kLowUnit, "x......"},
            {id::kJitterGroup, "x..xxxx"},
            {id::kJitterLabel, "x..xxxx"},
            {id::kJitter, "x..xxxx"},
            {id::kJitterUnit, "x..xxxx"},
            {id::kDistributionLabel, "x..xxxx"},
            {id::kDistribution, "x..xxxx"},
            {id::kRepeatJitter, "x..xxxx"},
        };
        struct KindView {
            bool readOnly;
            int paintMode;
            QString levelLabel;
            QString firstLevel;
            QString bits;  // with the level list on its first item
        };
        const QString usbStart = QStringLiteral("0000111100");
        const std::vector<KindView> kinds{
            {true, 1, "&Initial state:", "High", "01"},
            {true, 2, "&Direction:", "Falling", "0"},
            {true, 3, "&Initial state:", "High", "01"},
            {true, 0, "&Initial state:", "High", "1"},  // generated: first bit 1
            {true, 0, "&Initial state:", "High", ""},
            {true, 0, "&Initial state:", "High", usbStart},
            {false, 0, "&Initial state:", "High", ""},
        };
        auto data = NewData();
        data->SetInitState(1);
        m_messages.QueueAnswer(kv::MessageAnswer::Ok);
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* sequence = FindControl<QComboBox>(&sheet, id::kSequence);
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, id::kPattern);
            for (int position = 1; position <= 7; ++position) {
                sequence->setCurrentIndex(position - 1);
                for (const auto& [controlId, marks] : shownAt) {
                    const bool shown = marks[position - 1] == 'x';
                    QVERIFY2(FindControl<QWidget>(&sheet, controlId)->isHidden() != shown,
                             qPrintable(QStringLiteral("control %1 at position %2")
                                            .arg(controlId)
                                            .arg(position)));
                }
                const KindView& view = kinds[static_cast<std::size_t>(position - 1)];
                QCOMPARE(pattern->IsReadOnly(), view.readOnly);
                QCOMPARE(FindControl<QLabel>(&sheet, id::kLevelLabel)->text(), view.levelLabel);
                QCOMPARE(FindControl<QComboBox>(&sheet, id::kLevel)->itemText(0), view.firstLevel);
                QCOMPARE(BitsOf(*pattern).left(static_cast<int>(view.bits.size())), view.bits);
                QVERIFY(FindControl<QLineEdit>(&sheet, id::kFileName)->text().isEmpty());
                const bool oscillator = position == 1;
                QCOMPARE(
                    FindControl<QLabel>(&sheet, id::kPeriodLabel)->text(),
                    oscillator ? QStringLiteral("&Period:") : QStringLiteral("&Bit interval:"));
                QCOMPARE(FindControl<QLabel>(&sheet, id::kRepetitionsLabel)->text(),
                         oscillator ? QStringLiteral("&Frequency:")
                                    : QStringLiteral("Sequence &repetitions:"));
                QCOMPARE(
                    FindControl<QComboBox>(&sheet, id::kJitterUnit)->itemText(0),
                    oscillator ? QStringLiteral("% of period") : QStringLiteral("% of interval"));
            }
            // The second level item flips Edge and the two-bit kinds.
            auto* level = FindControl<QComboBox>(&sheet, id::kLevel);
            sequence->setCurrentIndex(1);
            level->setCurrentIndex(1);
            QCOMPARE(level->itemText(1), QStringLiteral("Rising"));
            QCOMPARE(BitsOf(*pattern), QStringLiteral("1"));
            sequence->setCurrentIndex(0);
            QCOMPARE(level->currentIndex(), 1);
            QCOMPARE(level->itemText(1), QStringLiteral("Low"));
            QCOMPARE(BitsOf(*pattern), QStringLiteral("10"));
            sequence->setCurrentIndex(5);
            QCOMPARE(pattern->m_bits.GetSize(), 330);
            // Repetitions drive the Pulse painter.
            sequence->setCurrentIndex(2);
            Type(sheet, id::kRepetitions, "7");
            const auto* painter =
                dynamic_cast<const kv::CRepetitionPaint*>(&pattern->Editor().Painter());
            QVERIFY(painter != nullptr);
            QCOMPARE(painter->Repetitions(), 7);
            // The distribution names the amount.
            auto* distribution = FindControl<QComboBox>(&sheet, id::kDistribution);
            distribution->setCurrentIndex(1);
            QCOMPARE(FindControl<QLabel>(&sheet, id::kJitterLabel)->text(),
                     QStringLiteral("Amount (p-p):"));
            distribution->setCurrentIndex(2);
            QCOMPARE(FindControl<QLabel>(&sheet, id::kJitterLabel)->text(),
                     QStringLiteral("Amount:"));
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
    }

    void patternFollowsTheKindShown() {
        // A new stimulus (kind 7) opens as PRBS, read-only; the bit order,
        // shown for PRBS alone, reverses PRBS alone.
        auto data = NewData();
        bool readOnly = false;
        QString normalPrbs;
        QString reversedPrbs;
        QString normalCode;
        QString codeAfterReversing;
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, id::kPattern);
            auto* sequence = FindControl<QComboBox>(&sheet, id::kSequence);
            readOnly = pattern->IsReadOnly();
            sequence->setCurrentIndex(4);  // 8B/10B
            normalCode = BitsOf(*pattern);
            sequence->setCurrentIndex(3);  // PRBS
            normalPrbs = BitsOf(*pattern);
            FindControl<QComboBox>(&sheet, id::kBitOrder)->setCurrentIndex(1);  // Reversed
            reversedPrbs = BitsOf(*pattern);
            sequence->setCurrentIndex(4);
            codeAfterReversing = BitsOf(*pattern);
            Click(sheet, kvcomctl_ids::kSheetCancel);  // the question is answered OK
        }));
        QVERIFY(readOnly);
        std::reverse(normalPrbs.begin(), normalPrbs.end());
        QCOMPARE(reversedPrbs, normalPrbs);
        QCOMPARE(normalCode.size(), 40);
        QCOMPARE(codeAfterReversing, normalCode);
    }

    void fieldsRefuseValuesOutOfRange() {
        auto data = NewData();
        m_messages.QueueAnswer(kv::MessageAnswer::Ok);  // the cancel question at the end
        std::vector<std::string> said;
        bool stayed = false;
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            const auto expectMessage = [&](int controlId, const QString& text,
                                           std::string_view message) {
                m_messages.Clear();
                Type(sheet, controlId, text);
                if (m_messages.Requests().size() != 1 || m_messages.Requests()[0].text != message ||
                    m_messages.Requests()[0].caption != "Edit Stimulus") {
                    said.push_back("no message for " + text.toStdString());
                }
            };
            expectMessage(id::kPeriod, "0", kv::page_message::kBitInterval);
            expectMessage(id::kPeriod, "1000.5", kv::page_message::kBitInterval);
            expectMessage(id::kPeriod, "abc", kv::page_message::kBitInterval);
            // OK with a bad value keeps the sheet open with the same message.
            m_messages.Clear();
            Click(sheet, kvcomctl_ids::kSheetOk);
            stayed = sheet.isVisible() && m_messages.Requests().size() == 1;
            Type(sheet, id::kPeriod, "1000");
            expectMessage(id::kRepetitions, "2049", kv::page_message::kCycleCount);
            Type(sheet, id::kRepetitions, "2048");
            expectMessage(id::kJitter, "100", kv::page_message::kMaxJitterInterval);
            expectMessage(id::kJitter, "-1", kv::page_message::kMaxJitterInterval);
            Type(sheet, id::kJitter, "99.999");
            FindControl<QComboBox>(&sheet, id::kSequence)->setCurrentIndex(0);  // Oscillator
            expectMessage(id::kPeriod, "0.0001", kv::page_message::kPeriod);
            Type(sheet, id::kPeriod, "10");
            expectMessage(id::kDuty, "99.5", kv::page_message::kDutyCycle);
            expectMessage(id::kHighTime, "9.95", kv::page_message::kDutyCycle);
            expectMessage(id::kFrequency, "0", kv::page_message::kPeriod);
            Type(sheet, id::kHighTime, "2.5");
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kDuty)->text(), QStringLiteral("25.000"));
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kLowTime)->text(), QStringLiteral("7.500"));
            Type(sheet, id::kFrequency, "200");
            QCOMPARE(FindControl<QLineEdit>(&sheet, id::kPeriod)->text(), QStringLiteral("5.000"));
            m_messages.Clear();
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QVERIFY(stayed);
        QCOMPARE(said, std::vector<std::string>{});
        QCOMPARE(data->GetPeriod(), 3.3);
    }

    void loadBitFiles() {
        QTemporaryDir folder;
        QVERIFY(folder.isValid());
        const auto write = [&](const char* name, const std::string& text) {
            std::ofstream(folder.filePath(name).toStdString(), std::ios::binary) << text;
            return folder.filePath(name).toStdString();
        };
        const std::string good = write("good.bit", "1, 0; 1\r\n");
        const std::string bad = write("bad.bit", "1021");
        std::string longText;
        for (int i = 0; i < 40000; ++i) {
            longText += i % 3 == 0 ? '1' : '0';
        }
        const std::string longFile = write("long.bit", longText);
        kv::test::ScriptedFileChooser chooser;
        const kv::ScopedFileChooser chooserScope(chooser);
        const auto choose = [&](const std::string& path) {
            const std::filesystem::path chosen(path);
            chooser.answer = kv::ChosenFile{chosen.parent_path(), chosen.filename().string()};
        };

        auto data = NewData();
        data->SetSeqType(4);
        QVERIFY(Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* pattern = FindControl<kv::ui::CBitPatternCtrl>(&sheet, id::kPattern);
            auto* fileName = FindControl<QLineEdit>(&sheet, id::kFileName);
            choose(good);
            Click(sheet, id::kLoad);
            QCOMPARE(BitsOf(*pattern), QStringLiteral("101"));
            QCOMPARE(fileName->text().toStdString(), good);
            QVERIFY(m_messages.Requests().empty());

            choose(bad);
            Click(sheet, id::kLoad);
            QCOMPARE(BitsOf(*pattern), QStringLiteral("101"));
            QCOMPARE(fileName->text().toStdString(), good);
            QCOMPARE(m_messages.Requests().size(), std::size_t{1});
            QCOMPARE(m_messages.Requests()[0].text,
                     "Unable to load sequence\nFile " + bad + " is not valid sequence file");
            QCOMPARE(m_messages.Requests()[0].icon, kv::MessageIcon::Warning);
            QCOMPARE(m_messages.Requests()[0].caption, std::string("Edit Stimulus"));

            // A file that cannot be read is told with the same icon.
            m_messages.Clear();
            const std::string missing = folder.filePath("missing.bit").toStdString();
            choose(missing);
            Click(sheet, id::kLoad);
            QCOMPARE(BitsOf(*pattern), QStringLiteral("101"));
            QCOMPARE(m_messages.Requests().size(), std::size_t{1});
            QCOMPARE(m_messages.Requests()[0].text,
                     "Unable to load file " + missing +
                         " due to following reason:\nNo such file or directory");
            QCOMPARE(m_messages.Requests()[0].icon, kv::MessageIcon::Warning);

            m_messages.Clear();
            choose(longFile);
            Click(sheet, id::kLoad);
            QCOMPARE(pattern->m_bits.GetSize(), 32768);
            QCOMPARE(BitsOf(*pattern), QString::fromStdString(longText.substr(0, 32768)));
            QCOMPARE(m_messages.Requests().size(), std::size_t{1});
            QCOMPARE(m_messages.Requests()[0].text,
                     std::string("Sequence too long\nSequence length will be truncated to 32768"));

            chooser.answer.reset();  // the user cancels the dialog
            Click(sheet, id::kLoad);
            QCOMPARE(pattern->m_bits.GetSize(), 32768);

            // Save... writes the shown bits back as digits.
            choose(folder.filePath("saved.bit").toStdString());
            Click(sheet, id::kSaveBits);
            std::ifstream saved(folder.filePath("saved.bit").toStdString(), std::ios::binary);
            const std::string savedText{std::istreambuf_iterator<char>(saved), {}};
            QCOMPARE(savedText, longText.substr(0, 32768));
            choose(folder.filePath("missing/saved.bit").toStdString());
            Click(sheet, id::kSaveBits);
            QCOMPARE(m_messages.Requests().size(), std::size_t{2});
            QCOMPARE(m_messages.Requests()[1].caption, std::string("Edit Stimulus"));
            m_messages.Clear();
            Click(sheet, kvcomctl_ids::kSheetOk);
        }));
        QCOMPARE(data->GetBitCount(), 32768);
        QCOMPARE(chooser.queries.size(), std::size_t{7});
        QCOMPARE(chooser.queries[0].filter,
                 std::string("Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|"));
        QCOMPARE(chooser.queries[0].defaultExtension, std::string("bit"));
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

    void namedStimuliAreSavedOpenedAndRemoved() {
        auto data = NewData();
        m_messages.QueueAnswer(kv::MessageAnswer::Ok);  // the cancel question
        QStringList namesAfterSave;
        QString periodAfterOpen;
        int namesAfterRemove = -1;
        QVERIFY(!Edit(data.get(), 0x80, [&](QDialog& sheet) {
            auto* names = FindControl<QComboBox>(&sheet, id::kNameList);
            auto* nameEdit = FindControl<QLineEdit>(&sheet, id::kNameEdit);
            QVERIFY(nameEdit->isHidden());
            Type(sheet, id::kPeriod, "2.5");
            Click(sheet, id::kNew);
            QVERIFY(!nameEdit->isHidden() && names->isHidden());
            nameEdit->setText("clock");
            Click(sheet, id::kSave);
            for (int i = 0; i < names->count(); ++i) {
                namesAfterSave << names->itemText(i);
            }
            Type(sheet, id::kPeriod, "7");
            emit names->activated(names->findText("clock"));
            periodAfterOpen = FindControl<QLineEdit>(&sheet, id::kPeriod)->text();
            Click(sheet, id::kRemove);
            namesAfterRemove = names->count();
            Click(sheet, kvcomctl_ids::kSheetCancel);
        }));
        QCOMPARE(namesAfterSave, QStringList{"clock"});
        QCOMPARE(periodAfterOpen, QStringLiteral("2.500"));
        QCOMPARE(namesAfterRemove, 0);
        QCOMPARE(data->GetPeriod(), 3.3);
    }
};

QTEST_MAIN(EyeDiagramSheetTest)
#include "EyeDiagramSheetTest.moc"
