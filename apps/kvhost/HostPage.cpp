#include "HostPage.h"

#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QTextStream>
#include <QWidget>

namespace {

std::vector<HostPage>& MutablePages() {
    static std::vector<HostPage> pages;
    return pages;
}

}  // namespace

const std::vector<HostPage>& HostPages() {
    return MutablePages();
}

HostPageRegistration::HostPageRegistration(HostPage page) {
    MutablePages().push_back(std::move(page));
}

void SaveWidgetPng(QWidget& widget, const QDir& out, const QString& fileName, QTextStream& log) {
    widget.ensurePolished();
    widget.adjustSize();
    const QString path = out.filePath(fileName);
    if (widget.grab().save(path, "PNG")) {
        log << "wrote " << path << '\n';
    } else {
        log << "could not write " << path << '\n';
    }
}

void SaveText(const QString& text, const QDir& out, const QString& fileName, QTextStream& log) {
    const QString path = out.filePath(fileName);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        file.write(text.toUtf8());
        log << "wrote " << path << '\n';
    } else {
        log << "could not write " << path << ": " << file.errorString() << '\n';
    }
}
