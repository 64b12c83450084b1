#include "apps/kvcomctl/EyeImage.h"

#include <dlfcn.h>

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "kvcomctl/IEyeViewCtrl.h"
#include "kvcomctl/IKVComCtlFactory.h"

namespace kv::cli {
namespace {

// Where the library is: named by KVCOMCTL_LIBRARY, installed beside this
// program (bin/ and lib/), or where this build made it.
std::vector<std::string> LibraryCandidates() {
    std::vector<std::string> candidates;
    if (const char* named = std::getenv("KVCOMCTL_LIBRARY"); named != nullptr && *named != '\0') {
        candidates.emplace_back(named);
    }
    std::error_code ignored;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ignored);
    if (!self.empty()) {
        candidates.push_back(
            (self.parent_path().parent_path() / "lib" / "libKVComCtl.so").string());
    }
    candidates.emplace_back(KV_LIBRARY_PATH);
    return candidates;
}

struct LibraryCloser {
    void operator()(void* handle) const { dlclose(handle); }
};
using LibraryHandle = std::unique_ptr<void, LibraryCloser>;

}  // namespace

std::optional<std::string> DrawEyeImage(const Waveform& waveform, IEyeDiagramData& timing,
                                        bool showMask, const std::string& path) {
    LibraryHandle library;
    std::string tried;
    for (const std::string& candidate : LibraryCandidates()) {
        library.reset(dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL));
        if (library) {
            break;
        }
        tried += (tried.empty() ? "" : "; ") + std::string(dlerror());
    }
    if (!library) {
        return "drawing the eye needs the library, which could not be loaded (" + tried + ")";
    }
    const auto get =
        reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(library.get(), "GetKVComCtlFactory"));
    IKVComCtlFactory* factory = get != nullptr ? get() : nullptr;
    if (factory == nullptr) {
        return "the library loaded has no factory";
    }
    // A batch command never shows a window: the off-screen platform needs no
    // display, and Qt's remarks about the desktop it misses are no concern of
    // someone measuring an eye.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg) {
            std::fprintf(stderr, "kvcomctl eye: %s\n", text.toLocal8Bit().constData());
        }
    });
    int argc = 1;
    char name[] = "kvcomctl";
    char* argv[] = {name, nullptr};
    std::optional<std::string> problem;
    {
        QApplication application(argc, argv);
        QWidget window;
        IEyeViewCtrl* view = factory->CreateEyeViewCtrl();
        const auto count =
            static_cast<int32_t>(std::min<std::size_t>(waveform.time.size(), INT_MAX));
        if (view == nullptr || !view->Create(&window)) {
            problem = "the library's eye view could not be made";
        } else if (!view->SetWaveform(waveform.time.data(), waveform.value.data(), count) ||
                   !view->SetTiming(&timing)) {
            problem = "the library's eye view takes no eye from this waveform and timing";
        } else {
            // The size a chart is measured at elsewhere in the library.
            view->GetWindow()->resize(1000, 600);
            view->ShowMask(showMask);
            if (!view->SaveImage(path.c_str())) {
                problem = path + ": the image could not be written";
            }
        }
        factory->DestroyEyeViewCtrl(view);
    }
    return problem;
}

}  // namespace kv::cli
