#include "core/via/ViaSpiceExport.h"

#include "core/shared/LocalTime.h"

#include <fstream>

#include "core/shared/BoundedCopy.h"
#include "core/shared/FileIo.h"
#include "core/via/ViaSpiceWriter.h"
#include "core/via/ViaVizData.h"

namespace kv {
namespace {

// Characters that cannot stand in a file name on any of the platforms the library runs on.
constexpr std::string_view kBadFileNameCharacters = "/\\:*?\"<>|";

// The base name with ".cir" appended. Padstack names often hold a point ("VIA0.3"), so the
// extension is added rather than swapped in.
std::string FileNameFromBase(std::string base) {
    for (char& c : base) {
        if (kBadFileNameCharacters.find(c) != std::string_view::npos) {
            c = '_';
        }
    }
    return base + '.' + std::string(kSpiceDefaultExtension);
}

bool FileExists(const std::filesystem::path& path) {
    std::ifstream probe(path);
    return probe.is_open();
}

}  // namespace

std::string DefaultSpiceFileName(const SpiceExportInput& input, const SpiceExportNames& names) {
    if (!names.exportFileName.empty()) {
        return names.exportFileName;
    }
    if (!names.baseName.empty()) {
        return FileNameFromBase(names.baseName);
    }
    const bool hasPadstack = !input.vias.empty() && input.vias.front().padstack != nullptr;
    return FileNameFromBase(hasPadstack ? std::string(FieldText(input.vias.front().padstack->name))
                                        : "");
}

SpiceExportOutcome ExportViaToSpice(const SpiceExportInput* input, const SpiceExportNames& names,
                                    IFileChooser& chooser,
                                    const std::optional<std::tm>& generated) {
    if (input == nullptr) {
        return SpiceExportOutcome::NoData;
    }
    FileQuery query;
    query.defaultFileName = DefaultSpiceFileName(*input, names);
    query.defaultExtension = std::string(kSpiceDefaultExtension);
    query.filter = std::string(kSpiceFileFilter);
    query.hideReadOnly = true;
    const std::optional<ChosenFile> chosen = chooser.ChooseSaveFile(query);
    if (!chosen) {
        return SpiceExportOutcome::Cancelled;
    }
    const std::filesystem::path path = chosen->Path();
    if (FileExists(path) && !ConfirmOverwrite(path.string())) {
        return SpiceExportOutcome::Refused;
    }
    SpiceExportInput stamped = *input;
    stamped.generated = generated.value_or(LocalTimeNow());
    // The text is complete before the file is touched, so bad data never leaves a torn file.
    const std::string text = SpiceModelText(stamped);
    if (!ReplaceFileAtomically(path, text).ok) {
        ReportCannotOpen(path.string(), kSpiceExportCaption);
        return SpiceExportOutcome::CannotOpen;
    }
    return SpiceExportOutcome::Written;
}

}  // namespace kv
