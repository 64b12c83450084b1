#include "core/eye/WaveformFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/TestSupport.h"

namespace kv {
namespace {

// The simulator writes one RC step response in every form it has; each must
// read back as the same samples (wrdata keeps nine significant digits).
TEST(WaveformFile, ReadsEveryFormTheSimulatorWrites) {
    if (RunShell("command -v ngspice").status != 0) {
        GTEST_SKIP() << "ngspice is not installed";
    }
    const TestFolder folder;
    WriteText(folder.File("rc.cir"), R"(rc step
V1 in 0 PULSE(0 1 0 1n 1n 5n 10n)
R1 in out 50
C1 out 0 10p
.op
.tran 0.5n 20n
.control
run
set filetype=ascii
write ascii.raw v(out) v(in)
set filetype=binary
write binary.raw
wrdata pairs.txt v(out) v(in)
set wr_vecnames
wrdata named.txt v(out) v(in)
set wr_singlescale
wrdata single.txt v(out) v(in)
quit
.endc
.end
)");
    ASSERT_EQ(RunShell("cd " + folder.Path().string() + " && ngspice -b rc.cir").status, 0);

    const auto reference = ReadWaveformFile(folder.File("binary.raw"), "out");
    ASSERT_TRUE(reference.waveform) << reference.error;
    EXPECT_EQ(reference.waveform->name, "v(out)");
    ASSERT_GT(reference.waveform->time.size(), 20u);
    EXPECT_NEAR(reference.waveform->value.back(), 0.0, 0.05);  // discharged after the pulse

    const struct {
        const char* file;
        const char* vector;
        double tolerance;
    } forms[] = {{"ascii.raw", "v(out)", 1e-14},  // 16 digits in text
                 {"ascii.raw", "", 1e-14},        // the first vector beside the scale
                 {"pairs.txt", "", 1e-8},
                 {"named.txt", "V(OUT)", 1e-8},
                 {"single.txt", "out", 1e-8}};
    for (const auto& form : forms) {
        SCOPED_TRACE(form.file);
        const auto read = ReadWaveformFile(folder.File(form.file), form.vector);
        ASSERT_TRUE(read.waveform) << read.error;
        ASSERT_EQ(read.waveform->time.size(), reference.waveform->time.size());
        for (std::size_t i = 0; i < read.waveform->time.size(); ++i) {
            const double scale = std::abs(reference.waveform->value[i]) + 1e-12;
            EXPECT_NEAR(read.waveform->time[i], reference.waveform->time[i],
                        form.tolerance * reference.waveform->time[i]);
            EXPECT_NEAR(read.waveform->value[i], reference.waveform->value[i],
                        form.tolerance * scale + 1e-15);
        }
    }
    const auto input = ReadWaveformFile(folder.File("named.txt"), "in");
    ASSERT_TRUE(input.waveform) << input.error;
    EXPECT_NEAR(input.waveform->value[reference.waveform->time.size() / 4], 1.0, 1e-6);
}

TEST(WaveformFile, ReadsCsvTablesWithOrWithoutNames) {
    const auto plain = ReadWaveformBytes("0,0\n1e-9,1.5\n2e-9,0.25\n", "", "plain.csv");
    ASSERT_TRUE(plain.waveform) << plain.error;
    EXPECT_EQ(plain.waveform->time, (std::vector<double>{0, 1e-9, 2e-9}));
    EXPECT_EQ(plain.waveform->value, (std::vector<double>{0, 1.5, 0.25}));

    const auto named =
        ReadWaveformBytes("# from a scope\ntime; a; b\n0; 1; 2\n\n1; 3; 4\n", "B", "named.csv");
    ASSERT_TRUE(named.waveform) << named.error;
    EXPECT_EQ(named.waveform->name, "b");
    EXPECT_EQ(named.waveform->value, (std::vector<double>{2, 4}));
}

// Every fault names the file and where it is, and nothing is read.
TEST(WaveformFile, RefusesBadFilesSayingWhereAndWhy) {
    std::string binary =
        "Title: t\nPlotname: Transient Analysis\nFlags: real\nNo. Variables: 2\n"
        "No. Points: 3\nVariables:\n\t0\ttime\ttime\n\t1\tv(a)\tvoltage\nBinary:\n";
    const std::size_t dataStart = binary.size();
    for (double number : {0.0, 1.0, 1e-9, 2.0}) {  // two whole points of three
        char bytes[sizeof number];
        std::memcpy(bytes, &number, sizeof number);
        binary.append(bytes, sizeof bytes);
    }
    const struct {
        std::string bytes;
        std::string vector;
        std::string message;
    } cases[] = {
        {"", "", "f: holds no samples"},
        {"0,1\n", "", "f: holds 1 samples; a waveform needs at least 2"},
        {"0;1\n1e-9;1,5\n", "", "f: line 2: column 2 holds \"1,5\", which is no finite number"},
        {"0 1\n2 1\n1 1\n", "", "f: line 3: the time 1 s comes after 2 s"},
        {"0 1 2\n1 1\n", "", "f: line 2: has 2 columns where the first line has 3"},
        {"0 nan\n1 1\n", "", "f: line 1: column 2 holds \"nan\", which is no finite number"},
        {"0\n1\n", "", "f: has no value column beside the time"},
        {"0 1\n1 1\n", "x", "f: names no columns, so it has no vector \"x\""},
        {"t a b\n0 1 2\n", "c", "f: has no vector \"c\"; it has a, b"},
        {binary, "",
         "f: offset " + std::to_string(dataStart + 32) +
             ": the binary values end after 2 of 3 points"},
        {"Title: t\nPlotname: AC Analysis\nFlags: complex\nNo. Variables: 2\nNo. Points: 1\n"
         "Variables:\n\t0\tfrequency\tfrequency\n\t1\tv(a)\tvoltage\nValues:\n 0\t1,0\n\t2,3\n",
         "", "f: holds no real plot over time (it holds \"AC Analysis\")"},
        {"Title: t\nNo. Variables: 2\nNo. Points: 2\nVariables:\n\t0\ttime\ttime\n"
         "\t1\tv(a)\tvoltage\nValues:\n 0\t0\n\t1\n 2\t1e-9\n\t1\n",
         "", "f: line 10: point 1 is numbered \"2\""},
        {"Title: t\nNo. Variables: 2\nNo. Points: 2\nVariables:\n\t0\ttime\ttime\n"
         "\t1\tv(a)\tvoltage\nValues:\n 0\t0\n\t1\n",
         "", "f: the values end after 1 of 2 points"},
        {"Title: t\nNo. Variables: 2\nValues:\n", "",
         "f: line 3: the values begin before their 2 variables are named"},
        {"Title: t\nNo. Points: many\n", "", "f: line 2: No. Points \"many\" is no count"},
    };
    for (const auto& bad : cases) {
        const auto read = ReadWaveformBytes(bad.bytes, bad.vector, "f");
        EXPECT_FALSE(read.waveform) << bad.message;
        EXPECT_EQ(read.error, bad.message);
    }
    const auto missing = ReadWaveformFile("/nonexistent/wave.raw");
    EXPECT_FALSE(missing.waveform);
    EXPECT_EQ(missing.error.rfind("/nonexistent/wave.raw: cannot be read: ", 0), 0u)
        << missing.error;
}

}  // namespace
}  // namespace kv
