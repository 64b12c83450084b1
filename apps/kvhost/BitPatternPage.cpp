// The bit pattern editor control on a stimulus: its bits edited with mouse
// and keyboard under each of the four painters, loaded from and saved to
// ".bit" files. Hosts meet this control inside the eye-diagram pages, which
// the factory does not hand out yet, so this page builds the control from
// the project's widget library rather than through the host contract; the
// bits it starts with come from a stimulus data object made by the factory.

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>
#include <vector>

#include "HostPage.h"
#include "core/ports/MessagePort.h"
#include "core/stimulus/BitFile.h"
#include "kvcomctl/kvcomctl.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/canvas/CanvasExport.h"
#include "ui/ports/QtMessagePort.h"

namespace {

using kv::ui::CBitPatternCtrl;

struct PainterChoice {
    const char* title;
    const char* fileTag;
    int mode;
};

constexpr PainterChoice kPainters[] = {
    {"Normal", "normal", 0},
    {"Cycle", "cycle", 1},
    {"Continuous", "continuous", 2},
    {"Repetition", "repetition", 3},
};
constexpr int kDefaultRepetitions = 3;

std::vector<uint8_t> StimulusBits(IKVComCtlFactory& factory) {
    IEyeDiagramData* data = factory.CreateStimulusData();
    std::vector<uint8_t> bits;
    for (int i = 0; i < data->GetBitCount(); ++i) {
        bits.push_back(data->GetBit(i) ? 1 : 0);
    }
    factory.Destroy(data);
    return bits;
}

const QString kBitFilter = QStringLiteral("Bit sequence file (*.bit);;All Files (*)");

QWidget* CreateBitPatternWidget(IKVComCtlFactory& factory) {
    static kv::ui::QtMessagePort messagePort;
    kv::InstallMessagePort(&messagePort);

    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* control = new CBitPatternCtrl;
    const std::vector<uint8_t> bits = StimulusBits(factory);
    control->SetPattern(bits.data(), static_cast<int>(bits.size()));

    auto* painter = new QComboBox;
    for (const PainterChoice& choice : kPainters) {
        painter->addItem(QObject::tr(choice.title), choice.mode);
    }
    auto* repetitions = new QSpinBox;
    repetitions->setRange(0, 1000);
    repetitions->setValue(kDefaultRepetitions);
    auto* readOnly = new QCheckBox(QObject::tr("Read-only"));
    auto* load = new QPushButton(QObject::tr("Load..."));
    auto* save = new QPushButton(QObject::tr("Save..."));

    auto* controls = new QHBoxLayout;
    controls->addWidget(new QLabel(QObject::tr("Painter:")));
    controls->addWidget(painter);
    controls->addWidget(new QLabel(QObject::tr("Repetitions:")));
    controls->addWidget(repetitions);
    controls->addWidget(readOnly);
    controls->addStretch();
    controls->addWidget(load);
    controls->addWidget(save);
    layout->addLayout(controls);
    layout->addWidget(control);
    layout->addWidget(new QLabel(QObject::tr(
        "Type 0 and 1, select with Shift+arrows or by sweeping the digits, drag the end "
        "handle, click beyond the end on a level line to add bits.")));
    layout->addStretch();

    const auto applyPainter = [control, painter, repetitions] {
        control->SetPaintMode(painter->currentData().toInt(), repetitions->value());
    };
    QObject::connect(painter, &QComboBox::currentIndexChanged, page, applyPainter);
    QObject::connect(repetitions, &QSpinBox::valueChanged, page, applyPainter);
    QObject::connect(readOnly, &QCheckBox::toggled, control, &CBitPatternCtrl::SetReadOnly);
    QObject::connect(load, &QPushButton::clicked, page, [page, control] {
        const QString path =
            QFileDialog::getOpenFileName(page, QObject::tr("Load bits"), QString(), kBitFilter);
        if (path.isEmpty()) {
            return;
        }
        if (const auto loaded = kv::ReadBitFile(path.toStdString())) {
            control->SetPattern(loaded->data(), static_cast<int>(loaded->size()));
        }
    });
    QObject::connect(save, &QPushButton::clicked, page, [page, control] {
        const QString path =
            QFileDialog::getSaveFileName(page, QObject::tr("Save bits"), QString(), kBitFilter);
        if (!path.isEmpty()) {
            const auto data = control->m_bits.Data();
            kv::WriteBitFile(path.toStdString(), kv::BitVector(data.begin(), data.end()));
        }
    });
    return page;
}

// Each scene puts the control into a state a user would see.
struct Scene {
    const char* fileTag;
    void (*prepare)(CBitPatternCtrl& control, const std::vector<uint8_t>& bits);
};

void EmptyScene(CBitPatternCtrl& control, const std::vector<uint8_t>& /*bits*/) {
    control.SetPattern(nullptr, 0);
}

void HoverScene(CBitPatternCtrl& control, const std::vector<uint8_t>& bits) {
    control.SetPattern(bits.data(), static_cast<int>(bits.size()));
    const kv::BitPatternLayout& l = control.Editor().Layout();
    control.Editor().OnMouseMove({l.CellX(static_cast<int>(bits.size()) + 4) + 2, l.highY + 1});
}

void SelectionScene(CBitPatternCtrl& control, const std::vector<uint8_t>& bits) {
    control.SetPattern(bits.data(), static_cast<int>(bits.size()));
    kv::BitPatternEditor& editor = control.Editor();
    editor.OnFocusGained();
    editor.SetCaretIndex(3);
    editor.OnKey(kv::BitKey::Right, {false, true});
    editor.OnKey(kv::BitKey::Right, {false, true});
    editor.OnKey(kv::BitKey::Right, {false, true});
}

constexpr Scene kScenes[] = {
    {"empty", EmptyScene},
    {"hover", HoverScene},
    {"selection", SelectionScene},
};

void TourBitPattern(IKVComCtlFactory& /*factory*/, const QDir& out, QTextStream& log) {
    const std::vector<uint8_t> bits = {1, 1, 0, 1, 0, 0, 1, 0, 1, 1, 1, 0};
    for (const PainterChoice& painter : kPainters) {
        for (const Scene& scene : kScenes) {
            CBitPatternCtrl control;
            // Shown (off screen) so that it lays itself out for its size.
            control.setAttribute(Qt::WA_DontShowOnScreen);
            control.resize(520, 130);
            control.show();
            control.SetPaintMode(painter.mode, kDefaultRepetitions);
            scene.prepare(control, bits);
            const QSize size = control.ClientRect().size();
            const auto draw = [&control](kv::ICanvas& canvas) { control.Editor().Paint(canvas); };
            const QString name =
                QStringLiteral("bitpattern_%1_%2").arg(painter.fileTag, scene.fileTag);
            const QString png = out.filePath(name + QStringLiteral(".png"));
            LogTourWrite(kv::ui::SaveCanvasPng(png, size, control.font(), draw), png, log);
            const QString svg = out.filePath(name + QStringLiteral(".svg"));
            LogTourWrite(kv::ui::SaveCanvasSvg(svg, size, control.font(),
                                               QStringLiteral("Bit pattern: ") + name, draw),
                         svg, log);
        }
    }
}

const HostPageRegistration kRegistration({QStringLiteral("Bit pattern"), CreateBitPatternWidget,
                                          TourBitPattern});

}  // namespace
