// The coupling region walker as a host drives it: a made-up board on which
// the net DDR_DQ3 runs through five coupling regions. The host answers
// Previous and Next by loading the neighbouring region into the walker, and
// shows what else the user asked for.

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "HostPage.h"
#include "kvcomctl/kvcomctl.h"

namespace {

constexpr double kMil = 25.4e-6;

struct BoardLayer {
    const char* name;
    int32_t kind;
    int32_t usage;
    double thickness;
};

// Eight layers, 1.6 mm in all.
constexpr std::array<BoardLayer, 9> kStackup = {{
    {"TOP", STACKUP_CONDUCTOR, 0, 35e-6},
    {"Prepreg 1", STACKUP_DIELECTRIC, 0, 100e-6},
    {"GND1", STACKUP_CONDUCTOR, STACKUP_USAGE_PLANE, 35e-6},
    {"Core 1", STACKUP_DIELECTRIC, 0, 250e-6},
    {"IN1", STACKUP_CONDUCTOR, 0, 18e-6},
    {"Core 2", STACKUP_DIELECTRIC, 0, 734e-6},
    {"PWR", STACKUP_CONDUCTOR, STACKUP_USAGE_PLANE, 35e-6},
    {"Prepreg 2", STACKUP_DIELECTRIC, 0, 358e-6},
    {"BOTTOM", STACKUP_CONDUCTOR, 0, 35e-6},
}};

struct BoardTrace {
    const char* net;
    int32_t layer;
    double x;      // metres from DDR_DQ3's centre
    double width;  // metres
    int32_t role;
};

struct Region {
    const char* title;
    std::vector<BoardTrace> traces;  // DDR_DQ3 first
    const char* remark;
};

const std::vector<Region>& Regions() {
    static const std::vector<Region> regions = {
        {"Breakout under U7",
         {{"DDR_DQ3", 0, 0, 4 * kMil, 0},
          {"DDR_DQ2", 0, 10 * kMil, 4 * kMil, 1},
          {"DDR_DQ4", 0, -9 * kMil, 4 * kMil, 1},
          {"GND_VIA_FENCE", 0, 40 * kMil, 20 * kMil, 2}},
         "Dense breakout: neck-down to 4 mil between the balls."},
        {"Byte lane 0 to the series resistors",
         {{"DDR_DQ3", 0, 0, 5 * kMil, 0},
          {"DDR_DQ2", 0, 15 * kMil, 5 * kMil, 1},
          {"DDR_DQ4", 0, -15 * kMil, 5 * kMil, 1},
          {"DDR_DQS0_P", 0, 30 * kMil, 5 * kMil, 1},
          {"ETH_TX_P", 4, 20 * kMil, 4 * kMil, 2}},
         "Three-wide spacing holds along the lane."},
        {"Under the clock tree",
         {{"DDR_DQ3", 4, 0, 4 * kMil, 0},
          {"DDR_CK_P", 4, 8 * kMil, 4 * kMil, 1},
          {"DDR_CK_N", 4, 16 * kMil, 4 * kMil, 1},
          {"DDR_DQ5", 4, -12 * kMil, 4 * kMil, 1},
          {"USB_DP", 0, -10 * kMil, 6 * kMil, 2}},
         "Closest approach to the clock pair: check the crosstalk budget here."},
        {"Across the connector field",
         {{"DDR_DQ3", 4, 0, 4 * kMil, 0},
          {"DDR_DQ1", 4, 20 * kMil, 4 * kMil, 1},
          {"SPI_CLK", 8, -5 * kMil, 6 * kMil, 2}},
         "Wide spacing; the SPI clock runs on the far side of the board."},
        {"Into the DRAM fan-in",
         {{"DDR_DQ3", 0, 0, 4 * kMil, 0},
          {"DDR_DQ2", 0, 8 * kMil, 4 * kMil, 1},
          {"DDR_DM0", 0, -8 * kMil, 4 * kMil, 1},
          {"DDR_DQ6", 0, 16 * kMil, 4 * kMil, 1}},
         "Fan-in at minimum spacing for the last 2 mm."},
    };
    return regions;
}

// Lengths as this host shows them: millimetres to the micrometre.
std::string Length(double metres) {
    return QString::number(metres * 1e3, 'f', 3).toStdString() + " mm";
}

// The host's side of the walker: owns it for the page's life and loads the
// region the user steps to.
class BoardWalker final : public QObject, public ICRWDHost {
public:
    BoardWalker(IKVComCtlFactory& factory, QWidget* owner, QLabel* status)
        : QObject(owner), m_factory(factory), m_status(status) {
        for (const BoardLayer& layer : kStackup) {
            STACKUPLAYER record{};
            std::strncpy(record.name, layer.name, sizeof record.name - 1);
            record.kind = layer.kind;
            record.usage = layer.usage;
            record.thickness = layer.thickness;
            m_layers.push_back(record);
        }
        m_walker = m_factory.CreateCoupRgnWalkerDlg();
        if (m_walker != nullptr && m_walker->CreateWindow(owner, this)) {
            m_walker->SetCurrentNet("DDR_DQ3");
            Load(0);
        }
    }
    ~BoardWalker() override { m_factory.Destroy(m_walker); }

    ICouplingRgnWalkerDlg* Walker() const { return m_walker; }

    void OnRegionStep(int32_t step) override {
        Load(m_region + step);
        Tell(QStringLiteral("Stepped to region %1.").arg(m_region + 1));
    }
    void OnNetSelected(int32_t index) override {
        const auto& traces = Regions()[static_cast<std::size_t>(m_region)].traces;
        if (index >= 0 && static_cast<std::size_t>(index) + 1 < traces.size()) {
            Tell(QStringLiteral("Selected %1.").arg(traces[index + 1].net));
        }
    }
    void OnWalkerClosed() override { Tell(QStringLiteral("The walker was closed.")); }

private:
    void Load(int region) {
        const int count = static_cast<int>(Regions().size());
        m_region = std::clamp(region, 0, count - 1);
        const Region& r = Regions()[static_cast<std::size_t>(m_region)];
        m_walker->SetRegion(m_region, count, r.title);

        // Every net beside DDR_DQ3 is listed, coupled or not; the entry
        // index is the trace's place after DDR_DQ3.
        ICRWDCoupledNetsList* list = m_walker->GetNetsList();
        list->RemoveAll();
        std::vector<CROSSSECTIONTRACE> traces;
        const BoardTrace& victim = r.traces.front();
        QString report = QStringLiteral("Region %1 of %2: %3\n%4\n\n")
                             .arg(m_region + 1)
                             .arg(count)
                             .arg(r.title, r.remark);
        report += QStringLiteral("%1 %2 %3\n").arg("Net", -16).arg("Layer", -8).arg("Edge gap");
        for (const BoardTrace& t : r.traces) {
            CROSSSECTIONTRACE record{t.layer, t.x, t.width, t.role, {}};
            std::strncpy(record.net, t.net, sizeof record.net - 1);
            traces.push_back(record);
            if (&t == &victim) {
                continue;
            }
            const double gap = std::abs(t.x - victim.x) - (t.width + victim.width) / 2;
            const std::string separation = t.layer == victim.layer ? Length(gap) : std::string();
            list->AddNet(t.net, separation.c_str(),
                         kStackup[static_cast<std::size_t>(t.layer)].name, Length(t.width).c_str());
            report += QStringLiteral("%1 %2 %3\n")
                          .arg(t.net, -16)
                          .arg(kStackup[static_cast<std::size_t>(t.layer)].name, -8)
                          .arg(separation.empty() ? QStringLiteral("other layer")
                                                  : QString::fromStdString(separation));
        }
        m_walker->RefreshNets();
        const STACKUPARRAY stackup{static_cast<int32_t>(m_layers.size()), m_layers.data()};
        m_walker->SetCrossSection(&stackup, traces.data(), static_cast<int32_t>(traces.size()));
        m_walker->SetReport(report.toUtf8().constData());
    }
    void Tell(const QString& text) {
        if (m_status != nullptr) {
            m_status->setText(text);
        }
    }

    IKVComCtlFactory& m_factory;
    QLabel* m_status;
    ICouplingRgnWalkerDlg* m_walker = nullptr;
    std::vector<STACKUPLAYER> m_layers;
    int m_region = 0;
};

QWidget* CreateWalkerWidget(IKVComCtlFactory& factory) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel(QObject::tr(
        "DDR_DQ3 on a made-up eight-layer board, through five coupling regions. Step with "
        "Previous and Next; pick a net to find it in the cross-section.")));
    auto* open = new QPushButton(QObject::tr("Show the walker"));
    auto* status = new QLabel;
    layout->addWidget(open);
    layout->addWidget(status);
    layout->addStretch();
    auto* host = new BoardWalker(factory, page, status);
    QObject::connect(open, &QPushButton::clicked, page, [host] {
        if (host->Walker() != nullptr) {
            host->Walker()->Show(true);
        }
    });
    return page;
}

QWidget* WalkerWindow(QWidget& owner) {
    const auto dialogs = owner.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (QWidget* child : dialogs) {
        if (child->isWindow()) {
            return child;
        }
    }
    return nullptr;
}

void SaveWindow(QWidget& window, const QDir& out, const QString& fileName, QTextStream& log) {
    const QString path = out.filePath(fileName);
    LogTourWrite(window.grab().save(path, "PNG"), path, log);
}

void TourWalker(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    QWidget owner;
    QLabel status;
    BoardWalker host(factory, &owner, &status);
    QWidget* window = WalkerWindow(owner);
    if (host.Walker() == nullptr || window == nullptr) {
        LogTourWrite(false, out.filePath("walker_region1.png"), log);
        return;
    }
    window->resize(1000, 560);
    host.Walker()->Show(true);
    SaveWindow(*window, out, "walker_region1.png", log);
    // Two clicks on Next, as a user steps, then a net picked by the host.
    auto* next = window->findChild<QPushButton*>("ctl1206");
    next->click();
    next->click();
    host.Walker()->SelectNet(0);
    SaveWindow(*window, out, "walker_region3.png", log);
    host.Walker()->Show(false);
}

const HostPageRegistration kRegistration{
    {"Coupling region walker", CreateWalkerWidget, TourWalker}};

}  // namespace
