#pragma once

#include <string>
#include <string_view>

namespace kv::test {

// A SPICE export with its time stamp ("*    generated YYYY-MM-DD HH:MM:SS     *") replaced
// by "<time>", so two exports compare equal to the byte otherwise. A text whose stamp is
// missing or malformed comes back unchanged, which a comparison then catches.
inline std::string WithoutExportTime(const std::string& text) {
    constexpr std::string_view kPrefix = "*    generated ";
    constexpr std::string_view kShape = "dddd-dd-dd dd:dd:dd     *\n";
    const std::size_t at = text.find(kPrefix);
    if (at == std::string::npos) {
        return text;
    }
    const std::size_t stamp = at + kPrefix.size();
    for (std::size_t i = 0; i < kShape.size(); ++i) {
        const char c = stamp + i < text.size() ? text[stamp + i] : '\0';
        if (kShape[i] == 'd' ? (c < '0' || c > '9') : c != kShape[i]) {
            return text;
        }
    }
    return text.substr(0, stamp) + "<time>" + text.substr(stamp + kShape.size() - 7);
}

}  // namespace kv::test
