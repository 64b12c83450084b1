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

TEST(StimulusRules, TypedValuesKeepThePagesRangesWithTheirMessages) {
    const std::string_view cycles = "Invalid number of simulation cycles\nValid range is 1 - 2048";
    const auto& cycleRule = StimulusRuleOf("CYCLECOUNT");
    EXPECT_EQ(CheckTyped(cycleRule, 2048), std::nullopt);
    EXPECT_EQ(CheckTyped(cycleRule, 2049), cycles);
    EXPECT_EQ(CheckTyped(cycleRule, 0), cycles);
    EXPECT_EQ(CheckTyped(cycleRule, 1.5), cycles);

    const std::string_view interval = "Invalid bit interval value\nValid range is 0.001 - 1000 ns";
    const std::string_view period = "Invalid period value\nValid range is 0.001 - 1000 ns";
    const auto& periodRule = StimulusRuleOf("period");  // keys are found in any case
    EXPECT_EQ(CheckTyped(periodRule, 0.001, true), std::nullopt);
    EXPECT_EQ(CheckTyped(periodRule, 1000), std::nullopt);
    EXPECT_EQ(CheckTyped(periodRule, 0.0009, true), interval);
    EXPECT_EQ(CheckTyped(periodRule, 1000.5), period);
    EXPECT_EQ(CheckTyped(periodRule, std::nan("")), period);

    const std::string_view duty = "Invalid duty cycle value\nValid range is 1 - 99";
    EXPECT_EQ(CheckTyped(StimulusRuleOf("DUTYCYCLE"), 99), std::nullopt);
    EXPECT_EQ(CheckTyped(StimulusRuleOf("DUTYCYCLE"), 0.5), duty);
    EXPECT_EQ(CheckTyped(StimulusRuleOf("DUTYCYCLE"), 99.5), duty);

    const std::string_view skip =
        "Invalid skip cycles range\nLeft bound is greater then right bound";
    EXPECT_EQ(CheckTyped(StimulusRuleOf("SKIPBITS"), -1), skip);
    EXPECT_EQ(CheckTyped(StimulusRuleOf("SKIPBITS"), 2.5), skip);
    EXPECT_TRUE(kv::SkipWithinCycles(124, 4, 31));
    EXPECT_FALSE(kv::SkipWithinCycles(125, 4, 31));
    EXPECT_TRUE(kv::SkipWithinCycles(4, 4, 0));  // no bits count as one

    EXPECT_EQ(CheckTyped(StimulusRuleOf("SEQTYPE"), 9), std::nullopt);
    EXPECT_NE(CheckTyped(StimulusRuleOf("SEQTYPE"), 5), std::nullopt);
    EXPECT_EQ(kv::FindStimulusRule("SEQUENCELENGTH"), nullptr);

    // 40 % of 3.3 ns high: the shorter part is 1.32 ns.
    EXPECT_EQ(kv::CheckMaxJitterInHalfPeriod(1.3, 3.3, 40), std::nullopt);
    EXPECT_EQ(kv::CheckMaxJitterInHalfPeriod(1.32, 3.3, 40),
              "Invalid maximum jitter value\nJitter value must be greater or equal to zero "
              "and\nless than shortest half of the period");
    EXPECT_EQ(kv::CheckMaxJitterInInterval(3.29, 3.3), std::nullopt);
    for (const double refused : {3.3, -1.0}) {
        EXPECT_EQ(kv::CheckMaxJitterInInterval(refused, 3.3),
                  "Invalid maximum jitter value\nJitter value must be greater or equal to zero "
                  "and\nless than the bit interval");
    }
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
