#include <iostream>
#include <stdexcept>
#include <string>

#include "apps/kvcomctl/Command.h"
#include "core/chart/AxisScale.h"
#include "core/chart/Chart.h"
#include "core/shared/NumberText.h"

// kvcomctl axis LO HI PIXELS [--log] [--unit U] [--no-prefix] [--spacing S]
// [--y]: the grid the chart draws on one axis over a data range.

namespace kv::cli {
namespace {

constexpr std::string_view kHelp =
    "Usage: kvcomctl axis LO HI PIXELS [--log] [--unit U] [--no-prefix] [--spacing S] [--y]\n"
    "\n"
    "Scales one chart axis of PIXELS pixels over the data range [LO, HI] as the\n"
    "chart control does and prints, numbers as %.17g:\n"
    "  range LO' HI'      the range after widening a degenerate one\n"
    "  step S             the major step (with --log in exponent space: 1, a decade)\n"
    "  labels K           the label interval: every K-th line is labelled\n"
    "  line VALUE \"LABEL\" one per major grid line, first to last; the label with\n"
    "                     its blanks, or empty for a line without one\n"
    "--unit appends U to the labels, --no-prefix turns the SI prefixes off.\n"
    "--spacing is the minimum label spacing in pixels; by default the one the\n"
    "control derives from its default font (64 for x, 14 for y); --y scales\n"
    "the y axis, which doubles the spacing. Exits 1 with a message when no\n"
    "step fits the range (an empty or reversed one, or with --log one that is\n"
    "not wholly above 0).\n";

int ParsePixels(std::string_view text) {
    const auto value = ParseWholeInteger(text);
    if (!value || *value <= 0 || *value > 2147483647) {
        throw UsageError{"PIXELS must be a positive whole number, not '" + std::string(text) + "'"};
    }
    return static_cast<int>(*value);
}

std::string Number(double value) {
    return PrintNumber(value, NumberStyle::Significant, 17);
}

int Run(Arguments args, std::ostream& out, std::ostream& err) {
    const ParsedArguments parsed(args, {"--log", "--no-prefix", "--y"}, {"--unit", "--spacing"});
    const auto& positional = parsed.Positional(3, "LO, HI and PIXELS");
    AxisRequest request;
    request.lo = ParseReal(positional[0], "LO");
    request.hi = ParseReal(positional[1], "HI");
    request.pixels = ParsePixels(positional[2]);
    request.logarithmic = parsed.Has("--log");
    request.unit = std::string(parsed.Value("--unit").value_or(""));
    request.prefixes = !parsed.Has("--no-prefix");
    request.yAxis = parsed.Has("--y");
    const LabelSpacing spacing = LabelSpacingFromFont(kNominalDigitWidth, kNominalTextHeight);
    request.minLabelSpacing = request.yAxis ? spacing.y : spacing.x;
    if (const auto given = parsed.Integer("--spacing")) {
        if (*given < 0 || *given > 1000000) {
            throw UsageError{"--spacing must be a number of pixels from 0 to 1000000"};
        }
        request.minLabelSpacing = static_cast<int>(*given);
    }

    AxisScale scale;
    try {
        scale = ScaleAxis(request);
    } catch (const std::invalid_argument&) {
        err << "kvcomctl axis: no grid step fits the range [" << Number(request.lo) << ", "
            << Number(request.hi) << "]" << (request.logarithmic ? " on a logarithmic axis" : "")
            << '\n';
        return kExitFailure;
    }
    out << "range " << Number(scale.range.lo) << ' ' << Number(scale.range.hi) << '\n';
    out << "step " << Number(scale.step) << '\n';
    out << "labels " << scale.labelInterval << '\n';
    for (const GridLine& line : scale.lines) {
        out << "line " << Number(line.value) << " \"" << line.label << "\"\n";
    }
    return kExitOk;
}

const CommandRegistration kRegistration{
    {"axis", "print the grid lines and labels of one chart axis", kHelp, Run}};

}  // namespace
}  // namespace kv::cli
