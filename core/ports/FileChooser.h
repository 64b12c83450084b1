#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// The common file dialogs, as a port: commands that open or save a file ask
// through it, so they run and are tested without a window system. The Qt
// adapter shows a QFileDialog; tests answer from a script.

namespace kv {

// What a file dialog is asked to show.
struct FileQuery {
    std::string title;             // empty: the dialog's own title
    std::string defaultFileName;   // proposed name, may include a folder
    std::string defaultExtension;  // appended when the user types a name without one
    // "Name (*.a;*.b)|*.a; *.b|All Files (*.*)|*.*||": description and
    // patterns alternate, separated by '|'.
    std::string filter;
    bool hideReadOnly = true;
};

struct ChosenFile {
    std::filesystem::path directory;
    std::string fileName;

    std::filesystem::path Path() const { return directory / fileName; }
};

class IFileChooser {
public:
    virtual ~IFileChooser() = default;
    // The file the user chose, or nothing when the dialog was not closed with OK.
    virtual std::optional<ChosenFile> ChooseOpenFile(const FileQuery& query) = 0;
    virtual std::optional<ChosenFile> ChooseSaveFile(const FileQuery& query) = 0;
};

// The chooser that dialogs of the module ask, when one is installed (not
// owned); null restores none, and each dialog then shows its own Qt dialog.
// Returns the chooser installed before.
IFileChooser* InstallFileChooser(IFileChooser* chooser);
IFileChooser* InstalledFileChooser();

// What a command that saves to a chosen file says through the message port: the question before
// it replaces a file (Yes or No; No when nobody is there to answer), and the report when the
// file cannot be written.
bool ConfirmOverwrite(std::string_view path);
void ReportCannotOpen(std::string_view path, std::string_view caption);

// Installs a chooser for the life of the guard and puts back the previous one.
class ScopedFileChooser {
public:
    explicit ScopedFileChooser(IFileChooser& chooser) : m_previous(InstallFileChooser(&chooser)) {}
    ~ScopedFileChooser() { InstallFileChooser(m_previous); }
    ScopedFileChooser(const ScopedFileChooser&) = delete;
    ScopedFileChooser& operator=(const ScopedFileChooser&) = delete;

private:
    IFileChooser* m_previous;
};

}  // namespace kv
