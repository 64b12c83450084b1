// kvcomctl format and parse: the core's text printed, its verdict as the exit
// status, and what the command line itself refuses. Every quantity and
// option is compared with the Python module's formatters and parser.

#include <gtest/gtest.h>

#include "tests/support/TestSupport.h"

namespace {

TEST(CliNumbers, PrintTheCoresTextAndExitWithItsVerdict) {
    const struct {
        const char* args;
        const char* out;
        int status;
    } cases[] = {
        {"format length 0.0000254", "1.0 mils\n", 0},
        {"format voltage -0.05", "-50.00 mV\n", 0},
        {"format resistance 2e12", "999 G ohms\n", 1},
        {"parse 47p", "4.6999999999999999e-11\n", 0},
        {"parse 3M --spice", "0.0030000000000000001\n", 0},
        {"parse abc", "0\n", 1},
    };
    for (const auto& c : cases) {
        const CommandResult result = RunCli(c.args);
        EXPECT_EQ(result.out, c.out) << c.args;
        EXPECT_EQ(result.status, c.status) << c.args;
    }
}

TEST(CliNumbers, UsageErrorsExitWithTwo) {
    for (const char* args : {"format weight 1", "format length", "format length 1x",
                             "format time 1 --metric", "parse", "nosuchcommand"}) {
        const CommandResult result = RunCli(args);
        EXPECT_EQ(result.status, 2) << args;
        EXPECT_EQ(result.out, "") << args;
    }
    EXPECT_EQ(RunCli("format voltage inf").err,
              "kvcomctl format: VALUE must be a finite number, not 'inf'\n");
    EXPECT_EQ(RunCli("format --help").status, 0);
}

}  // namespace
