#pragma once

#include <cstdint>

namespace kv::soak {

// Where a run stands, so that every way it can fail (a signal, a sanitizer report, a stall, a
// component that will not close) names the replay command: seed, component and the number of
// user actions to send.
void InstallFailureReport();
void ReportPosition(uint64_t seed, const char* component);  // component: a static name
void ReportAction(uint64_t actions);                        // actions sent so far, this one too
void Beat();                                                // something was processed

// Ends the run with `why` and the replay command.
[[noreturn]] void Fail(const char* why);

// Fails the run when nothing was processed for `seconds`.
void StartWatchdog(int seconds);

}  // namespace kv::soak
