#include <gtest/gtest.h>

#include "core/ports/MessagePort.h"
#include "tests/support/RecordingMessagePort.h"

namespace {

using kv::MessageAnswer;
using kv::MessageButtons;

TEST(MessagePort, RecordingPortAnswersFromItsQueueThenWithTheDefault) {
    kv::test::RecordingMessagePort port;
    kv::ScopedMessagePort scope(port);
    port.QueueAnswer(MessageAnswer::No);
    EXPECT_EQ(kv::ShowMessage("Overwrite?", kv::MessageIcon::Question, MessageButtons::YesNo),
              MessageAnswer::No);
    EXPECT_EQ(kv::ShowMessage("Again?", kv::MessageIcon::Question, MessageButtons::YesNo),
              MessageAnswer::Yes);
    ASSERT_EQ(port.Requests().size(), 2u);
    EXPECT_EQ(port.Requests()[0].text, "Overwrite?");
    EXPECT_EQ(port.Requests()[0].caption, "KVComCtl");
}

TEST(MessagePort, StandardErrorPortPrintsOneLineAndAnswersTheDefault) {
    kv::StderrMessagePort port;
    kv::MessageRequest request;
    request.caption = "KVComCtl";
    request.text = "Invalid eye diagram data.\nReverting to default values.";
    request.buttons = MessageButtons::RetryCancel;
    request.defaultAnswer = MessageAnswer::Cancel;
    testing::internal::CaptureStderr();
    EXPECT_EQ(port.Show(request), MessageAnswer::Cancel);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "KVComCtl: Invalid eye diagram data. Reverting to default values.\n");
}

}  // namespace
