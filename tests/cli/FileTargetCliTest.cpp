// The commands that write files, on links, read-only files, streams and a full disk.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/TestSupport.h"

namespace {

namespace fs = std::filesystem;

const std::string kExample = std::string(KV_EXAMPLES_DIR) + "/via_signal_6layer.json";

void MakeReadOnly(const fs::path& path) {
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
}

// Each writing command, given the output file (or the file to create).
const struct {
    const char* name;
    std::string (*arguments)(const std::string& file);
} kWriters[] = {
    {"spice", [](const std::string& f) { return "spice " + kExample + " -o " + f; }},
    {"sequence", [](const std::string& f) { return "sequence prbs --degree 4 -o " + f; }},
    {"stimulus new", [](const std::string& f) { return "stimulus new " + f; }},
};

TEST(FileTargetCli, WritingThroughALinkKeepsTheLink) {
    for (const auto& writer : kWriters) {
        const TestFolder folder;
        const fs::path real = folder.Path() / "real.out";
        WriteText(real.string(), "old");
        fs::create_symlink("real.out", folder.Path() / "link.out");
        const CommandResult result = RunCli(writer.arguments(folder.File("link.out")));
        EXPECT_EQ(result.status, 0) << writer.name << ": " << result.err;
        EXPECT_TRUE(fs::is_symlink(fs::symlink_status(folder.Path() / "link.out"))) << writer.name;
        EXPECT_NE(ReadText(real.string()), "old") << writer.name;
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 2) << writer.name;
    }
}

TEST(FileTargetCli, AReadOnlyFileIsRefusedAndKept) {
    for (const auto& writer : kWriters) {
        const TestFolder folder;
        const fs::path locked = folder.Path() / "locked.out";
        WriteText(locked.string(), "keep");
        MakeReadOnly(locked);
        const CommandResult result = RunCli(writer.arguments(locked.string()));
        EXPECT_EQ(result.status, 1) << writer.name;
        EXPECT_EQ(ReadText(locked.string()), "keep") << writer.name;
    }
    const TestFolder folder;
    const fs::path locked = folder.Path() / "locked.cir";
    WriteText(locked.string(), "keep");
    MakeReadOnly(locked);
    EXPECT_EQ(RunCli("spice " + kExample + " -o " + locked.string()).err,
              "kvcomctl spice: Cannot open file \"" + locked.string() +
                  "\": Permission denied (the file is read-only)\n");
    // A stimulus file that may not be written keeps its values too.
    const fs::path stimulus = folder.Path() / "stim.ini";
    ASSERT_EQ(RunCli("stimulus new " + stimulus.string()).status, 0);
    const std::string before = ReadText(stimulus.string());
    MakeReadOnly(stimulus);
    EXPECT_EQ(RunCli("stimulus set " + stimulus.string() + " CYCLECOUNT=9").status, 1);
    EXPECT_EQ(ReadText(stimulus.string()), before);
}

TEST(FileTargetCli, StandardOutputIsWrittenNotReplaced) {
    // /dev/stdout is reached through a link in the test's folder: should it ever be replaced
    // again, the link is what goes, not the system's /dev/stdout.
    const TestFolder folder;
    const std::string stdoutLink = folder.File("stdout");
    fs::create_symlink("/dev/stdout", stdoutLink);
    const CommandResult direct = RunCli("spice " + kExample);
    ASSERT_EQ(direct.status, 0);
    // Captured in a file, and through a pipe.
    const CommandResult toFile = RunCli("spice " + kExample + " -o " + stdoutLink);
    EXPECT_EQ(toFile.status, 0) << toFile.err;
    EXPECT_EQ(toFile.out.size(), direct.out.size());
    const CommandResult piped =
        RunShell(std::string(KV_CLI_PATH) + " sequence usb -o " + stdoutLink + " | cat");
    EXPECT_EQ(piped.status, 0) << piped.err;
    EXPECT_EQ(piped.out + "\n", RunCli("sequence usb").out);
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(stdoutLink)));
}

TEST(FileTargetCli, AFullDiskLeavesTheDumpAsItWas) {
    const TestFolder folder;
    const std::string dump = folder.File("ViaVizData.dmp");
    WriteText(dump, std::string(100, '#') + "\n");
    // The shell's file size limit (512-byte blocks) fails the write part-way, as a full disk
    // would; the signal it raises is ignored so that the write returns the error.
    const CommandResult result = RunShell("trap '' XFSZ; ulimit -f 1; " + std::string(KV_CLI_PATH) +
                                          " padstack-dump " + kExample + " -o " + dump);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "kvcomctl padstack-dump: Cannot write file \"" + dump + "\": File too large\n");
    EXPECT_EQ(ReadText(dump), std::string(100, '#') + "\n");
}

}  // namespace
