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
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "tests/soak/Driver.h"
#include "tests/soak/FailureReport.h"
#include "tests/soak/Scenarios.h"

namespace {

using namespace kv::soak;

struct Options {
    uint64_t seed = std::random_device{}() % 1000000000u;
    std::string component = "all";
    uint64_t events = 300;
    uint64_t seconds = 0;  // when given, the session length instead of the event count
    std::string work;
    bool trace = false;
};

[[noreturn]] void Usage() {
    std::fprintf(stderr,
                 "usage: soak_driver [--seed S] [--component NAME|all] [--events N | --seconds T]"
                 " [--work FOLDER] [--trace]\ncomponents:");
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
        const char* value = i + 1 < argc ? argv[++i] : "";
        if (option == "--seed") {
            options.seed = Number(value);
        } else if (option == "--component") {
            options.component = value;
        } else if (option == "--events") {
            options.events = Number(value);
        } else if (option == "--seconds") {
            options.seconds = Number(value);
        } else if (option == "--work" && *value != '\0') {
            options.work = value;
        } else {
            Usage();
        }
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
    QDir work(options.work.empty()
                  ? QDir::temp().filePath(QStringLiteral("kv-soak-%1").arg(options.seed))
                  : QString::fromStdString(options.work));
    work.removeRecursively();
    work.mkpath(QStringLiteral("."));
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        const QString folder = work.absoluteFilePath(QString::fromLatin1(variable).toLower());
        work.mkpath(folder);
        qputenv(variable, folder.toUtf8());
    }
    return work;
}

// The files a user picks from: valid, invalid, empty and 40000-bit sequence files, stimulus
// files with numbers no page allows, garbage, a folder, names with blanks.
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
        QFile file(files.filePath(QString::fromUtf8(name)));
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
    const std::span<const Component> components = Components();
    std::size_t chosen = 0;
    for (const Component& component : components) {
        chosen += options.component == "all" || options.component == component.name ? 1 : 0;
    }
    if (chosen == 0) {
        Usage();
    }
    std::printf(
        "soak_driver: seed %llu, component %s, %s %llu\n",
        static_cast<unsigned long long>(options.seed), options.component.c_str(),
        options.seconds > 0 ? "seconds" : "events per component",
        static_cast<unsigned long long>(options.seconds > 0 ? options.seconds : options.events));
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
        SoakRandom random(ComponentSeed(options.seed, index));
        const QDir files = MakeFiles(work, component.name, random);
        UserActions userActions(random);
        userActions.SetTrace(options.trace);
        std::optional<std::chrono::steady_clock::time_point> deadline;
        if (options.seconds > 0) {
            deadline = std::chrono::steady_clock::now() +
                       std::chrono::milliseconds(options.seconds * 1000 / chosen);
        }
        QElapsedTimer elapsed;
        elapsed.start();
        Driver driver(random, userActions, files, deadline ? UINT64_MAX : options.events, deadline);
        Session session{*get(), random, driver, userActions, files};
        component.run(session);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        events += driver.Events();
        actions += driver.Actions();
        std::printf("soak_driver: %s: %llu user actions, %llu events in %.1f s\n", component.name,
                    static_cast<unsigned long long>(driver.Actions()),
                    static_cast<unsigned long long>(driver.Events()),
                    static_cast<double>(elapsed.elapsed()) / 1000.0);
        std::fflush(stdout);
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
