// kvcomctl eye as a user runs it: the measurements as text and as JSON, the
// stimulus's timing and mask, and the refusals with their exit codes.

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>

#include "core/shared/NumberText.h"
#include "tests/support/TestSupport.h"

namespace {

constexpr double kInterval = 1e-9;
// Starts and ends low, so the repeated pattern has as many rising as
// falling edges.
constexpr std::string_view kPattern = "0110100111010001101100101110010011100010";
constexpr int kRepeats = 5;  // 200 unit intervals

class EyeCli : public ::testing::Test {
protected:
    EyeCli() {
        WriteWaveform();
        WriteText(m_stimulus, "[EYEDIAGRAM]\nPERIOD=1\n");
    }

    // The pattern from 0 to 1 V with ramps of a fifth of the interval, every
    // rising edge 5 % of the interval late: the crossings then lie 2.5 % of
    // the interval either side of the ideal clock, and the levels are flat
    // wherever the eye reads them.
    void WriteWaveform() {
        std::string csv = "time,v(out)\n";
        const auto corner = [&csv](double units, int level) {
            csv +=
                kv::FormatSignificant(units * kInterval, 17) + "," + std::to_string(level) + "\n";
        };
        std::string bits;
        for (int i = 0; i < kRepeats; ++i) {
            bits += kPattern;
        }
        corner(0.0, 0);
        for (std::size_t i = 1; i < bits.size(); ++i) {
            if (bits[i] != bits[i - 1]) {
                const double edge = static_cast<double>(i) + (bits[i] == '1' ? 0.05 : 0.0);
                corner(edge - 0.1, bits[i - 1] - '0');
                corner(edge + 0.1, bits[i] - '0');
            }
        }
        corner(static_cast<double>(bits.size()), 0);
        WriteText(m_waveform, csv);
    }

    CommandResult Eye(const std::string& arguments) { return RunCli("eye " + arguments); }

    TestFolder m_folder;
    const std::string m_waveform = m_folder.File("line.csv");
    const std::string m_stimulus = m_folder.File("stimulus.ini");
};

// The value printed after `"key": ` in a JSON text, up to the comma or end
// of line.
std::string JsonValue(const std::string& json, const std::string& key) {
    const std::string opening = "\"" + key + "\": ";
    const std::size_t at = json.find(opening);
    if (at == std::string::npos) {
        return "(missing)";
    }
    const std::size_t from = at + opening.size();
    return json.substr(from, json.find_first_of(",\n", from) - from);
}

TEST_F(EyeCli, PrintsEveryMeasurementWithItsUnit) {
    const CommandResult result = Eye(m_waveform + " --interval 1e-9");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out,
              "folded samples                200000\n"
              "unit intervals                200\n"
              "level 0                       0.0 V\n"
              "level 1                       1.00 V\n"
              "noise 0                       0.0 V\n"
              "noise 1                       0.0 V\n"
              "eye height                    1.00 V\n"
              "eye width                     850.000 ps\n"
              "eye centre time               525.000 ps\n"
              "crossing jitter rms           25.000 ps\n"
              "crossing jitter peak-to-peak  50.000 ps\n");
}

TEST_F(EyeCli, JsonHasFixedKeysInSiUnitsAndNullForWhatWasNotTested) {
    const CommandResult result = Eye(m_waveform + " --interval 1e-9 --json");
    EXPECT_EQ(result.status, 0) << result.err;
    const std::string& json = result.out;
    std::istringstream keys(
        "samples unit_intervals level0 level1 noise0 noise1 eye_height eye_width eye_centre_time "
        "crossing_jitter_rms crossing_jitter_peak_to_peak mask_hits mask_margin_percent");
    std::size_t previous = 0;
    std::size_t count = 0;
    for (std::string key; keys >> key; ++count) {
        const std::size_t at = json.find("\"" + key + "\": ");
        ASSERT_NE(at, std::string::npos) << key << "\n" << json;
        EXPECT_GT(at, previous) << key;
        previous = at;
    }
    EXPECT_EQ(json.front(), '{');
    EXPECT_EQ(json.substr(json.size() - 2), "}\n");
    EXPECT_EQ(std::count(json.begin(), json.end(), '\n'), count + 2);
    EXPECT_EQ(JsonValue(json, "mask_hits"), "null");
    EXPECT_EQ(JsonValue(json, "mask_margin_percent"), "null");
}

TEST_F(EyeCli, TakesTheTimingFromTheStimulusUnlessOptionsSayOtherwise) {
    WriteText(m_stimulus, "[EYEDIAGRAM]\nPERIOD=1\nEYECOUNT=2\nSKIPBITS=100\n");
    const std::string fromFile = Eye(m_waveform + " --json --stimulus " + m_stimulus).out;
    EXPECT_EQ(fromFile, Eye(m_waveform + " --json --interval 1e-9 --eyes 2 --skip 100").out);
    EXPECT_EQ(JsonValue(fromFile, "unit_intervals"), "100");
    EXPECT_EQ(Eye(m_waveform + " --json --stimulus " + m_stimulus + " --eyes 1 --skip 0").out,
              Eye(m_waveform + " --json --interval 1e-9").out);
}

TEST_F(EyeCli, MaskHitsExitWithOne) {
    // The default mask is drawn for 0 to 5 V: scaled to a fifth it lies
    // within this eye, scaled further its opening reaches the top level.
    const struct {
        const char* scale;
        int status;
        const char* verdict;
        bool hits;
    } cases[] = {{"0.2", 0, "passed", false}, {"0.3", 1, "failed", true}};
    for (const auto& c : cases) {
        WriteText(m_stimulus, std::string("[EYEDIAGRAM]\nPERIOD=1\nSCALEVOLT=") + c.scale + "\n");
        const CommandResult text = Eye(m_waveform + " --mask --stimulus " + m_stimulus);
        EXPECT_EQ(text.status, c.status) << c.scale << text.err;
        EXPECT_NE(text.out.find("\nmask hits "), std::string::npos) << text.out;
        EXPECT_NE(text.out.find("\nmask margin "), std::string::npos) << text.out;
        EXPECT_NE(text.out.find(std::string("\nmask                          ") + c.verdict + "\n"),
                  std::string::npos)
            << text.out;
        const CommandResult json = Eye(m_waveform + " --mask --json --stimulus " + m_stimulus);
        EXPECT_EQ(json.status, c.status) << c.scale;
        EXPECT_EQ(JsonValue(json.out, "mask_hits") != "0", c.hits) << json.out;
    }
    // Without --mask the stimulus's mask is not tested.
    const CommandResult untested = Eye(m_waveform + " --stimulus " + m_stimulus);
    EXPECT_EQ(untested.status, 0);
    EXPECT_EQ(untested.out.find("mask"), std::string::npos);
}

TEST_F(EyeCli, BadArgumentsAreUsageErrors) {
    const std::string w = m_waveform;
    const std::pair<std::string, const char*> cases[] = {
        {"", "one WAVEFORM"},
        {w + " " + w + " --interval 1e-9", "one WAVEFORM"},
        {w, "either --stimulus"},
        {w + " --interval 1e-9 --stimulus " + m_stimulus, "either --stimulus"},
        {w + " --interval 0", "--interval must be"},
        {w + " --interval -1e-9", "--interval must be"},
        {w + " --interval 1ns", "--interval must be"},
        {w + " --interval 1e-9 --eyes 0", "--eyes must be from 1 to 3"},
        {w + " --interval 1e-9 --eyes 4", "--eyes must be from 1 to 3"},
        {w + " --interval 1e-9 --eyes two", "whole number"},
        {w + " --interval 1e-9 --skip -1", "--skip must be from 0"},
        {w + " --interval 1e-9 --skip 3000000000", "--skip must be from 0"},
        {w + " --interval 1e-9 --mask", "--mask needs --stimulus"},
        {w + " --interval 1e-9 -o eye.jpg", "ending in .png or .svg"},
        {w + " --interval 1e-9 --vector", "needs a value"},
        {w + " --interval 1e-9 --colour", "unknown option"},
    };
    for (const auto& [arguments, message] : cases) {
        const CommandResult result = Eye(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.out, "") << arguments;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_NE(result.err.find(message), std::string::npos) << arguments << ": " << result.err;
    }
}

// The image comes from the library's own eye view, loaded as a host loads it.
TEST_F(EyeCli, DrawsTheEyeThroughTheLibrary) {
    for (const std::string name : {"e.png", "e.svg"}) {
        const CommandResult result = Eye(m_waveform + " --interval 1e-9 -o " + m_folder.File(name));
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        const std::string image = ReadText(m_folder.File(name));
        EXPECT_EQ(image.substr(0, name == "e.png" ? 4 : 5), name == "e.png" ? "\x89PNG" : "<?xml")
            << name;
    }
}

TEST_F(EyeCli, FilesThatCannotServeSayWhyAndExitWithOne) {
    const std::string invalid = m_folder.File("invalid.ini");
    WriteText(invalid, "[EYEDIAGRAM]\nCYCLECOUNT=0\n");
    const std::string disordered = m_folder.File("disordered.ini");
    WriteText(disordered, "[EYEDIAGRAM]\nPERIOD=1\nPTOPMIN=2\n");
    const struct {
        std::string arguments;
        std::string message;
        bool measured;  // the measurements are printed before the refusal
    } cases[] = {
        {m_folder.File("none.raw") + " --interval 1e-9", m_folder.File("none.raw"), false},
        {m_waveform + " --stimulus " + m_folder.File("none.ini"), "no such file", false},
        {m_waveform + " --stimulus " + invalid, "holds invalid stimulus data", false},
        {m_waveform + " --stimulus " + m_stimulus + " --skip 300", "makes no eye", false},
        {m_waveform + " --interval 1e-6", "holds no eye centre", true},
        {m_waveform + " --mask --stimulus " + disordered, "Ptop min value less than Pcross value",
         true},
    };
    for (const auto& c : cases) {
        const CommandResult result = Eye(c.arguments);
        EXPECT_EQ(result.status, 1) << c.arguments;
        EXPECT_EQ(result.out.find("eye height") != std::string::npos, c.measured)
            << c.arguments << ": " << result.out;
        EXPECT_EQ(result.err.rfind("kvcomctl eye: ", 0), 0u) << result.err;
        EXPECT_NE(result.err.find(c.message), std::string::npos)
            << c.arguments << ": " << result.err;
    }
}

}  // namespace
