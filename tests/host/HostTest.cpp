// A host's view of the library: load it with dlopen, look up the one export,
// and use every component only through the interfaces in include/kvcomctl.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/viadescription/ViaControlFill.h"
#include "kvcomctl/kvcomctl.h"
#include "tests/host/ModalAnswers.h"
#include "tests/host/QtHost.h"
#include "tests/support/TestSupport.h"

namespace {

using kv::test::g_factory;
using kv::test::g_hostLibrary;
using kv::test::ModalAnswers;
using kv::via_json::FillViaControl;

TEST(HostLoad, FactoryIsOneStaticObjectAndTheOnlyExport) {
    ASSERT_NE(g_factory, nullptr);
    auto get = reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(g_hostLibrary, "GetKVComCtlFactory"));
    EXPECT_EQ(get(), g_factory);
    // Library internals stay hidden.
    EXPECT_EQ(dlsym(g_hostLibrary, "_ZN2kv13CStimulusDataC1Ev"), nullptr);
}

TEST(HostStimulusData, BitsAndMaskThroughTheInterface) {
    IEyeDiagramData* data = g_factory->CreateStimulusData();
    ASSERT_NE(data, nullptr);
    ASSERT_EQ(data->GetBitCount(), 31);
    EXPECT_THROW(data->GetBit(31), std::out_of_range);  // the library's exception reaches the host

    EYEMASK* mask = data->GetMask();
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
    g_factory->Destroy(report);
}

TEST(HostProgress, DialogCreatedOverAHostWindowAndDestroyed) {
    IProgressDialogInterface* dialog = g_factory->CreateProgressDlg();
    ASSERT_NE(dialog, nullptr);
    QWidget owner;
    owner.show();
    dialog->SetCancelCallback([](int32_t value) { g_hostCancelValue = value; }, 9);
    ASSERT_TRUE(dialog->Create(&owner, 0));
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
    g_factory->Destroy(dialog);
}

TEST(HostStimulusData, SaveAndLoadRoundTripThroughTheInterface) {
    // The library runs in this process: keep its settings store in a
    // temporary folder, and use a file beside it.
    const TestFolder folder;
    const ScopedEnvironment configHome("XDG_CONFIG_HOME", folder.Path().c_str());
    const std::string file = folder.File("stimulus.ini");

    IEyeDiagramData* saved = g_factory->CreateStimulusData();
    saved->SetPeriod(0.8);
    saved->GetMask()->ScaleTime = 1.5;
    EXPECT_TRUE(saved->Save(file.c_str(), true));
    EXPECT_TRUE(saved->Save("HostTest", false));

    for (bool fromFile : {true, false}) {
        IEyeDiagramData* loaded = g_factory->CreateStimulusData();
        EXPECT_TRUE(loaded->Load(fromFile ? file.c_str() : "HostTest", fromFile));
        EXPECT_DOUBLE_EQ(loaded->GetPeriod(), 0.8);
        EXPECT_DOUBLE_EQ(loaded->GetMask()->ScaleTime, 1.5);
        g_factory->Destroy(loaded);
    }
    g_factory->Destroy(saved);
}

ModalAnswers::Step Cancel() {
    return [](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        ASSERT_NE(dialog, nullptr);
        dialog->reject();
    };
}

// An example board as a host reads it, into the contract's records.
kv::via_json::ViaDescription ReadExample(const std::string& name) {
    return kv::via_json::ReadViaDescription(KV_EXAMPLES_DIR "/" + name + ".json");
}

// The control's slots, as a host that fills it from a description calls them; what the
// export writes is checked where the command line writes it.
TEST(HostVia, ControlCreatedFilledAndExportedThroughItsSlots) {
    const TestFolder folder;
    QWidget window;
    IViaVizCtrl* control = g_factory->CreateViaVisualizerCtrl();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->GetWindow(), nullptr);
    ASSERT_TRUE(control->Create(&window, 1300));
    EXPECT_EQ(control->GetWindow()->parentWidget(), &window);
    ASSERT_TRUE(FillViaControl(*control, ReadExample("via_pair_6layer")));
    EXPECT_TRUE(control->IsPair());
    EXPECT_EQ(control->GetViaData(2), nullptr);
    EXPECT_EQ(control->GetViaData(1)->GetStackup()->count, 11);
    const std::string path = folder.File("pair.cir");
    ASSERT_TRUE(control->ExportToSpiceFile(path.c_str()));
    EXPECT_NE(ReadText(path).find(".SUBCKT VIA_DIFF_TOP_BOTTOM\n"), std::string::npos);

    // The interactive export opens the module's save dialog; the flow behind it is the core's.
    {
        ModalAnswers answers({Cancel()});
        EXPECT_FALSE(control->ExportToSpice());
        EXPECT_TRUE(answers.AllAnswered());
    }
    g_factory->DestroyViaVisualizerCtrl(control);
    EXPECT_TRUE(window.children().isEmpty());
}

TEST(HostVia, DestroyedWithoutEverBeingCreated) {
    IViaVizCtrl* control = g_factory->CreateViaVisualizerCtrl();
    ASSERT_NE(control, nullptr);
    control->SetPair(true);
    EXPECT_NE(control->GetViaData(1), nullptr);
    g_factory->DestroyViaVisualizerCtrl(control);
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

// A host's own via data: one conductor layer with a round pad.
class HostPadstackData final : public IViaVizData {
public:
    HostPadstackData() {
        std::strcpy(m_layer.name, "TOP");
        m_pad.padType = PAD_TYPE_PAD;
        m_pad.shape = PAD_SHAPE_ROUND;
        m_pad.pad_x = m_pad.pad_y = 5e-4;
        m_padstack.drill = 2.5e-4;
        m_padstack.padCount = 1;
        m_padstack.pads = &m_pad;
    }
    STACKUPARRAY* GetStackup() override { return &m_stackup; }
    PADSTACK* GetPadstack() override { return &m_padstack; }
    void* GetViaReference() override { return nullptr; }
    int32_t GetViaCount() override { return 1; }
    void* GetNetReference() override { return nullptr; }
    double GetFirstValue() override { return 0.0; }
    double GetSecondValue() override { return 0.0; }
    double GetThirdValue() override { return 0.0; }
    bool GetFlag() override { return false; }

    STACKUPLAYER m_layer{};
    STACKUPARRAY m_stackup{1, &m_layer};
    PADDATA m_pad{};
    PADSTACK m_padstack{};
};

TEST(HostPadstackEditor, EditsTheHostsRecordsInAModalDialog) {
    IPadstackEditorCtrl* editor = g_factory->CreatePadstackEditorDlg();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->Edit(nullptr, nullptr), 0);
    HostPadstackData data;
    // The user types a wider pad into the open dialog and chooses OK.
    QTimer::singleShot(0, [] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        auto* table = dialog->findChild<QAbstractItemView*>("ctl1006");
        ASSERT_NE(table, nullptr);
        QAbstractItemModel* model = table->model();
        EXPECT_EQ(model->index(1, 0).data().toString(), QString("TOP"));
        model->setData(model->index(1, 2), QString("24"), Qt::EditRole);
        dialog->findChild<QPushButton*>("ctl1")->click();
    });
    EXPECT_EQ(editor->Edit(nullptr, &data), 1);
    EXPECT_TRUE(editor->IsModified());
    EXPECT_NEAR(data.m_pad.pad_x, 24 / 39370.07874015748, 1e-12);  // written into the host's pad
    EXPECT_EQ(data.m_padstack.pads, &data.m_pad);                  // the host's array is kept
    g_factory->DestroyPadstackEditorDlg(editor);
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
    const std::vector<STIMPOINT> nominal(adaptor->GetPoints(), adaptor->GetPoints() + count);
    // The jittered build is a slot of its own: a new stimulus carries 1 ns of jitter.
    const int32_t n = adaptor->BuildJittered(data, 0.0, 3.3, 1e-10, 1e-10);
    ASSERT_GT(n, 2);
    const std::vector<STIMPOINT> jittered(adaptor->GetPoints(), adaptor->GetPoints() + n);
    EXPECT_FALSE(jittered.size() == nominal.size() &&
                 std::memcmp(jittered.data(), nominal.data(), n * sizeof(STIMPOINT)) == 0);
    g_factory->Destroy(adaptor);
    g_factory->Destroy(data);
}

}  // namespace
