// A Qt host on a German desktop: QApplication takes the C library's locale from
// the environment (CTest runs this program with LC_ALL=de_DE.UTF-8), so the
// decimal separator of printf and strtod is a comma. Everything the library
// writes for a simulator, a settings store or a person must still be what it
// writes in the "C" locale, byte for byte.

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QWidget>
#include <array>
#include <clocale>
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

using kv::test::g_factory;
using kv::test::ModalAnswers;

QLineEdit* Field(QWidget* sheet, int id) {
    return sheet->findChild<QLineEdit*>(QStringLiteral("ctl%1").arg(id));
}

void Press(QWidget* sheet, int id) {
    sheet->findChild<QPushButton*>(QStringLiteral("ctl%1").arg(id))->click();
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
    }
    void TearDown() override { std::setlocale(LC_ALL, m_hostLocale.c_str()); }

    // What `produce` gives in the host's locale, then in the "C" locale.
    template <class Produce>
    auto InHostAndCLocale(Produce produce) {
        auto host = produce();
        std::setlocale(LC_ALL, "C");
        auto c = produce();
        std::setlocale(LC_ALL, m_hostLocale.c_str());
        return std::pair(std::move(host), std::move(c));
    }

    // The module's settings store (the mask library lives there) goes into this test's folder.
    TestFolder m_folder;
    ScopedEnvironment m_configHome{"XDG_CONFIG_HOME", m_folder.Path().c_str()};

private:
    std::string m_hostLocale;
};

// The stimulus's SPICE source, its file and settings store, and a via subcircuit.
TEST_F(DecimalCommaHost, FilesAreWrittenAndReadAsInTheCLocale) {
    const auto [host, c] = InHostAndCLocale([this] {
        IEyeDiagramData* data = g_factory->CreateStimulusData();
        IEyeDiagramStimAdaptor* adaptor = g_factory->CreateEyeStimAdaptor();
        adaptor->Build(data, 0.0, 1.2, 1.5e-10, 1.5e-10);
        const std::string pwl = m_folder.File("stimulus.cir");
        EXPECT_TRUE(adaptor->WritePwl(pwl.c_str(), "IN", "n1"));
        g_factory->Destroy(adaptor);

        data->SetPeriod(0.8);
        data->SetDutyCycle(37.5);
        data->GetMask()->ScaleTime = 1.25;
        const std::string ini = m_folder.File("stimulus.ini");
        std::filesystem::remove(ini);
        EXPECT_TRUE(data->Save(ini.c_str(), true));
        EXPECT_TRUE(data->Save("LocaleHost", false));
        g_factory->Destroy(data);
        for (const bool fromFile : {true, false}) {
            IEyeDiagramData* loaded = g_factory->CreateStimulusData();
            EXPECT_TRUE(loaded->Load(fromFile ? ini.c_str() : "LocaleHost", fromFile));
            EXPECT_EQ(loaded->GetPeriod(), 0.8);
            EXPECT_EQ(loaded->GetDutyCycle(), 37.5);
            EXPECT_EQ(loaded->GetMask()->ScaleTime, 1.25);
            g_factory->Destroy(loaded);
        }

        QWidget window;
        IViaVizCtrl* control = g_factory->CreateViaVisualizerCtrl();
        EXPECT_TRUE(control->Create(&window, 1300));
        EXPECT_TRUE(kv::via_json::FillViaControl(
            *control, kv::via_json::ReadViaDescription(KV_EXAMPLES_DIR "/via_pair_6layer.json")));
        const std::string via = m_folder.File("via.cir");
        EXPECT_TRUE(control->ExportToSpiceFile(via.c_str()));
        g_factory->DestroyViaVisualizerCtrl(control);
        return std::array{ReadText(pwl),
                          ReadText(ini) + ReadText(m_folder.File("LocaleHost/KVComCtl.ini")),
                          kv::test::WithoutExportTime(ReadText(via))};
    });
    EXPECT_NE(c[0].find(" 3.45e-09 1.2 "), std::string::npos) << c[0];
    EXPECT_NE(c[1].find("PERIOD=0.8\n"), std::string::npos) << c[1];
    EXPECT_NE(c[2].find("Z0="), std::string::npos) << c[2];
    for (std::size_t i = 0; i < c.size(); ++i) {
        EXPECT_EQ(host[i], c[i]);
    }
}

// The stimulus editing page shows three decimals with a point; a value typed
// with a decimal comma is refused with the field's range message, whatever
// the locale, and the same value typed with a point is taken.
TEST_F(DecimalCommaHost, StimulusPageShowsAndReadsItsFieldsAsInTheCLocale) {
    namespace id = kvcomctl_ids::stimulus_edit;
    const auto [host, c] = InHostAndCLocale([] {
        std::string seen;
        IEyeDiagramData* data = g_factory->CreateStimulusData();
        data->SetMaxJitter(0.125);
        IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
        const auto typePeriod = [](const char* period) {
            return [period](QWidget* open) {
                Field(open, id::kPeriod)->setText(QString::fromLatin1(period));
                Press(open, kvcomctl_ids::kSheetOk);
            };
        };
        ModalAnswers answers({
            [&seen, typePeriod](QWidget* open) {
                for (const int field : {id::kPeriod, id::kDuty, id::kJitter}) {
                    seen += Field(open, field)->text().toStdString() + "\n";
                }
                typePeriod("1,5")(open);
            },
            typePeriod("1.5"),
        });
        EXPECT_TRUE(sheet->EditWithPageFlag(data, nullptr, 1, 0x80, 0, 0));
        EXPECT_TRUE(answers.AllAnswered());
        EXPECT_EQ(answers.UnexpectedWindows(), 0);
        EXPECT_EQ(data->GetPeriod(), 1.5);
        g_factory->Destroy(sheet);
        g_factory->Destroy(data);
        return seen + answers.Texts().join('\n').toStdString();
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
        EXPECT_TRUE(answers.Texts().isEmpty());
        g_factory->Destroy(sheet);
        g_factory->Destroy(data);
        // The second run reads the library the first one wrote.
        return seen + ReadText(m_folder.File("Velmorine/KVComCtl.ini"));
    });
    EXPECT_NE(c.find("3.300\n50.000\n5.500\n-0.500\n-0.250\n"), std::string::npos) << c;
    EXPECT_NE(c.find("Mask0=5.5,4.5,-0.5,0.5,2.5,"), std::string::npos) << c;
    EXPECT_EQ(host, c);
}

}  // namespace
