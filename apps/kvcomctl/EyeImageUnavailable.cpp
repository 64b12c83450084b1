#include "apps/kvcomctl/EyeImage.h"

// A build of the core alone, without Qt: nothing can draw the eye.

namespace kv::cli {

std::optional<std::string> DrawEyeImage(const Waveform& /*waveform*/, IEyeDiagramData& /*timing*/,
                                        bool /*showMask*/, const std::string& /*path*/) {
    return "drawing the eye needs the library, which this build of the core alone leaves out";
}

}  // namespace kv::cli
