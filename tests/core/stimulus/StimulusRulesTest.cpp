#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

#include "core/eyediagram/StimulusOpenCheck.h"
#include "core/stimulus/StimulusRules.h"

namespace {

using kv::CheckTyped;
using kv::StimulusRuleOf;

// A neighbour one row names must name that row back, and every lower
// neighbour is one ordering rule: nine of them, each numbered once.
TEST(StimulusRules, MaskNeighboursAreMutualAndEachPairIsOneOrderingRule) {
    const auto rowOf = [](double EYEMASK::*member) -> const kv::StimulusRule* {
        for (const kv::StimulusRule& rule : kv::StimulusRules()) {
            if (rule.maskMember == member) {
                return &rule;
            }
        }
        return nullptr;
    };
    std::set<int> numbers;
    for (const kv::StimulusRule& rule : kv::StimulusRules()) {
        if (rule.below != nullptr) {
            ASSERT_NE(rowOf(rule.below), nullptr) << rule.key;
            EXPECT_EQ(rowOf(rule.below)->above, rule.maskMember) << rule.key;
            EXPECT_TRUE(numbers.insert(rule.orderRule).second) << rule.key;
            EXPECT_FALSE(rule.orderMessage.empty()) << rule.key;
        }
        if (rule.above != nullptr) {
            ASSERT_NE(rowOf(rule.above), nullptr) << rule.key;
            EXPECT_EQ(rowOf(rule.above)->below, rule.maskMember) << rule.key;
        }
    }
    EXPECT_EQ(numbers, (std::set<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

// The messages per field are checked through the pages' models and the
// command line; here what only the rows decide.
TEST(StimulusRules, TypedValuesAreWholeNumbersOrOfferedKindsWhereTheRowsSaySo) {
    const auto& cycles = StimulusRuleOf("cyclecount");  // keys are found in any case
    EXPECT_EQ(CheckTyped(cycles, 2048), std::nullopt);
    EXPECT_EQ(CheckTyped(cycles, 1.5), cycles.message);
    EXPECT_EQ(CheckTyped(StimulusRuleOf("SKIPBITS"), 2.5), StimulusRuleOf("SKIPBITS").message);
    EXPECT_EQ(CheckTyped(StimulusRuleOf("PERIOD"), std::nan("")), StimulusRuleOf("PERIOD").message);
    EXPECT_EQ(CheckTyped(StimulusRuleOf("SEQTYPE"), 9), std::nullopt);
    EXPECT_NE(CheckTyped(StimulusRuleOf("SEQTYPE"), 5), std::nullopt);
    EXPECT_EQ(kv::FindStimulusRule("SEQUENCELENGTH"), nullptr);
    EXPECT_TRUE(kv::SkipWithinCycles(4, 4, 0));  // no bits count as one
    EXPECT_FALSE(kv::SkipWithinCycles(5, 4, 0));
}

// What a page cannot work with goes back to its default; the rest stays,
// and the skip is held to the cycle count that was kept.
TEST(StimulusRules, PagesOpenOnlyOnValuesTheyCanUse) {
    kv::CStimulusData data;
    EXPECT_FALSE(kv::ReplaceValuesPagesCannotUse(data));
    data.m_period = 0;
    data.m_sineInit = std::nan("");
    data.m_cycleCount = 40000;
    data.m_skipBits = 200;  // beyond 4 cycles of 31 bits
    data.m_dutyCycle = 100;
    data.m_maxJitter = 7;
    EXPECT_TRUE(kv::ReplaceValuesPagesCannotUse(data));
    const kv::CStimulusData defaults;
    EXPECT_EQ(data.m_period, defaults.m_period);
    EXPECT_EQ(data.m_sineInit, defaults.m_sineInit);
    EXPECT_EQ(data.m_cycleCount, defaults.m_cycleCount);
    EXPECT_EQ(data.m_skipBits, defaults.m_skipBits);
    EXPECT_EQ(data.m_dutyCycle, defaults.m_dutyCycle);
    EXPECT_EQ(data.m_maxJitter, 7);
    data.m_period = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(kv::ReplaceValuesPagesCannotUse(data));
}

}  // namespace
