#pragma once

// The waveform the eye benchmarks fold: 10^7 samples of random bits, the same in every
// benchmark that names it.

#include <cstdint>
#include <random>
#include <vector>

#include "core/eye/EyeTrace.h"

namespace kv::bench {

inline constexpr double kInterval = 1e-9;
inline constexpr int kPerInterval = 1000;  // as many samples as the grid has columns per interval
inline constexpr int kIntervals = 10'000;
inline constexpr int64_t kSamples = int64_t{kPerInterval} * kIntervals;
inline constexpr int kWidth = 1000;
inline constexpr int kHeight = 600;

// Random bits with ramps of 30 % of the interval, 2 % edge jitter and 20 mV
// of noise, sampled every picosecond.
struct NoisyEye {
    std::vector<double> time;
    std::vector<double> volts;

    NoisyEye() {
        std::mt19937_64 random(7);
        std::bernoulli_distribution coin;
        std::normal_distribution<double> jitter(0.0, 0.02 * kInterval);
        std::normal_distribution<double> noise(0.0, 0.02);
        std::vector<double> cornerTime{0.0};
        std::vector<double> cornerVolts{0.0};
        bool level = false;
        for (int i = 1; i < kIntervals; ++i) {
            const bool next = coin(random);
            if (next != level) {
                const double edge = i * kInterval + jitter(random);
                cornerTime.insert(cornerTime.end(),
                                  {edge - 0.15 * kInterval, edge + 0.15 * kInterval});
                cornerVolts.insert(cornerVolts.end(), {level ? 1.0 : 0.0, next ? 1.0 : 0.0});
                level = next;
            }
        }
        cornerTime.push_back(kIntervals * kInterval);
        cornerVolts.push_back(level ? 1.0 : 0.0);
        kv::TraceCursor corners({cornerTime, cornerVolts});
        time.resize(kSamples);
        volts.resize(kSamples);
        for (int64_t i = 0; i < kSamples; ++i) {
            time[i] = static_cast<double>(i) * (kInterval / kPerInterval);
            volts[i] = corners.At(time[i]) + noise(random);
        }
    }
    kv::EyeTrace Trace() const { return {time, volts}; }
};

inline const NoisyEye& Eye() {
    static const NoisyEye eye;
    return eye;
}

}  // namespace kv::bench
