// The Qt file dialogs: filter texts in Qt's form, and dialogs answered as a
// user would, by typing a name and pressing the accept button.

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "ui/ports/QtFileChooser.h"

class QtFileChooserTest : public QObject {
    Q_OBJECT

private:
    // Types `name` into the next file dialog and accepts it, or rejects the
    // dialog when `name` is empty; keeps the filters it offered.
    void AnswerNextDialog(const QString& name) {
        QTimer::singleShot(0, this, [this, name] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog != nullptr);
            m_offeredFilters = dialog->nameFilters();
            if (name.isEmpty()) {
                dialog->reject();
                return;
            }
            auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            edit->setText(name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
    }

    QStringList m_offeredFilters;

private slots:
    void filtersBecomeQtFilters() {
        QCOMPARE(kv::ui::QtFileFilter("Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|"),
                 QStringLiteral("Bit sequence file (*.bit);;All Files (*.*)"));
        QCOMPARE(kv::ui::QtFileFilter("SPICE files (*.cir;*.inc)|*.cir; *.inc||"),
                 QStringLiteral("SPICE files (*.cir *.inc)"));
        QCOMPARE(kv::ui::QtFileFilter("Plain|*.txt|"), QStringLiteral("Plain (*.txt)"));
        QCOMPARE(kv::ui::QtFileFilter(""), QString());
    }

    void saveDialogAddsTheDefaultExtensionAndCancelGivesNothing() {
        QTemporaryDir folder;
        kv::ui::QtFileChooser chooser;
        kv::FileQuery query;
        query.defaultFileName = folder.filePath(QStringLiteral("proposed.bit")).toStdString();
        query.defaultExtension = "bit";
        query.filter = "Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|";

        AnswerNextDialog(folder.filePath(QStringLiteral("typed")));
        const std::optional<kv::ChosenFile> chosen = chooser.ChooseSaveFile(query);
        QVERIFY(chosen.has_value());
        QCOMPARE(QString::fromStdString(chosen->Path().string()),
                 folder.filePath(QStringLiteral("typed.bit")));
        QCOMPARE(m_offeredFilters, QStringList({QStringLiteral("Bit sequence file (*.bit)"),
                                                QStringLiteral("All Files (*.*)")}));

        AnswerNextDialog(QString());
        QVERIFY(!chooser.ChooseSaveFile(query).has_value());
    }

    void openDialogReturnsAnExistingFile() {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("pattern.bit")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        kv::ui::QtFileChooser chooser;
        kv::FileQuery query;
        query.defaultFileName = folder.path().toStdString() + "/";
        query.filter = "Bit sequence file (*.bit)|*.bit||";
        AnswerNextDialog(file.fileName());
        const std::optional<kv::ChosenFile> chosen = chooser.ChooseOpenFile(query);
        QVERIFY(chosen.has_value());
        QCOMPARE(chosen->fileName, std::string("pattern.bit"));
    }
};

QTEST_MAIN(QtFileChooserTest)
#include "QtFileChooserTest.moc"
