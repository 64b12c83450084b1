#pragma once

#include "core/shared/Assert.h"

// The string helpers behind Misc_String.h take NUL-terminated texts and
// caller buffers; a null one is a programming error. Whichever file a helper
// lives in, the report names the module the host's other modules know these
// helpers by.

namespace kv {

inline constexpr const char* kStringHelpersModule = "..\\shared\\Misc_String";

}  // namespace kv

#define KV_ASSERT_TEXT(pointer) KV_ASSERT_IN(::kv::kStringHelpersModule, (pointer) != nullptr)
