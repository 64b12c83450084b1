#include "core/shared/AsciiText.h"

#include <algorithm>

namespace kv {

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return FoldAsciiCase(x) == FoldAsciiCase(y);
           });
}

std::string_view TrimSpace(std::string_view text) {
    while (!text.empty() && IsAsciiSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsAsciiSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace kv
