#include "core/progress/DelayedShow.h"

#include <algorithm>

namespace kv {

DelayedShowStart PlanDelayedShow(uint32_t delayMs, bool counterWorks) {
    if (delayMs == 0 || !counterWorks) {
        return DelayedShowStart::ShowNow;
    }
    return delayMs == kShowOnlyWhenAsked ? DelayedShowStart::WaitForHost
                                         : DelayedShowStart::WaitForTick;
}

uint32_t DelayTimerPeriodMs(uint32_t delayMs) {
    return std::min(delayMs, kMaxDelayTimerMs);
}

uint32_t ElapsedMilliseconds(uint64_t startTicks, uint64_t nowTicks, uint64_t ticksPerSecond) {
    if (ticksPerSecond == 0) {
        return 0;
    }
    const uint64_t ticks = nowTicks - startTicks;
    // Whole seconds and the rest apart, so that ticks * 1000 cannot overflow.
    const uint64_t ms =
        ticks / ticksPerSecond * 1000u + ticks % ticksPerSecond * 1000u / ticksPerSecond;
    return static_cast<uint32_t>(ms);
}

bool ShowsAtFirstTick(uint32_t elapsedMs, int32_t percent, uint32_t delayMs) {
    const uint32_t spent = elapsedMs * 100u;
    const uint32_t allowed = static_cast<uint32_t>(percent) * delayMs;
    return spent > allowed;
}

}  // namespace kv
