// Prints the binary layout of the host contract: every record and every interface declared
// under include/kvcomctl. This list is the one place that names them; the layout check fails
// when a header declares a struct or class that is missing here.

#include <cstddef>
#include <iostream>

#include "kvcomctl/kvcomctl.h"
#include "tests/contract/LayoutPrinter.h"

// A record or an interface without a base, with its fields or operations in declaration order.
#define KV_RECORD(Record, ...) printer.record<Record>(#Record, {KV_FIELDS(Record, __VA_ARGS__)})
#define KV_INTERFACE(Interface, ...) \
    printer.interface<Interface>(#Interface, "", {KV_OPERATIONS(Interface, __VA_ARGS__)})

int main() {
    // The first line names the version whose layout this is; the check compares it with the
    // project's version.
    std::cout << "version " << KV_PROJECT_VERSION << "\n"
              << "# Binary layout of the host contract (include/kvcomctl) on x86-64 under the\n"
              << "# Itanium C++ ABI: every record's size, alignment and field offsets, every\n"
              << "# interface's virtual-table slots (a virtual destructor takes two). A change\n"
              << "# here is a contract change: raise the minor version, say in CHANGES.md what a\n"
              << "# host must rebuild, then rewrite this file with the update_contract_layout\n"
              << "# build target.\n";
    kv::test::LayoutPrinter printer(std::cout);

    KV_RECORD(EYEMASK, PTopMax, PTopMin, PBaseMin, PBaseMax, PCross, TCross1Min, TCross1Max,
              TRiseDelay, TCross2Max, TCross2Min, TFallDelay, ScaleTime, ScaleVolt, OffsetTime,
              OffsetVolt, MaskName, m_flag1, m_flag2, m_extra);
    KV_RECORD(VEC2, x, y);
    KV_RECORD(STIMPOINT, time, level);
    KV_RECORD(STACKUPLAYER, name, kind, usage, thickness);
    KV_RECORD(STACKUPARRAY, count, layers);
    KV_RECORD(PADDATA, padType, shape, pad_x, pad_y, angle, antipad_x, antipad_y, antipadAngle,
              antipadShape, shapeStyle, clearance);
    KV_RECORD(PADSTACK, name, drill, drillExtra, plating, firstLayer, lastLayer, padCount, pads);
    KV_RECORD(VIAELEMENT, kind, startEndType, endEndType, startLayer, endLayer, value,
              startCapacitance, endCapacitance, delay);
    KV_RECORD(CROSSSECTIONTRACE, layer, x, width, role, net);
    KV_RECORD(EYEMEASURE, samples, unitIntervals, level0, level1, noise0, noise1, eyeHeight,
              eyeWidth, eyeCentreTime, crossingJitterRms, crossingJitterPeakToPeak, maskHits,
              maskMarginPercent);

    using F = IKVComCtlFactory;
    printer.interface<F>(
        "IKVComCtlFactory", "",
        {KV_OPERATION(F, CreateStimulusData),
         KV_OVERLOAD(F, void, Destroy, IProgressDialogInterface*),
         KV_OVERLOAD(F, void, Destroy, IProgressReportInterface*),
         KV_OVERLOAD(F, void, Destroy, IProgressBarInterface*),
         KV_OVERLOAD(F, void, Destroy, ICouplingRgnWalkerDlg*),
         KV_OVERLOAD(F, void, Destroy, IEyeDiagramDialog*),
         KV_OVERLOAD(F, void, Destroy, IEyeDiagramStimAdaptor*),
         KV_OVERLOAD(F, void, Destroy, IEyeDiagramData*),
         KV_OPERATIONS(F, CreateEyeStimAdaptor, CreateEyeDiagramSheet, CreateViaVisualizerCtrl,
                       DestroyViaVisualizerCtrl, CreatePadstackEditorDlg, DestroyPadstackEditorDlg,
                       CreateCoupRgnWalkerDlg, CreateProgressBarCtrl, CreateProgressReport,
                       CreateProgressDlg, CreateChartCtrl, DestroyChartCtrl, CreateEyeViewCtrl,
                       DestroyEyeViewCtrl)});
    KV_INTERFACE(IEyeDiagramData, SetCycleCount, GetCycleCount, SetSkipBits, GetSkipBits,
                 SetAuxFlag, GetAuxFlag, SetEyeCount, GetEyeCount, SetPeriod, GetPeriod,
                 SetDutyCycle, GetDutyCycle, SetAddJitter, GetAddJitter, SetAdvancedJitter,
                 GetAdvancedJitter, SetMaxJitter, GetMaxJitter, SetJitterType, GetJitterType,
                 SetJitterRepeatable, GetJitterRepeatable, SetJitterAsTime, GetJitterAsTime,
                 SetFreqMeasured, GetFreqMeasured, SetRandomFreq, GetRandomFreq, SetSineMag,
                 GetSineMag, SetSineFreq, GetSineFreq, SetSineInit, GetSineInit, SetUniformMag,
                 GetUniformMag, SetUniformMean, GetUniformMean, SetSeqType, GetSeqType,
                 SetInitState, GetInitState, SetPolyDegree, GetPolyDegree, SetMask, GetMask,
                 SetBits, GetBitCount, GetBit, Save, Load);
    KV_INTERFACE(IEyeDiagramStimAdaptor, Build, GetPointCount, GetPoints, GetDuration, Clear,
                 WritePwl, BuildJittered);

    KV_INTERFACE(IEyeDiagramDialog, SetHelpHandler, SetEditHook, GetEditHook, EditWithPageFlag,
                 Edit, GetLastPageFlag, GetLastPageIndex);
    KV_INTERFACE(IEyeDiagramHelpHandler, OnHelp);
    KV_INTERFACE(IEyeDiagramEditHook, OnEdit);

    printer.interface<IViaVizData>(
        "IViaVizData", "",
        {KV_OPERATIONS(IViaVizData, GetStackup, GetPadstack, GetViaReference, GetViaCount,
                       GetNetReference, GetFirstValue, GetSecondValue, GetThirdValue, GetFlag),
         KV_VIRTUAL_DESTRUCTOR(IViaVizData)});
    KV_INTERFACE(IViaVizCtrl, Create, GetWindow, GetViaData, SetPair, IsPair, SetElements, SetPorts,
                 SetNames, SetMetric, SetView, SetTopViewLayer, Refresh, ExportToSpice,
                 ExportToSpiceFile);
    KV_INTERFACE(IPadstackEditorCtrl, Edit, SetMetric, SetMaxPadSize, SetUsedLayers, SetDefaultPad,
                 GetDefaultPad, IsModified);

    KV_INTERFACE(IChartCtrl, Create, GetWindow, AddCurve, SetCurveName, RemoveAllCurves, SetUnits,
                 SetLogarithmic, Fit, SaveImage);
    KV_INTERFACE(IEyeViewCtrl, Create, GetWindow, SetWaveform, SetTiming, GetMeasure, ShowMask,
                 SaveImage);

    KV_INTERFACE(ICouplingRgnWalkerDlg, CreateWindow, DestroyWindow, Show, SetCurrentNet, SetRegion,
                 GetNetsList, RefreshNets, SelectNet, SetReport, SetCrossSection);
    KV_INTERFACE(ICRWDHost, OnRegionStep, OnNetSelected, OnWalkerClosed);
    KV_INTERFACE(ICRWDCoupledNetsList, AddRef, AddNet, RemoveAll, Release, CopyFrom);

    KV_INTERFACE(IProgressBarInterface, GetPos, SetFillColor, SetPos, SetEmptyColor,
                 SetNoPercentSign, GetHwnd);
    printer.interface<ProgressInterface>(
        "ProgressInterface", "",
        {KV_OPERATIONS(ProgressInterface, SetFirstText, SetSecondText, SetPercent, SetAll,
                       IsCancelled, GetPercent, GetProgressBar, SetCancelled, Attach, PumpMessages),
         KV_VIRTUAL_DESTRUCTOR(ProgressInterface)});
    printer.interface<IProgressReportInterface, ProgressInterface>("IProgressReportInterface",
                                                                   "ProgressInterface", {});
    KV_INTERFACE(IProgressDialogInterface, CreateAt, Create, PumpMessages, EnableCancel, Destroy,
                 GetReport, GetProgressBar, SetCancelCallback, SetCancelText, GetHwnd, SetTitle,
                 Show, Enable);

    for (const std::string& error : printer.errors()) {
        std::cerr << error << "\n";
    }
    return printer.errors().empty() ? 0 : 1;
}
