#include "progress/ProgressClock.h"

#include <chrono>

namespace kv {

uint64_t SteadyProgressClock::Ticks() const {
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(since).count());
}

uint64_t SteadyProgressClock::TicksPerSecond() const {
    return 1'000'000'000u;
}

const IProgressClock& DefaultProgressClock() {
    static const SteadyProgressClock clock;
    return clock;
}

}  // namespace kv
