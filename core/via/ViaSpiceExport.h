#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "core/ports/FileChooser.h"
#include "core/via/ViaSpiceModel.h"

// The "Export to Spice" command of the via visualizer: ask for a file, confirm an overwrite,
// write the subcircuit. The file dialog is a port so that the command runs and is tested
// without a window system; messages go through kv::ShowMessage.

namespace kv {

inline constexpr std::string_view kSpiceDefaultExtension = "cir";
inline constexpr std::string_view kSpiceFileFilter = "SPICE files (*.cir;*.inc)|*.cir; *.inc||";
inline constexpr std::string_view kSpiceExportCaption = "Export to Spice";

// The names the via control holds for its export.
struct SpiceExportNames {
    std::string exportFileName;  // used as it stands when not empty
    std::string baseName;        // else this with ".cir", else the first padstack's name
};

enum class SpiceExportOutcome { NoData, Cancelled, Refused, CannotOpen, Written };

// The file name the dialog proposes.
std::string DefaultSpiceFileName(const SpiceExportInput& input, const SpiceExportNames& names);

// Runs the export of `input` (null: the control holds no via data, nothing happens). The
// header is stamped with `generated`, or with the local time now when it is not given. Nothing
// is written when the dialog is cancelled or the overwrite refused; a file that cannot be
// written is reported and the file already there stays as it was.
SpiceExportOutcome ExportViaToSpice(const SpiceExportInput* input, const SpiceExportNames& names,
                                    IFileChooser& chooser,
                                    const std::optional<std::tm>& generated = std::nullopt);

}  // namespace kv
