#include "module/KVComCtlFactory.h"

#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/ports/MessagePort.h"
#include "core/stimulus/StimulusData.h"
#include "ui/eyediagram/EyeDiagramSheet.h"
#include "ui/padstack/PadstackEditorDlg.h"
#include "ui/progress/ProgressBarCtrl.h"
#include "ui/progress/ProgressDlg.h"
#include "ui/progress/ProgressReport.h"
#include "ui/shared/ModuleState.h"
#include "ui/via/ViaVisualizerCtrl.h"

// Components not built into this module yet are handed out as null, and
// their destroy operations have nothing to destroy.

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
    if (walker == nullptr) {
        return;
    }
    const auto found = m_walkerDialogs.find(walker);
    if (found != m_walkerDialogs.end()) {
        m_walkerDialogs.erase(found);
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
    ui::ModuleStateGuard moduleState;
    return nullptr;
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

}  // namespace kv::module
