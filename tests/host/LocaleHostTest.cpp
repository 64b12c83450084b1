// A Qt host on a German desktop: QApplication takes the C library's locale from
// the environment (CTest runs this program with LC_ALL=de_DE.UTF-8), so the
// decimal separator of printf and strtod is a comma. Everything the library
// writes for a simulator, a settings store or a person must still be what it
// writes in the "C" locale, byte for byte.

#include <gtest/gtest.h>

#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QWidget>
#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "apps/viadescription/ViaControlFill.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "kvcomctl/kvcomctl.h"
#include "tests/host/ModalAnswers.h"
#include "tests/host/QtHost.h"
#include "tests/support/SpiceExportText.h"
#include "tests/support/TestSupport.h"

namespace {

using kv::test::Click;
using kv::test::g_factory;
using kv::test::ModalAnswers;

QString ObjectName(int id) {
    return QStringLiteral("ctl%1").arg(id);
}

QLineEdit* Field(QWidget* sheet, int id) {
    return sheet->findChild<QLineEdit*>(ObjectName(id));
}

void Press(QWidget* sheet, int id) {
    sheet->findChild<QPushButton*>(ObjectName(id))->click();
}

class DecimalCommaHost : public ::testing::Test {
protected:
    void SetUp() override {
        m_hostLocale = std::setlocale(LC_ALL, nullptr);
        if (std::string_view(std::localeconv()->decimal_point) != ",") {
            GTEST_SKIP() << "the host runs in the locale \"" << m_hostLocale
                         << "\", which has no decimal comma; de_DE.UTF-8 is missing "
                            "(localedef -i de_DE -f UTF-8 de_DE.UTF-8 makes it)";
        }
        ASSERT_TRUE(m_folder.isValid());
        // The module's settings store (the mask library lives there) goes
        // into this test's folder.
        const char* config = std::getenv("XDG_CONFIG_HOME");
        m_savedConfig = config != nullptr ? std::optional<std::string>(config) : std::nullopt;
        setenv("XDG_CONFIG_HOME", m_folder.path().toUtf8().constData(), 1);
    }
    void TearDown() override {
        std::setlocale(LC_ALL, m_hostLocale.c_str());
        if (m_savedConfig) {
            setenv("XDG_CONFIG_HOME", m_savedConfig->c_str(), 1);
        } else {
            unsetenv("XDG_CONFIG_HOME");
        }
    }

    // What `produce` gives in the host's locale, then in the "C" locale.
    template <class Produce>
    std::pair<std::string, std::string> InHostAndCLocale(Produce produce) {
        std::string host = produce();
        std::setlocale(LC_ALL, "C");
        std::string c = produce();
        std::setlocale(LC_ALL, m_hostLocale.c_str());
        return {std::move(host), std::move(c)};
    }

    QString Path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;

private:
    std::string m_hostLocale;
    std::optional<std::string> m_savedConfig;
};

TEST_F(DecimalCommaHost, StimulusAdaptorWritesThePwlSourceOfTheCLocale) {
    const auto [host, c] = InHostAndCLocale([this] {
        IEyeDiagramData* data = g_factory->CreateStimulusData();
        IEyeDiagramStimAdaptor* adaptor = g_factory->CreateEyeStimAdaptor();
        adaptor->Build(data, 0.0, 1.2, 1.5e-10, 1.5e-10);
        const QString path = Path("stimulus.cir");
        const bool written = adaptor->WritePwl(path.toUtf8().constData(), "IN", "n1");
        g_factory->Destroy(adaptor);
        g_factory->Destroy(data);
        return written ? ReadText(path.toStdString()) : std::string("not written");
    });
    EXPECT_NE(c.find(" 3.45e-09 1.2 "), std::string::npos) << c;
    EXPECT_EQ(host, c);
}

TEST_F(DecimalCommaHost, StimulusSavedAndLoadedAsInTheCLocale) {
    const auto [host, c] = InHostAndCLocale([this] {
        IEyeDiagramData* saved = g_factory->CreateStimulusData();
        saved->SetPeriod(0.8);
        saved->SetDutyCycle(37.5);
        saved->GetMask()->ScaleTime = 1.25;
        const QString file = Path("stimulus.ini");
        QFile::remove(file);
        EXPECT_TRUE(saved->Save(file.toUtf8().constData(), true));
        EXPECT_TRUE(saved->Save("LocaleHost", false));
        g_factory->Destroy(saved);
        for (const bool fromFile : {true, false}) {
            IEyeDiagramData* loaded = g_factory->CreateStimulusData();
            loaded->Load(fromFile ? file.toUtf8().constData() : "LocaleHost", fromFile);
            EXPECT_EQ(loaded->GetPeriod(), 0.8);
            EXPECT_EQ(loaded->GetDutyCycle(), 37.5);
            EXPECT_EQ(loaded->GetMask()->ScaleTime, 1.25);
            g_factory->Destroy(loaded);
        }
        return ReadText(file.toStdString()) +
               ReadText(Path("LocaleHost/KVComCtl.ini").toStdString());
    });
    EXPECT_NE(c.find("PERIOD=0.8\n"), std::string::npos) << c;
    EXPECT_EQ(host, c);
}

TEST_F(DecimalCommaHost, ViaSubcircuitExportedAsInTheCLocale) {
    const auto [host, c] = InHostAndCLocale([this] {
        QWidget window;
        IViaVizCtrl* control = g_factory->CreateViaVisualizerCtrl();
        const bool filled =
            control->Create(&window, 1300) &&
            kv::via_json::FillViaControl(*control, kv::via_json::ReadViaDescription(
                                                       KV_EXAMPLES_DIR "/via_pair_6layer.json"));
        const QString path = Path("via.cir");
        const bool written = filled && control->ExportToSpiceFile(path.toUtf8().constData());
        g_factory->DestroyViaVisualizerCtrl(control);
        return written ? kv::test::WithoutExportTime(ReadText(path.toStdString()))
                       : std::string("not exported");
    });
    EXPECT_NE(c.find("Z0="), std::string::npos) << c;
    EXPECT_EQ(host, c);
}

// The stimulus editing page shows three decimals with a point; a value typed
// with a decimal comma is refused with the field's range message, whatever
// the locale, and the same value typed with a point is taken.
TEST_F(DecimalCommaHost, StimulusPageShowsAndReadsItsFieldsAsInTheCLocale) {
    namespace id = kvcomctl_ids::stimulus_edit;
    const auto [host, c] = InHostAndCLocale([] {
        std::string seen;
        QString refusal;
        QString question;
        IEyeDiagramData* data = g_factory->CreateStimulusData();
        data->SetMaxJitter(0.125);
        IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
        ModalAnswers answers({
            [&seen](QWidget* open) {
                for (const int field : {id::kPeriod, id::kDuty, id::kJitter}) {
                    seen += Field(open, field)->text().toStdString() + "\n";
                }
                Field(open, id::kPeriod)->setText(QStringLiteral("1,5"));
                Press(open, kvcomctl_ids::kSheetOk);
            },
            Click(QMessageBox::Ok, &refusal),
            [](QWidget* open) {
                Field(open, id::kPeriod)->setText(QStringLiteral("1.5"));
                Press(open, kvcomctl_ids::kSheetOk);
            },
            Click(QMessageBox::Yes, &question),
        });
        EXPECT_TRUE(sheet->EditWithPageFlag(data, nullptr, 1, 0x80, 0, 0));
        EXPECT_TRUE(answers.AllAnswered());
        EXPECT_EQ(answers.UnexpectedWindows(), 0);
        EXPECT_EQ(data->GetPeriod(), 1.5);
        g_factory->Destroy(sheet);
        g_factory->Destroy(data);
        return seen + refusal.toStdString() + "\n" + question.toStdString();
    });
    EXPECT_EQ(c,
              "3.300\n50.000\n3.788\n"
              "Invalid bit interval value\nValid range is 0.001 - 1000 ns\n"
              "Do you want to save the changes?");
    EXPECT_EQ(host, c);
}

// The eye-diagram pages show their numbers with a point, and the mask library
// they keep in the settings store reads back in either locale.
TEST_F(DecimalCommaHost, EyeDiagramPagesAndMaskLibraryAsInTheCLocale) {
    namespace stimulus_id = kvcomctl_ids::eye_stimulus;
    namespace mask_id = kvcomctl_ids::eye_mask;
    const auto [host, c] = InHostAndCLocale([this] {
        std::string seen;
        IEyeDiagramData* data = g_factory->CreateStimulusData();
        data->GetMask()->OffsetVolt = -0.25;
        IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
        ModalAnswers answers({[&seen](QWidget* open) {
            for (const int field : {stimulus_id::kBitInterval, stimulus_id::kDutyCycle,
                                    mask_id::kTopMax, mask_id::kBaseMin, mask_id::kOffsetVolt}) {
                seen += Field(open, field)->text().toStdString() + "\n";
            }
            Field(open, mask_id::kName)->setText(QStringLiteral("Locale"));
            Press(open, mask_id::kSaveAs);
            Press(open, kvcomctl_ids::kSheetOk);
        }});
        EXPECT_TRUE(sheet->EditWithPageFlag(data, nullptr, 1, 0x03, 0, 0));
        EXPECT_TRUE(answers.AllAnswered());
        EXPECT_EQ(answers.UnexpectedWindows(), 0);
        g_factory->Destroy(sheet);
        g_factory->Destroy(data);
        // The second run reads the library the first one wrote.
        return seen + ReadText(Path("Velmorine/KVComCtl.ini").toStdString());
    });
    EXPECT_NE(c.find("3.300\n50.000\n5.500\n-0.500\n-0.250\n"), std::string::npos) << c;
    EXPECT_NE(c.find("Mask0=5.5,4.5,-0.5,0.5,2.5,"), std::string::npos) << c;
    EXPECT_EQ(host, c);
}

}  // namespace
