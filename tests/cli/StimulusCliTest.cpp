// kvcomctl stimulus as a user runs it: show, new and set through the data
// object's load and save, the refusals that keep the file, and pwl.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/TestSupport.h"

namespace {

class StimulusCli : public ::testing::Test {
protected:
    CommandResult Cli(const std::string& arguments) {
        return RunCli(arguments, "XDG_CONFIG_HOME=" + m_folder.File("config"));
    }

    TestFolder m_folder;
};

TEST_F(StimulusCli, SetStoresWhatShowPrintsInTheOrderOfTheFile) {
    const std::string file = m_folder.File("stim.ini");
    ASSERT_EQ(Cli("stimulus new " + file).status, 0);
    ASSERT_EQ(
        Cli("stimulus set " + file + " cyclecount=8 PERIOD=2.5 SEQTYPE=4 BITSEQUENCE=0110").status,
        0);
    const std::string shown = Cli("stimulus show " + file).out;
    EXPECT_EQ(shown.substr(0, 13), "CYCLECOUNT=8\n");
    EXPECT_NE(shown.find("\nPERIOD=2.5\n"), std::string::npos);
    EXPECT_NE(shown.find("\nSEQUENCELENGTH=4\n"), std::string::npos);
    EXPECT_NE(shown.find("\nBITSEQUENCE=0110\n"), std::string::npos);

    const CommandResult cut =
        Cli("stimulus set " + file + " BITSEQUENCE=" + std::string(40000, '1'));
    EXPECT_EQ(cut.status, 0);
    EXPECT_NE(cut.err.find("only its first 32000 are saved"), std::string::npos) << cut.err;
    EXPECT_NE(Cli("stimulus show " + file).out.find("\nSEQUENCELENGTH=32000\n"), std::string::npos);
    for (const char* kind : {"3", "8", "9"}) {
        ASSERT_EQ(Cli("stimulus set " + file + " SEQTYPE=" + kind).status, 0) << kind;
        const CommandResult shownKind = Cli("stimulus show " + file);
        EXPECT_EQ(shownKind.status, 0) << shownKind.err;
        EXPECT_EQ(shownKind.err, "");
    }
}

TEST_F(StimulusCli, SetRefusesWhatThePagesOrALoadWouldRefuse) {
    const std::string period = "Invalid period value\nValid range is 0.001 - 1000 ns";
    const struct {
        std::string assignments;
        int status;
        std::string message;
    } cases[] = {
        {"PERIOD=nan", 1, period},
        {"PERIOD=-5", 1, period},
        {"CYCLECOUNT=1.5", 1, "not a whole number"},
        {"SCALETIME=3", 1, "Valid scale range is 50 - 200"},
        {"JITTERREPEATABLE=2", 1, "must be 0 or 1"},
        {"PTOPMIN=2", 1, "Ptop min value less than Pcross value"},
        {"SEQTYPE=4 BITSEQUENCE=", 1, "needs at least one bit"},
        {"SEQTYPE=2 BITSEQUENCE=0110", 1, "only a custom sequence"},
        {"MASKNAME=" + std::string(21, 'm'), 1, "at most 20 bytes"},
        {"\"$(printf 'MASKNAME=a\\nb')\"", 1, "line break"},
        {"SEQUENCELENGTH=40000", 2, ""},
        {"NOSUCHKEY=1", 2, ""},
    };
    const std::string file = m_folder.File("set.ini");
    Cli("stimulus new " + file);
    const std::string before = ReadText(file);
    for (const auto& c : cases) {
        const CommandResult result = Cli("stimulus set " + file + " " + c.assignments);
        EXPECT_EQ(result.status, c.status) << c.assignments;
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
        EXPECT_EQ(ReadText(file), before) << c.assignments;
    }

    // A custom sequence whose stored length cannot be read is not replaced
    // by whatever bits were there before.
    const std::string custom = m_folder.File("custom.ini");
    const std::string text = "[EYEDIAGRAM]\nSEQTYPE=4\nSEQUENCELENGTH=-1\nBITSEQUENCE=0101\n";
    WriteText(custom, text);
    const CommandResult result = Cli("stimulus set " + custom + " CYCLECOUNT=5");
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("SEQUENCELENGTH=-1"), std::string::npos) << result.err;
    EXPECT_EQ(ReadText(custom), text);
    EXPECT_EQ(Cli("stimulus set " + custom + " BITSEQUENCE=011").status, 0);
}

TEST_F(StimulusCli, ShowSaysWhatIsWrongWithTheFile) {
    // A file beyond the largest settings store is not read at all, whoever runs the test.
    // Empty files and ones that are no INI file are refused alike by the Python module's load.
    const std::string huge = m_folder.File("huge.ini");
    WriteText(huge, "[EYEDIAGRAM]\n" + std::string(16u << 20, ';'));
    const std::pair<std::string, std::string> cases[] = {
        {m_folder.File("missing.ini"), "no such file"},
        {m_folder.Path().string(), "is a folder"},
        {huge, "cannot read " + huge},
    };
    for (const auto& [file, message] : cases) {
        const CommandResult result = Cli("stimulus show " + file);
        EXPECT_EQ(result.status, 1) << file;
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find(message), std::string::npos) << result.err;
    }
    EXPECT_NE(Cli("stimulus set " + huge + " EYECOUNT=2").err.find("cannot read " + huge),
              std::string::npos);
    // A readable file that lacks keys shows the defaults.
    const std::string sparse = m_folder.File("sparse.ini");
    WriteText(sparse, "[OTHER]\nx=1\n");
    const CommandResult defaults = Cli("stimulus show " + sparse);
    EXPECT_EQ(defaults.status, 0);
    EXPECT_EQ(defaults.out.substr(0, 13), "CYCLECOUNT=4\n");
    // Invalid data is shown as the defaults, but not as if all were well.
    WriteText(sparse, "[EYEDIAGRAM]\nCYCLECOUNT=0\n");
    EXPECT_EQ(Cli("stimulus show " + sparse).status, 1);
}

TEST_F(StimulusCli, PwlWritesTheWaveformWithOrWithoutJitter) {
    const std::string file = m_folder.File("stim.ini");
    const std::string cir = m_folder.File("stim.cir");
    ASSERT_EQ(Cli("stimulus new " + file).status, 0);
    ASSERT_EQ(Cli("stimulus set " + file + " MAXJITTER=0.2").status, 0);
    const auto pwl = [&](const std::string& options) {
        std::filesystem::remove(cir);
        const CommandResult result = Cli("stimulus pwl " + file + " -o " + cir + options);
        EXPECT_EQ(result.status, 0) << result.err;
        return ReadText(cir);
    };

    // 0 V to 1 V, ramps a tenth of the 3.3 ns bit interval; the new
    // stimulus's sequence starts 0 1.
    const std::string nominal = pwl("");
    EXPECT_NE(nominal.find("\nVSTIM in 0 PWL(\n+ 0 0 3.3e-09 0 3.63e-09 1 "), std::string::npos)
        << nominal;
    EXPECT_NE(pwl(" --low -1 --high 2.5 --rise 1e-10").find("+ 0 -1 3.3e-09 -1 3.4e-09 2.5 "),
              std::string::npos);
    EXPECT_NE(pwl(" --jitter"), nominal);

    for (const char* options : {"", " -o x.cir --rise 0", " -o x.cir a"}) {
        EXPECT_EQ(Cli("stimulus pwl " + file + options).status, 2) << options;
    }
    // A ramp longer than the bit interval makes no waveform and no file.
    std::filesystem::remove(cir);
    const CommandResult tooLong = Cli("stimulus pwl " + file + " -o " + cir + " --rise 1e-8");
    EXPECT_EQ(tooLong.status, 1);
    EXPECT_NE(tooLong.err.find("no waveform"), std::string::npos) << tooLong.err;
    EXPECT_FALSE(std::filesystem::exists(cir));
}

}  // namespace
