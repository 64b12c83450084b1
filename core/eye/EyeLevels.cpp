#include "core/eye/EyeLevels.h"

#include <cmath>

namespace kv {
namespace {

// Running mean and sum of squared deviations (Welford), which keep a small
// spread about a large mean exact where sums of squares would cancel.
struct Running {
    int64_t count = 0;
    double mean = 0.0;
    double squares = 0.0;

    void Add(double value) {
        ++count;
        const double delta = value - mean;
        mean += delta / static_cast<double>(count);
        squares += delta * (value - mean);
    }
    void Finish(double& level, double& noise) const {
        if (count > 0) {
            level = mean;
            noise = std::sqrt(squares / static_cast<double>(count));
        }
    }
};

}  // namespace

EyeLevels MeasureLevels(const EyeTrace& trace, double firstCentre, double interval, double from,
                        double to, double mid) {
    Running zero;
    Running one;
    TraceCursor cursor(trace);
    for (int64_t k = 0;; ++k) {
        const double centre = firstCentre + static_cast<double>(k) * interval;
        if (!(centre <= to)) {
            break;
        }
        for (int step = -kCentreSteps; step <= kCentreSteps; ++step) {
            const double t = centre + step * kCentreStep * interval;
            if (t < from || t > to) {
                continue;
            }
            const double level = cursor.At(t);
            (level >= mid ? one : zero).Add(level);
        }
    }
    EyeLevels levels;
    levels.count0 = zero.count;
    levels.count1 = one.count;
    zero.Finish(levels.level0, levels.noise0);
    one.Finish(levels.level1, levels.noise1);
    return levels;
}

}  // namespace kv
