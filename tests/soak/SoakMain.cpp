// soak_driver: loads the built library exactly as a host does (dlopen, GetKVComCtlFactory, the
// contract's interfaces and nothing else), opens every component on valid and hostile host
// data and sends it a seeded stream of user input, answering every dialog it raises. Any crash,
// sanitizer report, hang or component that will not close ends the run with the command that
// replays it.

#include <dlfcn.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "tests/soak/Driver.h"
#include "tests/soak/FailureReport.h"
#include "tests/soak/Scenarios.h"
#include "tests/soak/UserActions.h"
#include "tests/soak/WaitingWindows.h"

namespace {

using namespace kv::soak;

struct Options {
    uint64_t seed = 0;
    bool seedGiven = false;
    std::string component = "all";
    uint64_t events = 300;
    double seconds = 0.0;  // when given, the session length instead of the event count
    std::string work;
    std::string library = KV_LIBRARY_PATH;
    int watchdog = 60;
    bool trace = false;
};

void Usage() {
    std::fprintf(
        stderr,
        "usage: soak_driver [--seed S] [--component NAME|all] [--events N | --seconds T]\n"
        "                   [--work FOLDER] [--library PATH] [--watchdog SECONDS] [--trace]\n"
        "components:");
    for (const Component& component : Components()) {
        std::fprintf(stderr, " %s", component.name);
    }
    std::fprintf(stderr, "\n");
    std::exit(2);
}

uint64_t Number(const char* text) {
    char* end = nullptr;
    const unsigned long long value = std::strtoull(text, &end, 10);
    if (end == text || *end != '\0') {
        Usage();
    }
    return value;
}

Options Parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view option = argv[i];
        if (option == "--trace") {
            options.trace = true;
            continue;
        }
        if (i + 1 >= argc) {
            Usage();
        }
        const char* value = argv[++i];
        if (option == "--seed") {
            options.seed = Number(value);
            options.seedGiven = true;
        } else if (option == "--component") {
            options.component = value;
        } else if (option == "--events") {
            options.events = Number(value);
        } else if (option == "--seconds") {
            options.seconds = static_cast<double>(Number(value));
        } else if (option == "--work") {
            options.work = value;
        } else if (option == "--library") {
            options.library = value;
        } else if (option == "--watchdog") {
            options.watchdog = static_cast<int>(Number(value));
        } else {
            Usage();
        }
    }
    if (!options.seedGiven) {
        options.seed = std::random_device{}() % 1000000000u;
    }
    return options;
}

// Each component draws from its own stream, so that one replays without the others.
uint64_t ComponentSeed(uint64_t seed, std::size_t index) {
    uint64_t mixed = seed + 0x9E3779B97F4A7C15ull * (index + 1);
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ull;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBull;
    return mixed ^ (mixed >> 31);
}

// The work folder holds the library's settings and everything it writes; never the source tree.
QDir MakeWorkFolder(const Options& options) {
    QString path = QString::fromStdString(options.work);
    if (path.isEmpty()) {
        path = QDir::temp().filePath(QStringLiteral("kv-soak-%1").arg(options.seed));
    }
    QDir work(path);
    work.removeRecursively();
    work.mkpath(QStringLiteral("."));
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        const QString folder = work.absoluteFilePath(QString::fromLatin1(variable).toLower());
        work.mkpath(folder);
        qputenv(variable, folder.toUtf8());
    }
    return work;
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = Parse(argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QDir work = MakeWorkFolder(options);
    InstallFailureReport();
    StartWatchdog(options.watchdog);
    int qtArgc = 1;
    QApplication application(qtArgc, argv);

    void* library = dlopen(options.library.c_str(), RTLD_NOW | RTLD_LOCAL);
    auto get = library != nullptr
                   ? reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(library, "GetKVComCtlFactory"))
                   : nullptr;
    if (get == nullptr) {
        std::fprintf(stderr, "soak_driver: cannot load %s: %s\n", options.library.c_str(),
                     dlerror());
        return 2;
    }
    IKVComCtlFactory& factory = *get();

    const std::span<const Component> components = Components();
    std::size_t chosen = 0;
    for (const Component& component : components) {
        chosen += options.component == "all" || options.component == component.name ? 1 : 0;
    }
    if (chosen == 0) {
        Usage();
    }
    std::printf("soak_driver: seed %llu, component %s, %s %g\n",
                static_cast<unsigned long long>(options.seed), options.component.c_str(),
                options.seconds > 0 ? "seconds" : "events per component",
                options.seconds > 0 ? options.seconds : static_cast<double>(options.events));
    std::fflush(stdout);

    uint64_t events = 0;
    uint64_t actions = 0;
    QElapsedTimer total;
    total.start();
    for (std::size_t index = 0; index < components.size(); ++index) {
        const Component& component = components[index];
        if (options.component != "all" && options.component != component.name) {
            continue;
        }
        ReportPosition(options.seed, component.name);
        QDir files(work.absoluteFilePath(QStringLiteral("files-") + component.name));
        files.removeRecursively();
        files.mkpath(QStringLiteral("."));
        SoakRandom random(ComponentSeed(options.seed, index));
        UserActions userActions(random);
        userActions.SetTrace(options.trace);
        WaitingWindows waiting(random, userActions, files);
        waiting.PrepareFiles();
        std::optional<std::chrono::steady_clock::time_point> deadline;
        uint64_t limit = options.events;
        if (options.seconds > 0) {
            limit = UINT64_MAX;
            deadline =
                std::chrono::steady_clock::now() +
                std::chrono::milliseconds(static_cast<int64_t>(options.seconds * 1000.0 / chosen));
        }
        QElapsedTimer elapsed;
        elapsed.start();
        {
            Driver driver(random, userActions, waiting, limit, deadline);
            Session session{factory, random, driver, userActions, files};
            component.run(session);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            events += driver.Events();
            actions += driver.Actions();
            std::printf("soak_driver: %s: %llu user actions, %llu events in %.1f s\n",
                        component.name, static_cast<unsigned long long>(driver.Actions()),
                        static_cast<unsigned long long>(driver.Events()),
                        static_cast<double>(elapsed.elapsed()) / 1000.0);
            std::fflush(stdout);
        }
    }
    // What is found at exit (a leak) belongs to no one component.
    ReportPosition(options.seed, options.component.c_str());
    ReportAction(options.events);
    dlclose(library);
    work.removeRecursively();
    std::printf("soak_driver: passed: %llu events (%llu user actions) in %.1f s, seed %llu\n",
                static_cast<unsigned long long>(events), static_cast<unsigned long long>(actions),
                static_cast<double>(total.elapsed()) / 1000.0,
                static_cast<unsigned long long>(options.seed));
    return 0;
}
