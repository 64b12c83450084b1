#include <gtest/gtest.h>

#include "tests/support/TestSupport.h"

namespace {

TEST(CliFormat, PrintsNumberAndUnitWithTheFormattersResult) {
    EXPECT_EQ(RunCli("format length 0.0000254").out, "1.0 mils\n");
    EXPECT_EQ(RunCli("format length 0.0000254 --metric").out, "25 um\n");
    EXPECT_EQ(RunCli("format capacitance 1e-12").out, "1.0 pF\n");
    const CommandResult overflow = RunCli("format resistance 2e12");
    EXPECT_EQ(overflow.out, "999 G ohms\n");
    EXPECT_EQ(overflow.status, 1);
    EXPECT_EQ(RunCli("format voltage -0.05").out, "-50.00 mV\n");
    // Numbers too long to show follow the out-of-range rule too.
    const CommandResult volts = RunCli("format voltage -1e308");
    EXPECT_EQ(volts.out, "999 V\n");
    EXPECT_EQ(volts.status, 1);
    const CommandResult length = RunCli("format length 1e308");
    EXPECT_EQ(length.out, "999 in\n");
    EXPECT_EQ(length.status, 1);
}

TEST(CliFormat, UsageErrorsExitWithTwo) {
    EXPECT_EQ(RunCli("format weight 1").status, 2);
    EXPECT_EQ(RunCli("format length").status, 2);
    EXPECT_EQ(RunCli("format length 1x").status, 2);
    for (const char* value : {"nan", "inf", "1e999"}) {
        const CommandResult result = RunCli(std::string("format voltage ") + value);
        EXPECT_EQ(result.status, 2) << value;
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find("finite number"), std::string::npos);
    }
    EXPECT_EQ(RunCli("format time 1 --metric").status, 2);
    EXPECT_EQ(RunCli("nosuchcommand").status, 2);
    EXPECT_EQ(RunCli("format --help").status, 0);
}

TEST(CliParse, ScalesBySuffixAndReportsFailure) {
    EXPECT_EQ(RunCli("parse 47p").out, "4.6999999999999999e-11\n");
    EXPECT_EQ(RunCli("parse 3M").out, "3000000\n");
    EXPECT_EQ(RunCli("parse 3M --spice").out, "0.0030000000000000001\n");
    EXPECT_EQ(RunCli("parse 10F --farad").out, "10\n");
    const CommandResult failed = RunCli("parse abc");
    EXPECT_EQ(failed.out, "0\n");
    EXPECT_EQ(failed.status, 1);
}

}  // namespace
