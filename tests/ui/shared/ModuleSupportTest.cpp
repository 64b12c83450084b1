// The Qt side of the module's shared support: message boxes and file dialogs
// answered by the test, the module-state guard and the widget classes the
// module registers by name.

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <functional>

#include "module/ModuleWidgetClasses.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/chart/ChartControl.h"
#include "ui/ports/QtFileChooser.h"
#include "ui/ports/QtMessagePort.h"
#include "ui/shared/ModuleState.h"
#include "ui/shared/WidgetClassRegistry.h"
#include "ui/via/ViaVisualizerCtrl.h"

using namespace Qt::StringLiterals;

class ModuleSupportTest : public QObject {
    Q_OBJECT

    // Runs `answer` on the next modal window as soon as it is shown.
    template <typename Modal>
    void AnswerNext(std::function<void(Modal&)> answer) {
        QTimer::singleShot(0, this, [answer] {
            auto* modal = qobject_cast<Modal*>(QApplication::activeModalWidget());
            QVERIFY(modal != nullptr);
            answer(*modal);
        });
    }

    // Types `name` into the next file dialog and accepts it; rejects it for
    // an empty name.
    void TypeIntoNextFileDialog(const QString& name, QStringList* offeredFilters = nullptr) {
        AnswerNext<QFileDialog>([name, offeredFilters](QFileDialog& dialog) {
            if (offeredFilters != nullptr) {
                *offeredFilters = dialog.nameFilters();
            }
            if (name.isEmpty()) {
                dialog.reject();
                return;
            }
            auto* edit = dialog.findChild<QLineEdit*>(u"fileNameEdit"_s);
            edit->setText(name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
    }

private slots:
    void messageBoxShowsTextAndReturnsTheClickedButton() {
        kv::ui::QtMessagePort port;
        kv::MessageRequest request;
        request.caption = "KVComCtl";
        request.text = "Overwrite the file?";
        request.buttons = kv::MessageButtons::YesNo;
        request.defaultAnswer = kv::MessageAnswer::No;
        for (const auto button : {QMessageBox::Yes, QMessageBox::No}) {
            QString shownText;
            QMessageBox::StandardButton shownDefault = QMessageBox::NoButton;
            AnswerNext<QMessageBox>([&, button](QMessageBox& box) {
                shownText = box.text();
                shownDefault = box.standardButton(box.defaultButton());
                box.button(button)->click();
            });
            const kv::MessageAnswer expected =
                button == QMessageBox::Yes ? kv::MessageAnswer::Yes : kv::MessageAnswer::No;
            QCOMPARE(port.Show(request), expected);
            QCOMPARE(shownText, u"Overwrite the file?"_s);
            QCOMPARE(shownDefault, QMessageBox::No);
        }
    }

    void filtersBecomeQtFilters() {
        QCOMPARE(kv::ui::QtFileFilter("Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|"),
                 u"Bit sequence file (*.bit);;All Files (*.*)"_s);
        QCOMPARE(kv::ui::QtFileFilter("SPICE files (*.cir;*.inc)|*.cir; *.inc||"),
                 u"SPICE files (*.cir *.inc)"_s);
        QCOMPARE(kv::ui::QtFileFilter("Plain|*.txt|"), u"Plain (*.txt)"_s);
        QCOMPARE(kv::ui::QtFileFilter(""), QString());
    }

    void fileDialogsGiveWhatWasTypedWithTheDefaultExtension() {
        QTemporaryDir folder;
        kv::ui::QtFileChooser chooser;
        kv::FileQuery query;
        query.defaultFileName = folder.filePath(u"proposed.bit"_s).toStdString();
        query.defaultExtension = "bit";
        query.filter = "Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|";
        QStringList offered;
        TypeIntoNextFileDialog(folder.filePath(u"typed"_s), &offered);
        const std::optional<kv::ChosenFile> saved = chooser.ChooseSaveFile(query);
        QVERIFY(saved.has_value());
        QCOMPARE(QString::fromStdString(saved->Path().string()), folder.filePath(u"typed.bit"_s));
        QCOMPARE(offered, QStringList({u"Bit sequence file (*.bit)"_s, u"All Files (*.*)"_s}));
        TypeIntoNextFileDialog(QString());
        QVERIFY(!chooser.ChooseSaveFile(query).has_value());

        QFile file(folder.filePath(u"pattern.bit"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        TypeIntoNextFileDialog(file.fileName());
        const std::optional<kv::ChosenFile> opened = chooser.ChooseOpenFile(query);
        QVERIFY(opened.has_value());
        QCOMPARE(opened->fileName, std::string("pattern.bit"));
    }

    void guardNestsAndRestores() {
        QVERIFY(!kv::ui::ModuleStateGuard::IsActive());
        {
            kv::ui::ModuleStateGuard outer;
            {
                kv::ui::ModuleStateGuard inner;
                QVERIFY(kv::ui::ModuleStateGuard::IsActive());
            }
            QVERIFY(kv::ui::ModuleStateGuard::IsActive());
        }
        QVERIFY(!kv::ui::ModuleStateGuard::IsActive());
        QVERIFY(!kv::ui::ModuleWindowIcon().isNull());
    }

    // Layouts and hosts name these classes; each makes its own widget.
    void moduleWidgetClassesAreMadeByName() {
        auto& registry = kv::ui::WidgetClassRegistry::Instance();
        kv::module::RegisterModuleWidgetClasses();
        QWidget parent;
        const auto made = [&](const char* name) { return registry.Create(name, &parent); };
        QVERIFY(qobject_cast<kv::ui::CBitPatternCtrl*>(made("Velmorine Bit Pattern Editor")));
        QVERIFY(qobject_cast<kv::ui::CViaVisualizerCtrl*>(made("Velmorine Via Visualizer")));
        QVERIFY(qobject_cast<kv::ui::CPadTopViewCtrl*>(made("TOPVIEW")));
        QWidget* chart = made("Curvana Chart Control");
        QVERIFY(qobject_cast<kv::ui::CChartControl*>(chart));
        QCOMPARE(chart->parent(), &parent);
        QCOMPARE(made("No Such Class"), nullptr);
        kv::module::UnregisterModuleWidgetClasses();
        QVERIFY(!registry.IsRegistered("TOPVIEW"));
    }
};

QTEST_MAIN(ModuleSupportTest)
#include "ModuleSupportTest.moc"
