#include "tests/soak/Scenarios.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>

#include "tests/soak/HostData.h"

namespace kv::soak {
namespace {

// A window of the host's own, up on the screen.
std::unique_ptr<QWidget> HostWindow() {
    auto window = std::make_unique<QWidget>();
    window->setWindowTitle(QStringLiteral("soak host"));
    window->resize(720, 480);
    window->show();
    return window;
}

// Where the host writes: a new name, one with blanks, a folder, or one no file can have.
std::string AnyFile(SoakRandom& random, const QDir& files, const char* extension) {
    static const char* const kNames[] = {"out", "name with blanks", "missing folder/out", "",
                                         "folder with blanks"};
    const QString name =
        QString::fromUtf8(random.Pick(kNames)) + (random.Chance(0.9) ? extension : "");
    return files.absoluteFilePath(name).toStdString();
}

// Closes the modal component with OK or Cancel, as the user chooses; insisting, with Cancel.
Driver::Close CloseModal(SoakRandom& random) {
    return [&random](bool insist) {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        const bool ok = !insist && random.Chance(0.5);
        auto* button =
            dialog != nullptr ? dialog->findChild<QAbstractButton*>(ok ? "ctl1" : "ctl2") : nullptr;
        if (button != nullptr && button->isVisible() && button->isEnabled()) {
            button->click();
        } else if (dialog != nullptr) {
            dialog->reject();
        }
    };
}

struct SheetHost final : IEyeDiagramHelpHandler, IEyeDiagramEditHook {
    void OnHelp(QWidget*, int, int) override {}
    void OnEdit(IEyeDiagramData*) override {}
};

void RunSheet(Session& session) {
    static constexpr int kFlags[] = {0x80, 0x10, 0x01, 0x02, 0x03, 0x13, 0x82, 0x00, 0xFF, INT_MIN};
    SoakRandom& random = session.random;
    IEyeDiagramData* data = session.factory.CreateStimulusData();
    IEyeDiagramDialog* sheet = session.factory.CreateEyeDiagramSheet();
    SheetHost sheetHost;
    sheet->SetHelpHandler(random.Chance(0.7) ? &sheetHost : nullptr);
    sheet->SetEditHook(random.Chance(0.7) ? &sheetHost : nullptr);
    const auto host = HostWindow();
    while (session.driver.NextRound()) {
        const bool hostile = random.Chance(0.6);
        if (random.Chance(0.7)) {
            FillStimulus(random, hostile, *data);  // else the values the last OK wrote back
        }
        const int flags = random.Pick(kFlags);
        const int page = AnyInt(random, hostile, random.Below(3));
        const int argA = AnyInt(random, hostile, 0);
        const int argB = AnyInt(random, hostile, 0);
        QWidget* parent = random.Chance(0.5) ? host.get() : nullptr;
        const bool byFlag = random.Chance(0.3);
        session.driver.Begin(session.driver.NextShare(), CloseModal(random));
        const bool ok =
            byFlag ? sheet->EditWithPageFlag(data, parent, 1 << (page & 3), flags, argA, argB)
                   : sheet->Edit(data, parent, page, flags, argA, argB);
        session.driver.End();
        // The host keeps what the user confirmed, as on its next start.
        if (ok && random.Chance(0.4)) {
            data->Save(AnyFile(random, session.files, ".ini").c_str(), true);
        }
    }
    session.factory.Destroy(sheet);
    session.factory.Destroy(data);
}

// The adaptor has no window: each round the host builds a waveform from a stimulus and writes
// it out.
void RunAdaptor(Session& session) {
    SoakRandom& random = session.random;
    IEyeDiagramData* data = session.factory.CreateStimulusData();
    IEyeDiagramStimAdaptor* adaptor = session.factory.CreateEyeStimAdaptor();
    while (session.driver.NextRound()) {
        const bool hostile = random.Chance(0.6);
        FillStimulus(random, hostile, *data);
        adaptor->Build(hostile && random.Chance(0.1) ? nullptr : data,
                       AnyReal(random, hostile, 0.0), AnyReal(random, hostile, 3.3),
                       AnyReal(random, hostile, 1e-10), AnyReal(random, hostile, 2e-10));
        const auto source = AnyText(random, hostile, "VSOAK");
        const auto node = AnyText(random, hostile, "in");
        // A waveform of millions of corners is a valid file of hundreds of MB.
        if (adaptor->GetPointCount() <= 200000) {
            adaptor->WritePwl(AnyFile(random, session.files, ".pwl").c_str(), Pointer(source),
                              Pointer(node));
        }
        if (random.Chance(0.3)) {
            adaptor->Clear();
        }
    }
    session.factory.Destroy(adaptor);
    session.factory.Destroy(data);
}

void FillVia(SoakRandom& random, IViaVizCtrl& control, bool hostile) {
    control.SetPair(random.Chance(0.4));
    const int vias = control.IsPair() ? 2 : 1;
    for (int via = 0; via < vias + (hostile ? 1 : 0); ++via) {
        const int32_t index = via < vias ? via : AnyInt(random, true, -1);
        const HostBoard board = MakeBoard(random, hostile);
        if (IViaVizData* data = control.GetViaData(index)) {
            PlaceBoard(board, *data);
        }
        const auto layers = static_cast<int32_t>(board.layers.records.size());
        const Counted<VIAELEMENT> elements = MakeElements(random, hostile, layers);
        control.SetElements(index, elements.Data(), elements.count);
        const Counted<int32_t> ports = MakeLayerList(random, hostile, layers);
        control.SetPorts(index, ports.Data(), ports.count);
    }
    const auto subcircuit = AnyText(random, hostile, "VIA_SOAK");
    const auto base = AnyText(random, hostile, "via");
    const auto file = AnyText(random, hostile, "");
    control.SetNames(Pointer(subcircuit), Pointer(base), Pointer(file));
    control.SetMetric(random.Chance(0.5));
    control.SetView(AnyInt(random, hostile, random.Below(2)));
    control.SetTopViewLayer(AnyInt(random, hostile, random.Below(6)));
    control.Refresh();
}

void RunVia(Session& session) {
    SoakRandom& random = session.random;
    const auto host = HostWindow();
    auto* layout = new QVBoxLayout(host.get());
    IViaVizCtrl* control = session.factory.CreateViaVisualizerCtrl();
    const bool inHost = random.Chance(0.7);
    if (control->Create(inHost ? host.get() : nullptr, AnyInt(random, true, 1300))) {
        if (inHost) {
            layout->addWidget(control->GetWindow());
        } else if (QWidget* window = control->GetWindow()) {
            window->resize(640, 400);
            window->show();
        }
    }
    while (session.driver.NextRound()) {
        FillVia(random, *control, random.Chance(0.6));
        if (random.Chance(0.15)) {
            control->ExportToSpice();  // its file dialog and questions are answered
        }
        if (random.Chance(0.15)) {
            control->ExportToSpiceFile(AnyFile(random, session.files, ".cir").c_str());
        }
        session.driver.RunModeless(session.driver.NextShare());
    }
    session.factory.DestroyViaVisualizerCtrl(control);  // before the host window it lives in
}

void RunPadstack(Session& session) {
    SoakRandom& random = session.random;
    const auto host = HostWindow();
    IPadstackEditorCtrl* editor = session.factory.CreatePadstackEditorDlg();
    while (session.driver.NextRound()) {
        const bool hostile = random.Chance(0.6);
        HostViaData data(MakeBoard(random, hostile));
        editor->SetMetric(random.Chance(0.5));
        editor->SetMaxPadSize(AnyReal(random, hostile, 2.54e-3));
        const Counted<int32_t> used = MakeLayerList(random, hostile, data.GetStackup()->count);
        editor->SetUsedLayers(used.Data(), used.count);
        const PADDATA pad = AnyPad(random, hostile);
        editor->SetDefaultPad(hostile && random.Chance(0.2) ? nullptr : &pad);
        session.driver.Begin(session.driver.NextShare(), CloseModal(random));
        editor->Edit(random.Chance(0.5) ? host.get() : nullptr,
                     hostile && random.Chance(0.05) ? nullptr : &data);
        session.driver.End();
    }
    session.factory.DestroyPadstackEditorDlg(editor);
}

// The host side of the walker: loads the region the user steps to, answers a picked net, and
// sometimes gives the walker back to the factory as soon as the user closes it.
class WalkerHost final : public ICRWDHost {
public:
    WalkerHost(Session& session, QWidget* owner)
        : m_session(session), m_random(session.random), m_owner(owner) {}
    ~WalkerHost() { m_session.factory.Destroy(m_walker); }

    void Open(bool hostile) {
        m_hostile = hostile;
        m_closed = false;
        const bool created = m_walker == nullptr;
        if (created) {
            // The contract gives no window: the walker's is the one its creation adds.
            const QWidgetList before = QApplication::topLevelWidgets();
            m_walker = m_session.factory.CreateCoupRgnWalkerDlg();
            m_window = nullptr;
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (!before.contains(window)) {
                    m_window = window;
                }
            }
        }
        if (created || m_random.Chance(0.1)) {  // again, which a walker refuses
            m_walker->CreateWindow(m_random.Chance(0.7) ? m_owner : nullptr,
                                   m_random.Chance(0.9) ? this : nullptr);
        }
        // The regions the host passes on its way to the one it shows.
        for (int region = m_random.Between(1, 8); region > 0; --region) {
            LoadRegion(m_random.Below(5));
        }
        m_walker->Show(true);
    }

    bool Closed() const { return m_walker == nullptr || m_window == nullptr || m_closed; }

    // With the Close button, Escape or the title bar's close button; insisting, with all.
    void Close(bool insist) {
        const int way = insist ? 0 : m_random.Below(3);
        auto* button = m_window ? m_window->findChild<QAbstractButton*>("ctl2") : nullptr;
        if (way == 0 && button != nullptr) {
            button->click();
        } else if (way == 1) {
            m_session.actions.PressKey(m_window, Qt::Key_Escape);
        }
        if (m_window != nullptr && m_window->isVisible() && (way == 2 || insist)) {
            m_window->close();
        }
        m_closed = m_closed || m_window == nullptr || !m_window->isVisible();
    }

    void OnRegionStep(int32_t step) override { LoadRegion(m_region + step); }
    void OnNetSelected(int32_t) override {
        if (m_walker != nullptr && m_random.Chance(0.2)) {
            m_walker->SelectNet(AnyInt(m_random, m_hostile, 0));
        }
    }
    void OnWalkerClosed() override {
        m_closed = true;
        if (m_random.Chance(0.4)) {
            m_session.factory.Destroy(m_walker);  // the usual host: gone as soon as it closes
            m_walker = nullptr;
        }
    }

private:
    void LoadRegion(int32_t region) {
        if (m_walker == nullptr) {
            return;
        }
        const bool hostile = m_hostile;
        m_region = region;
        const auto net = AnyText(m_random, hostile, "DDR_DQ3");
        m_walker->SetCurrentNet(Pointer(net));
        const auto title = AnyText(m_random, hostile, "Breakout");
        m_walker->SetRegion(AnyInt(m_random, hostile, region), AnyInt(m_random, hostile, 5),
                            Pointer(title));
        if (ICRWDCoupledNetsList* nets = m_walker->GetNetsList()) {
            nets->RemoveAll();
            const int count = hostile && m_random.Chance(0.03) ? 100000 : m_random.Between(0, 30);
            m_session.actions.Trace(count == 100000 ? "host fills 100000 nets" : "host fills nets",
                                    m_window);
            for (int i = 0; i < count; ++i) {
                const auto name = AnyText(m_random, hostile && i < 50, "NET" + std::to_string(i));
                const auto separation = AnyText(m_random, hostile && i < 50, "0.15 mm");
                nets->AddNet(Pointer(name), Pointer(separation), "TOP",
                             m_random.Chance(0.1) ? nullptr : "0.1 mm");
            }
        }
        m_walker->RefreshNets();
        HostBoard board = MakeBoard(m_random, hostile);
        const STACKUPARRAY stackup = board.Stackup();
        const Counted<CROSSSECTIONTRACE> traces =
            MakeTraces(m_random, hostile, static_cast<int32_t>(board.layers.records.size()));
        m_walker->SetCrossSection(hostile && m_random.Chance(0.1) ? nullptr : &stackup,
                                  traces.Data(), traces.count);
        const auto report = AnyText(m_random, hostile, "Closest approach: 4 mil.");
        m_walker->SetReport(Pointer(report));
        if (m_random.Chance(0.2)) {
            m_walker->SelectNet(AnyInt(m_random, hostile, m_random.Below(5)));
        }
    }

    Session& m_session;
    SoakRandom& m_random;
    QWidget* m_owner;
    ICouplingRgnWalkerDlg* m_walker = nullptr;
    QPointer<QWidget> m_window;
    bool m_hostile = false;
    bool m_closed = false;
    int32_t m_region = 0;
};

void RunWalker(Session& session) {
    const auto owner = HostWindow();
    WalkerHost host(session, owner.get());
    while (session.driver.NextRound()) {
        host.Open(session.random.Chance(0.6));
        // A few actions in a region; then the user closes the walker, or leaves it open for the
        // next region the host loads.
        Driver::Close close = [&host](bool insist) { host.Close(insist); };
        session.driver.RunModeless(session.driver.NextShare() / 4,
                                   session.random.Chance(0.5) ? close : nullptr,
                                   [&host] { return host.Closed(); });
    }
}

void RunProgressBar(Session& session) {
    SoakRandom& random = session.random;
    auto host = HostWindow();
    auto* layout = new QVBoxLayout(host.get());
    IProgressBarInterface* bar = session.factory.CreateProgressBarCtrl();
    if (QWidget* widget = bar->GetHwnd()) {
        layout->addWidget(widget);
    }
    while (session.driver.NextRound()) {
        bar->SetFillColor(static_cast<uint32_t>(random.Next()));
        bar->SetEmptyColor(static_cast<uint32_t>(random.Next()));
        bar->SetNoPercentSign(random.Chance(0.3));
        bar->SetPos(AnyInt(random, random.Chance(0.6), random.Between(0, 100)), random.Chance(0.3));
        session.driver.RunModeless(session.driver.NextShare());
    }
    if (random.Chance(0.3)) {
        host.reset();  // the host's window first: the bar leaves it
    }
    session.factory.Destroy(bar);
}

// The host's progress dialog, of the fixed size its resource gives it: two text lines and a
// place for the bar, and under an id a host may pass by mistake a control of another kind.
std::unique_ptr<QDialog> ReportDialog() {
    auto dialog = std::make_unique<QDialog>();
    dialog->setFixedSize(360, 160);
    auto* layout = new QVBoxLayout(dialog.get());
    const std::pair<QWidget*, int> controls[] = {{new QLabel, 1001},
                                                 {new QLabel, 1002},
                                                 {new QWidget, 1003},
                                                 {new QPushButton("not a text line"), 7}};
    for (const auto& [control, id] : controls) {
        control->setObjectName(QStringLiteral("ctl%1").arg(id));
        layout->addWidget(control);
    }
    return dialog;
}

void RunProgressReport(Session& session) {
    SoakRandom& random = session.random;
    auto dialog = ReportDialog();
    IProgressReportInterface* report = session.factory.CreateProgressReport();
    while (session.driver.NextRound()) {
        dialog->show();  // again, after Escape or Enter closed it
        const bool hostile = random.Chance(0.6);
        if (random.Chance(0.7)) {
            report->Attach(hostile && random.Chance(0.1) ? nullptr : dialog.get(),
                           AnyInt(random, hostile, 1001), AnyInt(random, hostile, 1002),
                           AnyInt(random, hostile, 1003));
        }
        // The host's job, reporting as it goes.
        const int work = random.Between(1, 20);
        for (int step = 0; step < work; ++step) {
            const auto first = AnyText(random, hostile, "Simulating");
            const auto second = AnyText(random, hostile, "net " + std::to_string(step));
            const int percent = AnyInt(random, hostile, step * 100 / work);
            if (random.Chance(0.2)) {
                report->PumpMessages();
            }
            report->SetCancelled(random.Chance(0.05));
            report->SetAll(Pointer(first), Pointer(second), percent);
        }
        if (IProgressBarInterface* bar = report->GetProgressBar()) {
            bar->SetPos(AnyInt(random, hostile, 50), random.Chance(0.5));
        }
        session.driver.RunModeless(session.driver.NextShare() / 4);
    }
    if (random.Chance(0.3)) {
        dialog.reset();  // the host's dialog first; the report stays usable
        report->SetPercent(60);
    }
    session.factory.Destroy(report);
}

void RunProgressDialog(Session& session) {
    static constexpr uint32_t kDelays[] = {0, 1, 200, 1000, 0xFFFFFFFFu};
    SoakRandom& random = session.random;
    const auto owner = HostWindow();
    IProgressDialogInterface* progress = session.factory.CreateProgressDlg();
    if (random.Chance(0.7)) {
        progress->SetCancelCallback([](int32_t) {}, static_cast<int32_t>(random.Next()));
    }
    while (session.driver.NextRound()) {
        const bool hostile = random.Chance(0.6);
        const auto cancelText = AnyText(random, hostile, "Stop");
        progress->SetCancelText(Pointer(cancelText));
        const auto title = AnyText(random, hostile, "Simulating");
        progress->SetTitle(Pointer(title));
        progress->EnableCancel(random.Chance(0.8), random.Chance(0.5));
        QWidget* parent = random.Chance(0.8) ? owner.get() : nullptr;
        const uint32_t delay = random.Pick(kDelays);
        // Refused while the dialog is up from a round whose host did not end it.
        if (random.Chance(0.5)) {
            progress->Create(parent, delay);
        } else {
            const int32_t x = AnyInt(random, hostile, 20);
            progress->CreateAt(parent, delay, x, AnyInt(random, hostile, 20));
        }
        if (random.Chance(0.3)) {
            progress->Show(AnyInt(random, hostile, 1));
        }
        if (random.Chance(0.1)) {
            progress->Enable(random.Chance(0.5));
        }
        // The host's long job: every update lets the user's input through.
        IProgressReportInterface* report = progress->GetReport();
        const int share = session.driver.NextShare();
        session.driver.Begin(share, nullptr);
        for (int step = 0; session.driver.InShare() && step < 3 * share; ++step) {
            const auto first = AnyText(random, hostile, "Simulating");
            report->SetAll(Pointer(first), "net", AnyInt(random, hostile, step % 101));
            if (report->IsCancelled() && random.Chance(0.7)) {
                break;
            }
            if (random.Chance(0.2)) {
                progress->PumpMessages();
            }
            if (random.Chance(0.05)) {
                progress->EnableCancel(random.Chance(0.5), random.Chance(0.5));
            }
        }
        session.driver.End();
        if (random.Chance(0.9)) {
            progress->Destroy();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    session.factory.Destroy(progress);  // it takes its window down if the host did not
}

constexpr Component kComponents[] = {{"sheet", RunSheet},
                                     {"adaptor", RunAdaptor},
                                     {"via", RunVia},
                                     {"padstack", RunPadstack},
                                     {"walker", RunWalker},
                                     {"progress-bar", RunProgressBar},
                                     {"progress-report", RunProgressReport},
                                     {"progress-dialog", RunProgressDialog}};

}  // namespace

std::span<const Component> Components() {
    return kComponents;
}

}  // namespace kv::soak
