// A hostile host: every value its types allow, through every interface of the
// library loaded with dlopen. Each operation answers with its message, its
// refusal or a clamp, and what it refuses stays as it was; none may abort,
// trip a sanitizer, allocate without bound or hang.

#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <climits>
#include <cmath>
#include <cstring>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "kvcomctl/EyeDiagramControlIds.h"
#include "kvcomctl/kvcomctl.h"
#include "tests/host/QtHost.h"

// Failures name texts as they read.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace {

using kv::test::g_factory;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
const std::vector<double> kHostileReals = {kNaN, kInf,  -kInf,  0.0,   -0.0,
                                           -1.0, 1e308, -1e308, 5e-324};
const std::vector<int32_t> kHostileInts = {INT32_MIN, -1000000, -1, 0, 1, 3, 1000000, INT32_MAX};
const std::vector<int> kBadComponents = {3, -1, 1000000, INT_MIN, INT_MAX};

const QString kInvalidData =
    QStringLiteral("Invalid eye diagram data.\nReverting to default values.");

// Answers every message box with its default button and keeps its text, and
// hands every other modal window that opens to the next scripted step. Two
// timers, since Qt never runs a timer's slot inside itself: a box that a step
// opens is answered while the step waits for it.
class ModalAnswerer {
public:
    using Step = std::function<void(QWidget* modal)>;
    explicit ModalAnswerer(std::deque<Step> steps = {}) : m_steps(std::move(steps)) {
        QObject::connect(&m_boxTimer, &QTimer::timeout, [this] { AnswerBox(); });
        QObject::connect(&m_stepTimer, &QTimer::timeout, [this] { TakeStep(); });
        m_boxTimer.start(5);
        m_stepTimer.start(5);
    }
    const QStringList& Texts() const { return m_texts; }
    bool AllStepsTaken() const { return m_steps.empty(); }

private:
    void AnswerBox() {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || m_lastBox == box) {
            return;
        }
        m_lastBox = box;
        m_texts << box->text();
        QAbstractButton* answer = box->defaultButton() != nullptr
                                      ? static_cast<QAbstractButton*>(box->defaultButton())
                                      : box->buttons().front();
        answer->click();
    }
    void TakeStep() {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal == nullptr || qobject_cast<QMessageBox*>(modal) != nullptr ||
            m_lastWindow == modal || m_steps.empty()) {
            return;
        }
        m_lastWindow = modal;
        Step step = std::move(m_steps.front());
        m_steps.pop_front();
        step(modal);
    }

    std::deque<Step> m_steps;
    QStringList m_texts;
    QPointer<QMessageBox> m_lastBox;
    QPointer<QWidget> m_lastWindow;
    QTimer m_boxTimer;
    QTimer m_stepTimer;
};

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

struct JitterFlags {
    bool add[3], asTime[3], measured[3];
    bool operator==(const JitterFlags&) const = default;
};

JitterFlags FlagsOf(const IEyeDiagramData& data) {
    JitterFlags flags{};
    for (int i = 0; i < 3; ++i) {
        flags.add[i] = data.GetAddJitter(i);
        flags.asTime[i] = data.GetJitterAsTime(i);
        flags.measured[i] = data.GetFreqMeasured(i);
    }
    return flags;
}

TEST(HostileStimulusData, JitterComponentOutsideZeroToTwoIsRefusedAndChangesNothing) {
    DataPtr data = NewData();
    for (int i = 0; i < 3; ++i) {  // every flag differs from its neighbours
        data->SetAddJitter(i, i != 1);
        data->SetJitterAsTime(i, i == 1);
        data->SetFreqMeasured(i, i == 0);
    }
    const JitterFlags before = FlagsOf(*data);
    for (const int component : kBadComponents) {
        for (const bool value : {true, false}) {
            EXPECT_FALSE(data->SetAddJitter(component, value)) << component;
            EXPECT_FALSE(data->SetJitterAsTime(component, value)) << component;
            EXPECT_FALSE(data->SetFreqMeasured(component, value)) << component;
        }
        EXPECT_FALSE(data->GetAddJitter(component)) << component;
        EXPECT_FALSE(data->GetJitterAsTime(component)) << component;
        EXPECT_FALSE(data->GetFreqMeasured(component)) << component;
        EXPECT_TRUE(FlagsOf(*data) == before) << component;
    }
    EXPECT_TRUE(data->SetAddJitter(1, true));  // the three components still answer
    EXPECT_TRUE(data->GetAddJitter(1));
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
    for (double* field = &mask->PTopMax; field <= &mask->OffsetVolt; ++field) {
        *field = value;
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
    ModalAnswerer answers;
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
    ModalAnswerer answers;
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

// The eye-diagram stimulus page opened on a period it cannot work with says
// so, takes the default bit interval, and converts jitter with it.
TEST(HostileEyeDiagramSheet, StimulusPageOpenedOnAPeriodItCannotUse) {
    namespace id = kvcomctl_ids::eye_stimulus;
    IEyeDiagramDialog* sheet = g_factory->CreateEyeDiagramSheet();
    for (const double period : {0.0, -1.0, kNaN, kInf, -kInf}) {
        DataPtr data = NewData();
        data->SetPeriod(period);
        data->SetAdvancedJitter(true);
        data->SetMaxJitter(0.33);  // the Gaussian magnitude: 10 % of the default interval
        ModalAnswerer answers({[](QWidget* window) {
            Control<QCheckBox>(window, id::kComponentEnabled)->click();
            Control<QComboBox>(window, id::kComponentUnit)->setCurrentIndex(1);
            Control<QCheckBox>(window, id::kComponentEnabled + 2)->click();
            ClickOk(window);
        }});
        EXPECT_TRUE(sheet->Edit(data.get(), nullptr, 0, 0x01, 0, 0)) << period;
        EXPECT_TRUE(answers.AllStepsTaken());
        EXPECT_EQ(answers.Texts(), QStringList{kInvalidData}) << period;
        EXPECT_DOUBLE_EQ(data->GetPeriod(), 3.3);
        EXPECT_TRUE(data->GetAddJitter(0));
        EXPECT_TRUE(data->GetJitterAsTime(0));
        EXPECT_TRUE(data->GetAddJitter(2));
    }
    g_factory->Destroy(sheet);
}

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
        ModalAnswerer answers({[](QWidget* window) {
            PaintAll(window);
            ClickOk(window);
            if (window->isVisible()) {  // refused: the user gives up
                Control<QPushButton>(window, kvcomctl_ids::kSheetCancel)->click();
            }
        }});
        const bool confirmed = sheet->Edit(&data, nullptr, 0, flags, 0, 0);
        EXPECT_TRUE(answers.AllStepsTaken());
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

}  // namespace
