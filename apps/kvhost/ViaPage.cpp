// The via SPICE export as a host meets it today. The factory has no operation that hands out
// via data (its operations are fixed, and the via visualizer control that will carry the
// export belongs to a later step), so this page does not reach into the library for it.
// Instead it runs the command line tool, the library's other public face, on the example
// boards and shows the subcircuits it writes.

#include <QComboBox>
#include <QDir>
#include <QFont>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>
#include <memory>

#include "HostPage.h"

namespace {

const QStringList kExamples = {QStringLiteral("via_signal_6layer"),
                               QStringLiteral("via_pair_6layer")};

QString ExamplePath(const QString& name) {
    return QDir(QStringLiteral(KV_EXAMPLES_DIR)).filePath(name + QStringLiteral(".json"));
}

struct ToolResult {
    bool ok = false;
    QByteArray output;
    QString error;
};

ToolResult RunTool(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(KV_CLI_PATH), arguments);
    ToolResult result;
    if (!process.waitForFinished(30000)) {
        result.error = QStringLiteral("kvcomctl did not run: ") + process.errorString();
        return result;
    }
    result.output = process.readAllStandardOutput();
    result.error = QString::fromUtf8(process.readAllStandardError()).trimmed();
    result.ok = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return result;
}

QString SubcircuitText(const QString& example) {
    const ToolResult result = RunTool({QStringLiteral("spice"), ExamplePath(example)});
    return result.ok ? QString::fromUtf8(result.output) : result.error;
}

QWidget* CreateViaWidget(IKVComCtlFactory& /*factory*/) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel(
        QObject::tr("SPICE subcircuit of an example board, written by kvcomctl spice:")));
    auto* examples = new QComboBox;
    examples->addItems(kExamples);
    layout->addWidget(examples);
    auto* text = new QPlainTextEdit;
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFont(QStringLiteral("monospace")));
    layout->addWidget(text);
    const auto show = [text](const QString& example) {
        text->setPlainText(SubcircuitText(example));
    };
    QObject::connect(examples, &QComboBox::currentTextChanged, page, show);
    show(examples->currentText());
    return page;
}

void TourVia(IKVComCtlFactory& factory, const QDir& out, QTextStream& log) {
    for (const QString& example : kExamples) {
        const QString cir = out.filePath(example + QStringLiteral(".cir"));
        const ToolResult spice =
            RunTool({QStringLiteral("spice"), ExamplePath(example), QStringLiteral("-o"), cir});
        log << (spice.ok ? QStringLiteral("wrote ") + cir : spice.error) << '\n';
        const ToolResult dump = RunTool({QStringLiteral("padstack-dump"), ExamplePath(example)});
        if (dump.ok) {
            SaveText(QString::fromUtf8(dump.output), out, example + QStringLiteral(".dmp"), log);
        } else {
            log << dump.error << '\n';
        }
    }
    std::unique_ptr<QWidget> widget(CreateViaWidget(factory));
    widget->resize(720, 640);
    SaveWidgetPng(*widget, out, QStringLiteral("via.png"), log);
}

const HostPageRegistration kRegistration{
    {QStringLiteral("Via SPICE export"), CreateViaWidget, TourVia}};

}  // namespace
