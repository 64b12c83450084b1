#include "apps/kvcomctl/StimulusPwl.h"

#include <iostream>

#include "core/eyediagram/EyeStimAdaptor.h"
#include "core/eyediagram/StimWaveform.h"
#include "core/shared/FileIo.h"

namespace kv::cli {

PwlOptions ParsePwlOptions(Arguments args) {
    const ParsedArguments parsed(args, {"--jitter"}, {"-o", "--low", "--high", "--rise", "--fall"});
    parsed.Positional(0, "only options after the file");
    PwlOptions options;
    const auto output = parsed.Value("-o");
    if (!output || output->empty()) {
        throw UsageError{"pwl needs -o FILE.cir"};
    }
    options.output = std::string(*output);
    options.jitter = parsed.Has("--jitter");
    options.lowLevel = parsed.Real("--low").value_or(options.lowLevel);
    options.highLevel = parsed.Real("--high").value_or(options.highLevel);
    for (const auto& [name, time] :
         {std::pair{"--rise", &options.riseTime}, std::pair{"--fall", &options.fallTime}}) {
        if (const auto value = parsed.Real(name)) {
            if (*value <= 0.0) {
                throw UsageError{std::string(name) + " must be a time above 0 s"};
            }
            *time = *value;
        }
    }
    return options;
}

int WriteStimulusPwl(CStimulusData& data, const PwlOptions& options, std::ostream& err) {
    const double tenth = data.GetPeriod() * 1e-9 * 0.1;
    const double rise = options.riseTime > 0.0 ? options.riseTime : tenth;
    const double fall = options.fallTime > 0.0 ? options.fallTime : tenth;
    CEyeStimAdaptor adaptor;
    const int32_t count =
        options.jitter
            ? adaptor.BuildJittered(&data, options.lowLevel, options.highLevel, rise, fall)
            : adaptor.Build(&data, options.lowLevel, options.highLevel, rise, fall);
    if (count < 0) {
        err << "kvcomctl stimulus: " << NoWaveformMessage(options.jitter) << '\n';
        return kExitFailure;
    }
    const std::span<const STIMPOINT> points(adaptor.GetPoints(), static_cast<std::size_t>(count));
    const FileResult written =
        ReplaceFileAtomically(options.output, PwlSourceText(points, "STIM", "in"));
    if (!written.ok) {
        err << "kvcomctl stimulus: Cannot open file \"" << options.output
            << "\": " << written.reason << '\n';
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace kv::cli
