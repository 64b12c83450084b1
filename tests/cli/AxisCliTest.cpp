// kvcomctl axis as a user runs it: the printed grid, the options, and the
// refusals with their exit codes.

#include <gtest/gtest.h>

#include "tests/support/TestSupport.h"

namespace {

TEST(AxisCliTest, PrintsRangeStepLabelIntervalAndEveryLine) {
    const CommandResult result = RunCli("axis 0 7 100 --unit V");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out,
              "range 0 7\n"
              "step 2.5\n"
              "labels 2\n"
              "line 0 \" 0V \"\n"
              "line 2.5 \"\"\n"
              "line 5 \" 5V \"\n"
              "line 7.5 \"\"\n");
    EXPECT_EQ(result.err, "");
}

TEST(AxisCliTest, OptionsWidenSpaceAndScaleLogarithmically) {
    // [5, 5] widens; spacing 0 labels every line; no prefix.
    EXPECT_EQ(RunCli("axis 5 5 100 --spacing 0 --no-prefix").out,
              "range 4.5 5.5\nstep 0.25\nlabels 1\nline 4.5 \" 4.5 \"\nline 4.75 \" 4.75 \"\n"
              "line 5 \" 5 \"\nline 5.25 \" 5.25 \"\nline 5.5 \" 5.5 \"\n");
    // --y doubles the spacing: 20 pixels an interval against 2 x 14.
    const std::string x = RunCli("axis 0 1 200 --spacing 14").out;
    const std::string y = RunCli("axis 0 1 200 --y").out;
    EXPECT_NE(x.find("labels 1\n"), std::string::npos) << x;
    EXPECT_NE(y.find("labels 2\n"), std::string::npos) << y;
    EXPECT_NE(y.find("line 0.20000000000000001 \" 200m \"\n"), std::string::npos) << y;

    // The prefix follows the axis end 3e5, not the last line's 1e6.
    const CommandResult log = RunCli("axis 20 3e5 300 --log --unit Hz");
    EXPECT_EQ(log.status, 0);
    EXPECT_EQ(log.out,
              "range 20 300000\nstep 1\nlabels 2\nline 10 \" 0.01kHz \"\nline 100 \"\"\n"
              "line 1000 \" 1kHz \"\nline 10000 \"\"\nline 100000 \" 100kHz \"\n"
              "line 1000000 \"\"\n");
}

TEST(AxisCliTest, RefusesWhatHasNoStepAndBadArguments) {
    for (const char* args : {"axis 0 0 100 --log", "axis 3 1 100", "axis -5 10 100 --log"}) {
        const CommandResult result = RunCli(args);
        EXPECT_EQ(result.status, 1) << args;
        EXPECT_EQ(result.out, "") << args;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    for (const char* args : {"axis 0 1 0", "axis 0 1 -4", "axis 0 1 2.5", "axis nan 1 100",
                             "axis 0 inf 100", "axis 0 1e999 100", "axis 0 1 100 --bogus",
                             "axis 0 1", "axis 0 1 100 --spacing x", "axis 0 1 100 --unit"}) {
        const CommandResult result = RunCli(args);
        EXPECT_EQ(result.status, 2) << args;
        EXPECT_EQ(result.out, "") << args;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << args;
    }
}

}  // namespace
