// kvhost: loads libKVComCtl as a host application does and shows each of its
// components on a page. Without a display it runs a headless tour that
// writes what each page shows into a folder.

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QMainWindow>
#include <QMessageBox>
#include <QTabWidget>
#include <QTextStream>
#include <cstdio>
#include <cstdlib>

#include "HostLibrary.h"
#include "HostPage.h"

namespace {

// Whether windows can be shown to someone: a display server is there and
// the platform is not the offscreen one.
bool HasDisplay() {
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen") {
        return false;
    }
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

int RunTour(IKVComCtlFactory& factory, const QString& outPath) {
    QTextStream log(stdout);
    QDir out(outPath);
    if (!out.mkpath(QStringLiteral("."))) {
        log << "kvhost: cannot create " << outPath << '\n';
        return 1;
    }
    for (const HostPage& page : HostPages()) {
        log << "== " << page.title << '\n';
        page.tour(factory, out, log);
    }
    return TourWriteFailures() == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    // A server has no display: fall back to the offscreen platform and tour.
    const bool headless = !HasDisplay();
    if (headless) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kvhost"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Demo host of the KVComCtl component library"));
    parser.addHelpOption();
    const QCommandLineOption libraryOption(QStringLiteral("library"),
                                           QStringLiteral("Path of libKVComCtl to load."),
                                           QStringLiteral("path"), QStringLiteral(KV_LIBRARY_PATH));
    const QCommandLineOption tourOption(QStringLiteral("tour"),
                                        QStringLiteral("Run the headless tour, then exit."));
    const QCommandLineOption outOption(QStringLiteral("out"),
                                       QStringLiteral("Folder the tour writes into (default out)."),
                                       QStringLiteral("folder"), QStringLiteral("out"));
    parser.addOptions({libraryOption, tourOption, outOption});
    parser.process(app);

    HostLibrary library;
    if (!library.Load(parser.value(libraryOption))) {
        std::fprintf(stderr, "kvhost: cannot load %s: %s\n",
                     qPrintable(parser.value(libraryOption)), qPrintable(library.Error()));
        return 1;
    }
    if (parser.isSet(tourOption) || headless) {
        return RunTour(*library.Factory(), parser.value(outOption));
    }

    QMainWindow window;
    window.setWindowTitle(QStringLiteral("KVComCtl demo host"));
    auto* tabs = new QTabWidget;
    for (const HostPage& page : HostPages()) {
        tabs->addTab(page.createWidget(*library.Factory()), page.title);
    }
    window.setCentralWidget(tabs);
    window.resize(800, 600);
    window.show();
    return app.exec();
}
