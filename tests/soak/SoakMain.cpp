// soak_driver: loads the built library exactly as a host does (dlopen, GetKVComCtlFactory, the
// contract's interfaces and nothing else), opens every component on valid and hostile host
// data and sends it a seeded stream of user input, answering every dialog it raises. Any crash,
// sanitizer report, hang or component that will not close ends the run with the command that
// replays it.

#include <dlfcn.h>

#include <QApplication>
#include <QElapsedTimer>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <random>
#include <string_view>

#include "tests/soak/Scenarios.h"

namespace {

using namespace kv::soak;

struct Options {
    uint64_t seed = std::random_device{}() % 1000000000u;
    std::string_view component = "all";
    uint64_t events = 300;
    uint64_t seconds = 0;  // when given, the session length instead of the event count
    QString work;
    bool trace = false;
};

[[noreturn]] void Usage() {
    std::fprintf(stderr,
                 "usage: soak_driver [--seed S] [--component NAME|all] [--events N | "
                 "--seconds T] [--work FOLDER] [--trace]\ncomponents:");
    for (const Component& component : Components()) {
        std::fprintf(stderr, " %s", component.name);
    }
    std::fprintf(stderr, "\n");
    std::exit(2);
}

uint64_t Number(std::string_view text) {
    uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        Usage();
    }
    return value;
}

Options Parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view option = argv[i];
        const std::string_view value = option != "--trace" && i + 1 < argc ? argv[++i] : "";
        if (option == "--seed") {
            options.seed = Number(value);
        } else if (option == "--component") {
            options.component = value;
        } else if (option == "--events") {
            options.events = Number(value);
        } else if (option == "--seconds") {
            options.seconds = Number(value);
        } else if (option == "--work") {
            options.work = QString::fromUtf8(value);
        } else if (option == "--trace") {
            options.trace = true;
        } else {
            Usage();
        }
    }
    return options;
}

// The work folder holds the library's settings and everything it writes; never the source tree.
QDir MakeWorkFolder(const Options& options) {
    QDir work(options.work.isEmpty()
                  ? QDir::temp().filePath(QString("kv-soak-%1").arg(options.seed))
                  : options.work);
    work.removeRecursively();
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        const QString folder = work.absoluteFilePath(QString(variable).toLower());
        work.mkpath(folder);
        qputenv(variable, folder.toUtf8());
    }
    return work;
}

// The files a user picks from: valid, invalid, empty and 40000-bit sequence files, stimulus
// files with numbers no page allows, a period of 0 and a sequence that is not one, garbage, a
// folder, names with blanks.
QDir MakeFiles(const QDir& work, const char* component, SoakRandom& random) {
    QDir files(work.absoluteFilePath(QStringLiteral("files-") + component));
    files.mkpath(QStringLiteral("folder with blanks"));
    QByteArray garbage(4096, '\0');
    for (char& byte : garbage) {
        byte = static_cast<char>(random.Below(256));
    }
    const std::pair<const char*, QByteArray> kFiles[] = {
        {"valid.bit", "1, 0; 1\r\n0 0 1 1\t1"},
        {"name with blanks.bit", "0110"},
        {"bad.bit", "0102"},
        {"long.bit", QByteArray(40000, '1')},
        {"empty.bit", QByteArray()},
        {"hostile stimulus.ini",
         "[EYEDIAGRAM]\nCYCLECOUNT=2147483647\nPERIOD=nan\nDUTYCYCLE=1e999\nSEQTYPE=4\n"
         "POLYDEGREE=31\nMAXJITTER=-1\nSEQUENCELENGTH=40000\nBITSEQUENCE=!!!!\n"
         "MASKNAME=ABCDEFGHIJKLMNOPQRSTUVWXYZ\nSCALETIME=0\n"},
        {"period zero.ini", "[EYEDIAGRAM]\nPERIOD=0\n"},
        {"garbage.bin", garbage}};
    for (const auto& [name, bytes] : kFiles) {
        QFile file(files.filePath(name));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(bytes);
        }
    }
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = Parse(argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QDir work = MakeWorkFolder(options);
    InstallFailureReport();
    StartWatchdog(60);
    int qtArgc = 1;
    QApplication application(qtArgc, argv);

    void* library = dlopen(KV_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    auto get = library != nullptr
                   ? reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(library, "GetKVComCtlFactory"))
                   : nullptr;
    if (get == nullptr) {
        std::fprintf(stderr, "soak_driver: cannot load %s: %s\n", KV_LIBRARY_PATH, dlerror());
        return 2;
    }
    std::vector<std::size_t> chosen;
    for (std::size_t index = 0; index < Components().size(); ++index) {
        if (options.component == "all" || options.component == Components()[index].name) {
            chosen.push_back(index);
        }
    }
    if (chosen.empty()) {
        Usage();
    }
    uint64_t events = 0;
    uint64_t actions = 0;
    for (const std::size_t index : chosen) {
        const Component& component = Components()[index];
        ReportPosition(options.seed, component.name);
        SoakRandom random(options.seed, index);  // each component replays without the others
        const QDir files = MakeFiles(work, component.name, random);
        UserActions userActions(random);
        userActions.SetTrace(options.trace);
        std::optional<std::chrono::steady_clock::time_point> deadline;
        if (options.seconds > 0) {
            deadline = std::chrono::steady_clock::now() +
                       std::chrono::milliseconds(options.seconds * 1000 / chosen.size());
        }
        QElapsedTimer elapsed;
        elapsed.start();
        Driver driver(random, userActions, files, deadline ? UINT64_MAX : options.events, deadline);
        Session session{*get(), random, driver, userActions, files};
        component.run(session);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        events += driver.Events();
        actions += driver.Actions();
        std::printf("soak_driver: %s: %" PRIu64 " user actions, %" PRIu64 " events in %.1f s\n",
                    component.name, driver.Actions(), driver.Events(), elapsed.elapsed() / 1000.0);
        std::fflush(stdout);
    }
    // What is found at exit (a leak) belongs to no one component.
    ReportPosition(options.seed, options.component.data());
    ReportAction(options.events);
    dlclose(library);
    work.removeRecursively();
    std::printf("soak_driver: passed: %" PRIu64 " events (%" PRIu64 " user actions), seed %" PRIu64
                "\n",
                events, actions, options.seed);
    return 0;
}
