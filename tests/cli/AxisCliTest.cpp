// kvcomctl axis as a user runs it: the printed grid and the refusals with
// their exit codes. The options are compared with the Python module's axis.

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

TEST(AxisCliTest, RefusesWhatHasNoStepAndBadArguments) {
    for (const char* args : {"axis 3 1 100", "axis -5 10 100 --log"}) {
        const CommandResult result = RunCli(args);
        EXPECT_EQ(result.status, 1) << args;
        EXPECT_EQ(result.out, "") << args;
        EXPECT_EQ(result.err.rfind("kvcomctl axis: no grid step fits the range [", 0), 0u) << args;
    }
    for (const char* args :
         {"axis 0 1 0", "axis 0 1 -4", "axis 0 1 2.5", "axis nan 1 100", "axis 0 1 100 --bogus",
          "axis 0 1", "axis 0 1 100 --spacing x", "axis 0 1 100 --spacing -1"}) {
        const CommandResult result = RunCli(args);
        EXPECT_EQ(result.status, 2) << args;
        EXPECT_EQ(result.out, "") << args;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << args;
    }
}

}  // namespace
