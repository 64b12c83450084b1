#pragma once

// What the widget tests of the eye-diagram sheet share: running the modal
// sheet while a step works it as a user would, typing into its fields and
// pressing its buttons, and stimulus data from the factory.

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <functional>
#include <memory>

#include "kvcomctl/kvcomctl.h"
#include "ui/shared/ControlIds.h"

namespace kv::test {

// Runs `edit` (which opens the sheet) while `act` works the open sheet. A
// sheet still open five seconds later is closed, so a failed step ends the
// test instead of hanging it.
inline bool WithSheet(const std::function<bool()>& edit, const std::function<void(QDialog&)>& act) {
    const auto openSheet = [] { return qobject_cast<QDialog*>(QApplication::activeModalWidget()); };
    // Owned here, so that a sheet that never opened leaves no step behind.
    QTimer step;
    step.setSingleShot(true);
    QObject::connect(&step, &QTimer::timeout, [&act, &openSheet] {
        if (QDialog* sheet = openSheet()) {
            act(*sheet);
        }
    });
    step.start(0);
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, [&openSheet] {
        if (QDialog* sheet = openSheet()) {
            sheet->done(QDialog::Rejected);
        }
    });
    watchdog.start(5000);
    return edit();
}

// Types `text` into a field and finishes the edit, as leaving the field does.
inline void Type(QWidget& sheet, int controlId, const QString& text) {
    auto* field = ui::FindControl<QLineEdit>(&sheet, controlId);
    field->setText(text);
    emit field->editingFinished();
}

inline void Click(QWidget& sheet, int controlId) {
    ui::FindControl<QPushButton>(&sheet, controlId)->click();
}

using DataPtr = std::unique_ptr<IEyeDiagramData, std::function<void(IEyeDiagramData*)>>;
inline DataPtr NewData(IKVComCtlFactory& factory) {
    return DataPtr(factory.CreateStimulusData(),
                   [&factory](IEyeDiagramData* data) { factory.Destroy(data); });
}

}  // namespace kv::test
