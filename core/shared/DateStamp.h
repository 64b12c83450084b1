#pragma once

#include <cstddef>
#include <ctime>
#include <string>

// Date-and-time stamps for the names of files a user saves.

namespace kv {

// Writes "[prefix_]Mon-D-YYYY_Hh-MMm[_suffix]", e.g. "eye_Jun-5-2012_14h-07m", for `time`, or
// for the local time now when `time` is null. A null or empty prefix or suffix is left out
// together with its "_". `size` is the whole buffer in bytes, NUL included, and the text is
// cut to fit.
void FormatDateStamp(char* destination, std::size_t size, const char* prefix, const std::tm* time,
                     const char* suffix);
std::string FormatDateStampText(const char* prefix, const std::tm* time, const char* suffix);

}  // namespace kv
