#include <gtest/gtest.h>

#include "core/eyediagram/MaskPageModel.h"
#include "core/stimulus/EyeMask.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "tests/support/TypedIntoModel.h"

namespace {

namespace id = kvcomctl_ids::eye_mask;

class MaskPageModelTest : public ::testing::Test {
protected:
    std::vector<std::string> Typed(kv::MaskPageModel& model, int controlId,
                                   const std::string& text) {
        return kv::test::TypedInto(model, m_messages, controlId, text);
    }

    kv::test::RecordingMessagePort m_messages;
    kv::ScopedMessagePort m_scope{m_messages};
    kv::CStimulusData m_data;
};

// Which masks open is the rules' (EyeMaskTest); the page says so and shows
// the default mask.
TEST_F(MaskPageModelTest, OpeningReplacesAMaskThePageCannotShow) {
    EYEMASK mask = kv::DefaultEyeMask();
    mask.ScaleTime = 3.0;
    m_data.SetMask(mask);
    kv::MaskPageModel model(m_data);
    EXPECT_EQ(model.Text(id::kScaleTime), "300.000");
    EXPECT_TRUE(model.CheckOnOpen());
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text,
              "One or more mask values are invalid\nUsing default values");
    EXPECT_EQ(m_messages.Requests()[0].icon, kv::MessageIcon::Warning);
    EXPECT_EQ(model.Text(id::kScaleTime), "100.000");
    EXPECT_EQ(m_data.Mask().ScaleTime, 1.0);
    EXPECT_FALSE(model.CheckOnOpen());
}

TEST_F(MaskPageModelTest, TypedValuesStayBetweenTheirNeighboursAndRanges) {
    kv::MaskPageModel model(m_data);
    namespace msg = kv::mask_field_message;
    using Said = std::vector<std::string>;
    EXPECT_EQ(Typed(model, id::kRiseDelay, "10"), Said{std::string(msg::kRiseDelay)});
    EXPECT_EQ(Typed(model, id::kRiseDelay, "90"), Said{std::string(msg::kRiseDelay)});
    EXPECT_EQ(Typed(model, id::kTopMin, "5.5"), Said{std::string(msg::kTopMin)});
    EXPECT_EQ(Typed(model, id::kTopMax, "4.5"), Said{std::string(msg::kTopMax)});
    EXPECT_EQ(Typed(model, id::kBaseMin, "0.5"), Said{std::string(msg::kBaseMin)});
    EXPECT_EQ(Typed(model, id::kCross2Max, "99"), Said{std::string(msg::kCross2Max)});
    EXPECT_EQ(Typed(model, id::kCross, "x"), Said{std::string(msg::kCross)});
    const Said scale{"Invalid scale value\nValid scale range is 50 - 200"};
    EXPECT_EQ(Typed(model, id::kScaleTime, "49"), scale);
    EXPECT_EQ(Typed(model, id::kScaleVolt, "201"), scale);
    EXPECT_EQ(Typed(model, id::kOffsetTime, "1000.5"),
              Said{"Invalid time offset value\nValid offset range is 0 - 1000"});
    EXPECT_EQ(Typed(model, id::kOffsetVolt, "-10.5"),
              Said{"Invalid voltage offset value\nValid offset range is -10 - +10"});
    EXPECT_EQ(m_data.Mask().TRiseDelay, 20);  // refused values change nothing
    EXPECT_EQ(Typed(model, id::kRiseDelay, "30"), Said{});
    EXPECT_EQ(Typed(model, id::kScaleTime, "150"), Said{});
    EXPECT_EQ(Typed(model, id::kOffsetVolt, "-10"), Said{});
    EXPECT_EQ(m_data.Mask().TRiseDelay, 30);
    EXPECT_EQ(m_data.Mask().ScaleTime, 1.5);
    EXPECT_EQ(m_data.Mask().OffsetVolt, -10);
    // The drawing follows what is typed before it is committed.
    kv::CStimulusData fresh;
    kv::MaskPageModel drawn(fresh);
    drawn.Type(id::kScaleTime, "200");
    EXPECT_DOUBLE_EQ(drawn.Outline().secondCrossing.back().x, 2.2 * fresh.GetPeriod() * 1e-9);
}

TEST_F(MaskPageModelTest, LeavingChecksTheWholeOrderButKeepsUntouchedEqualNeighbours) {
    EYEMASK stored = kv::DefaultEyeMask();
    stored.PTopMin = 2.0;  // below the crossing level
    m_data.SetMask(stored);
    kv::MaskPageModel model(m_data);
    EXPECT_EQ(model.CommitAll(), 0);
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text, "Ptop min value less than Pcross value");
    EXPECT_EQ(Typed(model, id::kTopMin, "4.5"), std::vector<std::string>{});
    m_messages.Clear();
    EXPECT_EQ(model.CommitAll(), std::nullopt);

    stored = kv::DefaultEyeMask();
    stored.TRiseDelay = stored.TCross1Max;  // equal: passes the whole-mask rules
    m_data.SetMask(stored);
    kv::MaskPageModel equal(m_data);
    m_messages.Clear();
    EXPECT_EQ(equal.CommitAll(), std::nullopt);
    EXPECT_TRUE(m_messages.Requests().empty());
    // A refused field is named, and stops the check there.
    equal.Type(id::kTopMax, "1");
    EXPECT_EQ(equal.CommitAll(), id::kTopMax);
}

TEST_F(MaskPageModelTest, LibraryKeepsNamedMasksAndAsksBeforeLeavingAChangedOne) {
    {
        kv::MaskPageModel model(m_data);
        EXPECT_EQ(Typed(model, id::kCross, "2.0"), std::vector<std::string>{});
        EXPECT_EQ(model.SaveAs("  Low cross "), std::nullopt);
        EXPECT_EQ(model.Name(), "Low cross");
        EXPECT_TRUE(model.Apply());  // the library holds it as it is
        EXPECT_TRUE(m_messages.Requests().empty());

        // Changed: Cancel keeps the page, Yes keeps it in the library.
        EXPECT_EQ(Typed(model, id::kCross, "2.25"), std::vector<std::string>{});
        m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
        EXPECT_FALSE(model.Apply());
        ASSERT_EQ(m_messages.Requests().size(), 1u);
        EXPECT_EQ(m_messages.Requests()[0].text,
                  "Current mask and corresponding library mask are different\n"
                  "Do you want to save your changes?");
        EXPECT_EQ(m_messages.Requests()[0].buttons, kv::MessageButtons::YesNoCancel);
        m_messages.QueueAnswer(kv::MessageAnswer::Yes);
        EXPECT_TRUE(model.Apply());
    }
    kv::CStimulusData other;
    kv::MaskPageModel reopened(other);
    EXPECT_EQ(reopened.LibraryNames(), std::vector<std::string>{"Low cross"});
    reopened.Type(id::kTopMax, "1");  // refused: the library mask is not taken
    EXPECT_EQ(reopened.ChooseLibraryMask("Low cross"), id::kTopMax);
    EXPECT_EQ(other.Mask().PCross, 2.5);
    EXPECT_EQ(reopened.Text(id::kTopMax), "5.500");
    EXPECT_EQ(reopened.ChooseLibraryMask("Low cross"), std::nullopt);
    EXPECT_EQ(other.Mask().PCross, 2.25);
    EXPECT_EQ(reopened.Text(id::kCross), "2.250");
    reopened.Delete("Low cross");
    EXPECT_TRUE(kv::MaskPageModel(other).LibraryNames().empty());
}

}  // namespace
