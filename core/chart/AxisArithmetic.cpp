#include "core/chart/AxisArithmetic.h"

#include <array>
#include <cmath>
#include <stdexcept>

namespace kv {
namespace {

constexpr double kDegenerate = 1e-12;
constexpr double kNearLine = 1e-12;
constexpr double kNearEqualExcess = 1e-6;
constexpr int kPixelsPerInterval = 20;
constexpr int kMaxLabelInterval = 10;

// The part of q above floor(q), in [0, 1).
double Fraction(double q) {
    return q - std::floor(q);
}

// Rounds to the nearest whole number, an exact half upward (the values
// rounded here are never negative).
double RoundHalfUp(double value) {
    return std::floor(value + 0.5);
}

bool Admits(const std::optional<IntervalCount>& count, int maxCount) {
    return count && count->count <= maxCount;
}

bool Exceeds(const std::optional<IntervalCount>& count, int maxCount) {
    return count && count->count > maxCount;
}

}  // namespace

Range WidenRange(Range range, bool logarithmic) {
    const bool degenerate = (range.lo == 0.0 && range.hi == 0.0) ||
                            (range.hi - range.lo) / std::fabs(range.hi + range.lo) < kDegenerate;
    if (!degenerate) {
        return range;
    }
    if (logarithmic) {
        return {range.lo / 10.0, range.hi * 10.0};
    }
    return {range.lo - 0.5, range.hi + 0.5};
}

std::optional<IntervalCount> CountIntervals(double lo, double hi, double step) {
    if (!(step > 0.0) || !std::isfinite(step)) {
        return std::nullopt;
    }
    // A line a rounding error away counts as met, not as one more step.
    const double qLo = lo / step;
    const double qHi = hi / step;
    const double firstIndex = 1.0 - Fraction(qLo) < kNearLine ? std::ceil(qLo) : std::floor(qLo);
    const double fractionHi = Fraction(qHi);
    const double lastIndex =
        fractionHi > 0.0 && fractionHi < kNearLine ? std::floor(qHi) : std::ceil(qHi);
    IntervalCount result;
    result.firstIndex = firstIndex;
    result.first = firstIndex * step;
    result.last = lastIndex * step;
    const double count = RoundHalfUp((result.last - result.first) / step);
    if (std::isnan(count) || count < 0.0) {
        return std::nullopt;
    }
    result.count = count > kMaxIntervalCount ? kMaxIntervalCount : static_cast<int>(count);
    return result;
}

int MaxIntervalCount(int pixels) {
    const int count = pixels / kPixelsPerInterval;
    return count < 3 ? 2 : count;
}

std::vector<double> StepCandidates(double lo, double hi, int pixels) {
    const int maxCount = MaxIntervalCount(pixels);
    std::vector<double> candidates;
    for (double step : {0.1, 0.2, 0.25, 0.5}) {
        while (Admits(CountIntervals(lo, hi, step), maxCount)) {
            step /= 10.0;
        }
        while (Exceeds(CountIntervals(lo, hi, step), maxCount)) {
            step *= 10.0;
        }
        while (Admits(CountIntervals(lo, hi, step), maxCount)) {
            candidates.push_back(step);
            step /= 10.0;
        }
    }
    return candidates;
}

double ChooseLinearStep(double lo, double hi, int pixels) {
    const std::vector<double> candidates = StepCandidates(lo, hi, pixels);
    if (candidates.empty()) {
        throw std::invalid_argument("no grid step fits the range");
    }
    double chosen = candidates.front();
    double chosenExcess = CountIntervals(lo, hi, chosen)->Span() - (hi - lo);
    for (size_t i = 1; i < candidates.size(); ++i) {
        const double step = candidates[i];
        const double span = CountIntervals(lo, hi, step)->Span();
        const double excess = span - (hi - lo);
        if (excess < chosenExcess ||
            ((excess - chosenExcess) / span < kNearEqualExcess && step < chosen)) {
            chosen = step;
            chosenExcess = excess;
        }
    }
    return chosen;
}

int StepMantissa(double step) {
    if (!(step > 0.0) || !std::isfinite(step)) {
        return 10;
    }
    double m = step;
    while (m > kMaxIntervalCount) {
        m /= 10.0;
    }
    while (std::round(m) < 10.0) {
        m *= 10.0;
    }
    while (std::round(m) >= 51.0) {
        m /= 10.0;
    }
    return static_cast<int>(std::round(m));
}

int LabelInterval(double step, int intervals, int pixels, int minSpacing, bool logarithmic) {
    if (intervals <= 0) {
        return 1;
    }
    const long long n = intervals;
    const long long width = (n / 2 + pixels) / n;
    int k = 1;
    long long total = width;
    while (k < kMaxLabelInterval && k < n && total < minSpacing) {
        ++k;
        total += width;
    }
    if (logarithmic) {
        return k;
    }
    // Labels fall on round values of the step's digits: every 5 or 10
    // units of 1 and 2, every 20 units of 2.5.
    const int m = StepMantissa(step);
    if (k == 3) {
        k = 4;
    }
    if ((m == 10 || m == 20) && k == 4) {
        k = 5;
    } else if (m == 25 && k >= 5 && k <= 8) {
        k = 8;
    } else if (k > 5) {
        k = 10;
    }
    return k;
}

std::vector<double> DecadeLineValues(double decadeValue, double step) {
    std::vector<double> values;
    if (!(step > 0.0)) {
        return values;
    }
    const double c = std::round(1.0 / step);
    if (!(c < kMaxIntervalCount)) {
        return values;
    }
    const int lines = static_cast<int>(c);
    for (int i = lines / 10 + 1; i <= lines - 1; ++i) {
        values.push_back(i * step * decadeValue);
    }
    return values;
}

}  // namespace kv
