#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/TestSupport.h"

namespace {

class StimulusCli : public ::testing::Test {
protected:
    CommandResult Cli(const std::string& arguments) {
        return RunCli(arguments, "XDG_CONFIG_HOME=" + m_folder.File("config"));
    }
    // `stimulus set` with `assignments` on a fresh file: the result, and
    // whether the file stayed as it was.
    CommandResult RefusedSet(const std::string& assignments) {
        const std::string file = m_folder.File("set.ini");
        Cli("stimulus new " + file);
        const std::string before = ReadText(file);
        CommandResult result = Cli("stimulus set " + file + " " + assignments);
        EXPECT_EQ(ReadText(file), before) << assignments;
        return result;
    }

    TestFolder m_folder;
};

TEST_F(StimulusCli, ValuesAreWhollyNumbersInThePagesRanges) {
    const std::string period = "Invalid period value\nValid range is 0.001 - 1000 ns";
    for (const char* value : {"nan", "inf", "-0", "-5", "1e999", "2.5ns"}) {
        const CommandResult result = RefusedSet(std::string("PERIOD=") + value);
        EXPECT_EQ(result.status, 1) << value;
        EXPECT_NE(result.err.find(period), std::string::npos) << result.err;
    }
    for (const char* assignment : {"CYCLECOUNT=1e999", "EYECOUNT=3abc", "CYCLECOUNT=1.5"}) {
        const CommandResult result = RefusedSet(assignment);
        EXPECT_EQ(result.status, 1) << assignment;
        EXPECT_NE(result.err.find("not a whole number"), std::string::npos) << result.err;
    }
    EXPECT_NE(RefusedSet("CYCLECOUNT=2049").err.find("Valid range is 1 - 2048"), std::string::npos);
    EXPECT_NE(RefusedSet("DUTYCYCLE=99.99999999999999").err.find("Valid range is 1 - 99"),
              std::string::npos);
    EXPECT_NE(RefusedSet("SCALETIME=3").err.find("Valid scale range is 50 - 200"),
              std::string::npos);
    EXPECT_NE(RefusedSet("PTOPMIN=2").err.find("Ptop min value less than Pcross value"),
              std::string::npos);
    EXPECT_NE(RefusedSet("MAXJITTER=4").err.find("less than the bit interval"), std::string::npos);
    EXPECT_EQ(RefusedSet("SEQUENCELENGTH=40000").status, 2);
    EXPECT_EQ(RefusedSet("SEQTYPE=5").status, 1);
}

TEST_F(StimulusCli, ValuesThatWouldNotLoadBackAreRefused) {
    EXPECT_NE(RefusedSet("SEQTYPE=4 BITSEQUENCE=").err.find("needs at least one bit"),
              std::string::npos);
    EXPECT_NE(RefusedSet("MASKNAME=" + std::string(21, 'm')).err.find("at most 20 bytes"),
              std::string::npos);
    EXPECT_NE(RefusedSet("\"$(printf 'MASKNAME=a\\nb')\"").err.find("line break"),
              std::string::npos);
    EXPECT_NE(RefusedSet("SEQTYPE=2 BITSEQUENCE=0110").err.find("only a custom sequence"),
              std::string::npos);

    // A custom sequence whose stored length cannot be read is not replaced
    // by whatever bits were there before.
    for (const char* length : {"-1", "40000"}) {
        const std::string file = m_folder.File("custom.ini");
        const std::string text = std::string("[EYEDIAGRAM]\nSEQTYPE=4\nSEQUENCELENGTH=") + length +
                                 "\nBITSEQUENCE=0101\n";
        WriteText(file, text);
        const CommandResult result = Cli("stimulus set " + file + " CYCLECOUNT=5");
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.err.find("SEQUENCELENGTH=" + std::string(length)), std::string::npos);
        EXPECT_EQ(ReadText(file), text);
        EXPECT_EQ(Cli("stimulus set " + file + " BITSEQUENCE=011").status, 0);
    }
}

TEST_F(StimulusCli, LongSequencesAreCutWithANoteAndEveryKindReloads) {
    const std::string file = m_folder.File("long.ini");
    const CommandResult cut =
        Cli("stimulus set " + file + " SEQTYPE=4 BITSEQUENCE=" + std::string(40000, '1'));
    EXPECT_EQ(cut.status, 0);
    EXPECT_NE(cut.err.find("only its first 32000 are saved"), std::string::npos) << cut.err;
    EXPECT_NE(Cli("stimulus show " + file).out.find("\nSEQUENCELENGTH=32000\n"), std::string::npos);
    for (const char* kind : {"3", "8", "9"}) {
        ASSERT_EQ(Cli("stimulus set " + file + " SEQTYPE=" + kind).status, 0) << kind;
        const CommandResult shown = Cli("stimulus show " + file);
        EXPECT_EQ(shown.status, 0) << shown.err;
        EXPECT_EQ(shown.err, "");
    }
}

TEST_F(StimulusCli, ShowSaysWhatIsWrongWithTheFile) {
    const std::string empty = m_folder.File("empty.ini");
    WriteText(empty, "\n");
    const std::string garbage = m_folder.File("garbage.ini");
    WriteText(garbage, std::string("\x7f"
                                   "ELF\0\0binary",
                                   11));
    const std::string words = m_folder.File("words.ini");
    WriteText(words, "no sections here\n");
    const std::pair<std::string, std::string> cases[] = {
        {m_folder.File("missing.ini"), "no such file"},
        {m_folder.Path().string(), "is a folder"},
        {empty, "is empty"},
        {garbage, "is no INI file"},
        {words, "is no INI file"},
    };
    for (const auto& [file, message] : cases) {
        const CommandResult result = Cli("stimulus show " + file);
        EXPECT_EQ(result.status, 1) << file;
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find(message), std::string::npos) << result.err;
    }
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

TEST_F(StimulusCli, UnreadableFilesAreCalledUnreadable) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root reads every file";
    }
    const std::string file = m_folder.File("locked.ini");
    WriteText(file, "[EYEDIAGRAM]\nCYCLECOUNT=3\n");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    for (const char* action : {"show ", "set "}) {
        const CommandResult result =
            Cli(std::string("stimulus ") + action + file + (action[1] == 'e' ? " EYECOUNT=2" : ""));
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.err.find("cannot read " + file), std::string::npos) << result.err;
    }
}

TEST_F(StimulusCli, SetKeepsTheLineEndsAndBytesOfTheRest) {
    const std::string file = m_folder.File("crlf.ini");
    const std::string other = "[HOST]\r\na\r\r\nb=1\r\n\r\n";
    WriteText(file, other + "[EYEDIAGRAM]\r\nCYCLECOUNT=3\r\n");
    ASSERT_EQ(Cli("stimulus set " + file + " EYECOUNT=2").status, 0);
    const std::string text = ReadText(file);
    EXPECT_EQ(text.substr(0, other.size()), other);
    EXPECT_NE(text.find("\r\nCYCLECOUNT=3\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\nEYECOUNT=2\r\n"), std::string::npos);
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
    const std::string jittered = pwl(" --jitter");
    EXPECT_NE(jittered, nominal);
    EXPECT_EQ(pwl(" --jitter"), jittered);  // repeatable, as a new stimulus is
    ASSERT_EQ(Cli("stimulus set " + file + " JITTERREPEATABLE=0").status, 0);
    EXPECT_NE(pwl(" --jitter"), pwl(" --jitter"));

    for (const char* options : {"", " -o x.cir --rise 0", " -o x.cir --low nan", " -o x.cir a"}) {
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
