#include "core/shared/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

namespace {

TEST(NumberText, PrintsAsPrintfInTheCLocaleWhateverTheProcessLocale) {
    const bool german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    EXPECT_EQ(kv::FormatFixed(2.5, 3), "2.500");
    EXPECT_EQ(kv::FormatFixed(-1e20, 1), "-100000000000000000000.0");
    EXPECT_EQ(kv::FormatReal(3.3), "3.3");
    EXPECT_EQ(kv::FormatReal(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(kv::FormatReal(1e20), "1e+20");
    EXPECT_EQ(kv::FormatSignificant(4.7e-11, 17), "4.6999999999999999e-11");
    EXPECT_EQ(kv::PrintNumber(12345.678, kv::NumberStyle::Scientific, 6), "1.234568e+04");
    EXPECT_EQ(kv::ParseRealPrefix("2.5"), 2.5);
    if (german) {
        std::setlocale(LC_NUMERIC, "C");
    }
}

TEST(NumberText, PrefixesReadLikeTheCLibrary) {
    EXPECT_EQ(kv::ParseIntPrefix("  -42xyz"), -42);
    EXPECT_EQ(kv::ParseIntPrefix("+7"), 7);
    EXPECT_FALSE(kv::ParseIntPrefix("x1"));
    EXPECT_FALSE(kv::ParseIntPrefix("-"));
    EXPECT_EQ(kv::ParseIntPrefix("99999999999"), 2147483647);
    EXPECT_EQ(kv::ParseIntPrefix("-99999999999"), -2147483647 - 1);
    EXPECT_EQ(kv::ParseRealPrefix(" 2.5e3ns"), 2500.0);
    EXPECT_EQ(kv::ParseRealPrefix("+.5"), 0.5);
    EXPECT_EQ(kv::ParseRealPrefix("0x10"), 16.0);
    EXPECT_EQ(kv::ParseRealPrefix("0xg"), 0.0);
    EXPECT_FALSE(kv::ParseRealPrefix("+-1"));
    EXPECT_FALSE(kv::ParseRealPrefix("abc"));
    EXPECT_EQ(kv::ParseRealOrZero("abc"), 0.0);

    const auto overflow = kv::ReadNumberPrefix("-1e999k");
    ASSERT_TRUE(overflow);
    EXPECT_EQ(overflow->value, -HUGE_VAL);
    EXPECT_EQ(overflow->length, 6u);
    EXPECT_TRUE(overflow->outOfRange);
    EXPECT_TRUE(kv::ReadNumberPrefix("1e-310")->outOfRange);  // below the normal range
    EXPECT_EQ(kv::ReadNumberPrefix("1e-999")->value, 0.0);
    EXPECT_FALSE(kv::ReadNumberPrefix("1e300")->outOfRange);
}

TEST(NumberText, TypedValuesMustBeWhollyAFiniteNumber) {
    EXPECT_EQ(kv::ParseFiniteNumber("-0.25"), -0.25);
    EXPECT_EQ(kv::ParseFiniteNumber("1e-310"), 1e-310);
    for (const char* bad : {"nan", "inf", "-inf", "1e999", "3abc", " 1", "1 ", "", "--1"}) {
        EXPECT_FALSE(kv::ParseFiniteNumber(bad)) << bad;
    }
    EXPECT_EQ(kv::ParseWholeInteger("+12"), 12);
    EXPECT_EQ(kv::ParseWholeInteger("-3"), -3);
    for (const char* bad : {"1e3", "3abc", "1.0", "+-1", "", "99999999999999999999"}) {
        EXPECT_FALSE(kv::ParseWholeInteger(bad)) << bad;
    }
}

}  // namespace
