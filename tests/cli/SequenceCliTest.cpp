#include <gtest/gtest.h>

#include <string>

#include "tests/support/TestSupport.h"

namespace {

// Every run keeps its settings (the jitter seed) inside the test's folder.
CommandResult Cli(const std::string& arguments, const TestFolder& folder) {
    return RunCli(arguments, "XDG_CONFIG_HOME=" + folder.File("config"));
}

TEST(SequenceCli, EveryKindPrintsOrWritesBits) {
    TestFolder folder;
    EXPECT_EQ(Cli("sequence prbs --degree 3", folder).out, "0010111\n");
    EXPECT_EQ(Cli("sequence prbs --degree 3 --init 1", folder).out, "1101000\n");
    EXPECT_EQ(Cli("sequence toggle --init 1", folder).out, "01\n");
    EXPECT_EQ(Cli("sequence usb", folder).out.size(), 331u);
    EXPECT_EQ(Cli("sequence random --count 64 --seed 3", folder).out,
              Cli("sequence random --count 64 --seed 3", folder).out);
    // Without a positive seed the fixed seed is used.
    EXPECT_EQ(Cli("sequence 8b10b --cycles 5", folder).out,
              Cli("sequence 8b10b --cycles 5 --seed 91847437", folder).out);
    EXPECT_EQ(Cli("sequence 8b10b --cycles 5", folder).out.size(), 51u);
    EXPECT_EQ(Cli("sequence random", folder).status, 2);
    // A seed equal to the modulus draws 0 first, then what seed 1 draws: a
    // zero bit ahead of seed 1's bits, and 6-bit row 0 ("+011000-" sent at
    // the starting disparity +1) first.
    const std::string fromModulus = Cli("sequence random --count 33 --seed 2147483647", folder).out;
    EXPECT_EQ(fromModulus.substr(0, 1), "0");
    EXPECT_EQ(fromModulus.substr(1), Cli("sequence random --count 32 --seed 1", folder).out);
    EXPECT_EQ(Cli("sequence 8b10b --cycles 1 --seed 2147483647", folder).out.substr(0, 6),
              "011000");
    EXPECT_EQ(Cli("sequence bogus", folder).status, 2);

    const std::string file = folder.File("code.bit");
    EXPECT_EQ(Cli("sequence 8b10b --cycles 2000 --seed 8 -o " + file, folder).status, 0);
    EXPECT_EQ(ReadText(file).size(), 20000u);
    EXPECT_EQ(Cli("check-8b10b " + file, folder).out, "ok\n");
    const CommandResult shifted = Cli("check-8b10b " + file + " --start 4", folder);
    EXPECT_EQ(shifted.status, 1);
    EXPECT_EQ(shifted.out, "Running parity rule violated\n");
    EXPECT_EQ(Cli("sequence usb -o " + folder.File("no/such/dir.bit"), folder).status, 1);
}

TEST(SequenceCli, CheckReadsFilesAsTheLoaderDoes) {
    TestFolder folder;
    const std::string file = folder.File("code.bit");
    ASSERT_EQ(Cli("sequence 8b10b --cycles 200 --seed 8 -o " + file, folder).status, 0);
    const std::string bits = ReadText(file);
    // Separators as a .bit file may hold them: blanks, commas, semicolons, CR LF.
    std::string spaced;
    for (std::size_t i = 0; i < bits.size(); i += 10) {
        spaced += bits.substr(i, 5) + ", " + bits.substr(i + 5, 5) + ";\t\r\n";
    }
    WriteText(file, spaced);
    EXPECT_EQ(Cli("check-8b10b " + file, folder).out, "ok\n");
    EXPECT_EQ(Cli("check-8b10b " + file + " --start 0", folder).out, "ok\n");

    WriteText(file, "01+01");
    CommandResult result = Cli("check-8b10b " + file, folder);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kvcomctl check-8b10b: File " + file +
                              " is not valid sequence file (byte 2 is neither 0, 1 nor a "
                              "separator)\n");
    // The first problem in reading order is told: here the run of six ones before the "x".
    WriteText(file, "111111x");
    EXPECT_EQ(Cli("check-8b10b " + file, folder).out, "Running length exceeded\n");

    for (const std::string empty : {"", " \r\n;,"}) {
        WriteText(file, empty);
        result = Cli("check-8b10b " + file, folder);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "kvcomctl check-8b10b: File " + file +
                                  " is empty: it holds no 0 or 1 to check\n");
    }
    result = Cli("check-8b10b " + folder.File("missing.bit"), folder);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kvcomctl check-8b10b: cannot read \"" + folder.File("missing.bit") +
                              "\": No such file or directory\n");
    EXPECT_NE(Cli("check-8b10b " + folder.Path().string(), folder).err.find("Is a directory"),
              std::string::npos);

    for (const std::string start : {"5", "4294967302", "-2", "6x"}) {
        result = Cli("check-8b10b " + file + " --start " + start, folder);
        EXPECT_EQ(result.status, 2) << start;
        EXPECT_NE(result.err.find("--start"), std::string::npos) << result.err;
    }
}

TEST(SequenceCli, StimulusFilesThroughLoadAndSave) {
    TestFolder folder;
    const std::string file = folder.File("stim.ini");
    EXPECT_EQ(Cli("stimulus new " + file, folder).status, 0);
    EXPECT_EQ(
        Cli("stimulus set " + file + " cyclecount=8 PERIOD=2.5 SEQTYPE=4 BITSEQUENCE=0110", folder)
            .status,
        0);
    const std::string shown = Cli("stimulus show " + file, folder).out;
    EXPECT_EQ(shown.substr(0, 13), "CYCLECOUNT=8\n");
    EXPECT_NE(shown.find("\nPERIOD=2.5\n"), std::string::npos);
    EXPECT_NE(shown.find("\nSEQUENCELENGTH=4\n"), std::string::npos);
    EXPECT_NE(shown.find("\nBITSEQUENCE=0110\n"), std::string::npos);
    const std::string before = ReadText(file);
    EXPECT_EQ(Cli("stimulus set " + file + " DUTYCYCLE=100", folder).status, 1);
    EXPECT_EQ(Cli("stimulus set " + file + " NOSUCHKEY=1", folder).status, 2);
    EXPECT_EQ(ReadText(file), before);
}

}  // namespace
