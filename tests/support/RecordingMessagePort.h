#pragma once

#include <vector>

#include "core/ports/MessagePort.h"

namespace kv::test {

// Keeps every request and answers from a queue, then with the box's default
// button, as a user who was told what to click would.
class RecordingMessagePort final : public IMessagePort {
public:
    MessageAnswer Show(const MessageRequest& request) override {
        m_requests.push_back(request);
        if (m_answers.empty()) {
            return request.defaultAnswer;
        }
        const MessageAnswer answer = m_answers.front();
        m_answers.erase(m_answers.begin());
        return answer;
    }

    void QueueAnswer(MessageAnswer answer) { m_answers.push_back(answer); }
    const std::vector<MessageRequest>& Requests() const { return m_requests; }
    void Clear() { m_requests.clear(); }

private:
    std::vector<MessageRequest> m_requests;
    std::vector<MessageAnswer> m_answers;
};

}  // namespace kv::test
