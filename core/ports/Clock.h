#pragma once

#include <cstdint>

// The counter the progress dialog measures elapsed time with. A port, so
// that tests can move time on without sleeping.

namespace kv {

class IClock {
public:
    virtual ~IClock() = default;
    // Ticks since an arbitrary origin; never goes backwards.
    virtual uint64_t Ticks() const = 0;
    // Ticks per second; 0 means there is no usable counter.
    virtual uint64_t TicksPerSecond() const = 0;
};

// std::chrono::steady_clock in nanoseconds.
class SteadyClock final : public IClock {
public:
    uint64_t Ticks() const override;
    uint64_t TicksPerSecond() const override;
};

// The clock every progress dialog uses unless given another.
const IClock& DefaultClock();

}  // namespace kv
