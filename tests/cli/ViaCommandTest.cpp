// kvcomctl spice and padstack-dump on the example boards, on broken descriptions and on
// outputs that cannot be written.

#include <gtest/gtest.h>

#include "tests/support/SpiceExportText.h"
#include "tests/support/TestSupport.h"

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

class ViaCommand : public ::testing::Test {
protected:
    // Runs kvcomctl with `arguments`; keeps its outputs in m_output and m_error.
    int Run(const std::string& arguments) {
        const CommandResult result = RunCli(arguments);
        m_output = result.out;
        m_error = result.err;
        return result.status;
    }

    fs::path Example(const std::string& name) { return fs::path(KV_EXAMPLES_DIR) / name; }

    // Writes `json` as a description and returns its path.
    fs::path Description(const std::string& json) {
        const fs::path path = m_folder.Path() / "via.json";
        WriteText(path, json);
        return path;
    }

    TestFolder m_folder;
    std::string m_error;
    std::string m_output;
};

// Everything but the time must match to the byte.
void ExpectSameBesidesTheTime(const std::string& actual, const std::string& expected) {
    EXPECT_EQ(kv::test::WithoutExportTime(actual), kv::test::WithoutExportTime(expected));
    EXPECT_NE(kv::test::WithoutExportTime(actual), actual) << "no time stamp in\n" << actual;
}

TEST_F(ViaCommand, ExampleBoardsGiveTheHandWrittenSubcircuitsAndDump) {
    for (const std::string name : {"via_signal_6layer", "via_pair_6layer"}) {
        const fs::path output = m_folder.Path() / (name + ".cir");
        ASSERT_EQ(Run("spice " + Example(name + ".json").string() + " -o " + output.string()), 0)
            << m_error;
        ExpectSameBesidesTheTime(ReadText(output),
                                 ReadText(fs::path(KV_TEST_DATA_DIR) / (name + ".cir")));
    }
    ASSERT_EQ(Run("padstack-dump " + Example("via_signal_6layer.json").string()), 0) << m_error;
    EXPECT_EQ(m_output, ReadText(fs::path(KV_TEST_DATA_DIR) / "via_signal_6layer.dmp"));

    ASSERT_EQ(Run("padstack-dump " + Example("via_signal_6layer.json").string() + " -o " +
                  m_folder.Path().string()),
              0);
    EXPECT_EQ(ReadText(m_folder.Path() / "ViaVizData.dmp"),
              ReadText(fs::path(KV_TEST_DATA_DIR) / "via_signal_6layer.dmp"));
}

TEST_F(ViaCommand, BrokenDescriptionsNameTheFieldAndWriteNothing) {
    const std::string board = ReadText(Example("via_signal_6layer.json"));
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
    for (const auto& broken : cases) {
        std::string json = board;
        const std::size_t at = json.rfind(broken.from);
        ASSERT_NE(at, std::string::npos) << broken.from;
        json.replace(at, broken.from.size(), broken.to);
        const fs::path output = m_folder.Path() / "out.cir";
        const fs::path described = Description(json);
        EXPECT_EQ(Run("spice " + described.string() + " -o " + output.string()), 1)
            << broken.message;
        EXPECT_NE(m_error.find(broken.message), std::string::npos) << broken.message << "\n"
                                                                   << m_error;
        // Named by file, with none of the parser's internal tags.
        EXPECT_EQ(m_error.find("kvcomctl spice: " + described.string() + ": "), 0u) << m_error;
        EXPECT_EQ(m_error.find("json.exception"), std::string::npos) << m_error;
        EXPECT_FALSE(fs::exists(output)) << broken.message;
    }
    EXPECT_EQ(Run("spice " + (m_folder.Path() / "absent.json").string()), 1);
    EXPECT_NE(m_error.find("cannot read"), std::string::npos);
    for (const std::string command : {"spice ", "padstack-dump "}) {
        EXPECT_EQ(Run(command + m_folder.Path().string()), 1);
        EXPECT_EQ(m_error, "kvcomctl " + command.substr(0, command.size() - 1) + ": \"" +
                               m_folder.Path().string() +
                               "\" is a folder, not a via description\n");
    }
    EXPECT_EQ(Run("spice"), 2);
}

TEST_F(ViaCommand, OutputsThatCannotBeWrittenAreRefusedAndKept) {
    const std::string board = Example("via_signal_6layer.json").string();
    const fs::path locked = m_folder.Path() / "locked.cir";
    WriteText(locked, "keep");
    fs::permissions(locked, fs::perms::owner_read);
    EXPECT_EQ(Run("spice " + board + " -o " + locked.string()), 1);
    EXPECT_EQ(m_error, "kvcomctl spice: Cannot open file \"" + locked.string() +
                           "\": Permission denied (the file is read-only)\n");
    EXPECT_EQ(ReadText(locked), "keep");
    const fs::path dump = m_folder.Path() / "missing" / "x.dmp";
    EXPECT_EQ(Run("padstack-dump " + board + " -o " + dump.string()), 1);
    EXPECT_EQ(m_error, "kvcomctl padstack-dump: Cannot write file \"" + dump.string() +
                           "\": No such file or directory\n");
}

}  // namespace
