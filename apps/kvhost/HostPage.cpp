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

int g_writeFailures = 0;

void LogResult(bool written, const QString& path, const QString& reason, QTextStream& log) {
    if (written) {
        log << "wrote " << path << '\n';
    } else {
        ++g_writeFailures;
        log << "could not write " << path << reason << '\n';
    }
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
    LogResult(widget.grab().save(path, "PNG"), path, QString(), log);
}

void SaveText(const QString& text, const QDir& out, const QString& fileName, QTextStream& log) {
    const QString path = out.filePath(fileName);
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text) &&
                         file.write(text.toUtf8()) == text.toUtf8().size();
    LogResult(written, path, written ? QString() : ": " + file.errorString(), log);
}

void LogTourWrite(bool written, const QString& path, QTextStream& log) {
    LogResult(written, path, QString(), log);
}

int TourWriteFailures() {
    return g_writeFailures;
}
