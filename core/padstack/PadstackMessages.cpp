#include "core/padstack/PadstackMessages.h"

#include "core/ports/MessagePort.h"

namespace kv {

std::string PadBelowMaximumText(std::string_view maximumShown) {
    return std::string(padstack_text::kPadBelowMaximum) + std::string(maximumShown);
}

std::string SpanLeavesOutUsedLayerText(std::string_view layerName) {
    const std::string name(layerName);
    return "Some via that uses this padstack is already connected to " + name +
           " layer.\nLayer span has to include " + name + " layer!";
}

void ShowPadstackMessage(std::string_view text, MessageTitle title) {
    ShowMessage(text, MessageIcon::Warning, MessageButtons::Ok,
                title == MessageTitle::PadstackEditor ? kPadstackEditorTitle : kMessageCaption);
}

}  // namespace kv
