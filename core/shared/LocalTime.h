#pragma once

#include <ctime>

namespace kv {

// The local calendar time now, for the stamps in file names and headers.
std::tm LocalTimeNow();

}  // namespace kv
