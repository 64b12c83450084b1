#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "TestFolder.h"

namespace {

struct Result {
    int status;
    std::string output;
};

Result Cli(const std::string& arguments, const TestFolder& folder) {
    const std::string command =
        "XDG_CONFIG_HOME=" + folder.File("config") + " " KV_CLI_PATH " " + arguments + " 2>&1";
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    char buffer[4096];
    std::size_t got = 0;
    while ((got = fread(buffer, 1, sizeof buffer, pipe.get())) > 0) {
        output.append(buffer, got);
    }
    const int status = pclose(pipe.release());
    return {WEXITSTATUS(status), output};
}

TEST(SequenceCli, EveryKindPrintsOrWritesBits) {
    TestFolder folder;
    EXPECT_EQ(Cli("sequence prbs --degree 3", folder).output, "0010111\n");
    EXPECT_EQ(Cli("sequence prbs --degree 3 --init 1", folder).output, "1101000\n");
    EXPECT_EQ(Cli("sequence toggle --init 1", folder).output, "01\n");
    EXPECT_EQ(Cli("sequence usb", folder).output.size(), 331u);
    EXPECT_EQ(Cli("sequence random --count 64 --seed 3", folder).output,
              Cli("sequence random --count 64 --seed 3", folder).output);
    // Without a positive seed the fixed seed is used.
    EXPECT_EQ(Cli("sequence 8b10b --cycles 5", folder).output,
              Cli("sequence 8b10b --cycles 5 --seed 91847437", folder).output);
    EXPECT_EQ(Cli("sequence 8b10b --cycles 5", folder).output.size(), 51u);
    EXPECT_EQ(Cli("sequence random", folder).status, 2);
    EXPECT_EQ(Cli("sequence bogus", folder).status, 2);

    const std::string file = folder.File("code.bit");
    EXPECT_EQ(Cli("sequence 8b10b --cycles 2000 --seed 8 -o " + file, folder).status, 0);
    EXPECT_EQ(ReadText(file).size(), 20000u);
    EXPECT_EQ(Cli("check-8b10b " + file, folder).output, "ok\n");
    const Result shifted = Cli("check-8b10b " + file + " --start 4", folder);
    EXPECT_EQ(shifted.status, 1);
    EXPECT_EQ(shifted.output, "Running parity rule violated\n");
    EXPECT_EQ(Cli("check-8b10b " + file + " --start 5", folder).output,
              "Invalid start group size: must be 4 or 6\n");
    EXPECT_EQ(Cli("check-8b10b " + folder.File("missing.bit"), folder).status, 1);
    EXPECT_EQ(Cli("sequence usb -o " + folder.File("no/such/dir.bit"), folder).status, 1);
}

TEST(SequenceCli, StimulusFilesThroughLoadAndSave) {
    TestFolder folder;
    const std::string file = folder.File("stim.ini");
    EXPECT_EQ(Cli("stimulus new " + file, folder).status, 0);
    EXPECT_EQ(
        Cli("stimulus set " + file + " cyclecount=8 PERIOD=2.5 SEQTYPE=4 BITSEQUENCE=0110", folder)
            .status,
        0);
    const std::string shown = Cli("stimulus show " + file, folder).output;
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
