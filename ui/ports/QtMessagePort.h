#pragma once

#include "core/ports/MessagePort.h"

namespace kv::ui {

// Shows messages as modal message boxes while a QApplication runs on this
// thread; otherwise (a host that is not a Qt application, a worker thread)
// falls back to one line on standard error answered with the default button.
class QtMessagePort final : public IMessagePort {
public:
    MessageAnswer Show(const MessageRequest& request) override;

private:
    StderrMessagePort m_fallback;
};

}  // namespace kv::ui
