#pragma once

#include <string>
#include <string_view>

// Everything the library tells the user in a message box goes through one
// port, so that the core never needs a window system: the module installs a
// Qt port, the command line and hosts without a GUI get one line on stderr,
// and tests install a recording port that answers as told.

namespace kv {

enum class MessageIcon { None, Information, Warning, Error, Question };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class MessageAnswer { Ok, Cancel, Yes, No, Retry };

struct MessageRequest {
    std::string text;
    std::string caption;
    MessageIcon icon = MessageIcon::None;
    MessageButtons buttons = MessageButtons::Ok;
    MessageAnswer defaultAnswer = MessageAnswer::Ok;
};

class IMessagePort {
public:
    virtual ~IMessagePort() = default;
    virtual MessageAnswer Show(const MessageRequest& request) = 0;
};

// The caption every box of this module carries unless it names its own.
inline constexpr std::string_view kMessageCaption = "KVComCtl";

// Shows a message through the installed port. The default answer is the
// first button of the set unless one is named.
MessageAnswer ShowMessage(std::string_view text, MessageIcon icon = MessageIcon::Information,
                          MessageButtons buttons = MessageButtons::Ok,
                          std::string_view caption = kMessageCaption);
MessageAnswer ShowMessage(const MessageRequest& request);

// The first button of a set: what a box answers when nobody is there to ask.
MessageAnswer FirstButtonOf(MessageButtons buttons);

// Installs `port` (not owned) for every later message; null restores the
// standard-error port. Returns the port that was installed before.
IMessagePort* InstallMessagePort(IMessagePort* port);

// Installs a port for the life of the guard and puts back the previous one.
class ScopedMessagePort {
public:
    explicit ScopedMessagePort(IMessagePort& port) : m_previous(InstallMessagePort(&port)) {}
    ~ScopedMessagePort() { InstallMessagePort(m_previous); }
    ScopedMessagePort(const ScopedMessagePort&) = delete;
    ScopedMessagePort& operator=(const ScopedMessagePort&) = delete;

private:
    IMessagePort* m_previous;
};

// Writes "caption: text" as one line (line breaks of the text become blanks)
// to standard error and answers with the box's default button.
class StderrMessagePort final : public IMessagePort {
public:
    MessageAnswer Show(const MessageRequest& request) override;
};

}  // namespace kv
