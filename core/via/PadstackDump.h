#pragma once

#include <filesystem>
#include <iosfwd>
#include <string_view>

#include "kvcomctl/ViaRecords.h"

// The padstack editor's diagnostic dump: a plain text listing of a padstack, appended to one
// file so that successive states of an edit can be compared.

namespace kv {

inline constexpr std::string_view kPadstackDumpFileName = "ViaVizData.dmp";

// Where the dump goes unless a folder is named: the system's temporary folder.
std::filesystem::path DefaultPadstackDumpFolder();

// Writes the listing of `padstack` over the layers of `stackup`. A conductor layer beyond the
// pad array is listed as having no pad rather than refused: the dump is there to look at
// broken data too.
void WritePadstackDump(const STACKUPARRAY& stackup, const PADSTACK& padstack, std::ostream& out);

// Appends the listing to "ViaVizData.dmp" in `folder`, in one piece. Returns false when the
// file cannot be opened or written.
bool AppendPadstackDump(const STACKUPARRAY& stackup, const PADSTACK& padstack,
                        const std::filesystem::path& folder = DefaultPadstackDumpFolder());

}  // namespace kv
