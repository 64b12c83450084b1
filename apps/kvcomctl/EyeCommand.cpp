#include <cstdint>
#include <iostream>
#include <limits>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "apps/kvcomctl/EyeImage.h"
#include "apps/kvcomctl/EyeReport.h"
#include "apps/kvcomctl/StimulusFile.h"
#include "core/eye/EyeAnalysis.h"
#include "core/eye/WaveformFile.h"
#include "core/shared/NumberText.h"
#include "core/stimulus/EyeMask.h"

// kvcomctl eye WAVEFORM (--stimulus FILE.ini | --interval SECONDS): the eye of
// a simulated waveform, measured as a host's eye view measures it, and tested
// against the stimulus's mask.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl eye WAVEFORM (--stimulus FILE.ini | --interval SECONDS)\n"
    "                    [--eyes N] [--skip N] [--vector NAME] [--mask] [--json]\n"
    "                    [-o EYE.png|EYE.svg]\n"
    "\n"
    "Folds the waveform into an eye and prints its measurements: folded samples,\n"
    "unit intervals, levels 0 and 1 and their noise, eye height and width, the\n"
    "first eye centre's time and the crossing jitter (rms and peak-to-peak).\n"
    "\n"
    "  WAVEFORM     a raw file of the SPICE simulator (text or binary), its wrdata\n"
    "               text or a CSV table; time in seconds, then values in volts\n"
    "  --stimulus   takes the bit interval (PERIOD), the eye count (EYECOUNT),\n"
    "               the skipped bits (SKIPBITS) and the mask from the stimulus\n"
    "               data in FILE.ini, read as 'kvcomctl stimulus show' reads it\n"
    "  --interval   the bit interval in seconds instead (eyes 1, skip 0)\n"
    "  --eyes       unit intervals shown side by side, 1 to 3\n"
    "  --skip       unit intervals left out at the start of the waveform\n"
    "  --vector     the vector to read (\"out\" also finds \"v(out)\"); by default\n"
    "               the first one that is not time\n"
    "  --mask       tests the eye against the stimulus's mask (needs --stimulus)\n"
    "               and prints its hits, margin and \"passed\" or \"failed\"\n"
    "  --json       prints one JSON object instead: samples, unit_intervals,\n"
    "               level0, level1, noise0, noise1, eye_height, eye_width,\n"
    "               eye_centre_time, crossing_jitter_rms,\n"
    "               crossing_jitter_peak_to_peak, mask_hits, mask_margin_percent\n"
    "               in volts, seconds and percent; null for what was not\n"
    "               measured or tested\n"
    "  -o           draws the eye, its mask with --mask, and the measurements\n"
    "               into a PNG or SVG image of 1000 x 600 pixels, through the\n"
    "               library's eye view (KVCOMCTL_LIBRARY names the library when\n"
    "               it is not installed beside this program)\n"
    "\n"
    "Exit status: 0 when the eye was measured (and passed the mask), 1 when the\n"
    "mask was hit, a file could not be read, the stimulus data is invalid, the\n"
    "mask cannot be laid on the eye or the waveform makes no eye (or holds no\n"
    "eye centre, so that nothing but its crossings is measured), 2 for a usage\n"
    "error.\n";

struct EyeOptions {
    std::string waveform;
    std::optional<std::string> stimulus;
    double interval = 0.0;
    std::optional<int32_t> eyes;
    std::optional<int32_t> skip;
    std::string vector;
    bool mask = false;
    bool json = false;
    bool draw = false;
    std::string image;  // the -o file
};

double ParseInterval(std::string_view text) {
    const auto value = ParseFiniteNumber(text);
    if (!value || *value <= 0.0) {
        throw UsageError{"--interval must be a time in seconds above 0, not '" + std::string(text) +
                         "'"};
    }
    return *value;
}

std::optional<int32_t> ParseCount(const ParsedArguments& parsed, std::string_view option,
                                  long long lowest, long long highest) {
    const auto value = parsed.Integer(option);
    if (value && (*value < lowest || *value > highest)) {
        throw UsageError{std::string(option) + " must be from " + std::to_string(lowest) + " to " +
                         std::to_string(highest)};
    }
    return value ? std::optional(static_cast<int32_t>(*value)) : std::nullopt;
}

bool IsImageName(std::string_view name) {
    const auto endsWith = [name](std::string_view suffix) {
        return name.size() > suffix.size() && name.substr(name.size() - suffix.size()) == suffix;
    };
    return endsWith(".png") || endsWith(".svg");
}

EyeOptions ParseOptions(Arguments args) {
    const ParsedArguments parsed(
        args, {"--mask", "--json"},
        {"--stimulus", "--interval", "--eyes", "--skip", "--vector", "-o"});
    EyeOptions options;
    options.waveform = std::string(parsed.Positional(1, "one WAVEFORM file")[0]);
    const auto stimulus = parsed.Value("--stimulus");
    const auto interval = parsed.Value("--interval");
    if (stimulus.has_value() == interval.has_value()) {
        throw UsageError{
            "give the bit interval with either --stimulus FILE.ini or --interval "
            "SECONDS"};
    }
    if (stimulus) {
        options.stimulus = std::string(*stimulus);
    } else {
        options.interval = ParseInterval(*interval);
    }
    options.eyes = ParseCount(parsed, "--eyes", 1, 3);
    options.skip = ParseCount(parsed, "--skip", 0, std::numeric_limits<int32_t>::max());
    options.vector = std::string(parsed.Value("--vector").value_or(""));
    options.mask = parsed.Has("--mask");
    if (options.mask && !options.stimulus) {
        throw UsageError{"--mask needs --stimulus FILE.ini: the mask is the stimulus's own"};
    }
    options.json = parsed.Has("--json");
    if (const auto image = parsed.Value("-o")) {
        if (!IsImageName(*image)) {
            throw UsageError{"-o takes a file name ending in .png or .svg, not '" +
                             std::string(*image) + "'"};
        }
        options.draw = true;
        options.image = std::string(*image);
    }
    return options;
}

int Fail(std::ostream& err, const std::string& message) {
    err << "kvcomctl eye: " << message << '\n';
    return kExitFailure;
}

// Why the mask of a stimulus could not be laid on the eye.
std::string MaskRefusal(const EYEMASK& mask) {
    if (const auto order = FindMaskOrderError(mask)) {
        return std::string(*order);
    }
    return "its values must be finite numbers, its scales above 0 and its opening wider and "
           "higher than nothing";
}

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    const EyeOptions options = ParseOptions(args);
    EyeRequest request;
    CStimulusData data;
    if (options.stimulus) {
        if (const auto problem = ReadValidStimulus(*options.stimulus, data)) {
            return Fail(err, *problem);
        }
        request.timing = EyeTimingOf(data);
        if (options.mask) {
            request.mask = *data.GetMask();
        }
    } else {
        request.timing.interval = options.interval;
    }
    request.timing.eyes = options.eyes.value_or(request.timing.eyes);
    request.timing.skipIntervals = options.skip.value_or(request.timing.skipIntervals);
    // The eye view reads its timing from a stimulus: the one given, or one
    // that carries the options.
    data.SetPeriod(request.timing.interval * 1e9);
    data.SetEyeCount(request.timing.eyes);
    data.SetSkipBits(request.timing.skipIntervals);

    const WaveformRead read = ReadWaveformFile(options.waveform, options.vector);
    if (!read.waveform) {
        return Fail(err, read.error);
    }
    const Waveform& waveform = *read.waveform;
    const EyeResult eye = AnalyseEye({waveform.time, waveform.value}, request);
    if (!eye.refusal.empty()) {
        return Fail(err, options.waveform + " makes no eye: " + eye.refusal);
    }
    const EyeMeasure& measure = eye.measure;
    options.json ? WriteEyeJson(measure, out) : WriteEyeText(measure, options.mask, out);
    if (options.draw) {
        if (const auto problem = DrawEyeImage(waveform, data, options.mask, options.image)) {
            return Fail(err, *problem);
        }
    }
    if (measure.unitIntervals == 0) {
        // Crossings alone are no eye: a script must not take this for one.
        return Fail(err, options.waveform +
                             " holds no eye centre after the skipped intervals, so its levels "
                             "and eye height are not measured");
    }
    if (!options.mask) {
        return kExitOk;
    }
    if (measure.maskHits < 0) {
        return Fail(err, "the mask of " + *options.stimulus +
                             " cannot be laid on the eye: " + MaskRefusal(*request.mask));
    }
    return measure.maskHits == 0 ? kExitOk : kExitFailure;
}

const CommandRegistration kRegistration{
    {"eye", "measure the eye of a simulated waveform, and test it against a mask", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
