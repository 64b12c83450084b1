#include "core/ports/FileChooser.h"

#include "core/ports/MessagePort.h"

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

bool ConfirmOverwrite(std::string_view path) {
    MessageRequest question;
    question.text = "File \"" + std::string(path) + "\" exists.\nDo you want to overwrite it?";
    question.caption = "Warning";
    question.icon = MessageIcon::Warning;
    question.buttons = MessageButtons::YesNo;
    question.defaultAnswer = MessageAnswer::No;
    return ShowMessage(question) == MessageAnswer::Yes;
}

void ReportCannotOpen(std::string_view path, std::string_view caption) {
    ShowMessage("Cannot open file \"" + std::string(path) + '"', MessageIcon::Error,
                MessageButtons::Ok, caption);
}

}  // namespace kv
