#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "kvcomctl/IKVComCtlFactory.h"

namespace kv::ui {
class CCoupRgnWalkerDlg;
}

namespace kv::module {

using ui::CCoupRgnWalkerDlg;

// Hash of a walker interface pointer: the pointer value shifted right by 4
// bits (objects are at least 16-byte aligned, so the low bits say nothing).
struct WalkerPointerHash {
    std::size_t operator()(const ICouplingRgnWalkerDlg* key) const noexcept {
        return static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(key) >> 4);
    }
};

// The single implementation of the factory: one static object for the life
// of the module. Window-based components are created and destroyed under the
// module state so that their resources are this module's.
class CKVComCtlFactory final : public IKVComCtlFactory {
public:
    CKVComCtlFactory();

    IEyeDiagramData* CreateStimulusData() override;
    void Destroy(IProgressDialogInterface* dialog) override;
    void Destroy(IProgressReportInterface* report) override;
    void Destroy(IProgressBarInterface* bar) override;
    void Destroy(ICouplingRgnWalkerDlg* walker) override;
    void Destroy(IEyeDiagramDialog* sheet) override;
    void Destroy(IEyeDiagramStimAdaptor* adaptor) override;
    void Destroy(IEyeDiagramData* data) override;
    IEyeDiagramStimAdaptor* CreateEyeStimAdaptor() override;
    IEyeDiagramDialog* CreateEyeDiagramSheet() override;
    IViaVizCtrl* CreateViaVisualizerCtrl() override;
    void DestroyViaVisualizerCtrl(IViaVizCtrl* control) override;
    IPadstackEditorCtrl* CreatePadstackEditorDlg() override;
    void DestroyPadstackEditorDlg(IPadstackEditorCtrl* editor) override;
    ICouplingRgnWalkerDlg* CreateCoupRgnWalkerDlg() override;
    IProgressBarInterface* CreateProgressBarCtrl() override;
    IProgressReportInterface* CreateProgressReport() override;
    IProgressDialogInterface* CreateProgressDlg() override;
    IChartCtrl* CreateChartCtrl() override;
    void DestroyChartCtrl(IChartCtrl* chart) override;
    IEyeViewCtrl* CreateEyeViewCtrl() override;
    void DestroyEyeViewCtrl(IEyeViewCtrl* eye) override;

private:
    // From the interface pointer that CreateCoupRgnWalkerDlg handed out back
    // to the dialog that holds it: the interface is a member inside the
    // dialog, so the pointer alone cannot be converted.
    std::unordered_map<ICouplingRgnWalkerDlg*, CCoupRgnWalkerDlg*, WalkerPointerHash>
        m_walkerDialogs;
};

}  // namespace kv::module
