// The Qt side of the module's shared support: message boxes answered by the
// test, the module-state guard and the widget class registry.

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include "ui/ports/QtMessagePort.h"
#include "ui/shared/ModuleState.h"
#include "ui/shared/WidgetClassRegistry.h"

class ModuleSupportTest : public QObject {
    Q_OBJECT

private:
    // Clicks `button` of the next message box as soon as it is shown, and
    // keeps what it showed.
    void AnswerNextBox(QMessageBox::StandardButton button) {
        QTimer::singleShot(0, this, [this, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box != nullptr);
            m_shownText = box->text();
            m_shownDefault = box->defaultButton() ? box->standardButton(box->defaultButton())
                                                  : QMessageBox::NoButton;
            box->button(button)->click();
        });
    }

    QString m_shownText;
    QMessageBox::StandardButton m_shownDefault = QMessageBox::NoButton;

private slots:
    void messageBoxShowsTextAndReturnsTheClickedButton() {
        kv::ui::QtMessagePort port;
        kv::MessageRequest request;
        request.caption = "KVComCtl";
        request.text = "Overwrite the file?";
        request.buttons = kv::MessageButtons::YesNo;
        request.defaultAnswer = kv::MessageAnswer::No;
        AnswerNextBox(QMessageBox::Yes);
        QCOMPARE(port.Show(request), kv::MessageAnswer::Yes);
        QCOMPARE(m_shownText, QStringLiteral("Overwrite the file?"));
        QCOMPARE(m_shownDefault, QMessageBox::No);
        AnswerNextBox(QMessageBox::No);
        QCOMPARE(port.Show(request), kv::MessageAnswer::No);
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

    void registryCreatesWidgetsByClassName() {
        auto& registry = kv::ui::WidgetClassRegistry::Instance();
        registry.Register("Test Label", [](QWidget* parent) { return new QLabel("made", parent); });
        QWidget parent;
        auto* made = qobject_cast<QLabel*>(registry.Create("Test Label", &parent));
        QVERIFY(made != nullptr);
        QCOMPARE(made->parent(), &parent);
        QCOMPARE(registry.Create("No Such Class", &parent), nullptr);
        registry.Unregister("Test Label");
        QVERIFY(!registry.IsRegistered("Test Label"));
    }
};

QTEST_MAIN(ModuleSupportTest)
#include "ModuleSupportTest.moc"
