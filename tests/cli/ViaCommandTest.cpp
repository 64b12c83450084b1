// kvcomctl spice and padstack-dump on the example boards, on broken descriptions and on
// outputs that cannot be written.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/SpiceExportText.h"
#include "tests/support/TestSupport.h"

namespace {

namespace fs = std::filesystem;

const std::string kBoard = std::string(KV_EXAMPLES_DIR) + "/via_signal_6layer.json";

std::string TestData(const std::string& name) {
    return ReadText(fs::path(KV_TEST_DATA_DIR) / name);
}

TEST(ViaCommand, ExampleBoardsGiveTheHandWrittenSubcircuitsAndDump) {
    const TestFolder folder;
    for (const std::string name : {"via_signal_6layer", "via_pair_6layer"}) {
        const std::string output = folder.File(name + ".cir");
        const CommandResult result =
            RunCli("spice " + std::string(KV_EXAMPLES_DIR) + "/" + name + ".json -o " + output);
        ASSERT_EQ(result.status, 0) << result.err;
        // Everything but the time must match to the byte.
        const std::string written = ReadText(output);
        EXPECT_EQ(kv::test::WithoutExportTime(written),
                  kv::test::WithoutExportTime(TestData(name + ".cir")));
        EXPECT_NE(kv::test::WithoutExportTime(written), written) << "no time stamp in\n" << written;
    }
    EXPECT_EQ(RunCli("padstack-dump " + kBoard).out, TestData("via_signal_6layer.dmp"));
    ASSERT_EQ(RunCli("padstack-dump " + kBoard + " -o " + folder.Path().string()).status, 0);
    EXPECT_EQ(ReadText(folder.Path() / "ViaVizData.dmp"), TestData("via_signal_6layer.dmp"));
}

TEST(ViaCommand, BrokenDescriptionsNameTheFieldAndWriteNothing) {
    const TestFolder folder;
    const std::string board = ReadText(kBoard);
    const struct {
        std::string from, to, message;
    } cases[] = {
        {"\"drill\": 2.54e-4", "\"drill\": \"wide\"", "vias[0].padstack.drill: must be a number"},
        {"\"drill\": 2.54e-4", "\"dril\": 2.54e-4", "vias[0].padstack.dril: unknown field"},
        {"\"ports\": [\"TOP\", \"SIG4\"]", "\"ports\": [\"TOP\", \"SIG9\"]",
         "vias[0].ports[1]: no stackup layer is named \"SIG9\""},
        {"\"ports\": [\"TOP\", \"SIG4\"]", "\"ports\": [\"TOP\", 1]",
         "vias[0].ports[1]: layer \"PREPREG1\" is a dielectric"},
        {"\"to\": 10,", "\"to\": 11,", "vias[0].elements[8].to: layer index 11 is outside"},
        {"\"shape\": \"oval\"", "\"shape\": \"egg\"", "vias[0].padstack.pads[10].shape: \"egg\""},
        {"{\"type\": \"none\"},\n", "", "vias[0].padstack.pads: needs one pad per stackup layer"},
        {"\"pair\": false", "\"pair\": true", "vias: a pair needs exactly two vias"},
        {"\"kind\": \"dielectric\",", "\"kind\": \"air\",", "stackup[9].kind: \"air\""},
        {"\"subcircuit\": \"VIA_TOP_SIG4\",", "", "subcircuit: missing"},
        {"]\n}", "", "vias[1]: not valid JSON at line 54, column 1: syntax error"},
        {"\"drill\": 2.54e-4", "\"drill\": 1e999",
         "vias[0].padstack.drill: not valid JSON at line 21, column 22: number overflow parsing "
         "'1e999'"},
        {"\"thickness\": 1.27e-4}", "\"thickness\": }",
         "stackup[9].thickness: not valid JSON at line 14"},
        {"\"name\": \"PREPREG1\"", "\"name\": \"TOP\"",
         "stackup[1].name: \"TOP\" is already the name of stackup[0]"},
        {"\"name\": \"VIA10_24\"", "\"name\": \"VIA\\u000010_24\"",
         "vias[0].padstack.name: must not contain a NUL character"},
        {"\"name\": \"SIG3\"", "\"name\": \"SIG\\n3\"",
         "stackup[4].name: must not contain control characters"},
        {"\"pair\": false", "\"pa\\u0000ir\": false", "pa\\u0000ir: unknown field"},
    };
    const std::string described = folder.File("via.json");
    const std::string output = folder.File("out.cir");
    for (const auto& broken : cases) {
        std::string json = board;
        const std::size_t at = json.rfind(broken.from);
        ASSERT_NE(at, std::string::npos) << broken.from;
        WriteText(described, json.replace(at, broken.from.size(), broken.to));
        const CommandResult result = RunCli("spice " + described + " -o " + output);
        EXPECT_EQ(result.status, 1) << broken.message;
        EXPECT_NE(result.err.find(broken.message), std::string::npos) << result.err;
        // Named by file, with none of the parser's internal tags.
        EXPECT_EQ(result.err.find("kvcomctl spice: " + described + ": "), 0u) << result.err;
        EXPECT_EQ(result.err.find("json.exception"), std::string::npos) << result.err;
        EXPECT_FALSE(fs::exists(output)) << broken.message;
    }
    EXPECT_NE(RunCli("spice " + folder.File("absent.json")).err.find("cannot read"),
              std::string::npos);
    for (const std::string command : {"spice", "padstack-dump"}) {
        EXPECT_EQ(RunCli(command + " " + folder.Path().string()).err,
                  "kvcomctl " + command + ": \"" + folder.Path().string() +
                      "\" is a folder, not a via description\n");
    }
    EXPECT_EQ(RunCli("spice").status, 2);
}

TEST(ViaCommand, OutputsThatCannotBeWrittenAreRefusedAndKept) {
    const TestFolder folder;
    const std::string locked = folder.File("locked.cir");
    WriteText(locked, "keep");
    fs::permissions(locked, fs::perms::owner_read);
    CommandResult result = RunCli("spice " + kBoard + " -o " + locked);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kvcomctl spice: Cannot open file \"" + locked +
                              "\": Permission denied (the file is read-only)\n");
    EXPECT_EQ(ReadText(locked), "keep");
    const std::string dump = folder.File("missing/x.dmp");
    result = RunCli("padstack-dump " + kBoard + " -o " + dump);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kvcomctl padstack-dump: Cannot write file \"" + dump +
                              "\": No such file or directory\n");
}

}  // namespace
