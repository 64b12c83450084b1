#include "module/KVComCtlFactory.h"

#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/ports/MessagePort.h"
#include "core/stimulus/StimulusData.h"
#include "ui/chart/ChartControl.h"
#include "ui/eye/EyeViewCtrl.h"
#include "ui/eyediagram/EyeDiagramSheet.h"
#include "ui/padstack/PadstackEditorDlg.h"
#include "ui/progress/ProgressBarCtrl.h"
#include "ui/progress/ProgressDlg.h"
#include "ui/progress/ProgressReport.h"
#include "ui/shared/ModuleState.h"
#include "ui/via/ViaVisualizerCtrl.h"
#include "ui/walker/CoupRgnWalkerDlg.h"

namespace kv::module {
namespace {

// The walker map starts with as many buckets as a small fixed table would.
constexpr std::size_t kWalkerBuckets = 17;

// Creates a window-based component under the module state. Ownership
// crosses the host contract: the host gives it back to the matching destroy
// operation. A host without a QApplication gets null and one line on
// standard error, not a process ended by Qt.
template <class Component, class Interface>
Interface* CreateWidgetComponent(std::string_view what) {
    ui::ModuleStateGuard moduleState;
    if (!ui::CanCreateWidgets()) {
        ShowMessage(std::string(what) + " needs a QApplication on the calling thread.",
                    MessageIcon::Error);
        return nullptr;
    }
    return new Component();
}

}  // namespace

CKVComCtlFactory::CKVComCtlFactory() : m_walkerDialogs(kWalkerBuckets) {}

IEyeDiagramData* CKVComCtlFactory::CreateStimulusData() {
    // Ownership crosses the host contract: the host gives it back to slot 7.
    return new CStimulusData();
}

// The progress objects carry their interface as a second base (dialog and
// bar) or as their only base (report): static_cast finds the object around
// the interface, and the virtual destructor deletes all of it.
void CKVComCtlFactory::Destroy(IProgressDialogInterface* dialog) {
    ui::ModuleStateGuard moduleState;
    delete static_cast<ui::CProgressDlg*>(dialog);
}

void CKVComCtlFactory::Destroy(IProgressReportInterface* report) {
    ui::ModuleStateGuard moduleState;
    delete static_cast<ui::CProgressReport*>(report);
}

void CKVComCtlFactory::Destroy(IProgressBarInterface* bar) {
    ui::ModuleStateGuard moduleState;
    delete static_cast<ui::CProgressBarCtrl*>(bar);
}

void CKVComCtlFactory::Destroy(ICouplingRgnWalkerDlg* walker) {
    ui::ModuleStateGuard moduleState;
    // Only dialogs in the map are called at all: a pointer given back a
    // second time points at a dialog that is gone, and calling into it would
    // touch freed memory.
    const auto found = m_walkerDialogs.find(walker);
    if (walker == nullptr || found == m_walkerDialogs.end()) {
        return;
    }
    // The window goes first (DestroyWindow reports its own failure), then
    // the dialog, whatever the window said.
    walker->DestroyWindow();
    CCoupRgnWalkerDlg* dialog = found->second;
    m_walkerDialogs.erase(found);
    if (dialog->IsNotifyingHost()) {
        // Given back from inside one of its own calls to the host (Close
        // clicked, the host destroys it at once): deleted when that call has
        // returned to the event loop.
        dialog->deleteLater();
    } else {
        delete dialog;
    }
}

void CKVComCtlFactory::Destroy(IEyeDiagramDialog* sheet) {
    // The interface is the sheet's second base: static_cast finds the sheet.
    delete static_cast<ui::CEyeDiagramSheet*>(sheet);
}

void CKVComCtlFactory::Destroy(IEyeDiagramStimAdaptor* adaptor) {
    delete static_cast<CEyeStimAdaptor*>(adaptor);
}

void CKVComCtlFactory::Destroy(IEyeDiagramData* data) {
    // Every IEyeDiagramData this factory hands out is a CStimulusData at the
    // same address.
    delete static_cast<CStimulusData*>(data);
}

IEyeDiagramStimAdaptor* CKVComCtlFactory::CreateEyeStimAdaptor() {
    // A plain data object: no module state. The host gives it back to slot 6.
    return new CEyeStimAdaptor();
}

IEyeDiagramDialog* CKVComCtlFactory::CreateEyeDiagramSheet() {
    return CreateWidgetComponent<ui::CEyeDiagramSheet, IEyeDiagramDialog>("The eye diagram sheet");
}

IViaVizCtrl* CKVComCtlFactory::CreateViaVisualizerCtrl() {
    return CreateWidgetComponent<ui::CViaVisualizerCtrl, IViaVizCtrl>("The via visualizer");
}

// The control carries IViaVizCtrl as its second base: static_cast finds the widget around it,
// and the widget's virtual destructor deletes all of it.
void CKVComCtlFactory::DestroyViaVisualizerCtrl(IViaVizCtrl* control) {
    ui::ModuleStateGuard moduleState;
    delete static_cast<ui::CViaVisualizerCtrl*>(control);
}

IPadstackEditorCtrl* CKVComCtlFactory::CreatePadstackEditorDlg() {
    return CreateWidgetComponent<ui::CPadstackEditorDlg, IPadstackEditorCtrl>(
        "The padstack editor");
}

// The editor carries its interface as a second base after the dialog.
void CKVComCtlFactory::DestroyPadstackEditorDlg(IPadstackEditorCtrl* editor) {
    ui::ModuleStateGuard moduleState;
    delete static_cast<ui::CPadstackEditorDlg*>(editor);
}

ICouplingRgnWalkerDlg* CKVComCtlFactory::CreateCoupRgnWalkerDlg() {
    auto* dialog = CreateWidgetComponent<CCoupRgnWalkerDlg, CCoupRgnWalkerDlg>(
        "The Coupling Region Walker dialog");
    if (dialog == nullptr) {
        return nullptr;
    }
    // The interface is a member inside the dialog: only this map leads back.
    ICouplingRgnWalkerDlg* walker = dialog->Access();
    m_walkerDialogs.insert_or_assign(walker, dialog);
    return walker;
}

IProgressBarInterface* CKVComCtlFactory::CreateProgressBarCtrl() {
    return CreateWidgetComponent<ui::CProgressBarCtrl, IProgressBarInterface>("The progress bar");
}

IProgressReportInterface* CKVComCtlFactory::CreateProgressReport() {
    return CreateWidgetComponent<ui::CProgressReport, IProgressReportInterface>(
        "The progress report");
}

IProgressDialogInterface* CKVComCtlFactory::CreateProgressDlg() {
    return CreateWidgetComponent<ui::CProgressDlg, IProgressDialogInterface>("The progress dialog");
}

IChartCtrl* CKVComCtlFactory::CreateChartCtrl() {
    return CreateWidgetComponent<ui::CChartControl, IChartCtrl>("The chart control");
}

// The control carries IChartCtrl as its second base after the widget.
void CKVComCtlFactory::DestroyChartCtrl(IChartCtrl* chart) {
    ui::ModuleStateGuard moduleState;
    delete static_cast<ui::CChartControl*>(chart);
}

IEyeViewCtrl* CKVComCtlFactory::CreateEyeViewCtrl() {
    return CreateWidgetComponent<ui::CEyeViewCtrl, IEyeViewCtrl>("The eye view");
}

// The view carries IEyeViewCtrl as its last base, after the chart control.
void CKVComCtlFactory::DestroyEyeViewCtrl(IEyeViewCtrl* eye) {
    ui::ModuleStateGuard moduleState;
    delete static_cast<ui::CEyeViewCtrl*>(eye);
}

}  // namespace kv::module
