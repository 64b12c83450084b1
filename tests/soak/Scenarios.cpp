#include "tests/soak/Scenarios.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>
#include <array>
#include <climits>
#include <memory>
#include <stdexcept>

#include "tests/soak/HostData.h"

namespace kv::soak {
namespace {

// Objects the library deleted later are gone once the host's loop has run again.
void Settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A window of the host's own, up on the screen.
std::unique_ptr<QWidget> HostWindow() {
    auto window = std::make_unique<QWidget>();
    window->setWindowTitle(QStringLiteral("soak host"));
    window->resize(720, 480);
    window->show();
    return window;
}

QString AnyFile(SoakRandom& random, const QDir& files, const char* extension) {
    static const std::array<const char*, 5> kNames = {
        "out", "name with blanks", "missing folder/out", "", "folder with blanks"};
    const QString name = QString::fromLatin1(kNames[static_cast<std::size_t>(random.Below(5))]);
    return files.absoluteFilePath(name + QLatin1String(random.Chance(0.9) ? extension : ""));
}

// Closes the modal component with OK or Cancel, as the user chooses; insisting, with Cancel.
Driver::Close CloseModal(SoakRandom& random) {
    return [&random](bool insist) {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) {
            return;
        }
        const bool ok = !insist && random.Chance(0.5);
        auto* button = dialog->findChild<QAbstractButton*>(ok ? "ctl1" : "ctl2");
        if (button != nullptr && button->isVisible() && button->isEnabled()) {
            button->click();
        } else if (auto* modal = qobject_cast<QDialog*>(dialog)) {
            modal->reject();
        }
    };
}

// The host reads everything back, as it does before a simulation.
void ReadBack(IEyeDiagramData& data) {
    volatile double sum = data.GetPeriod() + data.GetDutyCycle() + data.GetMaxJitter() +
                          data.GetRandomFreq() + data.GetSineMag() + data.GetSineFreq() +
                          data.GetSineInit() + data.GetUniformMag() + data.GetUniformMean();
    (void)sum;
    const int count = data.GetBitCount();
    int ones = 0;
    for (int i = 0; i < count; ++i) {
        ones += data.GetBit(i) ? 1 : 0;
    }
    try {
        (void)data.GetBit(count);
    } catch (const std::out_of_range&) {
        ++ones;  // the one operation that raises: an index past the end
    }
    (void)ones;
}

struct SheetHelp final : IEyeDiagramHelpHandler {
    void OnHelp(QWidget*, int, int) override { ++calls; }
    int calls = 0;
};

struct SheetHook final : IEyeDiagramEditHook {
    void OnEdit(IEyeDiagramData* data) override { seen = data; }
    IEyeDiagramData* seen = nullptr;
};

void RunSheet(Session& session) {
    SoakRandom& random = session.random;
    IEyeDiagramData* data = session.factory.CreateStimulusData();
    IEyeDiagramData* loaded = session.factory.CreateStimulusData();
    IEyeDiagramDialog* sheet = session.factory.CreateEyeDiagramSheet();
    SheetHelp help;
    SheetHook hook;
    sheet->SetHelpHandler(random.Chance(0.7) ? &help : nullptr);
    sheet->SetEditHook(random.Chance(0.7) ? &hook : nullptr);
    const auto host = HostWindow();
    static constexpr std::array<int, 10> kFlags = {0x80, 0x10, 0x01, 0x02, 0x03,
                                                   0x13, 0x82, 0x00, 0xFF, INT_MIN};
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        const bool hostile = random.Chance(0.6);
        if (random.Chance(0.7)) {
            FillStimulus(random, hostile, *data);  // else the values the last OK wrote back
        }
        const int flags = random.Pick(std::span<const int>(kFlags));
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
        Settle();
        (void)sheet->GetLastPageFlag();
        (void)sheet->GetLastPageIndex();
        ReadBack(*data);
        if (ok && random.Chance(0.4)) {
            // The host keeps what the user confirmed and reads it back in, as on its next start.
            const QString path = AnyFile(random, session.files, ".ini");
            if (data->Save(path.toUtf8().constData(), true)) {
                loaded->Load(path.toUtf8().constData(), true);
                ReadBack(*loaded);
            }
        }
    }
    session.factory.Destroy(sheet);
    session.factory.Destroy(loaded);
    session.factory.Destroy(data);
}

// The adaptor has no window: each round the host builds a waveform from a stimulus, walks
// every point and writes it out.
void RunAdaptor(Session& session) {
    SoakRandom& random = session.random;
    IEyeDiagramData* data = session.factory.CreateStimulusData();
    IEyeDiagramStimAdaptor* adaptor = session.factory.CreateEyeStimAdaptor();
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        const bool hostile = random.Chance(0.6);
        FillStimulus(random, hostile, *data);
        const int32_t count =
            adaptor->Build(hostile && random.Chance(0.1) ? nullptr : data,
                           AnyReal(random, hostile, 0.0), AnyReal(random, hostile, 3.3),
                           AnyReal(random, hostile, 1e-10), AnyReal(random, hostile, 2e-10));
        const STIMPOINT* points = adaptor->GetPoints();
        double sum = adaptor->GetDuration();
        for (int32_t i = 0; points != nullptr && i < adaptor->GetPointCount(); ++i) {
            sum += points[i].time + points[i].level;
        }
        (void)count;
        (void)sum;
        const auto source = AnyText(random, hostile, "VSOAK");
        const auto node = AnyText(random, hostile, "in");
        if (adaptor->GetPointCount() > 200000) {
            continue;  // a waveform of millions of corners is a valid file of hundreds of MB
        }
        adaptor->WritePwl(AnyFile(random, session.files, ".pwl").toUtf8().constData(),
                          Pointer(source), Pointer(node));
        if (random.Chance(0.3)) {
            adaptor->Clear();
        }
    }
    session.factory.Destroy(adaptor);
    session.factory.Destroy(data);
}

void FillVia(Session& session, IViaVizCtrl& control, bool hostile) {
    SoakRandom& random = session.random;
    control.SetPair(random.Chance(0.4));
    const int vias = control.IsPair() ? 2 : 1;
    for (int via = 0; via < vias + (hostile ? 1 : 0); ++via) {
        const int32_t index = via < vias ? via : AnyInt(random, true, -1);
        IViaVizData* data = control.GetViaData(index);
        const HostBoard board = MakeBoard(random, hostile);
        if (data != nullptr) {
            PlaceBoard(board, *data);
        }
        const int32_t layers = static_cast<int32_t>(board.layers.size());
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
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        const bool hostile = random.Chance(0.6);
        FillVia(session, *control, hostile);
        if (random.Chance(0.15)) {
            control->ExportToSpice();  // its file dialog and questions are answered
        }
        if (random.Chance(0.15)) {
            control->ExportToSpiceFile(AnyFile(random, session.files, ".cir").toUtf8().constData());
        }
        session.driver.RunModeless(session.driver.NextShare(), nullptr, nullptr);
        Settle();
    }
    session.factory.DestroyViaVisualizerCtrl(control);  // before the host window it lives in
}

void RunPadstack(Session& session) {
    SoakRandom& random = session.random;
    const auto host = HostWindow();
    IPadstackEditorCtrl* editor = session.factory.CreatePadstackEditorDlg();
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        const bool hostile = random.Chance(0.6);
        HostViaData data(MakeBoard(random, hostile));
        const int32_t layers = data.GetStackup()->count;
        editor->SetMetric(random.Chance(0.5));
        editor->SetMaxPadSize(AnyReal(random, hostile, 2.54e-3));
        const Counted<int32_t> used = MakeLayerList(random, hostile, layers);
        editor->SetUsedLayers(used.Data(), used.count);
        const PADDATA pad = AnyPad(random, hostile);
        editor->SetDefaultPad(hostile && random.Chance(0.2) ? nullptr : &pad);
        session.driver.Begin(session.driver.NextShare(), CloseModal(random));
        editor->Edit(random.Chance(0.5) ? host.get() : nullptr,
                     hostile && random.Chance(0.05) ? nullptr : &data);
        session.driver.End();
        Settle();
        PADDATA back{};
        editor->GetDefaultPad(random.Chance(0.9) ? &back : nullptr);
        (void)editor->IsModified();
    }
    session.factory.DestroyPadstackEditorDlg(editor);
}

// The host side of the walker: loads the region the user steps to, answers a picked net, and
// sometimes gives the walker back to the factory as soon as the user closes it.
class WalkerHost final : public ICRWDHost {
public:
    WalkerHost(Session& session, QWidget* owner) : m_session(session), m_owner(owner) {}
    ~WalkerHost() { m_session.factory.Destroy(m_walker); }
    WalkerHost(const WalkerHost&) = delete;
    WalkerHost& operator=(const WalkerHost&) = delete;

    void Open(bool hostile) {
        SoakRandom& random = m_session.random;
        m_hostile = hostile;
        m_closed = false;
        if (m_walker == nullptr) {
            m_walker = m_session.factory.CreateCoupRgnWalkerDlg();
            m_window = nullptr;
        }
        if (m_window == nullptr || random.Chance(0.1)) {
            QWidget* parent = random.Chance(0.7) ? m_owner : nullptr;
            const QList<QDialog*> before = Dialogs(parent);
            m_walker->CreateWindow(parent, random.Chance(0.9) ? this : nullptr);
            for (QDialog* dialog : Dialogs(parent)) {
                if (!before.contains(dialog)) {
                    m_window = dialog;
                }
            }
        }
        LoadRegion(random.Below(5));
        m_walker->Show(true);
    }

    bool Closed() const { return m_walker == nullptr || m_window == nullptr || m_closed; }

    void Close(bool insist) {
        if (m_window == nullptr) {
            return;
        }
        const int choice = insist ? 0 : m_session.random.Below(3);
        if (choice == 0) {
            if (auto* close = m_window->findChild<QAbstractButton*>(QStringLiteral("ctl2"))) {
                close->click();
            }
        } else if (choice == 1) {
            m_session.actions.PressKey(m_window, Qt::Key_Escape, Qt::NoModifier,
                                       QStringLiteral("\x1b"));
        } else {
            m_window->close();  // the title bar's close button
        }
        if (insist && m_window != nullptr && m_window->isVisible()) {
            m_window->close();
        }
        m_closed = m_closed || m_window == nullptr || !m_window->isVisible();
    }

    void OnRegionStep(int32_t step) override { LoadRegion(m_region + step); }
    void OnNetSelected(int32_t) override {
        if (m_walker != nullptr && m_session.random.Chance(0.2)) {
            m_walker->SelectNet(AnyInt(m_session.random, m_hostile, 0));
        }
    }
    void OnWalkerClosed() override {
        m_closed = true;
        if (m_session.random.Chance(0.4)) {
            m_session.factory.Destroy(m_walker);  // the usual host: gone as soon as it closes
            m_walker = nullptr;
        }
    }

private:
    static QList<QDialog*> Dialogs(QWidget* parent) {
        QList<QDialog*> dialogs;
        if (parent != nullptr) {
            return parent->findChildren<QDialog*>(Qt::FindDirectChildrenOnly);
        }
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QDialog*>(window)) {
                dialogs << dialog;
            }
        }
        return dialogs;
    }

    void LoadRegion(int32_t region) {
        if (m_walker == nullptr) {
            return;
        }
        SoakRandom& random = m_session.random;
        const bool hostile = m_hostile;
        m_region = region;
        const auto net = AnyText(random, hostile, "DDR_DQ3");
        m_walker->SetCurrentNet(Pointer(net));
        const auto title = AnyText(random, hostile, "Breakout");
        m_walker->SetRegion(AnyInt(random, hostile, region), AnyInt(random, hostile, 5),
                            Pointer(title));
        ICRWDCoupledNetsList* nets = m_walker->GetNetsList();
        if (nets != nullptr) {
            nets->RemoveAll();
            const int count = hostile && random.Chance(0.03) ? 100000 : random.Between(0, 30);
            m_session.actions.Trace(count == 100000 ? "host fills 100000 nets" : "host fills nets",
                                    m_window);
            for (int i = 0; i < count; ++i) {
                const auto name = AnyText(random, hostile && i < 50, "NET" + std::to_string(i));
                const auto separation = AnyText(random, hostile && i < 50, "0.15 mm");
                nets->AddNet(Pointer(name), Pointer(separation), "TOP",
                             random.Chance(0.1) ? nullptr : "0.1 mm");
            }
            if (random.Chance(0.1)) {
                nets->CopyFrom(random.Chance(0.5) ? nets : nullptr);
            }
            nets->AddRef();
            nets->Release();
        }
        m_walker->RefreshNets();
        HostBoard board = MakeBoard(random, hostile);
        const STACKUPARRAY stackup = StackupOf(board);
        const Counted<CROSSSECTIONTRACE> traces =
            MakeTraces(random, hostile, static_cast<int32_t>(board.layers.size()));
        m_walker->SetCrossSection(hostile && random.Chance(0.1) ? nullptr : &stackup, traces.Data(),
                                  traces.count);
        const auto report = AnyText(random, hostile, "Closest approach: 4 mil.");
        m_walker->SetReport(Pointer(report));
        if (random.Chance(0.2)) {
            m_walker->SelectNet(AnyInt(random, hostile, random.Below(5)));
        }
    }

    Session& m_session;
    QWidget* m_owner;
    ICouplingRgnWalkerDlg* m_walker = nullptr;
    QPointer<QDialog> m_window;
    bool m_hostile = false;
    bool m_closed = false;
    int32_t m_region = 0;
};

void RunWalker(Session& session) {
    const auto owner = HostWindow();
    WalkerHost host(session, owner.get());
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        host.Open(session.random.Chance(0.6));
        session.driver.RunModeless(
            session.driver.NextShare(), [&host](bool insist) { host.Close(insist); },
            [&host] { return host.Closed(); });
        Settle();
    }
}

uint32_t AnyColor(SoakRandom& random) {
    return static_cast<uint32_t>(random.Next());
}

void RunProgressBar(Session& session) {
    SoakRandom& random = session.random;
    auto host = HostWindow();
    auto* layout = new QVBoxLayout(host.get());
    IProgressBarInterface* bar = session.factory.CreateProgressBarCtrl();
    if (QWidget* widget = bar->GetHwnd()) {
        layout->addWidget(widget);
    }
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        const bool hostile = random.Chance(0.6);
        bar->SetFillColor(AnyColor(random));
        bar->SetEmptyColor(AnyColor(random));
        bar->SetNoPercentSign(random.Chance(0.3));
        bar->SetPos(AnyInt(random, hostile, random.Between(0, 100)), random.Chance(0.3));
        (void)bar->GetPos();
        session.driver.RunModeless(session.driver.NextShare(), nullptr, nullptr);
    }
    if (random.Chance(0.3)) {
        host.reset();  // the host's window first: the bar leaves it
    }
    session.factory.Destroy(bar);
}

void RunProgressReport(Session& session) {
    SoakRandom& random = session.random;
    auto dialog = std::make_unique<QDialog>();
    auto* layout = new QVBoxLayout(dialog.get());
    for (int id : {1001, 1002}) {
        auto* line = new QLabel(dialog.get());
        line->setObjectName(QStringLiteral("ctl%1").arg(id));
        layout->addWidget(line);
    }
    auto* placeholder = new QWidget(dialog.get());
    placeholder->setObjectName(QStringLiteral("ctl1003"));
    placeholder->setMinimumHeight(20);
    layout->addWidget(placeholder);
    // A control of another kind under an id a host may pass by mistake.
    auto* wrongKind = new QPushButton(QStringLiteral("not a text line"), dialog.get());
    wrongKind->setObjectName(QStringLiteral("ctl7"));
    layout->addWidget(wrongKind);
    IProgressReportInterface* report = session.factory.CreateProgressReport();
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        dialog->show();  // again, after Escape or Enter closed it
        const bool hostile = random.Chance(0.6);
        if (random.Chance(0.7)) {
            report->Attach(hostile && random.Chance(0.1) ? nullptr : dialog.get(),
                           AnyInt(random, hostile, 1001), AnyInt(random, hostile, 1002),
                           AnyInt(random, hostile, 1003));
        }
        const int work = random.Between(1, 20);
        for (int step = 0; step < work; ++step) {
            const auto first = AnyText(random, hostile, "Simulating");
            const auto second = AnyText(random, hostile, "net " + std::to_string(step));
            switch (random.Below(6)) {
                case 0:
                    report->SetFirstText(Pointer(first));
                    break;
                case 1:
                    report->SetSecondText(Pointer(second));
                    break;
                case 2:
                    report->SetPercent(AnyInt(random, hostile, step * 100 / work));
                    break;
                case 3:
                    report->SetCancelled(random.Chance(0.1));
                    break;
                case 4:
                    report->PumpMessages();
                    break;
                default:
                    report->SetAll(Pointer(first), Pointer(second),
                                   AnyInt(random, hostile, step * 100 / work));
                    break;
            }
            (void)report->IsCancelled();
            (void)report->GetPercent();
        }
        if (IProgressBarInterface* bar = report->GetProgressBar()) {
            bar->SetPos(AnyInt(random, hostile, 50), random.Chance(0.5));
        }
        session.driver.RunModeless(session.driver.NextShare() / 4, nullptr, nullptr);
    }
    if (random.Chance(0.3)) {
        dialog.reset();  // the host's dialog first; the report stays usable
        report->SetPercent(60);
    }
    session.factory.Destroy(report);
}

int32_t g_cancelValue = 0;

void RunProgressDialog(Session& session) {
    SoakRandom& random = session.random;
    const auto owner = HostWindow();
    IProgressDialogInterface* progress = session.factory.CreateProgressDlg();
    static constexpr std::array<uint32_t, 5> kDelays = {0, 1, 200, 1000, 0xFFFFFFFFu};
    if (random.Chance(0.7)) {
        progress->SetCancelCallback([](int32_t value) { g_cancelValue = value; },
                                    static_cast<int32_t>(random.Next()));
    }
    while (session.driver.HasActionsLeft()) {
        session.driver.CountOpening();
        const bool hostile = random.Chance(0.6);
        const auto cancelText = AnyText(random, hostile, "Stop");
        progress->SetCancelText(Pointer(cancelText));
        const auto title = AnyText(random, hostile, "Simulating");
        progress->SetTitle(Pointer(title));
        progress->EnableCancel(random.Chance(0.8), random.Chance(0.5));
        QWidget* parent = random.Chance(0.8) ? owner.get() : nullptr;
        const uint32_t delay = random.Pick(std::span<const uint32_t>(kDelays));
        // Refused while the dialog is up from a round whose host did not end it.
        if (random.Chance(0.5)) {
            progress->Create(parent, delay);
        } else {
            const int32_t x = AnyInt(random, hostile, 20);
            const int32_t y = AnyInt(random, hostile, 20);
            progress->CreateAt(parent, delay, x, y);
        }
        if (random.Chance(0.3)) {
            progress->Show(AnyInt(random, hostile, 1));
        }
        if (random.Chance(0.1)) {
            progress->Enable(random.Chance(0.5));
        }
        IProgressReportInterface* report = progress->GetReport();
        // The host's long job: every update lets the user's input through.
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
        (void)progress->GetHwnd();
        (void)progress->GetProgressBar();
        if (random.Chance(0.9)) {
            progress->Destroy();
        }
        Settle();
    }
    session.factory.Destroy(progress);  // it takes its window down if the host did not
}

constexpr std::array kComponents = {
    Component{"sheet", RunSheet},
    Component{"adaptor", RunAdaptor},
    Component{"via", RunVia},
    Component{"padstack", RunPadstack},
    Component{"walker", RunWalker},
    Component{"progress-bar", RunProgressBar},
    Component{"progress-report", RunProgressReport},
    Component{"progress-dialog", RunProgressDialog},
};

}  // namespace

std::span<const Component> Components() {
    return kComponents;
}

}  // namespace kv::soak
