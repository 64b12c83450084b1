#pragma once

#include <cstdint>

// When a progress dialog created with a delay becomes visible. The dialog
// stays hidden at first; at the first timer tick it appears only if the work
// is going slower than the delay allows, so quick jobs never flash a window.

namespace kv {

// A delay of all ones: note the start but never show on a timer; the host
// shows the dialog itself.
inline constexpr uint32_t kShowOnlyWhenAsked = 0xFFFFFFFFu;

// The delay timer ticks after the delay, but no later than this.
inline constexpr uint32_t kMaxDelayTimerMs = 200;

enum class DelayedShowStart {
    ShowNow,      // no delay or no counter: the dialog appears at once
    WaitForTick,  // hidden until the first timer tick decides
    WaitForHost,  // hidden until the host shows it
};

DelayedShowStart PlanDelayedShow(uint32_t delayMs, bool counterWorks);

// Period of the delay timer: the delay, but at most kMaxDelayTimerMs.
uint32_t DelayTimerPeriodMs(uint32_t delayMs);

// Milliseconds between two counter readings, truncated to 32 bits as the
// comparison below works on them.
uint32_t ElapsedMilliseconds(uint64_t startTicks, uint64_t nowTicks, uint64_t ticksPerSecond);

// The first-tick decision: show when elapsed * 100 > percent * delay, both
// products taken in 32-bit unsigned arithmetic (they wrap, as they always
// have for hosts that rely on this).
bool ShowsAtFirstTick(uint32_t elapsedMs, int32_t percent, uint32_t delayMs);

}  // namespace kv
