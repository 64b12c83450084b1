// A hostile host: every value its types allow, through every interface of the
// library loaded with dlopen. Each operation answers with its message, its
// refusal or a clamp, and what it refuses stays as it was; none may abort,
// trip a sanitizer, allocate without bound or hang.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTemporaryDir>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "kvcomctl/EyeDiagramControlIds.h"
#include "kvcomctl/kvcomctl.h"
#include "tests/host/ModalAnswers.h"
#include "tests/host/QtHost.h"

namespace {

using kv::test::g_factory;
using kv::test::ModalAnswers;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
const std::vector<double> kHostileReals = {kNaN, kInf,  -kInf,  0.0,   -0.0,
                                           -1.0, 1e308, -1e308, 5e-324};
const std::vector<int32_t> kHostileInts = {INT32_MIN, -1000000, -1, 0, 1, 3, 1000000, INT32_MAX};
const std::vector<int> kBadComponents = {3, -1, 1000000, INT_MIN, INT_MAX};

const QString kInvalidData =
    QStringLiteral("Invalid eye diagram data.\nReverting to default values.");

template <class Widget>
Widget* Control(QWidget* window, int id) {
    auto* control = window->findChild<Widget*>(QStringLiteral("ctl%1").arg(id));
    EXPECT_NE(control, nullptr) << "ctl" << id;
    return control;
}

void ClickOk(QWidget* window) {
    Control<QPushButton>(window, kvcomctl_ids::kSheetOk)->click();
}

// Paints a widget and everything in it, as a screen would.
void PaintAll(QWidget* widget) {
    widget->resize(widget->sizeHint().expandedTo(QSize(400, 300)));
    (void)widget->grab();
}

struct DataDeleter {
    void operator()(IEyeDiagramData* data) const { g_factory->Destroy(data); }
};
using DataPtr = std::unique_ptr<IEyeDiagramData, DataDeleter>;
DataPtr NewData() {
    return DataPtr(g_factory->CreateStimulusData());
}

// ---------------------------------------------------------------- IEyeDiagramData

TEST(HostileStimulusData, JitterComponentOutsideZeroToTwoIsRefusedAndChangesNothing) {
    DataPtr data = NewData();
    const auto flags = [&data] {
        std::vector<bool> all;
        for (int i = 0; i < 3; ++i) {
            all.insert(all.end(),
                       {data->GetAddJitter(i), data->GetJitterAsTime(i), data->GetFreqMeasured(i)});
        }
        return all;
    };
    for (int i = 0; i < 3; ++i) {  // every flag differs from its neighbours
        data->SetAddJitter(i, i != 1);
        data->SetJitterAsTime(i, i == 1);
        data->SetFreqMeasured(i, i == 0);
    }
    const std::vector<bool> before = flags();
    for (const int component : kBadComponents) {
        for (const bool value : {true, false}) {
            EXPECT_FALSE(data->SetAddJitter(component, value)) << component;
            EXPECT_FALSE(data->SetJitterAsTime(component, value)) << component;
            EXPECT_FALSE(data->SetFreqMeasured(component, value)) << component;
        }
        EXPECT_FALSE(data->GetAddJitter(component)) << component;
        EXPECT_FALSE(data->GetJitterAsTime(component)) << component;
        EXPECT_FALSE(data->GetFreqMeasured(component)) << component;
        EXPECT_EQ(flags(), before) << component;
    }
}

void SetEveryReal(IEyeDiagramData& data, double value) {
    data.SetPeriod(value);
    data.SetDutyCycle(value);
    data.SetMaxJitter(value);
    data.SetRandomFreq(value);
    data.SetSineMag(value);
    data.SetSineFreq(value);
    data.SetSineInit(value);
    data.SetUniformMag(value);
    data.SetUniformMean(value);
    EYEMASK* mask = data.GetMask();
    for (double EYEMASK::*field :
         {&EYEMASK::PTopMax, &EYEMASK::PTopMin, &EYEMASK::PBaseMin, &EYEMASK::PBaseMax,
          &EYEMASK::PCross, &EYEMASK::TCross1Min, &EYEMASK::TCross1Max, &EYEMASK::TRiseDelay,
          &EYEMASK::TCross2Max, &EYEMASK::TCross2Min, &EYEMASK::TFallDelay, &EYEMASK::ScaleTime,
          &EYEMASK::ScaleVolt, &EYEMASK::OffsetTime, &EYEMASK::OffsetVolt}) {
        mask->*field = value;
    }
}

void SetEveryCount(IEyeDiagramData& data, int32_t value) {
    data.SetCycleCount(value);
    data.SetSkipBits(value);
    data.SetEyeCount(value);
    data.SetJitterType(value);
    data.SetSeqType(value);
    data.SetInitState(value);
    data.SetPolyDegree(value);
}

// Whatever the host stored, Save writes something Load reads back without
// harm: invalid data is reported and replaced by the defaults.
TEST(HostileStimulusData, AnyStoredValueSurvivesSaveAndLoad) {
    QTemporaryDir folder;
    const std::string file = folder.filePath(QStringLiteral("stimulus.ini")).toStdString();
    ModalAnswers answers;
    const auto roundTrip = [&file](IEyeDiagramData& saved) {
        EXPECT_TRUE(saved.Save(file.c_str(), true));
        DataPtr loaded = NewData();
        EXPECT_TRUE(loaded->Load(file.c_str(), true));
        EXPECT_GE(loaded->GetBitCount(), 0);
        EXPECT_LE(loaded->GetBitCount(), 32768 * 10);
    };
    for (const double value : kHostileReals) {
        DataPtr data = NewData();
        SetEveryReal(*data, value);
        roundTrip(*data);
    }
    for (const int32_t value : kHostileInts) {
        DataPtr data = NewData();
        SetEveryCount(*data, value);
        roundTrip(*data);
    }
    // Sequences: none, one bit, longer than a custom sequence is stored.
    for (const int count : {0, 1, 40000}) {
        DataPtr data = NewData();
        data->SetSeqType(4);
        std::vector<char> bits(static_cast<std::size_t>(count) + 1, 1);
        data->SetBits(reinterpret_cast<const bool*>(bits.data()), count);
        EXPECT_EQ(data->GetBitCount(), count);
        roundTrip(*data);
    }
    // A mask name filling its 21 bytes without a terminator is cut to 20.
    DataPtr named = NewData();
    std::memset(named->GetMask()->MaskName, 'M', sizeof named->GetMask()->MaskName);
    EXPECT_TRUE(named->Save(file.c_str(), true));
    DataPtr loaded = NewData();
    EXPECT_TRUE(loaded->Load(file.c_str(), true));
    EXPECT_EQ(std::string(loaded->GetMask()->MaskName), std::string(20, 'M'));
}

TEST(HostileStimulusData, BitsFromNullNegativeCountsAndIndicesOutsideTheSequence) {
    DataPtr data = NewData();
    data->SetBits(nullptr, 5);  // nothing to copy from: the bits stay
    EXPECT_EQ(data->GetBitCount(), 31);
    for (const int count : {-1, INT_MIN}) {
        data->SetBits(nullptr, count);
        EXPECT_EQ(data->GetBitCount(), 0);
    }
    for (const int index : {-1, 0, INT_MAX, INT_MIN}) {
        EXPECT_THROW(data->GetBit(index), std::out_of_range);
    }
}

// A location that names nothing is refused: Save writes nothing and says
// so, Load reads nothing and keeps the values. A folder or a file that holds
// no section reads as a missing file: every value its default.
TEST(HostileStimulusData, LocationsThatAreNoFileAreRefusedOrReadAsDefaults) {
    QTemporaryDir folder;
    ModalAnswers answers;
    DataPtr data = NewData();
    data->SetCycleCount(9);
    for (const bool toFile : {true, false}) {
        EXPECT_FALSE(data->Save("", toFile));
        EXPECT_TRUE(data->Load("", toFile));
        EXPECT_EQ(data->GetCycleCount(), 9);
    }
    EXPECT_FALSE(QFile::exists(QString::fromLocal8Bit(qgetenv("XDG_CONFIG_HOME")) +
                               QStringLiteral("/KVComCtl.ini")));
    EXPECT_FALSE(data->Save(folder.path().toUtf8().constData(), true));
    EXPECT_TRUE(data->Load(folder.path().toUtf8().constData(), true));
    EXPECT_EQ(data->GetCycleCount(), 4);
    data->SetCycleCount(9);
    const QString binary = folder.filePath(QStringLiteral("noise.ini"));
    QFile noise(binary);
    ASSERT_TRUE(noise.open(QIODevice::WriteOnly));
    noise.write(QByteArray("\0\xff[EYEDIAGRAM\n=\n\x01\x02", 16));
    noise.close();
    EXPECT_TRUE(data->Load(binary.toUtf8().constData(), true));
    EXPECT_EQ(data->GetCycleCount(), 4);
    EXPECT_TRUE(answers.Texts().isEmpty());
}

// ---------------------------------------------------------------- IEyeDiagramStimAdaptor

TEST(HostileStimAdaptor, BuildsABoundedWaveformOrRefuses) {
    IEyeDiagramStimAdaptor* adaptor = g_factory->CreateEyeStimAdaptor();
    for (const double value : kHostileReals) {
        DataPtr data = NewData();
        data->SetPeriod(value);
        const int32_t count = adaptor->Build(data.get(), 0.0, 1.0, 1e-11, 1e-11);
        EXPECT_TRUE(count == -1 || (count > 0 && count <= (1 << 24) + 2)) << value;
        EXPECT_EQ(adaptor->GetPointCount(), std::max(count, 0));
        DataPtr normal = NewData();
        for (const double level : {value, 0.0}) {
            const int32_t built = adaptor->Build(normal.get(), level, value, value, value);
            EXPECT_GE(built, -1);
        }
    }
    for (const int32_t cycles : kHostileInts) {
        for (const int kind : {0, 1, 2, 3, 4, 8, 9, 7, -1}) {
            DataPtr data = NewData();
            data->SetCycleCount(cycles);
            data->SetSeqType(kind);
            const int32_t count = adaptor->Build(data.get(), 0.0, 1.0, 1e-11, 1e-11);
            EXPECT_LE(count, (1 << 24) + 2) << cycles << " " << kind;
        }
    }
    for (const char* path : {static_cast<const char*>(nullptr), "", "/"}) {
        EXPECT_FALSE(adaptor->WritePwl(path, "STIM", "in"));
    }
    EXPECT_FALSE(adaptor->WritePwl("/tmp/never-written.cir", nullptr, nullptr));
    g_factory->Destroy(adaptor);
}

// ---------------------------------------------------------------- IEyeDiagramDialog

// Every page opened on whatever the host stored, then confirmed: values a
// page cannot use are reported once and replaced by their defaults, so what
// the sheet writes back opens again without a word. The stimulus editing
// page checks every field against its range on OK and may refuse it with
// that range's message; the user then fixes the field or cancels.
TEST(HostileEyeDiagramSheet, EveryPageOpensOnAnyStoredValueAndWritesBackUsableData) {
    IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
    struct Outcome {
        bool confirmed;
        QStringList texts;
    };
    const auto openAndConfirm = [sheet](IEyeDiagramData& data, int flags) {
        ModalAnswers answers({[](QWidget* window) {
            PaintAll(window);
            ClickOk(window);
            if (window->isVisible()) {  // refused: the user gives up
                Control<QPushButton>(window, kvcomctl_ids::kSheetCancel)->click();
            }
        }});
        const bool confirmed = sheet->Edit(&data, nullptr, 0, flags, 0, 0);
        EXPECT_TRUE(answers.AllAnswered());
        EXPECT_TRUE(confirmed || flags == 0x80) << "flags " << flags;
        return Outcome{confirmed, answers.Texts()};
    };
    struct Case {
        std::function<void(IEyeDiagramData&)> spoil;
        bool stimulusUsable;  // period, duty cycle and counts are all usable
        bool spoilsMask;
    };
    std::vector<Case> cases;
    for (const double value : kHostileReals) {
        cases.push_back({[value](IEyeDiagramData& data) { SetEveryReal(data, value); },
                         std::isfinite(value) && value > 0 && value < 100, true});
    }
    for (const int32_t value : kHostileInts) {
        cases.push_back(
            {[value](IEyeDiagramData& data) { SetEveryCount(data, value); }, false, false});
    }
    for (const int count : {0, 40000}) {  // sequences the pages show as they are
        for (const int kind : {4, 0, 9}) {
            cases.push_back({[count, kind](IEyeDiagramData& data) {
                                 data.SetSeqType(kind);
                                 const std::vector<char> bits(static_cast<std::size_t>(count), 1);
                                 data.SetBits(reinterpret_cast<const bool*>(bits.data()), count);
                             },
                             true, false});
        }
    }
    for (const double value : {kNaN, kInf, -kInf}) {  // a level the mask page cannot show
        cases.push_back(
            {[value](IEyeDiagramData& data) { data.GetMask()->PCross = value; }, true, true});
    }
    const QString maskInvalid =
        QStringLiteral("One or more mask values are invalid\nUsing default values");
    for (std::size_t i = 0; i < cases.size(); ++i) {
        for (const int flags : {0x01, 0x80, 0x02}) {
            DataPtr data = NewData();
            cases[i].spoil(*data);
            const Outcome first = openAndConfirm(*data, flags);
            const QString opening = flags == 0x02
                                        ? (cases[i].spoilsMask ? maskInvalid : QString())
                                        : (cases[i].stimulusUsable ? QString() : kInvalidData);
            if (opening.isEmpty()) {  // the page may still refuse a field on OK
                EXPECT_FALSE(first.texts.contains(kInvalidData) ||
                             first.texts.contains(maskInvalid))
                    << "case " << i << " flags " << flags;
            } else {
                EXPECT_EQ(first.texts.value(0), opening) << "case " << i << " flags " << flags;
            }
            if (first.confirmed) {
                EXPECT_EQ(openAndConfirm(*data, flags).texts, QStringList())
                    << "case " << i << " flags " << flags;
            }
        }
    }
    g_factory->Destroy(sheet);
}

// Flags and page numbers of any value: a sheet without a page shows nothing
// and answers false; any other opens on a page it has.
TEST(HostileEyeDiagramSheet, AnyFlagsAndStartPage) {
    IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
    DataPtr data = NewData();
    for (const int32_t flags : kHostileInts) {
        for (const int32_t page : kHostileInts) {
            ModalAnswers answers({[](QWidget* window) { ClickOk(window); }});
            const bool pages = (flags & (0x80 | 0x10 | 0x02 | 0x01)) != 0;
            EXPECT_EQ(sheet->Edit(data.get(), nullptr, page, flags, page, page), pages)
                << flags << " " << page;
            EXPECT_EQ(answers.AllAnswered(), pages);
            EXPECT_GE(sheet->GetLastPageIndex(), 0);
            EXPECT_EQ(sheet->EditWithPageFlag(nullptr, nullptr, page, flags, 0, 0), false);
        }
    }
    EXPECT_EQ(sheet->Edit(nullptr, nullptr, 0, 0x01, 0, 0), false);
    g_factory->Destroy(sheet);
}

// ---------------------------------------------------------------- IViaVizCtrl and IViaVizData

// Fills a via's records in place, as a host does: `layers` stackup layers
// and `pads` pads, every name filling its 64 bytes without a terminator,
// every length `length`, and codes running through and past their ranges.
void FillVia(IViaVizData& via, int32_t layers, int32_t pads, double length, int32_t span) {
    STACKUPARRAY* stackup = via.GetStackup();
    delete[] stackup->layers;  // the host replaces what it placed before
    stackup->layers = layers > 0 ? new STACKUPLAYER[static_cast<std::size_t>(layers)] : nullptr;
    stackup->count = layers;
    for (int32_t i = 0; i < layers; ++i) {
        STACKUPLAYER& layer = stackup->layers[i];
        std::memset(layer.name, 'A' + i % 26, sizeof layer.name);
        layer.kind = i % 3 - 1;  // -1, 0, 1
        layer.usage = i % 4;
        layer.thickness = length;
    }
    PADSTACK* padstack = via.GetPadstack();
    std::memset(padstack->name, 'P', sizeof padstack->name);
    padstack->drill = padstack->plating = padstack->drillExtra = length;
    padstack->firstLayer = -span;
    padstack->lastLayer = span;
    delete[] padstack->pads;
    padstack->pads = pads > 0 ? new PADDATA[static_cast<std::size_t>(pads)] : nullptr;
    padstack->padCount = pads;
    for (int32_t i = 0; i < pads; ++i) {
        PADDATA& pad = padstack->pads[i];
        pad = PADDATA{};
        pad.padType = i % 5 - 1;
        pad.shape = i % 9 - 1;
        pad.antipadShape = i % 10 - 1;
        pad.shapeStyle = i % 4;
        pad.pad_x = pad.pad_y = pad.antipad_x = pad.antipad_y = pad.clearance = length;
        pad.angle = pad.antipadAngle = length;
    }
}

std::vector<VIAELEMENT> HostileElements(double value) {
    std::vector<VIAELEMENT> elements;
    for (const int32_t layer : kHostileInts) {
        for (const int32_t kind : {1, 4, 0, -1}) {
            elements.push_back({kind, 2, 2, layer, 0, value, value, value, value});
            elements.push_back({kind, 2, 2, 0, layer, value, value, value, value});
        }
    }
    return elements;
}

// Everything a user can ask of the control: both views, pointing at every
// layer, the context menu's export.
void LookAtEveryPart(IViaVizCtrl& control, const std::string& exportPath) {
    QWidget* window = control.GetWindow();
    for (const int32_t view : {0, 1}) {
        control.SetView(view);
        for (const int32_t layer : kHostileInts) {
            control.SetTopViewLayer(layer);
            (void)window->grab();
        }
        for (int y = 0; y < window->height(); y += 7) {
            QMouseEvent move(QEvent::MouseMove, QPointF(window->width() / 2.0, y),
                             window->mapToGlobal(QPointF(window->width() / 2.0, y)), Qt::NoButton,
                             Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(window, &move);
        }
    }
    (void)control.ExportToSpiceFile(exportPath.c_str());
}

TEST(HostileViaControl, AnyStackupPadstackAndModelIsDrawnAndExportedOrRefused) {
    QTemporaryDir folder;
    const std::string exportPath = folder.filePath(QStringLiteral("via.cir")).toStdString();
    ModalAnswers answers;
    IViaVizCtrl* control = g_factory->CreateViaVisualizerCtrl();
    ASSERT_TRUE(control->Create(nullptr, 1300));
    control->GetWindow()->resize(320, 240);
    for (const int32_t layers : {0, 1, 6, 200}) {
        for (const int32_t pads : {0, 1, layers / 2, layers + 3}) {
            for (const double length : kHostileReals) {
                control->SetPair(pads % 2 == 1);
                for (int32_t via = 0; via < (control->IsPair() ? 2 : 1); ++via) {
                    FillVia(*control->GetViaData(via), layers, pads, length, layers + 1);
                    const std::vector<VIAELEMENT> elements = HostileElements(length);
                    control->SetElements(via, elements.data(),
                                         static_cast<int32_t>(elements.size()));
                    control->SetPorts(via, kHostileInts.data(),
                                      static_cast<int32_t>(kHostileInts.size()));
                }
                control->SetMetric(pads % 3 == 0);
                control->Refresh();
                LookAtEveryPart(*control, exportPath);
            }
        }
    }
    // A model inside the stackup is exported whatever the names, each name
    // cut at its 64 bytes, and a pad count without pads reads as no pads.
    FillVia(*control->GetViaData(0), 3, 3, 1e-4, 1);
    PADSTACK* padstack = control->GetViaData(0)->GetPadstack();
    delete[] padstack->pads;
    padstack->pads = nullptr;
    const int32_t port = 0;
    control->SetElements(0, nullptr, 0);
    control->SetPorts(0, &port, 1);
    control->SetPair(false);
    ASSERT_TRUE(control->ExportToSpiceFile(exportPath.c_str()));
    QFile written(QString::fromStdString(exportPath));
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QByteArray text = written.readAll();
    EXPECT_TRUE(text.contains("* Padstack: \"" + QByteArray(64, 'P') + "\"   Drill="));
    EXPECT_TRUE(text.contains("*** connection to layer \"" + QByteArray(64, 'A') + "\"\n"));
    EXPECT_TRUE(text.contains("  " + QByteArray(64, 'C') + "  \n"));
    // A pad array shorter than the stackup: the layers past it have no pad.
    FillVia(*control->GetViaData(0), 3, 1, 1e-4, 1);
    EXPECT_TRUE(control->ExportToSpiceFile(exportPath.c_str()));
    // The file dialog proposes the padstack's name, cut at its 64 bytes. The dialog may fill its
    // name field only after its folder has been read, on a thread of its own.
    QString proposed;
    ModalAnswers dialog({[&proposed](QWidget* window) {
        const auto* name = window->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        for (QDeadlineTimer patience(2000); name->text().isEmpty() && !patience.hasExpired();) {
            QApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        proposed = name->text();
        qobject_cast<QDialog*>(window)->reject();
    }});
    EXPECT_FALSE(control->ExportToSpice());
    EXPECT_EQ(proposed, QString(64, QLatin1Char('P')) + QStringLiteral(".cir"));
    g_factory->DestroyViaVisualizerCtrl(control);
}

// ---------------------------------------------------------------- IPadstackEditorCtrl

// A host's own via data over records it fills with FillVia.
class HostVia final : public IViaVizData {
public:
    ~HostVia() override {
        delete[] m_stackup.layers;
        delete[] m_padstack.pads;
    }
    STACKUPARRAY* GetStackup() override { return &m_stackup; }
    PADSTACK* GetPadstack() override { return &m_padstack; }
    void* GetViaReference() override { return nullptr; }
    int32_t GetViaCount() override { return 1; }
    void* GetNetReference() override { return nullptr; }
    double GetFirstValue() override { return kNaN; }
    double GetSecondValue() override { return kNaN; }
    double GetThirdValue() override { return kNaN; }
    bool GetFlag() override { return true; }

    STACKUPARRAY m_stackup{0, nullptr};
    PADSTACK m_padstack{};
};

TEST(HostilePadstackEditor, OpensOnAnyPadstackAndWritesBackAWholeOne) {
    ModalAnswers answers;
    IPadstackEditorCtrl* editor = g_factory->CreatePadstackEditorDlg();
    for (const double value : kHostileReals) {
        editor->SetMaxPadSize(value);
        PADDATA pad{};
        pad.shape = 7;
        pad.pad_x = pad.antipad_x = pad.clearance = value;
        editor->SetDefaultPad(&pad);
        editor->SetUsedLayers(kHostileInts.data(), static_cast<int32_t>(kHostileInts.size()));
        editor->SetUsedLayers(nullptr, 5);
        editor->SetUsedLayers(kHostileInts.data(), -1);
        for (const int32_t layers : {0, 1, 6, 200}) {
            for (const int32_t pads : {0, 1, layers / 2, layers + 3}) {
                HostVia via;
                FillVia(via, layers, pads, value, layers);
                ModalAnswers dialog({[](QWidget* window) {
                    PaintAll(window);
                    window->findChild<QPushButton*>(QStringLiteral("ctl1"))->click();
                    if (window->isVisible()) {  // a rule refused OK: the user cancels
                        window->findChild<QPushButton*>(QStringLiteral("ctl2"))->click();
                    }
                }});
                const PADDATA* hostPads = via.m_padstack.pads;
                const int32_t result = editor->Edit(nullptr, &via);
                EXPECT_TRUE(result == 0 || result == 1);
                if (result == 1) {  // a pad for every layer now, in the host's array if it had one
                    EXPECT_GE(via.m_padstack.padCount, layers);
                    EXPECT_NE(via.m_padstack.pads, nullptr);
                    EXPECT_TRUE(pads < layers || via.m_padstack.pads == hostPads);
                }
                EXPECT_TRUE(layers > 0 || (result == 0 && dialog.Texts().isEmpty()));
            }
        }
        EXPECT_TRUE(editor->GetDefaultPad(&pad));
    }
    EXPECT_FALSE(editor->GetDefaultPad(nullptr));
    editor->SetDefaultPad(nullptr);
    g_factory->DestroyPadstackEditorDlg(editor);
}

// ---------------------------------------------------------------- ICouplingRgnWalkerDlg

TEST(HostileWalker, AnyRegionNetsAndCrossSectionAreShown) {
    ModalAnswers answers;
    ICouplingRgnWalkerDlg* walker = g_factory->CreateCoupRgnWalkerDlg();
    ICRWDCoupledNetsList* nets = walker->GetNetsList();
    // Before the window exists.
    walker->RefreshNets();
    walker->Show(true);
    EXPECT_FALSE(walker->SelectNet(0));
    ASSERT_TRUE(walker->CreateWindow(nullptr, nullptr));
    EXPECT_FALSE(walker->CreateWindow(nullptr, nullptr));
    walker->Show(true);
    walker->SetCurrentNet(nullptr);
    walker->SetReport(nullptr);
    for (const int32_t index : kHostileInts) {
        for (const int32_t count : kHostileInts) {
            walker->SetRegion(index, count, index % 2 == 0 ? nullptr : "region");
        }
        EXPECT_FALSE(walker->SelectNet(index));
    }
    char unterminated[64];
    std::memset(unterminated, 'N', sizeof unterminated);
    std::vector<CROSSSECTIONTRACE> traces;
    for (const int32_t layer : kHostileInts) {
        for (const double value : kHostileReals) {
            CROSSSECTIONTRACE trace{};
            trace.layer = layer;
            trace.x = value;
            trace.width = -value;
            trace.role = layer;
            std::memcpy(trace.net, unterminated, sizeof trace.net);
            traces.push_back(trace);
        }
    }
    HostVia board;
    for (const int32_t layers : {0, 1, 200}) {
        for (const double length : kHostileReals) {
            FillVia(board, layers, 0, length, 0);
            walker->SetCrossSection(&board.m_stackup, traces.data(),
                                    static_cast<int32_t>(traces.size()));
            walker->SetCrossSection(&board.m_stackup, nullptr, 5);
            walker->SetCrossSection(nullptr, traces.data(), -1);
            nets->AddNet(nullptr, nullptr, nullptr, nullptr);
        }
    }
    nets->RemoveAll();
    const std::string longName(100000, 'L');
    EXPECT_EQ(nets->AddNet(longName.c_str(), longName.c_str(), "", nullptr), 0);
    nets->RemoveAll();
    for (int i = 0; i < 100000; ++i) {
        EXPECT_EQ(nets->AddNet("NET", i % 2 == 0 ? nullptr : "1 mm", nullptr, ""), i);
    }
    walker->RefreshNets();
    EXPECT_TRUE(walker->SelectNet(99999));
    nets->CopyFrom(nullptr);
    nets->CopyFrom(nets);
    walker->RefreshNets();
    g_factory->Destroy(walker);
}

// ---------------------------------------------------------------- progress

TEST(HostileProgress, BarReportAndDialogTakeAnyNumberTextAndWindow) {
    ModalAnswers answers;
    IProgressDialogInterface* dialog = g_factory->CreateProgressDlg();
    dialog->Destroy();  // before it was ever created
    dialog->SetCancelText(nullptr);
    dialog->SetTitle(nullptr);
    dialog->EnableCancel(true, true);
    dialog->Show(1);
    dialog->Enable(false);
    dialog->PumpMessages();
    IProgressReportInterface* report = dialog->GetReport();
    IProgressBarInterface* bar = dialog->GetProgressBar();
    for (const uint32_t delay : {0u, 1u, 200u, 0xFFFFFFFFu}) {
        for (const int32_t at : {INT32_MIN, -1, 0, INT32_MAX}) {
            ASSERT_TRUE(dialog->CreateAt(nullptr, delay, at, at));
            for (const int32_t value : kHostileInts) {
                bar->SetPos(value, value % 2 == 0);
                EXPECT_EQ(bar->GetPos(), value);
                report->SetPercent(value);
                report->SetAll(nullptr, nullptr, value);
                report->SetFirstText(nullptr);
                report->SetSecondText(value % 2 == 0 ? nullptr : "second");
                dialog->Show(value);
                (void)dialog->GetHwnd()->grab();
            }
            EXPECT_GE(report->GetPercent(), 0);
            dialog->Destroy();
            dialog->Destroy();
        }
    }
    g_factory->Destroy(dialog);

    IProgressReportInterface* own = g_factory->CreateProgressReport();
    QDialog hostDialog;
    auto* label = new QLabel(&hostDialog);
    label->setObjectName(QStringLiteral("ctl7"));
    for (const int id : {INT_MIN, -1, 0, 7, INT_MAX}) {
        own->Attach(&hostDialog, id, id, id);  // one item as text and bar alike
        own->Attach(nullptr, id, id, id);
        own->SetAll("first", "second", id);
    }
    own->Attach(&hostDialog, 7, 7, 7);
    (void)hostDialog.grab();
    g_factory->Destroy(own);

    IProgressBarInterface* alone = g_factory->CreateProgressBarCtrl();
    for (const int32_t value : kHostileInts) {
        alone->SetPos(value, true);
        alone->SetNoPercentSign(value % 2 == 0);
        alone->SetFillColor(static_cast<uint32_t>(value));
        alone->SetEmptyColor(static_cast<uint32_t>(value));
        alone->GetHwnd()->resize(1 + (value & 0xff), 20);
        (void)alone->GetHwnd()->grab();
    }
    g_factory->Destroy(alone);
}

}  // namespace
