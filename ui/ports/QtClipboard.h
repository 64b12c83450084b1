#pragma once

#include "core/ports/ControlWindow.h"

// The application's clipboard, in text form.

namespace kv::ui {

class QtClipboard final : public IClipboard {
public:
    std::optional<std::string> GetText() const override;
    bool SetText(std::string_view text) override;
};

}  // namespace kv::ui
