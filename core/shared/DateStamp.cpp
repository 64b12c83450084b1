#include "core/shared/DateStamp.h"

#include <cstdio>

#include "core/shared/BoundedCopy.h"
#include "core/shared/LocalTime.h"
#include "core/shared/TextArgument.h"

namespace kv {
namespace {

// Index 0 stays empty so that months count from 1; only the first three letters are shown.
constexpr const char* kMonthNames[13] = {"",     "Jan.", "Feb.", "Mar.", "Apr.", "May", "Jun.",
                                         "Jul.", "Aug.", "Sep.", "Oct.", "Nov.", "Dec."};

const char* MonthName(int zeroBasedMonth) {
    const bool known = zeroBasedMonth >= 0 && zeroBasedMonth < 12;
    return kMonthNames[known ? zeroBasedMonth + 1 : 0];
}

bool IsGiven(const char* text) {
    return text != nullptr && *text != '\0';
}

}  // namespace

std::string FormatDateStampText(const char* prefix, const std::tm* time, const char* suffix) {
    std::tm local{};
    if (time == nullptr) {
        local = LocalTimeNow();
        time = &local;
    }
    const bool hasPrefix = IsGiven(prefix);
    const bool hasSuffix = IsGiven(suffix);
    const auto print = [&](char* out, std::size_t size) {
        return std::snprintf(out, size, "%s%s%.3s-%d-%d_%dh-%s%dm%s%s", hasPrefix ? prefix : "",
                             hasPrefix ? "_" : "", MonthName(time->tm_mon), time->tm_mday,
                             time->tm_year + 1900, time->tm_hour, time->tm_min < 10 ? "0" : "",
                             time->tm_min, hasSuffix ? "_" : "", hasSuffix ? suffix : "");
    };
    std::string text(static_cast<std::size_t>(print(nullptr, 0)), '\0');
    print(text.data(), text.size() + 1);
    return text;
}

void FormatDateStamp(char* destination, std::size_t size, const char* prefix, const std::tm* time,
                     const char* suffix) {
    KV_ASSERT_TEXT(destination);
    if (size == 0) {
        return;
    }
    CopyBounded(destination, FormatDateStampText(prefix, time, suffix).c_str(), size - 1);
    destination[size - 1] = '\0';
}

}  // namespace kv
