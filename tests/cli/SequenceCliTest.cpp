// kvcomctl sequence and check-8b10b: the bits printed or written, and the
// check's verdict on files as the loader reads them. Every kind and option
// is compared with the Python module's sequences.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/TestSupport.h"

namespace {

TEST(SequenceCli, EveryKindPrintsOrWritesBits) {
    TestFolder folder;
    EXPECT_EQ(RunCli("sequence prbs --degree 3").out, "0010111\n");
    EXPECT_EQ(RunCli("sequence random").status, 2);
    EXPECT_EQ(RunCli("sequence bogus").status, 2);

    const std::string file = folder.File("code.bit");
    EXPECT_EQ(RunCli("sequence 8b10b --cycles 2000 --seed 8 -o " + file).status, 0);
    EXPECT_EQ(ReadText(file).size(), 20000u);
    EXPECT_EQ(RunCli("check-8b10b " + file).out, "ok\n");
    EXPECT_EQ(RunCli("check-8b10b " + file + " --start 0").out, "ok\n");
    const CommandResult shifted = RunCli("check-8b10b " + file + " --start 4");
    EXPECT_EQ(shifted.status, 1);
    EXPECT_EQ(shifted.out, "Running parity rule violated\n");
    EXPECT_EQ(RunCli("sequence usb -o " + folder.File("no/such/dir.bit")).status, 1);
}

TEST(SequenceCli, CheckTellsTheFirstProblemOfTheFile) {
    TestFolder folder;
    const std::string file = folder.File("code.bit");
    const std::string prefix = "kvcomctl check-8b10b: ";
    WriteText(file, "01+01");
    CommandResult result = RunCli("check-8b10b " + file);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, prefix + "File " + file +
                              " is not valid sequence file (byte 2 is neither 0, 1 nor a "
                              "separator)\n");
    // The first problem in reading order is told: here the run of six ones before the "x".
    WriteText(file, "111111x");
    EXPECT_EQ(RunCli("check-8b10b " + file).out, "Running length exceeded\n");

    WriteText(file, " \r\n;,");
    result = RunCli("check-8b10b " + file);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, prefix + "File " + file + " is empty: it holds no 0 or 1 to check\n");
    result = RunCli("check-8b10b " + folder.File("missing.bit"));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, prefix + "cannot read \"" + folder.File("missing.bit") +
                              "\": No such file or directory\n");

    // 4294967302 would read as 6 if it were cut to 32 bits.
    for (const std::string start : {"5", "4294967302", "6x"}) {
        result = RunCli("check-8b10b " + file + " --start " + start);
        EXPECT_EQ(result.status, 2) << start;
        EXPECT_NE(result.err.find("--start"), std::string::npos) << result.err;
    }
}

}  // namespace
