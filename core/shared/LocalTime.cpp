#include "core/shared/LocalTime.h"

namespace kv {

std::tm LocalTimeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    // The reentrant forms: std::localtime shares one buffer across threads.
#if defined(_WIN32)
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return local;
}

}  // namespace kv
