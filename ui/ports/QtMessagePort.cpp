#include "ui/ports/QtMessagePort.h"

#include <QApplication>
#include <QMessageBox>

#include "ui/shared/ModuleState.h"

namespace kv::ui {
namespace {

QMessageBox::Icon ToQt(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::None:
            return QMessageBox::NoIcon;
        case MessageIcon::Information:
            return QMessageBox::Information;
        case MessageIcon::Warning:
            return QMessageBox::Warning;
        case MessageIcon::Error:
            return QMessageBox::Critical;
        case MessageIcon::Question:
            return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ToQt(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::Ok:
            return QMessageBox::Ok;
        case MessageButtons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case MessageButtons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case MessageButtons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case MessageButtons::RetryCancel:
            return QMessageBox::Retry | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton ToQt(MessageAnswer answer) {
    switch (answer) {
        case MessageAnswer::Ok:
            return QMessageBox::Ok;
        case MessageAnswer::Cancel:
            return QMessageBox::Cancel;
        case MessageAnswer::Yes:
            return QMessageBox::Yes;
        case MessageAnswer::No:
            return QMessageBox::No;
        case MessageAnswer::Retry:
            return QMessageBox::Retry;
    }
    return QMessageBox::Ok;
}

MessageAnswer FromQt(int button, MessageAnswer fallback) {
    switch (button) {
        case QMessageBox::Ok:
            return MessageAnswer::Ok;
        case QMessageBox::Cancel:
            return MessageAnswer::Cancel;
        case QMessageBox::Yes:
            return MessageAnswer::Yes;
        case QMessageBox::No:
            return MessageAnswer::No;
        case QMessageBox::Retry:
            return MessageAnswer::Retry;
        default:
            return fallback;
    }
}

}  // namespace

MessageAnswer QtMessagePort::Show(const MessageRequest& request) {
    if (!CanCreateWidgets()) {
        return m_fallback.Show(request);
    }
    QMessageBox box(ToQt(request.icon), QString::fromStdString(request.caption),
                    QString::fromStdString(request.text), ToQt(request.buttons),
                    QApplication::activeWindow());
    box.setDefaultButton(ToQt(request.defaultAnswer));
    box.setWindowIcon(ModuleWindowIcon());
    // Closing the box with Escape or the title bar answers Cancel where
    // there is one, else the default button.
    const int result = box.exec();
    const MessageAnswer closed =
        request.buttons == MessageButtons::Ok || request.buttons == MessageButtons::YesNo
            ? request.defaultAnswer
            : MessageAnswer::Cancel;
    return FromQt(result, closed);
}

}  // namespace kv::ui
