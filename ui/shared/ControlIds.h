#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <cstdint>

#include "core/shared/ColorRef.h"

// Controls keep the numeric ids the host knows them by as their objectName,
// "ctl<id>", so a host, a test or the library itself finds a dialog's
// control by id.

namespace kv::ui {

inline QString ControlObjectName(int id) {
    return QStringLiteral("ctl%1").arg(id);
}

// The descendant of `dialog` with the given id and type, or null.
template <class Control>
Control* FindControl(const QWidget* dialog, int id) {
    if (dialog == nullptr || id == 0) {
        return nullptr;
    }
    return dialog->findChild<Control*>(ControlObjectName(id));
}

inline QColor ColorFromColorRef(uint32_t colorRef) {
    const Rgb rgb = SplitColorRef(colorRef);
    return QColor(rgb.red, rgb.green, rgb.blue);
}

}  // namespace kv::ui
