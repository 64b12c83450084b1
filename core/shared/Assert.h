#pragma once

// Programming errors (a null text handed to a string helper, a non-positive
// bit period) are not reported to the user: they name the source module and
// line on stderr and end the process, so the fault is found where it was made.

namespace kv {

[[noreturn]] void AssertionFailed(const char* module, int line) noexcept;

}  // namespace kv

// Checks `condition`; on failure reports `module` (the name the report shows)
// and the current line, and does not return.
#define KV_ASSERT_IN(module, condition)              \
    do {                                             \
        if (!(condition))                            \
            ::kv::AssertionFailed(module, __LINE__); \
    } while (false)
