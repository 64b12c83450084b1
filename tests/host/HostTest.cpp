// A host's view of the library: loaded with dlopen, reached through its one export, every
// component made and given back through the factory and used only through include/kvcomctl.
// What each component does is proved by the core and widget tests.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QWidget>

#include "kvcomctl/kvcomctl.h"
#include "tests/host/ModalAnswers.h"
#include "tests/host/QtHost.h"

namespace {

using kv::test::g_factory;
using kv::test::g_hostLibrary;
using kv::test::ModalAnswers;

TEST(HostLoad, FactoryIsOneStaticObjectAndTheOnlyExport) {
    ASSERT_NE(g_factory, nullptr);
    auto get = reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(g_hostLibrary, "GetKVComCtlFactory"));
    EXPECT_EQ(get(), g_factory);
    // Library internals stay hidden.
    EXPECT_EQ(dlsym(g_hostLibrary, "_ZN2kv13CStimulusDataC1Ev"), nullptr);
}

// Every slot that makes a component answers with one, and every slot that gives one back takes
// it, null included, before and after the component made its window; a component given back
// leaves nothing in the host's window. The chart and the eye view have tests of their own.
TEST(HostFactory, EveryComponentIsMadeAndGivenBack) {
    IEyeDiagramData* data = g_factory->CreateStimulusData();
    IEyeDiagramStimAdaptor* adaptor = g_factory->CreateEyeStimAdaptor();
    IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
    IPadstackEditorCtrl* editor = g_factory->CreatePadstackEditorDlg();
    IProgressReportInterface* report = g_factory->CreateProgressReport();
    IViaVizCtrl* neverShown = g_factory->CreateViaVisualizerCtrl();
    ASSERT_NE(data, nullptr);
    ASSERT_NE(adaptor, nullptr);
    ASSERT_NE(sheet, nullptr);
    ASSERT_NE(editor, nullptr);
    ASSERT_NE(report, nullptr);
    ASSERT_NE(neverShown, nullptr);
    EXPECT_EQ(data->GetBitCount(), 31);
    EXPECT_EQ(adaptor->GetPointCount(), 0);
    EXPECT_EQ(sheet->GetLastPageIndex(), 1);
    EXPECT_FALSE(editor->IsModified());
    EXPECT_EQ(report->GetPercent(), 0);
    EXPECT_FALSE(neverShown->IsPair());
    g_factory->Destroy(data);
    g_factory->Destroy(adaptor);
    g_factory->Destroy(sheet);
    g_factory->DestroyPadstackEditorDlg(editor);
    g_factory->Destroy(report);
    g_factory->DestroyViaVisualizerCtrl(neverShown);

    QWidget window;
    window.show();
    IProgressBarInterface* bar = g_factory->CreateProgressBarCtrl();
    ASSERT_NE(bar, nullptr);
    bar->GetHwnd()->setParent(&window);  // a host puts the bar into its own window
    IViaVizCtrl* via = g_factory->CreateViaVisualizerCtrl();
    ASSERT_NE(via, nullptr);
    ASSERT_TRUE(via->Create(&window, 1300));
    EXPECT_EQ(via->GetWindow()->parentWidget(), &window);
    IProgressDialogInterface* progress = g_factory->CreateProgressDlg();
    ASSERT_NE(progress, nullptr);
    ASSERT_TRUE(progress->Create(&window, 0));
    EXPECT_TRUE(progress->GetHwnd()->isVisible());
    progress->GetReport()->SetPercent(33);
    EXPECT_EQ(progress->GetProgressBar()->GetPos(), 33);
    g_factory->Destroy(bar);
    g_factory->DestroyViaVisualizerCtrl(via);
    progress->Destroy();
    g_factory->Destroy(progress);
    EXPECT_TRUE(window.findChildren<QWidget*>().isEmpty());

    g_factory->Destroy(static_cast<IProgressDialogInterface*>(nullptr));
    g_factory->Destroy(static_cast<IProgressReportInterface*>(nullptr));
    g_factory->Destroy(static_cast<IProgressBarInterface*>(nullptr));
    g_factory->Destroy(static_cast<ICouplingRgnWalkerDlg*>(nullptr));
    g_factory->Destroy(static_cast<IEyeDiagramDialog*>(nullptr));
    g_factory->Destroy(static_cast<IEyeDiagramStimAdaptor*>(nullptr));
    g_factory->Destroy(static_cast<IEyeDiagramData*>(nullptr));
    g_factory->DestroyViaVisualizerCtrl(nullptr);
    g_factory->DestroyPadstackEditorDlg(nullptr);
}

// The walker's window, found as the host's window's new dialog child.
QDialog* CreateUnder(ICouplingRgnWalkerDlg* walker, QWidget& owner, ICRWDHost* host) {
    const auto before = owner.findChildren<QDialog*>(Qt::FindDirectChildrenOnly);
    EXPECT_TRUE(walker->CreateWindow(&owner, host));
    for (QDialog* dialog : owner.findChildren<QDialog*>(Qt::FindDirectChildrenOnly)) {
        if (!before.contains(dialog)) {
            return dialog;
        }
    }
    return nullptr;
}

QString Caption(QDialog* dialog) {
    return dialog->findChild<QLabel*>("ctl1204")->text();
}

// The walker's interface is a member inside its dialog: the factory finds the dialog by the
// pointer it handed out, and ignores one it no longer knows.
TEST(HostWalker, TwoWalkersEachFoundByItsOwnPointerAndDeletedOnce) {
    QWidget owner;
    ICouplingRgnWalkerDlg* first = g_factory->CreateCoupRgnWalkerDlg();
    ICouplingRgnWalkerDlg* second = g_factory->CreateCoupRgnWalkerDlg();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    ASSERT_NE(first, second);
    QPointer<QDialog> firstDialog = CreateUnder(first, owner, nullptr);
    QPointer<QDialog> secondDialog = CreateUnder(second, owner, nullptr);
    ASSERT_TRUE(firstDialog && secondDialog);
    first->SetRegion(0, 2, "A");
    second->SetRegion(1, 2, "B");
    EXPECT_EQ(Caption(firstDialog), "Region 1 of 2: A");
    EXPECT_EQ(Caption(secondDialog), "Region 2 of 2: B");

    g_factory->Destroy(first);
    EXPECT_TRUE(firstDialog.isNull());
    g_factory->Destroy(first);  // already destroyed: ignored, the other stays
    ASSERT_FALSE(secondDialog.isNull());
    second->SetRegion(0, 2, "C");
    EXPECT_EQ(Caption(secondDialog), "Region 1 of 2: C");
    // Giving a walker back takes its window first, and says so when the host already did.
    EXPECT_TRUE(second->DestroyWindow());
    ModalAnswers answers;
    g_factory->Destroy(second);
    EXPECT_TRUE(secondDialog.isNull());
    EXPECT_EQ(answers.Texts(),
              QStringList{"The Coupling Region Walker dialog has no window to destroy."});
}

// The usual host gives the walker back from inside the notification a click caused: it goes
// once that click has returned to the event loop.
struct DestroyingHost final : ICRWDHost {
    ICouplingRgnWalkerDlg* walker = nullptr;
    int calls = 0;
    void Gone() {
        ++calls;
        g_factory->Destroy(walker);
    }
    void OnRegionStep(int32_t) override { Gone(); }
    void OnNetSelected(int32_t) override { Gone(); }
    void OnWalkerClosed() override { Gone(); }
};

TEST(HostWalker, DestroyedFromInsideEachOfItsNotifications) {
    for (const char* control : {"ctl1206", "ctl1201", "ctl2"}) {
        DestroyingHost host;
        host.walker = g_factory->CreateCoupRgnWalkerDlg();
        QWidget owner;
        QPointer<QDialog> dialog = CreateUnder(host.walker, owner, &host);
        ASSERT_NE(dialog, nullptr);
        host.walker->SetRegion(0, 3, "first");
        host.walker->GetNetsList()->AddNet("A", "1", "TOP", "2");
        host.walker->RefreshNets();
        host.walker->Show(true);
        if (auto* button = dialog->findChild<QPushButton*>(control)) {
            button->click();
        } else {
            auto* view = dialog->findChild<QAbstractItemView*>(control);
            ASSERT_NE(view, nullptr);
            view->setCurrentIndex(view->model()->index(0, 0));
        }
        EXPECT_EQ(host.calls, 1) << control;
        EXPECT_FALSE(dialog.isNull()) << control;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(dialog.isNull()) << control;
        g_factory->Destroy(host.walker);  // already gone: ignored
    }
}

}  // namespace
