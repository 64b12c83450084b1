#include <gtest/gtest.h>

#include <cmath>

#include "core/eyediagram/EyeStimulusPageModel.h"
#include "core/stimulus/SequenceType.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "tests/support/TypedIntoModel.h"

namespace {

namespace id = kvcomctl_ids::eye_stimulus;
using Said = std::vector<std::string>;

class EyeStimulusPageModelTest : public ::testing::Test {
protected:
    Said Typed(int controlId, const std::string& text) {
        return kv::test::TypedInto(m_model, m_messages, controlId, text);
    }

    kv::test::RecordingMessagePort m_messages;
    kv::ScopedMessagePort m_scope{m_messages};
    kv::CStimulusData m_data;
    kv::EyeStimulusPageModel m_model{m_data};
};

TEST_F(EyeStimulusPageModelTest, FieldsKeepTheirRangesAndRefusedValuesChangeNothing) {
    EXPECT_EQ(Typed(id::kCycles, "2049"),
              Said{"Invalid number of simulation cycles\nValid range is 1 - 2048"});
    // The skip is held to the bits shown: 4 cycles of 31.
    EXPECT_EQ(Typed(id::kSkipBits, "125"),
              Said{"Invalid skip cycles range\nLeft bound is greater then right bound"});
    EXPECT_EQ(Typed(id::kSkipBits, "124"), Said{});
    EXPECT_EQ(Typed(id::kBitInterval, "0.0009"),
              Said{"Invalid bit interval value\nValid range is 0.001 - 1000 ns"});
    EXPECT_EQ(Typed(id::kDutyCycle, "0.5"),
              Said{"Invalid duty cycle value\nValid range is 1 - 99"});
    EXPECT_EQ(Typed(id::kDutyCycle, "40"), Said{});
    // 40 % of 3.3 ns high: the shorter part is 1.32 ns.
    EXPECT_EQ(Typed(id::kMaxJitter, "1.32"),
              Said{"Invalid maximum jitter value\nJitter value must be greater or equal to zero "
                   "and\nless than shortest half of the period"});
    EXPECT_EQ(Typed(id::kMaxJitter, "1.3"), Said{});
    EXPECT_EQ(m_model.Text(id::kMaxJitter), "1.300");
    EXPECT_EQ(m_data.m_cycleCount, 4);
    EXPECT_EQ(m_data.m_skipBits, 124);
    EXPECT_EQ(m_data.m_dutyCycle, 40.0);
    EXPECT_EQ(m_data.m_maxJitter, 1.0);  // the jitter goes into the data on leaving
    EXPECT_EQ(m_model.Leave(), std::nullopt);
    EXPECT_EQ(m_data.m_maxJitter, 1.3);
}

TEST_F(EyeStimulusPageModelTest, AdvancedComponentsAreBoundedAndSaidInEitherUnit) {
    // Simple jitter takes the maximum alone.
    EXPECT_TRUE(m_model.IsEnabled(id::kMaxJitter));
    EXPECT_FALSE(m_model.IsEnabled(id::kComponentEnabled));
    m_model.SetAdvanced(true);
    EXPECT_FALSE(m_model.IsEnabled(id::kMaxJitter));
    EXPECT_FALSE(m_model.IsEnabled(id::kJitterType));
    EXPECT_TRUE(m_model.IsEnabled(id::kComponentEnabled + 1));
    EXPECT_FALSE(m_model.IsEnabled(id::kComponentMagnitude + 1));
    EXPECT_TRUE(m_model.SetComponentEnabled(0, true));  // the maximum jitter as magnitude: 1 %
    EXPECT_TRUE(m_model.IsEnabled(id::kComponentMagnitude));
    const Said tooLarge{"The jitter magnitude must be less that 0.5 of the bit interval."};
    EXPECT_EQ(Typed(id::kComponentMagnitude, "50"), tooLarge);
    EXPECT_EQ(Typed(id::kComponentMagnitude, "-1"), tooLarge);
    EXPECT_EQ(Typed(id::kComponentMagnitude, "49.9"), Said{});
    EXPECT_EQ(m_model.Text(id::kMaxJitter), "49.900");  // one stored value
    EXPECT_EQ(Typed(id::kComponentValue2, "fast"), Said{"Invalid number"});

    // Switched on only below half the bit interval.
    EXPECT_TRUE(m_model.SetComponentEnabled(2, false));
    m_model.SetComponentUnit(1, 1);  // ns
    EXPECT_TRUE(m_model.SetComponentEnabled(1, true));
    EXPECT_EQ(Typed(id::kComponentMagnitude + 1, "1.5"), Said{});
    m_model.SetComponentUnit(1, 0);
    EXPECT_EQ(m_model.Text(id::kComponentMagnitude + 1), "45.455");
    m_model.SetComponentUnit(1, 1);
    EXPECT_TRUE(m_model.SetComponentEnabled(1, false));
    EXPECT_EQ(Typed(id::kBitInterval, "2.9"), Said{});  // 1.5 ns is now more than half of it
    m_messages.Clear();
    EXPECT_FALSE(m_model.SetComponentEnabled(1, true));
    EXPECT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_FALSE(m_model.ComponentEnabled(1));
    m_model.SetAdvanced(false);  // switched-on components wait, unchangeable
    EXPECT_FALSE(m_model.IsEnabled(id::kComponentMagnitude));
    EXPECT_TRUE(m_model.IsEnabled(id::kMaxJitter));
    m_model.SetAdvanced(true);

    m_model.Apply();
    EXPECT_TRUE(m_data.m_advancedJitter);
    EXPECT_TRUE(m_data.m_addJitter[0] && !m_data.m_addJitter[1] && !m_data.m_addJitter[2]);
    EXPECT_EQ(m_data.m_maxJitter, 49.9);
    EXPECT_TRUE(m_data.m_jitterAsTime[1]);
    EXPECT_DOUBLE_EQ(m_data.m_uniformMag, 1.5);
}

TEST_F(EyeStimulusPageModelTest, TheSequenceMakesThePatternAndTheChoicesReachTheData) {
    // The default kind shows as PRBS, read-only, with its degree.
    EXPECT_EQ(m_model.Kind(), kv::seq::kPrbs);
    EXPECT_TRUE(m_model.PatternReadOnly());
    EXPECT_TRUE(m_model.DegreeEnabled());
    const int revision = m_model.BitsRevision();
    m_model.SetPolyDegree(3);
    EXPECT_EQ(m_model.Bits().size(), 7u);
    EXPECT_GT(m_model.BitsRevision(), revision);
    m_model.SetKind(kv::seq::k8b10b);
    EXPECT_FALSE(m_model.DegreeEnabled());
    EXPECT_EQ(Typed(id::kCycles, "2"), Said{});
    EXPECT_EQ(m_model.Bits().size(), 20u);  // ten bits per cycle
    m_model.SetKind(kv::seq::kToggling);
    m_model.SetLevelIndex(1);  // Low
    EXPECT_EQ(m_model.Bits(), (kv::BitVector{1, 0}));
    m_model.SetKind(kv::seq::kCustom);
    EXPECT_FALSE(m_model.PatternReadOnly());
    m_model.SetBits({1, 1, 0});
    m_model.SetLevelIndex(0);  // the user's own bits stay
    m_model.SetEyesIndex(2);
    m_model.SetJitterType(1);
    m_model.SetRepeatable(false);
    EXPECT_FALSE(m_model.Preview().empty());
    EXPECT_EQ(m_model.Leave(), std::nullopt);
    EXPECT_EQ(m_data.m_seqType, kv::seq::kCustom);
    EXPECT_EQ(m_data.m_bits, (kv::BitVector{1, 1, 0}));
    EXPECT_EQ(m_data.m_eyeCount, 3);
    EXPECT_EQ(m_data.m_jitterType, 1);
    EXPECT_FALSE(m_data.m_jitterRepeatable);
    EXPECT_EQ(m_data.m_initState, 1);
}

TEST(EyeStimulusPageModel, OpensOnUsableValuesAndLeavesUntouchedFieldsExact) {
    kv::test::RecordingMessagePort messages;
    const kv::ScopedMessagePort scope(messages);
    kv::CStimulusData data;
    data.m_period = 1.0 / 3.0;
    data.m_seqType = 6;  // not offered: shown as a drawn sequence
    kv::EyeStimulusPageModel model(data);
    EXPECT_FALSE(model.CheckOnOpen());
    EXPECT_EQ(model.Kind(), kv::seq::kCustom);
    EXPECT_EQ(model.Text(id::kBitInterval), "0.333");
    model.Type(id::kCycles, "x");
    EXPECT_EQ(model.Leave(), id::kCycles);
    model.Type(id::kCycles, "4");
    EXPECT_EQ(model.Leave(), std::nullopt);
    EXPECT_EQ(data.m_period, 1.0 / 3.0);
    EXPECT_EQ(data.m_seqType, 6);

    // Made but not yet shown, the page may hold a host's period that is none:
    // it asks for a bit interval instead of measuring jitter against none.
    data.m_period = std::nan("");
    data.m_advancedJitter = true;
    data.m_addJitter[1] = true;
    kv::EyeStimulusPageModel unchecked(data);
    messages.Clear();
    EXPECT_FALSE(unchecked.SetComponentEnabled(0, true));
    unchecked.SetComponentUnit(2, 1);
    unchecked.Type(id::kComponentMagnitude + 1, "10");
    EXPECT_FALSE(unchecked.Commit(id::kComponentMagnitude + 1));
    ASSERT_EQ(messages.Requests().size(), 2u);
    EXPECT_EQ(messages.Requests()[0].text,
              "Invalid bit interval value\nValid range is 0.001 - 1000 ns");
    EXPECT_EQ(messages.Requests()[1].text, messages.Requests()[0].text);

    data.m_period = 0;
    kv::EyeStimulusPageModel reopened(data);
    messages.Clear();
    EXPECT_TRUE(reopened.CheckOnOpen());
    ASSERT_EQ(messages.Requests().size(), 1u);
    EXPECT_EQ(messages.Requests()[0].text,
              "Invalid eye diagram data.\nReverting to default values.");
    EXPECT_EQ(reopened.Text(id::kBitInterval), "3.300");
}

}  // namespace
