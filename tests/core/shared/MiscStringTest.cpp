#include "core/shared/Misc_String.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <ctime>
#include <limits>
#include <string>

namespace {

using Formatter = bool (*)(double, char*, std::size_t, char*);

bool Inches(double v, char* d, std::size_t c, char* u) {
    return kv::FormatLength(v, d, c, false, u);
}
bool Metric(double v, char* d, std::size_t c, char* u) {
    return kv::FormatLength(v, d, c, true, u);
}

struct FormatCase {
    Formatter format;
    double value;
    const char* text;
    bool inRange;
};

TEST(MiscStringBoundedCopy, CopyAndAppendCutAtCapacityAndCountCharacters) {
    char buffer[8];
    EXPECT_EQ(kv::CopyBounded(buffer, "abcdefghij", 3), 3u);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(kv::AppendBounded(buffer, "defghij", 6), 6u);
    EXPECT_STREQ(buffer, "abcdef");
    EXPECT_EQ(kv::AppendBounded(buffer, "x", 4), 6u);  // already beyond: left alone
    EXPECT_STREQ(buffer, "abcdef");
    EXPECT_EQ(kv::CopyBounded(buffer, "ab", 5), 2u);
    EXPECT_STREQ(buffer, "ab");
}

TEST(MiscStringFormat, RowsScalesAndOutOfRange) {
    const FormatCase cases[] = {
        {Inches, 0.0000254, "1.0 mils", true},
        {Inches, 0.00254, "0.10 in", true},
        {Metric, -0.5, "-500000 um", true},
        {Metric, 0.0001, "0.100 mm", true},
        {Metric, 0.05, "5.000 cm", true},
        {Metric, 2.0, "2.00 m", true},
        {kv::FormatCapacitance, 5e-19, "0.0 pF", true},
        {kv::FormatCapacitance, -5e-19, "0.0 pF", true},
        {kv::FormatCapacitance, 1e-12, "1.0 pF", true},
        {kv::FormatCapacitance, 2.5e-15, "2.5 fF", true},
        {kv::FormatCapacitance, -3.3e-9, "-3.3 nF", true},
        {kv::FormatCapacitance, 1000, "999 F", false},
        {kv::FormatCapacitance, std::nan(""), "999 F", false},
        {kv::FormatInductance, 5e-19, "0.0 nH", true},
        {kv::FormatInductance, 4.7e-6, "4.7 uH", true},
        {kv::FormatResistance, 0.05, "50.0 milliohms", true},
        {kv::FormatResistance, 2e12, "999 G ohms", false},
        {kv::FormatResistance, 1000, "1.0 K ohms", true},
        {kv::FormatResistance, -0.0, "0.0 ohms", true},
        {kv::FormatResistance, 50, "50.0 ohms", true},
        {kv::FormatFrequency, 2.5e9, "2.5 GHz", true},
        {kv::FormatFrequency, 1000, "1.0 KHz", true},
        {kv::FormatFrequency, 0.5, "500.0 mHz", true},
        {kv::FormatFrequency, 1e12, "999 GHz", false},
        {kv::FormatTime, 0, "0.000 s", true},
        {kv::FormatTime, 1e-12, "1.000 ps", true},
        {kv::FormatTime, 5e-16, "0.500 fs", true},
        {kv::FormatTime, -2e-3, "-2.000 ms", true},
        {kv::FormatTime, std::numeric_limits<double>::infinity(), "999 s", false},
        {kv::FormatVoltage, 250, "250.000 V", true},
        {kv::FormatVoltage, 25, "25.0 V", true},
        {kv::FormatVoltage, 2.5, "2.50 V", true},
        {kv::FormatVoltage, -2.5, "-2.50 V", true},
        {kv::FormatVoltage, 0.1, "100.0 mV", true},
        {kv::FormatVoltage, 0.0015, "1.50 mV", true},
        {kv::FormatVoltage, 5e-4, "500.000 uV", true},
        {kv::FormatVoltage, 0, "0.0 V", true},
    };
    for (const FormatCase& c : cases) {
        char buffer[40];
        EXPECT_EQ(c.format(c.value, buffer, 39, nullptr), c.inRange) << c.text;
        EXPECT_STREQ(buffer, c.text);
    }
}

TEST(MiscStringFormat, UnitBufferAndCapacity) {
    char number[40];
    char unit[kv::kUnitTextCapacity + 1];
    EXPECT_FALSE(kv::FormatResistance(5e12, number, 39, unit));
    EXPECT_STREQ(number, "999");
    EXPECT_STREQ(unit, "G ohms");
    kv::FormatResistance(0.05, number, 2, unit);
    EXPECT_STREQ(number, "50");
    EXPECT_STREQ(unit, "milliohms");
    kv::FormatResistance(0.05, number, 6);
    EXPECT_STREQ(number, "50.0 m");
}

TEST(MiscStringFormat, NumbersTooLongToShowAreOutOfRange) {
    char text[64];
    EXPECT_FALSE(kv::FormatVoltage(-1e308, text, 63));
    EXPECT_STREQ(text, "999 V");
    EXPECT_FALSE(kv::FormatLength(1e308, text, 63, false));
    EXPECT_STREQ(text, "999 in");
    // The longest number text that still fits: 35 digits, point, 3 decimals.
    EXPECT_TRUE(kv::FormatVoltage(9e34, text, 63));
    EXPECT_EQ(std::string(text).size(), 39u + 2u);
}

TEST(MiscStringParse, PrefixesAndOptions) {
    double v = 0;
    EXPECT_TRUE(kv::ParseEngineeringValue(" 1.5 n", v));
    EXPECT_DOUBLE_EQ(v, 1.5e-9);
    EXPECT_TRUE(kv::ParseEngineeringValue("3M", v));
    EXPECT_DOUBLE_EQ(v, 3e6);
    EXPECT_TRUE(kv::ParseEngineeringValue("3M", v, false, true));
    EXPECT_DOUBLE_EQ(v, 3e-3);
    EXPECT_TRUE(kv::ParseEngineeringValue("1meg", v));
    EXPECT_DOUBLE_EQ(v, 1e-3);
    EXPECT_TRUE(kv::ParseEngineeringValue("2X", v, false, true));
    EXPECT_DOUBLE_EQ(v, 2e6);
    EXPECT_TRUE(kv::ParseEngineeringValue("2X", v));
    EXPECT_DOUBLE_EQ(v, 2);
    EXPECT_TRUE(kv::ParseEngineeringValue("10F", v));
    EXPECT_DOUBLE_EQ(v, 1e-14);
    EXPECT_TRUE(kv::ParseEngineeringValue("10F", v, false, false, true));
    EXPECT_DOUBLE_EQ(v, 10);
    EXPECT_TRUE(kv::ParseEngineeringValue("5A", v, true));
    EXPECT_DOUBLE_EQ(v, 5);
    EXPECT_TRUE(kv::ParseEngineeringValue("R = -4 . 7\tk", v));
    EXPECT_DOUBLE_EQ(v, -4700);
    EXPECT_TRUE(kv::ParseEngineeringValue("0x10", v));
    EXPECT_DOUBLE_EQ(v, 16);
    EXPECT_TRUE(kv::ParseEngineeringValue("2g", v));
    EXPECT_DOUBLE_EQ(v, 2);
}

TEST(MiscStringParse, FailuresLeaveZero) {
    for (const char* text : {"abc", "1e999", "1e-400", "1e-310", "+-5", "-", "-inf", "1e300T"}) {
        double v = 42;
        EXPECT_FALSE(kv::ParseEngineeringValue(text, v)) << text;
        EXPECT_EQ(v, 0.0) << text;
    }
}

TEST(MiscStringBlanks, TrimAndRemove) {
    char text[] = "  a b  ";
    kv::TrimLeadingBlanks(text);
    EXPECT_STREQ(text, "a b  ");
    char tab[] = "\t a";
    kv::TrimLeadingBlanks(tab);
    EXPECT_STREQ(tab, "\t a");
    char mixed[] = " a b\tc\r\n\x01\xC3\xA9.";
    kv::RemoveWhitespace(mixed);
    EXPECT_STREQ(mixed, "abc\xC3\xA9.");
    char number[] = " 1. 5.0 ";
    kv::RemoveWhitespaceAndPoints(number);
    EXPECT_STREQ(number, "150");
}

TEST(MiscStringCompactExponent, SevenSignificantDigits) {
    const std::pair<double, const char*> cases[] = {
        {0.0, "0.000000"},           {1.0, "1.000000"},
        {-1234.5678, "-1.234568e3"}, {1.5e-5, "1.500000e-5"},
        {9.99999951, "1.000000e1"},  {99999995.0, "1.000000e8"},
        {9.9999994, "9.999999"},     {-4.9e-324, "-4.940656e-324"},
    };
    for (const auto& [value, text] : cases) {
        char buffer[kv::kCompactExponentSize];
        const char* end = kv::FormatCompactExponent(value, buffer);
        EXPECT_STREQ(buffer, text);
        EXPECT_EQ(end, buffer + std::strlen(text));
    }
}

TEST(MiscStringCompareNames, NumbersSignsAndPunctuation) {
    const std::pair<const char*, const char*> ordered[] = {
        {"NET2", "NET10"}, {"A-1", "A+1"},   {"A-10", "A-2"}, {"A1", "A01"},
        {"A-01", "A-1"},   {"X12a", "X123"}, {"a,b", "a/b"},  {"a/b", "a-b"},
        {"a-b", "a+b"},    {"a+b", "a.b"},   {"NET", "NET1"}, {"z", "\xC3\xA9"},
    };
    for (const auto& [first, second] : ordered) {
        EXPECT_EQ(kv::CompareNames(first, second, false), -1) << first << " " << second;
        EXPECT_EQ(kv::CompareNames(second, first, false), 1) << first << " " << second;
    }
    EXPECT_EQ(kv::CompareNames("net1", "NET1", false), 0);
    EXPECT_EQ(kv::CompareNames("NET1", "net1", true), -1);
}

TEST(MiscStringCompareNames, SignedNumbersSitWhereTheDigitsSit) {
    // Once a cycle: "A+1" > "A1" > "A+B" and yet "A+1" < "A+B".
    EXPECT_EQ(kv::CompareNames("A+B", "A1", false), -1);
    EXPECT_EQ(kv::CompareNames("A1", "A+1", false), -1);
    EXPECT_EQ(kv::CompareNames("A+B", "A+1", false), -1);
    // Names alike in every part still get an order, so that distinct names are never equal.
    EXPECT_EQ(kv::CompareNames("A-0", "A+0", false), -1);
    EXPECT_EQ(kv::CompareNames("A+05", "A005", false), -1);
}

TEST(MiscStringCompareIdentifiers, ClassesThenValues) {
    EXPECT_EQ(kv::CompareIdentifiers("a_b", "a1"), -1);
    EXPECT_EQ(kv::CompareIdentifiers("a9", "a10"), -1);
    EXPECT_EQ(kv::CompareIdentifiers("a-", "ab"), -1);
    EXPECT_EQ(kv::CompareIdentifiers("a", "a_"), -1);
    EXPECT_EQ(kv::CompareIdentifiers("Pin_B", "pin_a"), 1);
    EXPECT_EQ(kv::CompareIdentifiers("a007b", "A7B"), 0);
}

TEST(MiscStringDateStamp, FieldsPaddingAndBounds) {
    std::tm time{};
    time.tm_year = 112;
    time.tm_mon = 5;
    time.tm_mday = 5;
    time.tm_hour = 14;
    time.tm_min = 7;
    EXPECT_EQ(kv::FormatDateStampText("eye", &time, nullptr), "eye_Jun-5-2012_14h-07m");
    time.tm_hour = 9;
    time.tm_min = 5;
    time.tm_mon = 4;
    EXPECT_EQ(kv::FormatDateStampText(nullptr, &time, "run"), "May-5-2012_9h-05m_run");
    char buffer[8];
    kv::FormatDateStamp(buffer, sizeof buffer, "eye", &time, nullptr);
    EXPECT_STREQ(buffer, "eye_May");
    // Without a time the local clock is read: the stamp is that of the
    // current minute (or the next, should the minute turn meanwhile).
    const auto localNow = [] {
        const std::time_t seconds = std::time(nullptr);
        std::tm local{};
        localtime_r(&seconds, &local);
        return kv::FormatDateStampText("", &local, "");
    };
    const std::string before = localNow();
    const std::string stamp = kv::FormatDateStampText("", nullptr, "");
    EXPECT_TRUE(stamp == before || stamp == localNow()) << stamp;
}

TEST(MiscStringDeathTest, NullTextsNameTheModule) {
    char buffer[16] = "";
    double v = 0;
    const char* const report = R"(\.\.\\shared\\Misc_String, line [0-9]+)";
    EXPECT_DEATH(kv::CopyBounded(nullptr, "x", 3), report);
    EXPECT_DEATH(kv::AppendBounded(buffer, nullptr, 3), report);
    EXPECT_DEATH(kv::FormatTime(1, nullptr, 3), report);
    EXPECT_DEATH(kv::ParseEngineeringValue(nullptr, v), report);
    EXPECT_DEATH(kv::TrimLeadingBlanks(nullptr), report);
    EXPECT_DEATH(kv::RemoveWhitespace(nullptr), report);
    EXPECT_DEATH(kv::FormatCompactExponent(1, nullptr), report);
    EXPECT_DEATH(kv::RemoveWhitespaceAndPoints(nullptr), report);
    EXPECT_DEATH(kv::CompareNames("a", nullptr, true), report);
    EXPECT_DEATH(kv::CompareIdentifiers(nullptr, "a"), report);
}

}  // namespace
