#include "core/shared/Assert.h"

#include <cstdio>
#include <cstdlib>

namespace kv {

void AssertionFailed(const char* module, int line) noexcept {
    std::fprintf(stderr, "KVComCtl assertion failed: %s, line %d\n", module, line);
    std::fflush(stderr);
    std::abort();
}

}  // namespace kv
