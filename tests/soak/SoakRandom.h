#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace kv::soak {

// The one source of every choice the driver makes: a run is replayed exactly from its seed.
class SoakRandom {
public:
    explicit SoakRandom(uint64_t seed) : m_engine(seed) {}

    // A whole number in [0, count); 0 when count is not positive.
    int Below(int count) {
        if (count <= 1) {
            return 0;
        }
        return std::uniform_int_distribution<int>(0, count - 1)(m_engine);
    }
    int Between(int low, int high) { return low + Below(high - low + 1); }
    bool Chance(double probability) {
        return std::uniform_real_distribution<double>(0.0, 1.0)(m_engine) < probability;
    }
    double Real(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(m_engine);
    }
    template <class T>
    const T& Pick(std::span<const T> choices) {
        return choices[static_cast<std::size_t>(Below(static_cast<int>(choices.size())))];
    }
    uint64_t Next() { return m_engine(); }

private:
    std::mt19937_64 m_engine;
};

}  // namespace kv::soak
