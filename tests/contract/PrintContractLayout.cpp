// Prints the binary layout of the host contract: every record and every interface declared
// under include/kvcomctl. This list is the one place that names them; the layout check fails
// when a header declares a struct or class that is missing here.

#include <cstddef>
#include <iostream>

#include "kvcomctl/kvcomctl.h"
#include "tests/contract/LayoutPrinter.h"

namespace {

void printRecords(kv::test::LayoutPrinter& printer) {
    printer.record<EYEMASK>(
        "EYEMASK",
        {KV_FIELD(EYEMASK, PTopMax), KV_FIELD(EYEMASK, PTopMin), KV_FIELD(EYEMASK, PBaseMin),
         KV_FIELD(EYEMASK, PBaseMax), KV_FIELD(EYEMASK, PCross), KV_FIELD(EYEMASK, TCross1Min),
         KV_FIELD(EYEMASK, TCross1Max), KV_FIELD(EYEMASK, TRiseDelay),
         KV_FIELD(EYEMASK, TCross2Max), KV_FIELD(EYEMASK, TCross2Min),
         KV_FIELD(EYEMASK, TFallDelay), KV_FIELD(EYEMASK, ScaleTime), KV_FIELD(EYEMASK, ScaleVolt),
         KV_FIELD(EYEMASK, OffsetTime), KV_FIELD(EYEMASK, OffsetVolt), KV_FIELD(EYEMASK, MaskName),
         KV_FIELD(EYEMASK, m_flag1), KV_FIELD(EYEMASK, m_flag2), KV_FIELD(EYEMASK, m_extra)});
    printer.record<VEC2>("VEC2", {KV_FIELD(VEC2, x), KV_FIELD(VEC2, y)});
    printer.record<STIMPOINT>("STIMPOINT", {KV_FIELD(STIMPOINT, time), KV_FIELD(STIMPOINT, level)});
    printer.record<STACKUPLAYER>(
        "STACKUPLAYER", {KV_FIELD(STACKUPLAYER, name), KV_FIELD(STACKUPLAYER, kind),
                         KV_FIELD(STACKUPLAYER, usage), KV_FIELD(STACKUPLAYER, thickness)});
    printer.record<STACKUPARRAY>("STACKUPARRAY",
                                 {KV_FIELD(STACKUPARRAY, count), KV_FIELD(STACKUPARRAY, layers)});
    printer.record<PADDATA>(
        "PADDATA", {KV_FIELD(PADDATA, padType), KV_FIELD(PADDATA, shape), KV_FIELD(PADDATA, pad_x),
                    KV_FIELD(PADDATA, pad_y), KV_FIELD(PADDATA, angle),
                    KV_FIELD(PADDATA, antipad_x), KV_FIELD(PADDATA, antipad_y),
                    KV_FIELD(PADDATA, antipadAngle), KV_FIELD(PADDATA, antipadShape),
                    KV_FIELD(PADDATA, shapeStyle), KV_FIELD(PADDATA, clearance)});
    printer.record<PADSTACK>(
        "PADSTACK",
        {KV_FIELD(PADSTACK, name), KV_FIELD(PADSTACK, drill), KV_FIELD(PADSTACK, drillExtra),
         KV_FIELD(PADSTACK, plating), KV_FIELD(PADSTACK, firstLayer), KV_FIELD(PADSTACK, lastLayer),
         KV_FIELD(PADSTACK, padCount), KV_FIELD(PADSTACK, pads)});
    printer.record<VIAELEMENT>(
        "VIAELEMENT", {KV_FIELD(VIAELEMENT, kind), KV_FIELD(VIAELEMENT, startEndType),
                       KV_FIELD(VIAELEMENT, endEndType), KV_FIELD(VIAELEMENT, startLayer),
                       KV_FIELD(VIAELEMENT, endLayer), KV_FIELD(VIAELEMENT, value),
                       KV_FIELD(VIAELEMENT, startCapacitance), KV_FIELD(VIAELEMENT, endCapacitance),
                       KV_FIELD(VIAELEMENT, delay)});
    printer.record<CROSSSECTIONTRACE>(
        "CROSSSECTIONTRACE", {KV_FIELD(CROSSSECTIONTRACE, layer), KV_FIELD(CROSSSECTIONTRACE, x),
                              KV_FIELD(CROSSSECTIONTRACE, width), KV_FIELD(CROSSSECTIONTRACE, role),
                              KV_FIELD(CROSSSECTIONTRACE, net)});
    printer.record<EYEMEASURE>(
        "EYEMEASURE",
        {KV_FIELD(EYEMEASURE, samples), KV_FIELD(EYEMEASURE, unitIntervals),
         KV_FIELD(EYEMEASURE, level0), KV_FIELD(EYEMEASURE, level1), KV_FIELD(EYEMEASURE, noise0),
         KV_FIELD(EYEMEASURE, noise1), KV_FIELD(EYEMEASURE, eyeHeight),
         KV_FIELD(EYEMEASURE, eyeWidth), KV_FIELD(EYEMEASURE, eyeCentreTime),
         KV_FIELD(EYEMEASURE, crossingJitterRms), KV_FIELD(EYEMEASURE, crossingJitterPeakToPeak),
         KV_FIELD(EYEMEASURE, maskHits), KV_FIELD(EYEMEASURE, maskMarginPercent)});
}

void printFactoryAndDataInterfaces(kv::test::LayoutPrinter& printer) {
    using F = IKVComCtlFactory;
    printer.interface<F>("IKVComCtlFactory", "",
                         {KV_OPERATION(F, CreateStimulusData),
                          KV_OVERLOAD(F, void, Destroy, IProgressDialogInterface*),
                          KV_OVERLOAD(F, void, Destroy, IProgressReportInterface*),
                          KV_OVERLOAD(F, void, Destroy, IProgressBarInterface*),
                          KV_OVERLOAD(F, void, Destroy, ICouplingRgnWalkerDlg*),
                          KV_OVERLOAD(F, void, Destroy, IEyeDiagramDialog*),
                          KV_OVERLOAD(F, void, Destroy, IEyeDiagramStimAdaptor*),
                          KV_OVERLOAD(F, void, Destroy, IEyeDiagramData*),
                          KV_OPERATION(F, CreateEyeStimAdaptor),
                          KV_OPERATION(F, CreateEyeDiagramSheet),
                          KV_OPERATION(F, CreateViaVisualizerCtrl),
                          KV_OPERATION(F, DestroyViaVisualizerCtrl),
                          KV_OPERATION(F, CreatePadstackEditorDlg),
                          KV_OPERATION(F, DestroyPadstackEditorDlg),
                          KV_OPERATION(F, CreateCoupRgnWalkerDlg),
                          KV_OPERATION(F, CreateProgressBarCtrl),
                          KV_OPERATION(F, CreateProgressReport),
                          KV_OPERATION(F, CreateProgressDlg),
                          KV_OPERATION(F, CreateChartCtrl),
                          KV_OPERATION(F, DestroyChartCtrl),
                          KV_OPERATION(F, CreateEyeViewCtrl),
                          KV_OPERATION(F, DestroyEyeViewCtrl)});

    using D = IEyeDiagramData;
    printer.interface<D>("IEyeDiagramData", "",
                         {KV_OPERATION(D, SetCycleCount),
                          KV_OPERATION(D, GetCycleCount),
                          KV_OPERATION(D, SetSkipBits),
                          KV_OPERATION(D, GetSkipBits),
                          KV_OPERATION(D, SetAuxFlag),
                          KV_OPERATION(D, GetAuxFlag),
                          KV_OPERATION(D, SetEyeCount),
                          KV_OPERATION(D, GetEyeCount),
                          KV_OPERATION(D, SetPeriod),
                          KV_OPERATION(D, GetPeriod),
                          KV_OPERATION(D, SetDutyCycle),
                          KV_OPERATION(D, GetDutyCycle),
                          KV_OPERATION(D, SetAddJitter),
                          KV_OPERATION(D, GetAddJitter),
                          KV_OPERATION(D, SetAdvancedJitter),
                          KV_OPERATION(D, GetAdvancedJitter),
                          KV_OPERATION(D, SetMaxJitter),
                          KV_OPERATION(D, GetMaxJitter),
                          KV_OPERATION(D, SetJitterType),
                          KV_OPERATION(D, GetJitterType),
                          KV_OPERATION(D, SetJitterRepeatable),
                          KV_OPERATION(D, GetJitterRepeatable),
                          KV_OPERATION(D, SetJitterAsTime),
                          KV_OPERATION(D, GetJitterAsTime),
                          KV_OPERATION(D, SetFreqMeasured),
                          KV_OPERATION(D, GetFreqMeasured),
                          KV_OPERATION(D, SetRandomFreq),
                          KV_OPERATION(D, GetRandomFreq),
                          KV_OPERATION(D, SetSineMag),
                          KV_OPERATION(D, GetSineMag),
                          KV_OPERATION(D, SetSineFreq),
                          KV_OPERATION(D, GetSineFreq),
                          KV_OPERATION(D, SetSineInit),
                          KV_OPERATION(D, GetSineInit),
                          KV_OPERATION(D, SetUniformMag),
                          KV_OPERATION(D, GetUniformMag),
                          KV_OPERATION(D, SetUniformMean),
                          KV_OPERATION(D, GetUniformMean),
                          KV_OPERATION(D, SetSeqType),
                          KV_OPERATION(D, GetSeqType),
                          KV_OPERATION(D, SetInitState),
                          KV_OPERATION(D, GetInitState),
                          KV_OPERATION(D, SetPolyDegree),
                          KV_OPERATION(D, GetPolyDegree),
                          KV_OPERATION(D, SetMask),
                          KV_OPERATION(D, GetMask),
                          KV_OPERATION(D, SetBits),
                          KV_OPERATION(D, GetBitCount),
                          KV_OPERATION(D, GetBit),
                          KV_OPERATION(D, Save),
                          KV_OPERATION(D, Load)});

    using A = IEyeDiagramStimAdaptor;
    printer.interface<A>(
        "IEyeDiagramStimAdaptor", "",
        {KV_OPERATION(A, Build), KV_OPERATION(A, GetPointCount), KV_OPERATION(A, GetPoints),
         KV_OPERATION(A, GetDuration), KV_OPERATION(A, Clear), KV_OPERATION(A, WritePwl),
         KV_OPERATION(A, BuildJittered)});
}

void printSheetInterfaces(kv::test::LayoutPrinter& printer) {
    using S = IEyeDiagramDialog;
    printer.interface<S>(
        "IEyeDiagramDialog", "",
        {KV_OPERATION(S, SetHelpHandler), KV_OPERATION(S, SetEditHook),
         KV_OPERATION(S, GetEditHook), KV_OPERATION(S, EditWithPageFlag), KV_OPERATION(S, Edit),
         KV_OPERATION(S, GetLastPageFlag), KV_OPERATION(S, GetLastPageIndex)});
    printer.interface<IEyeDiagramHelpHandler>("IEyeDiagramHelpHandler", "",
                                              {KV_OPERATION(IEyeDiagramHelpHandler, OnHelp)});
    printer.interface<IEyeDiagramEditHook>("IEyeDiagramEditHook", "",
                                           {KV_OPERATION(IEyeDiagramEditHook, OnEdit)});
}

void printViaInterfaces(kv::test::LayoutPrinter& printer) {
    using V = IViaVizData;
    printer.interface<V>("IViaVizData", "",
                         {KV_OPERATION(V, GetStackup), KV_OPERATION(V, GetPadstack),
                          KV_OPERATION(V, GetViaReference), KV_OPERATION(V, GetViaCount),
                          KV_OPERATION(V, GetNetReference), KV_OPERATION(V, GetFirstValue),
                          KV_OPERATION(V, GetSecondValue), KV_OPERATION(V, GetThirdValue),
                          KV_OPERATION(V, GetFlag), KV_VIRTUAL_DESTRUCTOR(IViaVizData)});

    using C = IViaVizCtrl;
    printer.interface<C>(
        "IViaVizCtrl", "",
        {KV_OPERATION(C, Create), KV_OPERATION(C, GetWindow), KV_OPERATION(C, GetViaData),
         KV_OPERATION(C, SetPair), KV_OPERATION(C, IsPair), KV_OPERATION(C, SetElements),
         KV_OPERATION(C, SetPorts), KV_OPERATION(C, SetNames), KV_OPERATION(C, SetMetric),
         KV_OPERATION(C, SetView), KV_OPERATION(C, SetTopViewLayer), KV_OPERATION(C, Refresh),
         KV_OPERATION(C, ExportToSpice), KV_OPERATION(C, ExportToSpiceFile)});

    using P = IPadstackEditorCtrl;
    printer.interface<P>(
        "IPadstackEditorCtrl", "",
        {KV_OPERATION(P, Edit), KV_OPERATION(P, SetMetric), KV_OPERATION(P, SetMaxPadSize),
         KV_OPERATION(P, SetUsedLayers), KV_OPERATION(P, SetDefaultPad),
         KV_OPERATION(P, GetDefaultPad), KV_OPERATION(P, IsModified)});
}

void printChartInterfaces(kv::test::LayoutPrinter& printer) {
    using C = IChartCtrl;
    printer.interface<C>(
        "IChartCtrl", "",
        {KV_OPERATION(C, Create), KV_OPERATION(C, GetWindow), KV_OPERATION(C, AddCurve),
         KV_OPERATION(C, SetCurveName), KV_OPERATION(C, RemoveAllCurves), KV_OPERATION(C, SetUnits),
         KV_OPERATION(C, SetLogarithmic), KV_OPERATION(C, Fit), KV_OPERATION(C, SaveImage)});

    using E = IEyeViewCtrl;
    printer.interface<E>(
        "IEyeViewCtrl", "",
        {KV_OPERATION(E, Create), KV_OPERATION(E, GetWindow), KV_OPERATION(E, SetWaveform),
         KV_OPERATION(E, SetTiming), KV_OPERATION(E, GetMeasure), KV_OPERATION(E, ShowMask),
         KV_OPERATION(E, SaveImage)});
}

void printWalkerInterfaces(kv::test::LayoutPrinter& printer) {
    using W = ICouplingRgnWalkerDlg;
    printer.interface<W>(
        "ICouplingRgnWalkerDlg", "",
        {KV_OPERATION(W, CreateWindow), KV_OPERATION(W, DestroyWindow), KV_OPERATION(W, Show),
         KV_OPERATION(W, SetCurrentNet), KV_OPERATION(W, SetRegion), KV_OPERATION(W, GetNetsList),
         KV_OPERATION(W, RefreshNets), KV_OPERATION(W, SelectNet), KV_OPERATION(W, SetReport),
         KV_OPERATION(W, SetCrossSection)});

    using H = ICRWDHost;
    printer.interface<H>("ICRWDHost", "",
                         {KV_OPERATION(H, OnRegionStep), KV_OPERATION(H, OnNetSelected),
                          KV_OPERATION(H, OnWalkerClosed)});

    using N = ICRWDCoupledNetsList;
    printer.interface<N>(
        "ICRWDCoupledNetsList", "",
        {KV_OPERATION(N, AddRef), KV_OPERATION(N, AddNet), KV_OPERATION(N, RemoveAll),
         KV_OPERATION(N, Release), KV_OPERATION(N, CopyFrom)});
}

void printProgressInterfaces(kv::test::LayoutPrinter& printer) {
    using B = IProgressBarInterface;
    printer.interface<B>("IProgressBarInterface", "",
                         {KV_OPERATION(B, GetPos), KV_OPERATION(B, SetFillColor),
                          KV_OPERATION(B, SetPos), KV_OPERATION(B, SetEmptyColor),
                          KV_OPERATION(B, SetNoPercentSign), KV_OPERATION(B, GetHwnd)});

    using R = ProgressInterface;
    printer.interface<R>(
        "ProgressInterface", "",
        {KV_OPERATION(R, SetFirstText), KV_OPERATION(R, SetSecondText), KV_OPERATION(R, SetPercent),
         KV_OPERATION(R, SetAll), KV_OPERATION(R, IsCancelled), KV_OPERATION(R, GetPercent),
         KV_OPERATION(R, GetProgressBar), KV_OPERATION(R, SetCancelled), KV_OPERATION(R, Attach),
         KV_OPERATION(R, PumpMessages), KV_VIRTUAL_DESTRUCTOR(ProgressInterface)});
    printer.interface<IProgressReportInterface, ProgressInterface>("IProgressReportInterface",
                                                                   "ProgressInterface", {});

    using G = IProgressDialogInterface;
    printer.interface<G>(
        "IProgressDialogInterface", "",
        {KV_OPERATION(G, CreateAt), KV_OPERATION(G, Create), KV_OPERATION(G, PumpMessages),
         KV_OPERATION(G, EnableCancel), KV_OPERATION(G, Destroy), KV_OPERATION(G, GetReport),
         KV_OPERATION(G, GetProgressBar), KV_OPERATION(G, SetCancelCallback),
         KV_OPERATION(G, SetCancelText), KV_OPERATION(G, GetHwnd), KV_OPERATION(G, SetTitle),
         KV_OPERATION(G, Show), KV_OPERATION(G, Enable)});
}

}  // namespace

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
    printRecords(printer);
    printFactoryAndDataInterfaces(printer);
    printSheetInterfaces(printer);
    printViaInterfaces(printer);
    printChartInterfaces(printer);
    printWalkerInterfaces(printer);
    printProgressInterfaces(printer);
    for (const std::string& error : printer.errors()) {
        std::cerr << error << "\n";
    }
    return printer.errors().empty() ? 0 : 1;
}
