// The via visualizer as a host uses it: the control comes from the factory, the host fills
// each via's data in place through GetViaData, hands over the electrical model, and exports
// through the control. "Edit Padstack..." edits the control's own via data and refreshes it.

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QSvgGenerator>
#include <QTableView>
#include <QTextStream>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <memory>

#include "HostPage.h"
#include "apps/viadescription/ViaControlFill.h"
#include "kvcomctl/kvcomctl.h"

namespace {

constexpr int32_t kControlId = 1300;
constexpr double kMaxPadSize = 2.54e-3;  // the host's limit for this board: 100 mils

const QStringList kExamples = {QStringLiteral("via_signal_6layer"),
                               QStringLiteral("via_pair_6layer")};

QString ExamplePath(const QString& name) {
    return QDir(QStringLiteral(KV_EXAMPLES_DIR)).filePath(name + QStringLiteral(".json"));
}

// Reads an example board with the via description reader and hands it to the control through
// its interface; false with the reader's message when the example cannot be shown.
bool LoadExample(IViaVizCtrl& control, const QString& name, QString* error) {
    try {
        const kv::via_json::ViaDescription description =
            kv::via_json::ReadViaDescription(QFile::encodeName(ExamplePath(name)).toStdString());
        if (kv::via_json::FillViaControl(control, description)) {
            return true;
        }
        *error = QObject::tr("%1: the control handed out no via data").arg(name);
    } catch (const kv::via_json::DescriptionError& failure) {
        *error = QString::fromStdString(failure.what());
    }
    return false;
}

// The page holds the control and gives it back to the factory before its children go.
class ViaPageWidget final : public QWidget {
public:
    explicit ViaPageWidget(IKVComCtlFactory& factory)
        : m_factory(factory), m_control(factory.CreateViaVisualizerCtrl()) {}
    ~ViaPageWidget() override { m_factory.DestroyViaVisualizerCtrl(m_control); }
    ViaPageWidget(const ViaPageWidget&) = delete;
    ViaPageWidget& operator=(const ViaPageWidget&) = delete;

    IViaVizCtrl* Control() const { return m_control; }

private:
    IKVComCtlFactory& m_factory;
    IViaVizCtrl* m_control;
};

// Opens the padstack editor from the factory on the control's first via, modal over `parent`;
// after OK the control is refreshed so its views and export show the change. True on OK.
bool EditPadstack(IKVComCtlFactory& factory, QWidget* parent, IViaVizCtrl& control) {
    IPadstackEditorCtrl* editor = factory.CreatePadstackEditorDlg();
    IViaVizData* data = control.GetViaData(0);
    if (editor == nullptr || data == nullptr) {
        factory.DestroyPadstackEditorDlg(editor);
        return false;
    }
    editor->SetMaxPadSize(kMaxPadSize);
    const int32_t used[] = {data->GetPadstack()->firstLayer};
    editor->SetUsedLayers(used, 1);
    const bool ok = editor->Edit(parent, data) == 1;
    factory.DestroyPadstackEditorDlg(editor);
    if (ok) {
        control.Refresh();
    }
    return ok;
}

// Renders the open editor as a user sees it, preview included, then cancels it as a user would.
void TourPadstackEditor(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    IViaVizCtrl* control = factory.CreateViaVisualizerCtrl();
    QString error;
    if (control == nullptr || !control->Create(nullptr, kControlId) ||
        !LoadExample(*control, kExamples.front(), &error)) {
        LogTourWrite(false, out.filePath(QStringLiteral("padstack_editor.png")), log);
        factory.DestroyViaVisualizerCtrl(control);
        return;
    }
    QWidget owner;
    owner.resize(480, 320);
    owner.show();
    QTimer::singleShot(0, &owner, [&out, &log] {
        const QString png = out.filePath(QStringLiteral("padstack_editor.png"));
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) {
            LogTourWrite(false, png, log);
            return;
        }
        dialog->resize(1000, 600);
        // The preview shows the top layer's pad, as after a click on its row.
        if (auto* table = dialog->findChild<QTableView*>(QStringLiteral("ctl1006"))) {
            table->setCurrentIndex(table->model()->index(1, 0));
        }
        LogTourWrite(dialog->grab().save(png, "PNG"), png, log);
        if (auto* cancel = dialog->findChild<QPushButton*>(QStringLiteral("ctl2"))) {
            cancel->click();
        }
    });
    EditPadstack(factory, &owner, *control);
    factory.DestroyViaVisualizerCtrl(control);
}

QWidget* CreateViaWidget(IKVComCtlFactory& factory) {
    auto* page = new ViaPageWidget(factory);
    auto* layout = new QVBoxLayout(page);
    IViaVizCtrl* control = page->Control();
    if (control == nullptr || !control->Create(page, kControlId)) {
        layout->addWidget(new QLabel(QObject::tr("The library handed out no via visualizer.")));
        return page;
    }
    auto* bar = new QHBoxLayout;
    auto* examples = new QComboBox;
    examples->addItems(kExamples);
    bar->addWidget(examples);
    auto* side = new QRadioButton(QObject::tr("Side view"));
    auto* top = new QRadioButton(QObject::tr("Top view of layer"));
    side->setChecked(true);
    auto* views = new QButtonGroup(page);
    views->addButton(side, 0);
    views->addButton(top, 1);
    auto* layer = new QSpinBox;
    layer->setRange(1, 99);
    auto* exportButton = new QPushButton(QObject::tr("Export to Spice..."));
    auto* editButton = new QPushButton(QObject::tr("Edit Padstack..."));
    auto* status = new QLabel;
    bar->addWidget(side);
    bar->addWidget(top);
    bar->addWidget(layer);
    bar->addWidget(exportButton);
    bar->addWidget(editButton);
    bar->addStretch();
    layout->addLayout(bar);
    layout->addWidget(control->GetWindow(), 1);
    layout->addWidget(status);

    const auto load = [control, status](const QString& example) {
        QString error;
        status->setText(LoadExample(*control, example, &error)
                            ? QObject::tr("Hover over a layer for its values; right-click for "
                                          "the control's menu.")
                            : error);
    };
    QObject::connect(examples, &QComboBox::currentTextChanged, page, load);
    QObject::connect(views, &QButtonGroup::idClicked, page,
                     [control](int view) { control->SetView(view); });
    QObject::connect(layer, &QSpinBox::valueChanged, page,
                     [control](int value) { control->SetTopViewLayer(value - 1); });
    QObject::connect(exportButton, &QPushButton::clicked, page, [control, status] {
        status->setText(control->ExportToSpice() ? QObject::tr("Subcircuit written.")
                                                 : QObject::tr("Nothing written."));
    });
    QObject::connect(editButton, &QPushButton::clicked, page, [&factory, control, status, page] {
        if (EditPadstack(factory, page->window(), *control)) {
            status->setText(QObject::tr("Padstack changed; the views and the export show it."));
        }
    });
    load(examples->currentText());
    return page;
}

bool SaveWidgetSvg(QWidget& widget, const QString& path, const QString& title) {
    QSvgGenerator generator;
    generator.setFileName(path);
    generator.setSize(widget.size());
    generator.setViewBox(QRect(QPoint(0, 0), widget.size()));
    generator.setTitle(title);
    widget.render(&generator);
    return QFileInfo(path).size() > 0;
}

void TourOneVia(IKVComCtlFactory& factory, const QString& example, const QDir& out,
                QTextStream& log) {
    IViaVizCtrl* control = factory.CreateViaVisualizerCtrl();
    QString error;
    if (control == nullptr || !control->Create(nullptr, kControlId) ||
        !LoadExample(*control, example, &error)) {
        log << example << ": " << (error.isEmpty() ? QStringLiteral("no control") : error) << '\n';
        LogTourWrite(false, out.filePath(example), log);
        factory.DestroyViaVisualizerCtrl(control);
        return;
    }
    QWidget& window = *control->GetWindow();
    window.resize(900, 600);
    const struct {
        int32_t view;
        const char* tag;
    } views[] = {{0, "side"}, {1, "top"}};
    for (const auto& view : views) {
        control->SetView(view.view);
        control->SetTopViewLayer(0);
        const QString name = QStringLiteral("%1_%2").arg(example, QLatin1String(view.tag));
        // Grabbed at the size set here; the shared helper would shrink it to its size hint.
        const QString png = out.filePath(name + QStringLiteral(".png"));
        LogTourWrite(window.grab().save(png, "PNG"), png, log);
        const QString svg = out.filePath(name + QStringLiteral(".svg"));
        LogTourWrite(SaveWidgetSvg(window, svg, name), svg, log);
    }
    const QString cir = out.filePath(example + QStringLiteral(".cir"));
    LogTourWrite(control->ExportToSpiceFile(cir.toUtf8().constData()), cir, log);
    factory.DestroyViaVisualizerCtrl(control);
}

void TourVia(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    for (const QString& example : kExamples) {
        TourOneVia(factory, example, out, log);
        // The padstack dump is the command line tool's, not the control's.
        QProcess dump;
        dump.start(QStringLiteral(KV_CLI_PATH),
                   {QStringLiteral("padstack-dump"), ExamplePath(example)});
        if (dump.waitForFinished(30000) && dump.exitCode() == 0) {
            SaveText(QString::fromUtf8(dump.readAllStandardOutput()), out,
                     example + QStringLiteral(".dmp"), log);
        } else {
            log << "kvcomctl padstack-dump did not run: " << dump.errorString() << '\n';
        }
    }
    std::unique_ptr<QWidget> widget(CreateViaWidget(factory));
    widget->resize(900, 640);
    SaveWidgetPng(*widget, out, QStringLiteral("via.png"), log);
    TourPadstackEditor(factory, out, log);
}

const HostPageRegistration kRegistration{
    {QStringLiteral("Via visualizer"), CreateViaWidget, TourVia}};

}  // namespace
