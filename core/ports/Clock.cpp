#include "core/ports/Clock.h"

#include <chrono>

namespace kv {

uint64_t SteadyClock::Ticks() const {
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(since).count());
}

uint64_t SteadyClock::TicksPerSecond() const {
    return 1'000'000'000u;
}

const IClock& DefaultClock() {
    static const SteadyClock clock;
    return clock;
}

}  // namespace kv
