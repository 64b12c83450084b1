#pragma once

#include <cstdint>

#include "core/ports/Clock.h"

namespace kv::test {

// Time moves only when the test says so: a millisecond counter.
class ManualClock final : public IClock {
public:
    uint64_t Ticks() const override { return ticks; }
    uint64_t TicksPerSecond() const override { return 1000; }
    uint64_t ticks = 5000;
};

}  // namespace kv::test
