#pragma once

#include <iosfwd>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/stimulus/StimulusData.h"

// kvcomctl stimulus pwl: the stimulus's waveform, with or without its
// jitter, written as the stimulus adaptor writes it.

namespace kv::cli {

// The options of `stimulus pwl` after the file: -o, --jitter, --low, --high,
// --rise and --fall.
struct PwlOptions {
    std::string output;
    bool jitter = false;
    double lowLevel = 0.0;
    double highLevel = 1.0;
    double riseTime = -1.0;  // negative: a tenth of the period
    double fallTime = -1.0;
};

// Reads the options, or raises a UsageError.
PwlOptions ParsePwlOptions(Arguments args);

// Builds the waveform of `data` and writes it to the options' output.
int WriteStimulusPwl(CStimulusData& data, const PwlOptions& options, std::ostream& err);

}  // namespace kv::cli
