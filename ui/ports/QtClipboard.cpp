#include "ui/ports/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace kv::ui {

std::optional<std::string> QtClipboard::GetText() const {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    const QMimeData* data = clipboard != nullptr ? clipboard->mimeData() : nullptr;
    if (data == nullptr || !data->hasText()) {
        return std::nullopt;
    }
    return data->text().toStdString();
}

bool QtClipboard::SetText(std::string_view text) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (clipboard == nullptr) {
        return false;
    }
    clipboard->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    return true;
}

}  // namespace kv::ui
