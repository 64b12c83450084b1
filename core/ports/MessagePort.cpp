#include "core/ports/MessagePort.h"

#include <algorithm>
#include <cstdio>

namespace kv {
namespace {

StderrMessagePort g_stderrPort;
IMessagePort* g_port = &g_stderrPort;

}  // namespace

MessageAnswer FirstButtonOf(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::Ok:
        case MessageButtons::OkCancel:
            return MessageAnswer::Ok;
        case MessageButtons::YesNo:
        case MessageButtons::YesNoCancel:
            return MessageAnswer::Yes;
        case MessageButtons::RetryCancel:
            return MessageAnswer::Retry;
    }
    return MessageAnswer::Ok;
}

MessageAnswer ShowMessage(std::string_view text, MessageIcon icon, MessageButtons buttons,
                          std::string_view caption) {
    MessageRequest request;
    request.text = std::string(text);
    request.caption = std::string(caption);
    request.icon = icon;
    request.buttons = buttons;
    request.defaultAnswer = FirstButtonOf(buttons);
    return ShowMessage(request);
}

MessageAnswer ShowMessage(const MessageRequest& request) {
    return g_port->Show(request);
}

IMessagePort* InstallMessagePort(IMessagePort* port) {
    IMessagePort* previous = g_port;
    g_port = port != nullptr ? port : &g_stderrPort;
    return previous == &g_stderrPort ? nullptr : previous;
}

MessageAnswer StderrMessagePort::Show(const MessageRequest& request) {
    std::string line = request.text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "%s: %s\n", request.caption.c_str(), line.c_str());
    std::fflush(stderr);
    return request.defaultAnswer;
}

}  // namespace kv
