#pragma once

#include <cstdint>
#include <iterator>
#include <random>

namespace kv::soak {

// The one source of every choice the driver makes: a run is replayed exactly from its seed.
class SoakRandom {
public:
    // One stream of many, each replayed without the others.
    SoakRandom(uint64_t seed, uint64_t stream) {
        std::seed_seq sequence{seed, seed >> 32, stream};
        m_engine.seed(sequence);
    }

    // A whole number in [0, count); 0 when count is not positive.
    int Below(int count) {
        if (count <= 1) {
            return 0;
        }
        return std::uniform_int_distribution<int>(0, count - 1)(m_engine);
    }
    int Between(int low, int high) { return low + Below(high - low + 1); }
    bool Chance(double probability) { return Real(0.0, 1.0) < probability; }
    double Real(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(m_engine);
    }
    // One element of an array or list, which must not be empty.
    template <class Choices>
    const auto& Pick(const Choices& choices) {
        return *(std::begin(choices) + Below(static_cast<int>(std::size(choices))));
    }
    uint64_t Next() { return m_engine(); }

private:
    std::mt19937_64 m_engine;
};

}  // namespace kv::soak
