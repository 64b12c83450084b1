#pragma once

#include "kvcomctl/Export.h"

// The one factory the library hands out. Every component is created by one of
// its operations and given back to the matching destroy operation exactly
// once; the host never deletes anything itself. Operation order is the
// virtual-table order the host binds to: the seven Destroy overloads come
// first, in the reverse of the order of their create operations. Slots 18 to
// 21 came later, after every slot a host built before them binds to.

class IEyeDiagramData;
class IEyeDiagramStimAdaptor;
class IEyeDiagramDialog;
class IViaVizCtrl;
class IPadstackEditorCtrl;
class ICouplingRgnWalkerDlg;
class IProgressBarInterface;
class IProgressReportInterface;
class IProgressDialogInterface;
class IChartCtrl;
class IEyeViewCtrl;

class IKVComCtlFactory {
public:
    virtual IEyeDiagramData* CreateStimulusData() = 0;                       // 0
    virtual void Destroy(IProgressDialogInterface* dialog) = 0;              // 1
    virtual void Destroy(IProgressReportInterface* report) = 0;              // 2
    virtual void Destroy(IProgressBarInterface* bar) = 0;                    // 3
    virtual void Destroy(ICouplingRgnWalkerDlg* walker) = 0;                 // 4
    virtual void Destroy(IEyeDiagramDialog* sheet) = 0;                      // 5
    virtual void Destroy(IEyeDiagramStimAdaptor* adaptor) = 0;               // 6
    virtual void Destroy(IEyeDiagramData* data) = 0;                         // 7
    virtual IEyeDiagramStimAdaptor* CreateEyeStimAdaptor() = 0;              // 8
    virtual IEyeDiagramDialog* CreateEyeDiagramSheet() = 0;                  // 9
    virtual IViaVizCtrl* CreateViaVisualizerCtrl() = 0;                      // 10
    virtual void DestroyViaVisualizerCtrl(IViaVizCtrl* control) = 0;         // 11
    virtual IPadstackEditorCtrl* CreatePadstackEditorDlg() = 0;              // 12
    virtual void DestroyPadstackEditorDlg(IPadstackEditorCtrl* editor) = 0;  // 13
    virtual ICouplingRgnWalkerDlg* CreateCoupRgnWalkerDlg() = 0;             // 14
    virtual IProgressBarInterface* CreateProgressBarCtrl() = 0;              // 15
    virtual IProgressReportInterface* CreateProgressReport() = 0;            // 16
    virtual IProgressDialogInterface* CreateProgressDlg() = 0;               // 17
    // The chart and the eye view, each without its window until the host's
    // Create; null without a QApplication on the calling thread (with one
    // line on standard error). Destroying null does nothing.
    virtual IChartCtrl* CreateChartCtrl() = 0;               // 18
    virtual void DestroyChartCtrl(IChartCtrl* chart) = 0;    // 19
    virtual IEyeViewCtrl* CreateEyeViewCtrl() = 0;           // 20
    virtual void DestroyEyeViewCtrl(IEyeViewCtrl* eye) = 0;  // 21

protected:
    ~IKVComCtlFactory() = default;
};

// The library's single export. Returns the same static factory on every call;
// allocates nothing.
extern "C" KVCOMCTL_API IKVComCtlFactory* GetKVComCtlFactory();

// The type a host looks the export up as after loading the library.
using GetKVComCtlFactoryFn = IKVComCtlFactory* (*)();
