// A host's view of the library: load it with dlopen, look up the one export,
// and use every component only through the interfaces in include/kvcomctl.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "kvcomctl/kvcomctl.h"

namespace {

struct LibraryCloser {
    void operator()(void* handle) const { dlclose(handle); }
};
using LibraryHandle = std::unique_ptr<void, LibraryCloser>;

LibraryHandle g_library;
IKVComCtlFactory* g_factory = nullptr;

class HostEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        g_library.reset(dlopen(KV_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL));
        ASSERT_NE(g_library, nullptr) << dlerror();
        auto get =
            reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(g_library.get(), "GetKVComCtlFactory"));
        ASSERT_NE(get, nullptr) << dlerror();
        g_factory = get();
    }
    void TearDown() override { g_library.reset(); }
};

TEST(HostLoad, FactoryIsOneStaticObjectAndTheOnlyExport) {
    ASSERT_NE(g_factory, nullptr);
    auto get = reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(g_library.get(), "GetKVComCtlFactory"));
    EXPECT_EQ(get(), g_factory);
    // Library internals stay hidden.
    EXPECT_EQ(dlsym(g_library.get(), "_ZN2kv13CStimulusDataC1Ev"), nullptr);
}

TEST(HostStimulusData, DefaultsAndBitsThroughTheInterface) {
    IEyeDiagramData* data = g_factory->CreateStimulusData();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->GetCycleCount(), 4);
    EXPECT_DOUBLE_EQ(data->GetPeriod(), 3.3);
    EXPECT_DOUBLE_EQ(data->GetDutyCycle(), 50.0);
    EXPECT_EQ(data->GetSeqType(), 7);
    EXPECT_EQ(data->GetPolyDegree(), 5);
    ASSERT_EQ(data->GetBitCount(), 31);
    EXPECT_FALSE(data->GetBit(0));
    EXPECT_THROW(data->GetBit(31), std::out_of_range);

    EYEMASK* mask = data->GetMask();
    EXPECT_DOUBLE_EQ(mask->PTopMax, 5.5);
    mask->OffsetVolt = 1.25;  // the host may edit the mask in place
    EXPECT_DOUBLE_EQ(data->GetMask()->OffsetVolt, 1.25);

    const bool bits[] = {true, false, true};
    data->SetBits(bits, 3);
    EXPECT_EQ(data->GetBitCount(), 3);
    EXPECT_TRUE(data->GetBit(2));
    g_factory->Destroy(data);
}

int g_hostCancelValue = 0;

TEST(HostProgress, BarCreatedUsedAndDestroyedThroughTheFactory) {
    IProgressBarInterface* bar = g_factory->CreateProgressBarCtrl();
    ASSERT_NE(bar, nullptr);
    QWidget window;
    QWidget* widget = bar->GetHwnd();
    ASSERT_NE(widget, nullptr);
    widget->setParent(&window);  // a host puts the bar into its own window
    bar->SetPos(150, false);
    EXPECT_EQ(bar->GetPos(), 150);
    bar->SetFillColor(0x00FF0000);
    g_factory->Destroy(bar);
    EXPECT_TRUE(window.children().isEmpty());
}

TEST(HostProgress, ReportAttachedToAHostDialog) {
    IProgressReportInterface* report = g_factory->CreateProgressReport();
    ASSERT_NE(report, nullptr);
    auto dialog = std::make_unique<QDialog>();
    auto* line = new QLabel(dialog.get());
    line->setObjectName("ctl1001");
    auto* placeholder = new QWidget(dialog.get());
    placeholder->setObjectName("ctl1003");
    report->SetFirstText("Routing");
    report->Attach(dialog.get(), 1001, 1002, 1003);
    EXPECT_EQ(line->text(), QStringLiteral("Routing"));
    report->SetAll(nullptr, "ignored: no second line", 40);
    EXPECT_EQ(report->GetPercent(), 40);
    EXPECT_EQ(report->GetProgressBar()->GetHwnd()->parentWidget(), placeholder);
    dialog.reset();  // the host's dialog goes first; the report stays usable
    report->SetPercent(60);
    EXPECT_EQ(report->GetPercent(), 60);
    g_factory->Destroy(report);
}

TEST(HostProgress, DialogCreatedOverAHostWindowAndDestroyed) {
    IProgressDialogInterface* dialog = g_factory->CreateProgressDlg();
    ASSERT_NE(dialog, nullptr);
    QWidget owner;
    owner.show();
    dialog->SetCancelCallback([](int32_t value) { g_hostCancelValue = value; }, 9);
    ASSERT_TRUE(dialog->Create(&owner, 0));
    EXPECT_FALSE(owner.isEnabled());
    EXPECT_TRUE(dialog->GetHwnd()->isVisible());
    IProgressReportInterface* report = dialog->GetReport();
    report->SetAll("Simulating", "net 1 of 3", 33);
    EXPECT_EQ(dialog->GetProgressBar()->GetPos(), 33);
    EXPECT_FALSE(report->IsCancelled());
    auto* cancel = dialog->GetHwnd()->findChild<QPushButton*>("ctl2");
    ASSERT_NE(cancel, nullptr);
    cancel->click();
    EXPECT_TRUE(report->IsCancelled());
    EXPECT_EQ(g_hostCancelValue, 9);
    dialog->Destroy();
    EXPECT_TRUE(owner.isEnabled());
    g_factory->Destroy(dialog);
}

TEST(HostStimulusData, SaveAndLoadRoundTripThroughTheInterface) {
    // The library runs in this process: keep its settings store in a
    // temporary folder, and use a file beside it.
    char folder[] = "/tmp/kvhost-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    setenv("XDG_CONFIG_HOME", folder, 1);
    const std::string file = std::string(folder) + "/stimulus.ini";

    IEyeDiagramData* saved = g_factory->CreateStimulusData();
    saved->SetCycleCount(16);
    saved->SetPeriod(0.8);
    saved->SetSeqType(4);
    std::vector<char> pattern(3000);
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        pattern[i] = (i % 3) == 0;
    }
    saved->SetBits(reinterpret_cast<const bool*>(pattern.data()), static_cast<int>(pattern.size()));
    saved->GetMask()->ScaleTime = 1.5;
    EXPECT_TRUE(saved->Save(file.c_str(), true));
    EXPECT_TRUE(saved->Save("HostTest", false));

    for (bool fromFile : {true, false}) {
        IEyeDiagramData* loaded = g_factory->CreateStimulusData();
        EXPECT_TRUE(loaded->Load(fromFile ? file.c_str() : "HostTest", fromFile));
        EXPECT_EQ(loaded->GetCycleCount(), 16);
        EXPECT_DOUBLE_EQ(loaded->GetPeriod(), 0.8);
        ASSERT_EQ(loaded->GetBitCount(), 3000);
        EXPECT_TRUE(loaded->GetBit(2997));
        EXPECT_FALSE(loaded->GetBit(2998));
        EXPECT_DOUBLE_EQ(loaded->GetMask()->ScaleTime, 1.5);
        g_factory->Destroy(loaded);
    }
    g_factory->Destroy(saved);
    std::filesystem::remove_all(folder);
}

TEST(HostFactory, NullIsAcceptedByEveryDestroy) {
    g_factory->Destroy(static_cast<IProgressDialogInterface*>(nullptr));
    g_factory->Destroy(static_cast<IProgressReportInterface*>(nullptr));
    g_factory->Destroy(static_cast<IProgressBarInterface*>(nullptr));
    g_factory->Destroy(static_cast<ICouplingRgnWalkerDlg*>(nullptr));
    g_factory->Destroy(static_cast<IEyeDiagramDialog*>(nullptr));
    g_factory->Destroy(static_cast<IEyeDiagramStimAdaptor*>(nullptr));
    g_factory->Destroy(static_cast<IEyeDiagramData*>(nullptr));
    g_factory->DestroyViaVisualizerCtrl(nullptr);
    g_factory->DestroyPadstackEditorDlg(nullptr);
    SUCCEED();
}

// The host opens the sheet on its own stimulus, finds the window as a user
// would and confirms it; then it simulates the result through the adaptor.
TEST(HostEyeDiagram, SheetAndAdaptorThroughTheFactory) {
    IEyeDiagramData* data = g_factory->CreateStimulusData();
    IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
    ASSERT_NE(sheet, nullptr);
    QString title;
    QTimer::singleShot(0, [&title] {
        if (auto* open = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            title = open->windowTitle();
            open->findChild<QPushButton*>(QStringLiteral("ctl1"))->click();
        }
    });
    EXPECT_TRUE(sheet->EditWithPageFlag(data, nullptr, 1, 0x80, 0, 0));
    EXPECT_EQ(title, QStringLiteral("Edit Stimulus"));
    EXPECT_EQ(sheet->GetLastPageIndex(), 0);
    g_factory->Destroy(sheet);

    IEyeDiagramStimAdaptor* adaptor = g_factory->CreateEyeStimAdaptor();
    ASSERT_NE(adaptor, nullptr);
    EXPECT_EQ(adaptor->GetPointCount(), 0);
    const int32_t count = adaptor->Build(data, 0.0, 3.3, 1e-10, 1e-10);
    ASSERT_GT(count, 2);
    EXPECT_EQ(adaptor->GetPoints()[0].time, 0.0);
    EXPECT_NEAR(adaptor->GetDuration(), 4 * 31 * 3.3e-9, 1e-18);  // 4 cycles of 31 bits
    EXPECT_EQ(adaptor->Build(nullptr, 0.0, 3.3, 1e-10, 1e-10), -1);
    EXPECT_EQ(adaptor->GetPointCount(), 0);
    g_factory->Destroy(adaptor);
    g_factory->Destroy(data);
}

}  // namespace

int main(int argc, char** argv) {
    // A Qt host: the library uses the host's QApplication.
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new HostEnvironment);
    return RUN_ALL_TESTS();
}
