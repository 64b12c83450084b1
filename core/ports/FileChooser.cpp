#include "core/ports/FileChooser.h"

namespace kv {
namespace {

IFileChooser* g_chooser = nullptr;

}  // namespace

IFileChooser* InstallFileChooser(IFileChooser* chooser) {
    IFileChooser* previous = g_chooser;
    g_chooser = chooser;
    return previous;
}

IFileChooser* InstalledFileChooser() {
    return g_chooser;
}

}  // namespace kv
