#pragma once

#include <QDir>
#include <QString>

#include "tests/soak/SoakRandom.h"
#include "tests/soak/UserActions.h"

class QFileDialog;
class QMessageBox;
class QWidget;

namespace kv::soak {

// Answers whatever waits for the user: message boxes with a random one of their buttons, file
// dialogs with a random file, folder or new name inside the work folder (or no answer at all),
// menus and other popups with a random item or Escape. Nothing is ever left waiting: a window
// that the same kind of answer did not close is closed by a firmer one.
class WaitingWindows {
public:
    WaitingWindows(SoakRandom& random, UserActions& actions, QDir files)
        : m_random(random), m_actions(actions), m_files(std::move(files)) {}

    // Answers the window that waits now, if any; true when one was answered. With `insist`
    // message boxes get their affirmative button, so that a closing component can go.
    bool AnswerOne(bool insist);

    // Makes the files a user picks from: a valid, an invalid, an empty and a 40000-bit
    // sequence file, a folder, names with blanks.
    void PrepareFiles();

private:
    void AnswerBox(QMessageBox& box, bool insist);
    void AnswerFileDialog(QFileDialog& dialog);
    void AnswerPopup(QWidget& popup);
    QString AnyPath();

    SoakRandom& m_random;
    UserActions& m_actions;
    QDir m_files;
};

}  // namespace kv::soak
