// The padstack editor as a host uses it: the host holds the via's stackup and padstack in
// records of its own (read here from the example board), hands them to the editor through
// IViaVizData, and lists what comes back after OK. "Edit Padstack..." is one button and one
// handler, so it can sit on any page that holds a via.

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextStream>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <cstring>
#include <functional>
#include <memory>

#include "HostPage.h"
#include "kvcomctl/kvcomctl.h"

namespace {

constexpr double kMilsPerMetre = 39370.07874015748;
constexpr double kMaxPadSize = 2.54e-3;  // the host's limit for this board: 100 mils

// The host's own via data: records it fills and owns, arrays from new[] as the contract asks.
class HostViaData final : public IViaVizData {
public:
    HostViaData() = default;
    ~HostViaData() override {
        delete[] m_stackup.layers;
        delete[] m_padstack.pads;
    }
    HostViaData(const HostViaData&) = delete;
    HostViaData& operator=(const HostViaData&) = delete;

    STACKUPARRAY* GetStackup() override { return &m_stackup; }
    PADSTACK* GetPadstack() override { return &m_padstack; }
    void* GetViaReference() override { return nullptr; }
    int32_t GetViaCount() override { return 1; }
    void* GetNetReference() override { return nullptr; }
    double GetFirstValue() override { return 0.0; }
    double GetSecondValue() override { return 0.0; }
    double GetThirdValue() override { return 0.0; }
    bool GetFlag() override { return false; }

    // Reads the first via of an example board; false when the file does not hold one.
    bool ReadExample(const QString& path);

private:
    STACKUPARRAY m_stackup{0, nullptr};
    PADSTACK m_padstack{};
};

void CopyName(char (&name)[VIA_NAME_CAPACITY + 1], const QString& text) {
    const QByteArray bytes = text.toUtf8().left(VIA_NAME_CAPACITY);
    std::memset(name, 0, sizeof name);
    std::memcpy(name, bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

int32_t Code(const QJsonValue& value, std::initializer_list<std::pair<const char*, int32_t>> map) {
    for (const auto& [text, code] : map) {
        if (value.toString() == QLatin1String(text)) {
            return code;
        }
    }
    return 0;
}

PADDATA ReadPad(const QJsonObject& pad) {
    PADDATA record{};
    record.padType =
        Code(pad[QStringLiteral("type")],
             {{"none", PAD_TYPE_NONE}, {"pad", PAD_TYPE_PAD}, {"anti-pad", PAD_TYPE_ANTIPAD}});
    record.shape = Code(pad[QStringLiteral("shape")], {{"round", PAD_SHAPE_ROUND},
                                                       {"rectangle", PAD_SHAPE_RECTANGLE},
                                                       {"oval", PAD_SHAPE_OVAL},
                                                       {"oblong", PAD_SHAPE_OBLONG},
                                                       {"custom", PAD_SHAPE_CUSTOM}});
    record.pad_x = pad[QStringLiteral("width")].toDouble();
    record.pad_y = pad[QStringLiteral("height")].toDouble(record.pad_x);
    record.angle = pad[QStringLiteral("angle")].toDouble();
    record.antipad_x = pad[QStringLiteral("antipad_width")].toDouble();
    record.antipad_y = pad[QStringLiteral("antipad_height")].toDouble(record.antipad_x);
    record.antipadAngle = pad[QStringLiteral("antipad_angle")].toDouble();
    record.clearance = pad[QStringLiteral("clearance")].toDouble();
    return record;
}

bool HostViaData::ReadExample(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QJsonObject board = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonArray layers = board[QStringLiteral("stackup")].toArray();
    const QJsonArray vias = board[QStringLiteral("vias")].toArray();
    if (layers.isEmpty() || vias.isEmpty()) {
        return false;
    }
    const QJsonObject padstack = vias.first()[QStringLiteral("padstack")].toObject();
    const QJsonArray pads = padstack[QStringLiteral("pads")].toArray();
    const auto count = static_cast<int32_t>(layers.size());
    m_stackup.layers = new STACKUPLAYER[count]{};
    m_stackup.count = count;
    m_padstack.pads = new PADDATA[count]{};
    m_padstack.padCount = count;
    for (int32_t i = 0; i < count; ++i) {
        const QJsonObject layer = layers[i].toObject();
        CopyName(m_stackup.layers[i].name, layer[QStringLiteral("name")].toString());
        m_stackup.layers[i].kind =
            layer[QStringLiteral("kind")].toString() == QLatin1String("dielectric")
                ? STACKUP_DIELECTRIC
                : STACKUP_CONDUCTOR;
        m_stackup.layers[i].thickness = layer[QStringLiteral("thickness")].toDouble();
        if (layer[QStringLiteral("name")] == padstack[QStringLiteral("first_layer")]) {
            m_padstack.firstLayer = i;
        }
        if (layer[QStringLiteral("name")] == padstack[QStringLiteral("last_layer")]) {
            m_padstack.lastLayer = i;
        }
        if (i < pads.size()) {
            m_padstack.pads[i] = ReadPad(pads[i].toObject());
        }
    }
    CopyName(m_padstack.name, padstack[QStringLiteral("name")].toString());
    m_padstack.drill = padstack[QStringLiteral("drill")].toDouble();
    m_padstack.plating = padstack[QStringLiteral("plating")].toDouble();
    return true;
}

QString Mils(double metres) {
    return QString::number(metres * kMilsPerMetre, 'f', 2);
}

// The host's listing of its records, in mils.
QString Listing(HostViaData& data) {
    const STACKUPARRAY& stackup = *data.GetStackup();
    const PADSTACK& padstack = *data.GetPadstack();
    QString text =
        QStringLiteral("Padstack %1: drill %2, plating %3, layers %4 to %5\n")
            .arg(QString::fromUtf8(padstack.name), Mils(padstack.drill), Mils(padstack.plating))
            .arg(padstack.firstLayer)
            .arg(padstack.lastLayer);
    for (int32_t i = 0; i < stackup.count && i < padstack.padCount; ++i) {
        if (stackup.layers[i].kind == STACKUP_DIELECTRIC) {
            continue;
        }
        const PADDATA& pad = padstack.pads[i];
        text += QStringLiteral(
                    "%1: type %2 shape %3 pad %4 x %5 at %6, anti-pad shape %7 "
                    "%8 x %9, clearance %10\n")
                    .arg(QString::fromUtf8(stackup.layers[i].name))
                    .arg(pad.padType)
                    .arg(pad.shape)
                    .arg(Mils(pad.pad_x), Mils(pad.pad_y))
                    .arg(pad.angle)
                    .arg(pad.antipadShape)
                    .arg(Mils(pad.antipad_x), Mils(pad.antipad_y), Mils(pad.clearance));
    }
    return text;
}

QString ExamplePath() {
    return QDir(QStringLiteral(KV_EXAMPLES_DIR)).filePath(QStringLiteral("via_signal_6layer.json"));
}

// Opens the editor from the factory on `data`, modal over `parent`; true when the user chose
// OK.
bool EditPadstack(IKVComCtlFactory& factory, QWidget* parent, HostViaData& data) {
    IPadstackEditorCtrl* editor = factory.CreatePadstackEditorDlg();
    if (editor == nullptr) {
        return false;
    }
    editor->SetMaxPadSize(kMaxPadSize);
    const int32_t used[] = {data.GetPadstack()->firstLayer};
    editor->SetUsedLayers(used, 1);
    const bool ok = editor->Edit(parent, &data) == 1;
    factory.DestroyPadstackEditorDlg(editor);
    return ok;
}

// "Edit Padstack..." for the via that `data` holds; `changed` runs after OK.
QPushButton* CreateEditPadstackButton(IKVComCtlFactory& factory, std::shared_ptr<HostViaData> data,
                                      std::function<void()> changed) {
    auto* button = new QPushButton(QObject::tr("Edit Padstack..."));
    QObject::connect(button, &QPushButton::clicked, button,
                     [&factory, data, button, changed = std::move(changed)] {
                         if (EditPadstack(factory, button->window(), *data)) {
                             changed();
                         }
                     });
    return button;
}

QWidget* CreatePadstackWidget(IKVComCtlFactory& factory) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto data = std::make_shared<HostViaData>();
    const bool read = data->ReadExample(ExamplePath());
    auto* listing = new QPlainTextEdit;
    listing->setReadOnly(true);
    listing->setLineWrapMode(QPlainTextEdit::NoWrap);
    listing->setFont(QFont(QStringLiteral("monospace")));
    listing->setPlainText(read ? Listing(*data) : QObject::tr("cannot read ") + ExamplePath());
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QObject::tr("The example via's padstack, as the host holds it:")));
    row->addStretch();
    HostViaData* held = data.get();
    QPushButton* edit = CreateEditPadstackButton(
        factory, data, [listing, held] { listing->setPlainText(Listing(*held)); });
    edit->setEnabled(read);
    row->addWidget(edit);
    layout->addLayout(row);
    layout->addWidget(listing);
    return page;
}

// Renders the open editor as a user sees it, then cancels it as a user would.
void TourPadstack(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    HostViaData data;
    if (!data.ReadExample(ExamplePath())) {
        LogTourWrite(false, ExamplePath(), log);
        return;
    }
    QWidget owner;
    owner.resize(480, 320);
    owner.show();
    QTimer::singleShot(0, &owner, [&out, &log] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) {
            LogTourWrite(false, out.filePath(QStringLiteral("padstack_editor.png")), log);
            return;
        }
        dialog->resize(900, 560);
        LogTourWrite(
            dialog->grab().save(out.filePath(QStringLiteral("padstack_editor.png")), "PNG"),
            out.filePath(QStringLiteral("padstack_editor.png")), log);
        if (auto* cancel = dialog->findChild<QPushButton*>(QStringLiteral("ctl2"))) {
            cancel->click();
        }
    });
    EditPadstack(factory, &owner, data);
    SaveText(Listing(data), out, QStringLiteral("padstack.txt"), log);
}

const HostPageRegistration kRegistration{
    {QStringLiteral("Padstack editor"), CreatePadstackWidget, TourPadstack}};

}  // namespace
