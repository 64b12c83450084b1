#pragma once

#include <optional>
#include <string>

#include "core/eye/WaveformFile.h"

class IEyeDiagramData;

// The eye drawn into a PNG or SVG image by the library's own eye view, which
// the command line reaches as any host does: it loads the library, starts an
// off-screen Qt application and asks the factory for the view. A build
// without Qt has no drawing, and says so.

namespace kv::cli {

// None when `path` was written; otherwise why not.
std::optional<std::string> DrawEyeImage(const Waveform& waveform, IEyeDiagramData& timing,
                                        bool showMask, const std::string& path);

}  // namespace kv::cli
