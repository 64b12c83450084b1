#include "tests/soak/WaitingWindows.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QVariant>
#include <array>
#include <span>

namespace kv::soak {
namespace {

// How often the driver has answered this window already: one that stays up after a few
// answers gets firmer ones.
int CountAnswer(QWidget& window) {
    const int answers = window.property("soakAnswers").toInt() + 1;
    window.setProperty("soakAnswers", answers);
    return answers;
}

void Write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(bytes);
    }
}

}  // namespace

bool WaitingWindows::AnswerOne(bool insist) {
    if (QWidget* popup = QApplication::activePopupWidget()) {
        m_actions.Trace("answer popup", popup);
        AnswerPopup(*popup);
        return true;
    }
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        m_actions.Trace(qPrintable(QStringLiteral("answer box \"%1\"").arg(box->text())), modal);
        AnswerBox(*box, insist);
        return true;
    }
    if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
        m_actions.Trace("answer file dialog", modal);
        AnswerFileDialog(*dialog);
        return true;
    }
    return false;
}

void WaitingWindows::AnswerBox(QMessageBox& box, bool insist) {
    const QList<QAbstractButton*> buttons = box.buttons();
    const int answers = CountAnswer(box);
    if (!insist && answers < 4 && m_random.Chance(0.15)) {
        // Escape or Enter instead of a button, as a user at the keyboard answers.
        if (m_random.Chance(0.5)) {
            m_actions.PressKey(&box, Qt::Key_Escape, Qt::NoModifier, QStringLiteral("\x1b"));
        } else {
            m_actions.PressKey(&box, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
        }
        return;
    }
    if (buttons.isEmpty()) {
        box.done(QMessageBox::Cancel);
        return;
    }
    QAbstractButton* chosen = buttons[m_random.Below(static_cast<int>(buttons.size()))];
    if (insist) {
        for (QAbstractButton* button : buttons) {
            const QMessageBox::ButtonRole role = box.buttonRole(button);
            if (role == QMessageBox::AcceptRole || role == QMessageBox::YesRole) {
                chosen = button;
            }
        }
    }
    chosen->click();
}

void WaitingWindows::AnswerFileDialog(QFileDialog& dialog) {
    // A folder chosen in an open dialog only opens the folder, and a missing file is refused
    // with a box of the dialog's own: after a few answers the user gives up.
    if (CountAnswer(dialog) > 6 || m_random.Chance(0.25)) {
        dialog.reject();
        return;
    }
    const QString path = AnyPath();
    if (auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
        name->setText(path);
    } else {
        dialog.selectFile(path);
    }
    QMetaObject::invokeMethod(&dialog, "accept");  // what the Open or Save button does
}

void WaitingWindows::AnswerPopup(QWidget& popup) {
    const int answers = CountAnswer(popup);
    if (answers > 8) {
        popup.close();
        return;
    }
    if (answers > 4) {
        m_actions.PressKey(&popup, Qt::Key_Escape, Qt::NoModifier, QStringLiteral("\x1b"));
        return;
    }
    if (auto* menu = qobject_cast<QMenu*>(&popup)) {
        QList<QAction*> choices;
        for (QAction* action : menu->actions()) {
            if (!action->isSeparator() && action->isEnabled() && action->isVisible()) {
                choices << action;
            }
        }
        if (!choices.isEmpty() && m_random.Chance(0.75)) {
            menu->setActiveAction(choices[m_random.Below(static_cast<int>(choices.size()))]);
            m_actions.PressKey(menu, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
        } else {
            m_actions.PressKey(menu, Qt::Key_Escape, Qt::NoModifier, QStringLiteral("\x1b"));
        }
        return;
    }
    // A drop-down list or any other popup: move in it, pick, click into it or leave it.
    switch (m_random.Below(4)) {
        case 0:
            m_actions.PressKey(&popup, m_random.Chance(0.5) ? Qt::Key_Down : Qt::Key_PageDown);
            break;
        case 1:
            m_actions.PressKey(&popup, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
            break;
        case 2:
            m_actions.PressKey(&popup, Qt::Key_Escape, Qt::NoModifier, QStringLiteral("\x1b"));
            break;
        default:
            m_actions.Click(&popup, QPointF(m_random.Real(0.0, popup.width()),
                                            m_random.Real(0.0, popup.height())));
            break;
    }
}

QString WaitingWindows::AnyPath() {
    static const std::array<QString, 16> kNames = {
        QStringLiteral("valid.bit"),
        QStringLiteral("bad.bit"),
        QStringLiteral("long.bit"),
        QStringLiteral("empty.bit"),
        QStringLiteral("name with blanks.bit"),
        QStringLiteral("garbage.bin"),
        QStringLiteral("folder with blanks"),
        QStringLiteral("."),
        QStringLiteral("new file.bit"),
        QStringLiteral("new.cir"),
        QStringLiteral("new stimulus.ini"),
        QStringLiteral("missing folder/new.bit"),
        QStringLiteral("trailing blank .bit"),
        QString(240, u'n') + QStringLiteral(".bit"),
        QStringLiteral("hostile stimulus.ini"),
        QStringLiteral("period zero.ini"),
    };
    return m_files.absoluteFilePath(m_random.Pick(std::span<const QString>(kNames)));
}

void WaitingWindows::PrepareFiles() {
    m_files.mkpath(QStringLiteral("folder with blanks"));
    Write(m_files.filePath(QStringLiteral("valid.bit")), "1, 0; 1\r\n0 0 1 1\t1");
    Write(m_files.filePath(QStringLiteral("name with blanks.bit")), "0110");
    Write(m_files.filePath(QStringLiteral("bad.bit")), "0102");
    Write(m_files.filePath(QStringLiteral("long.bit")), QByteArray(40000, '1'));
    Write(m_files.filePath(QStringLiteral("empty.bit")), QByteArray());
    // Stimulus files a user may open: numbers no page allows, a period of 0, a sequence that
    // is not one.
    Write(m_files.filePath(QStringLiteral("hostile stimulus.ini")),
          "[EYEDIAGRAM]\nCYCLECOUNT=2147483647\nPERIOD=nan\nDUTYCYCLE=1e999\nSEQTYPE=4\n"
          "POLYDEGREE=31\nMAXJITTER=-1\nSEQUENCELENGTH=40000\nBITSEQUENCE=!!!!\n"
          "MASKNAME=ABCDEFGHIJKLMNOPQRSTUVWXYZ\nSCALETIME=0\n");
    Write(m_files.filePath(QStringLiteral("period zero.ini")), "[EYEDIAGRAM]\nPERIOD=0\n");
    QByteArray garbage(4096, '\0');
    for (char& byte : garbage) {
        byte = static_cast<char>(m_random.Below(256));
    }
    Write(m_files.filePath(QStringLiteral("garbage.bin")), garbage);
}

}  // namespace kv::soak
