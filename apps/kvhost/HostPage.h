#pragma once

#include <QString>
#include <functional>
#include <vector>

class QDir;
class QTextStream;
class QWidget;
class IKVComCtlFactory;

// One page of the demo host per component. Each page lives in a file of its
// own and registers itself, so a new component adds one file.
struct HostPage {
    QString title;
    // The interactive page; it uses the factory only through the contract.
    std::function<QWidget*(IKVComCtlFactory& factory)> createWidget;
    // The headless tour: writes what the page shows into `out` and names
    // every file it wrote on `log`.
    std::function<void(IKVComCtlFactory& factory, const QDir& out, QTextStream& log)> tour;
};

const std::vector<HostPage>& HostPages();

struct HostPageRegistration {
    explicit HostPageRegistration(HostPage page);
};

// Renders `widget` offscreen into `out`/`fileName` as PNG and logs it.
void SaveWidgetPng(QWidget& widget, const QDir& out, const QString& fileName, QTextStream& log);
// Writes `text` into `out`/`fileName` and logs it.
void SaveText(const QString& text, const QDir& out, const QString& fileName, QTextStream& log);
// Logs a file the tour wrote (or failed to write) and counts failures.
void LogTourWrite(bool written, const QString& path, QTextStream& log);
// How many files the tour failed to write so far.
int TourWriteFailures();
