#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/RecordingMessagePort.h"

namespace kv::test {

// Types `text` into a field of a page model and commits it, as leaving the
// field does: the texts of the messages that caused, none when it was taken.
template <class Model>
std::vector<std::string> TypedInto(Model& model, RecordingMessagePort& messages, int controlId,
                                   const std::string& text) {
    messages.Clear();
    model.Type(controlId, text);
    const bool accepted = model.Commit(controlId);
    std::vector<std::string> said;
    for (const MessageRequest& request : messages.Requests()) {
        said.push_back(request.text);
    }
    EXPECT_EQ(accepted, said.empty()) << text;
    return said;
}

}  // namespace kv::test
