#pragma once

#include <cstdint>
#include <optional>
#include <vector>

// The arithmetic that turns a data range into grid lines: widening of a
// degenerate range, counting the intervals of a step, choosing the major
// step of a linear axis, the interval between labelled lines, and the
// decade lines of a logarithmic axis. Pure functions on doubles.

namespace kv {

inline constexpr int kMaxIntervalCount = 2147483647;

struct Range {
    double lo = 0.0;
    double hi = 0.0;
    friend bool operator==(const Range&, const Range&) = default;
};

// A range whose ends are both 0, or whose length is below 1e-12 of the
// magnitude of its ends' sum, widened: a logarithmic one by a factor of 10
// each way, a linear one by 0.5 each way. Any other range is returned as is.
Range WidenRange(Range range, bool logarithmic);

struct IntervalCount {
    double firstIndex = 0.0;  // the first line's multiple of the step
    double first = 0.0;       // the first line: firstIndex times the step
    double last = 0.0;        // the last line
    int count = 0;            // whole steps from first to last, at most kMaxIntervalCount
    double Span() const { return last - first; }
};

// The lines of step `step` that enclose [lo, hi]. Nothing when the step
// admits no count: a step that is not positive and finite, or ends that
// give no count (a reversed range, or one the step cannot resolve).
std::optional<IntervalCount> CountIntervals(double lo, double hi, double step);

// The largest interval count an axis of `pixels` admits: pixels / 20, and
// 2 when that is below 3.
int MaxIntervalCount(int pixels);

// The candidate steps of a linear axis, in the order they are scored.
std::vector<double> StepCandidates(double lo, double hi, int pixels);

// The major step of a linear axis of `pixels` over [lo, hi]: the candidate
// that wastes the least room, the finer among near equals. Throws
// std::invalid_argument when there is no candidate.
double ChooseLinearStep(double lo, double hi, int pixels);

// The step's leading digits as a whole number from 10 to 50.
int StepMantissa(double step);

// How many major intervals lie from one labelled line to the next, for
// `intervals` intervals over `pixels` with labels at least `minSpacing`
// pixels apart. A linear axis moves it to a round multiple of the step.
int LabelInterval(double step, int intervals, int pixels, int minSpacing, bool logarithmic);

// The values of the lines between decade `decadeValue` / 10 and
// decadeValue for the decade step `step` (0.1 gives 2, 3, ... 9 tenths of
// decadeValue). Empty for a step that is not positive.
std::vector<double> DecadeLineValues(double decadeValue, double step);

}  // namespace kv
