#pragma once

#include <string_view>

// What the eye-diagram pages say when a typed value lies outside the range
// they allow. The data object itself is wider (it loads up to 32768 cycles,
// for one); these are the ranges a person may type.

namespace kv::page_message {

inline constexpr std::string_view kCycleCount =
    "Invalid number of simulation cycles\nValid range is 1 - 2048";
inline constexpr std::string_view kSkipRange =
    "Invalid skip cycles range\nLeft bound is greater then right bound";
inline constexpr std::string_view kPeriod = "Invalid period value\nValid range is 0.001 - 1000 ns";
inline constexpr std::string_view kBitInterval =
    "Invalid bit interval value\nValid range is 0.001 - 1000 ns";
inline constexpr std::string_view kDutyCycle = "Invalid duty cycle value\nValid range is 1 - 99";
inline constexpr std::string_view kMaxJitterHalfPeriod =
    "Invalid maximum jitter value\nJitter value must be greater or equal to zero and\nless than "
    "shortest half of the period";
inline constexpr std::string_view kMaxJitterInterval =
    "Invalid maximum jitter value\nJitter value must be greater or equal to zero and\nless than "
    "the bit interval";
inline constexpr std::string_view kBitIntervalCount =
    "Invalid number of bit intervals\nValid range is 1->2e9";

}  // namespace kv::page_message
