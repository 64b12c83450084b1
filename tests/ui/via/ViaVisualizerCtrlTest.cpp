// The via visualizer control as a widget: created once into its parent, filled from the example
// boards as a host fills it, both exports, the context menu and the hover text. File dialogs and
// message boxes are answered through the ports; saving images is checked on the chart control,
// which shares the code.

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMenu>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

#include "apps/viadescription/ViaControlFill.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/ScriptedFileChooser.h"
#include "tests/support/TestSupport.h"
#include "ui/via/ViaVisualizerCtrl.h"

using namespace Qt::StringLiterals;

namespace {

using kv::ui::CViaVisualizerCtrl;

kv::via_json::ViaDescription Example(const char* name) {
    return kv::via_json::ReadViaDescription(std::string(KV_EXAMPLES_DIR "/") + name + ".json");
}

}  // namespace

class ViaVisualizerCtrlTest : public QObject {
    Q_OBJECT

    // A filled control of 800 x 500 pixels with scripted dialogs.
    std::unique_ptr<CViaVisualizerCtrl> Filled(const char* example) {
        auto control = std::make_unique<CViaVisualizerCtrl>();
        control->SetFileChooser(&m_chooser);
        control->resize(800, 500);
        return kv::via_json::FillViaControl(*control, Example(example)) ? std::move(control)
                                                                        : nullptr;
    }

    void AnswerWith(const QString& fileName) {
        m_chooser.answer = kv::ChosenFile{m_folder->path().toStdString(), fileName.toStdString()};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    kv::test::ScriptedFileChooser m_chooser;
    kv::test::RecordingMessagePort m_messages;
    kv::ScopedMessagePort m_scope{m_messages};

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_chooser = {};
        m_messages.Clear();
    }

    void createdOnceAsAChildAndEmptyExportsNothing() {
        QWidget parent;
        CViaVisualizerCtrl control;
        QCOMPARE(control.GetWindow(), nullptr);
        QVERIFY(control.Create(&parent, 1300));
        QCOMPARE(control.GetWindow(), &control);
        QCOMPARE(control.parentWidget(), &parent);
        QCOMPARE(control.objectName(), u"ctl1300"_s);
        QVERIFY(!control.Create(nullptr, 1301));
        QCOMPARE(control.parentWidget(), &parent);
        control.setParent(nullptr);
        // Empty, it exports nothing and asks for no file.
        control.SetFileChooser(&m_chooser);
        QVERIFY(!control.ExportToSpice());
        QVERIFY(!control.ExportToSpiceFile(m_folder->filePath(u"e.cir"_s).toUtf8()));
        QVERIFY(!control.ExportToSpiceFile(nullptr));
        QVERIFY(m_chooser.queries.empty());
        QCOMPARE(control.GetViaData(1), nullptr);
    }

    // What a host hands the control through its interface reaches the model that the views
    // and the export read. The export's text is checked where the command line writes it.
    void hostCallsReachTheModel() {
        const kv::via_json::ViaDescription pair = Example("via_pair_6layer");
        const auto control = Filled("via_pair_6layer");
        QVERIFY(control != nullptr);
        const kv::SpiceExportInput input = control->Model().Input();
        QVERIFY(input.pair);
        QCOMPARE(input.subcircuitName, pair.subcircuit);
        QCOMPARE(input.vias.size(), pair.vias.size());
        for (std::size_t v = 0; v < pair.vias.size(); ++v) {
            QCOMPARE(input.vias[v].elements.size(), pair.vias[v].elements.size());
            QCOMPARE(input.vias[v].ports.size(), pair.vias[v].ports.size());
        }
        const QString path = m_folder->filePath(u"pair.cir"_s);
        QVERIFY(control->ExportToSpiceFile(path.toUtf8().constData()));
        QVERIFY(ReadText(path.toStdString()).find(".SUBCKT " + pair.subcircuit + "\n") !=
                std::string::npos);
        QVERIFY(m_chooser.queries.empty());
    }

    // The save dialog and the overwrite question are the core's; the control hands them its
    // ports and its names.
    void interactiveExportUsesTheControlsPortsAndNames() {
        const auto control = Filled("via_signal_6layer");
        m_chooser.answer.reset();
        QVERIFY(!control->ExportToSpice());
        QVERIFY(QDir(m_folder->path()).isEmpty());

        control->SetNames("SUB", "board", nullptr);
        AnswerWith(u"board.cir"_s);
        QVERIFY(control->ExportToSpice());
        QCOMPARE(m_chooser.queries.size(), std::size_t{2});
        QCOMPARE(m_chooser.queries.back().defaultFileName, std::string("board.cir"));
        const QString path = m_folder->filePath(u"board.cir"_s);
        QVERIFY(ReadText(path.toStdString()).find(".SUBCKT SUB\n") != std::string::npos);
        QVERIFY(m_messages.Requests().empty());
    }

    void menuSwitchesViewsAndCopiesAndSavesImages() {
        const auto control = Filled("via_pair_6layer");
        const std::unique_ptr<QMenu> menu = control->CreateContextMenu();
        QStringList texts;
        for (QAction* action : menu->actions()) {
            if (!action->isSeparator()) {
                texts << action->text();
            }
        }
        QCOMPARE(texts, QStringList({u"Export to Spice..."_s, u"Side view"_s, u"Top view"_s,
                                     u"Copy image"_s, u"Save image..."_s}));
        menu->actions().at(3)->trigger();  // "Top view"
        QCOMPARE(control->Model().View(), kv::ViaView::Top);
        // The copied picture is the one the window shows.
        menu->actions().at(5)->trigger();  // "Copy image"
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
                 control->grab().toImage().convertToFormat(QImage::Format_RGB32));

        AnswerWith(u"top.png"_s);
        menu->actions().at(6)->trigger();  // "Save image..."
        QCOMPARE(m_chooser.queries.back().defaultFileName, std::string("via.png"));
        QCOMPARE(QImage(m_folder->filePath(u"top.png"_s)).size(), QSize(800, 500));
    }

    void hoverNamesTheLayerUnderTheMouse() {
        const auto control = Filled("via_signal_6layer");
        control->show();
        QVERIFY(QTest::qWaitForWindowExposed(control.get()));
        QString previous;
        QStringList seen;
        for (int y = 0; y < control->height(); y += 2) {
            const QString text = control->HoverText(QPoint(400, y));
            if (!text.isEmpty() && text != previous) {
                seen << text.section(u':', 0, 0);
            }
            previous = text;
        }
        QCOMPARE(seen.size(), 11);
        QCOMPARE(seen.first(), u"1 TOP"_s);
        QCOMPARE(seen.last(), u"11 BOTTOM"_s);
        control->SetView(1);
        control->SetTopViewLayer(2);
        QVERIFY(control->HoverText(QPoint(10, 10)).startsWith(u"3 GND2: plane"_s));
    }

    void padTopViewShowsOnePadOnItsOwn() {
        kv::ui::CPadTopViewCtrl view;
        view.resize(300, 300);
        PADDATA pad{};
        pad.padType = PAD_TYPE_PAD;
        pad.shape = PAD_SHAPE_ROUND;
        pad.pad_x = pad.pad_y = 600e-6;
        view.SetPad(&pad, 200e-6, 25e-6, true, u"layer 1 TOP"_s);
        const QImage image = view.grab().toImage();
        view.SetPad(nullptr, 200e-6, 25e-6, true);
        QVERIFY(view.grab().toImage() != image);
    }
};

QTEST_MAIN(ViaVisualizerCtrlTest)
#include "ViaVisualizerCtrlTest.moc"
