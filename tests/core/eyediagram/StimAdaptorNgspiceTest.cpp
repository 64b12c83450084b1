#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "tests/support/TestSupport.h"

// A real SPICE reader runs the source WritePwl wrote into a resistor, and the
// node's voltage in the middle of every bit (every phase, for an oscillator)
// must be that bit's level.

namespace {

bool IsWordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// The number after "NAME =" in ngspice's output, NAME standing as a word of its own.
std::optional<double> MeasuredValue(const std::string& out, const std::string& name) {
    for (std::size_t at = out.find(name); at != std::string::npos; at = out.find(name, at + 1)) {
        std::size_t next = at + name.size();
        if ((at > 0 && IsWordChar(out[at - 1])) || (next < out.size() && IsWordChar(out[next]))) {
            continue;
        }
        next = out.find_first_not_of(" \t", next);
        if (next == std::string::npos || out[next] != '=') {
            continue;
        }
        const char* start = out.c_str() + next + 1;
        char* end = nullptr;
        const double value = std::strtod(start, &end);
        if (end != start) {
            return value;
        }
    }
    return std::nullopt;
}

constexpr double kLow = 0.2;
constexpr double kHigh = 1.8;

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.12g", value);
    return text;
}

struct Probe {
    double time;
    double level;
};

std::vector<double> RunNgspice(const TestFolder& folder, const kv::CEyeStimAdaptor& adaptor,
                               const std::vector<Probe>& probes) {
    EXPECT_TRUE(adaptor.WritePwl(folder.File("stim.cir").c_str(), "STIM", "drive"));
    std::string bench = "* stimulus bench\n.include stim.cir\nRLOAD drive 0 1k\n";
    bench += ".tran 10p " + Number(adaptor.GetDuration()) + "\n.control\nrun\n";
    for (std::size_t i = 0; i < probes.size(); ++i) {
        bench += "meas tran p" + std::to_string(i) + " FIND v(drive) AT=" + Number(probes[i].time) +
                 "\n";
    }
    bench += "quit\n.endc\n.end\n";
    WriteText(folder.File("bench.cir"), bench);
    const CommandResult run = RunShell("cd " + folder.Path().string() + " && ngspice -b bench.cir");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    std::vector<double> values;
    for (std::size_t i = 0; i < probes.size(); ++i) {
        std::string name = "p";
        name += std::to_string(i);
        const std::optional<double> value = MeasuredValue(run.out, name);
        if (!value) {
            ADD_FAILURE() << "no value for probe " << i << "\n" << run.out << run.err;
            return values;
        }
        values.push_back(*value);
    }
    return values;
}

TEST(StimAdaptorNgspice, EveryBitCentreIsTheBitsLevel) {
    const TestFolder folder;
    kv::CStimulusData data;  // the 31-bit pseudo-random sequence
    data.SetCycleCount(2);
    data.SetPeriod(2.0);
    kv::CEyeStimAdaptor adaptor;
    ASSERT_GT(adaptor.Build(&data, kLow, kHigh, 0.2e-9, 0.3e-9), 0);
    std::vector<Probe> probes;
    for (int cycle = 0; cycle < 2; ++cycle) {
        for (int i = 0; i < data.GetBitCount(); ++i) {
            const double centre = ((cycle * data.GetBitCount() + i) + 0.5) * 2e-9;
            probes.push_back({centre, data.GetBit(i) ? kHigh : kLow});
        }
    }
    const std::vector<double> values = RunNgspice(folder, adaptor, probes);
    ASSERT_EQ(values.size(), probes.size());
    for (std::size_t i = 0; i < probes.size(); ++i) {
        EXPECT_NEAR(values[i], probes[i].level, 1e-3) << "bit " << i;
    }
}

TEST(StimAdaptorNgspice, OscillatorIsHighForTheDutyCycle) {
    const TestFolder folder;
    kv::CStimulusData data;
    data.SetSeqType(kv::seq::kToggling);
    data.SetBitVector({0, 1});
    data.SetCycleCount(3);
    data.SetPeriod(10.0);
    data.SetDutyCycle(30.0);
    kv::CEyeStimAdaptor adaptor;
    ASSERT_GT(adaptor.Build(&data, kLow, kHigh, 0.5e-9, 0.5e-9), 0);
    std::vector<Probe> probes;
    for (int cycle = 0; cycle < 3; ++cycle) {
        probes.push_back({(cycle * 10 + 1.5) * 1e-9, kHigh});
        probes.push_back({(cycle * 10 + 6.5) * 1e-9, kLow});
    }
    const std::vector<double> values = RunNgspice(folder, adaptor, probes);
    ASSERT_EQ(values.size(), probes.size());
    for (std::size_t i = 0; i < probes.size(); ++i) {
        EXPECT_NEAR(values[i], probes[i].level, 1e-3) << "probe " << i;
    }
}

}  // namespace
