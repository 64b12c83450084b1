#include "core/shared/BlankRemoval.h"

#include <cstring>

#include "core/shared/TextArgument.h"

namespace kv {
namespace {

bool IsBlankOrControl(char c) {
    return static_cast<unsigned char>(c) <= 32;
}

// Deletes in place every character for which `drop` holds.
template <typename Predicate>
void RemoveWhere(char* text, Predicate drop) {
    char* kept = text;
    for (const char* read = text; *read != '\0'; ++read) {
        if (!drop(*read)) {
            *kept++ = *read;
        }
    }
    *kept = '\0';
}

}  // namespace

void TrimLeadingBlanks(char* text) {
    KV_ASSERT_TEXT(text);
    const std::size_t blanks = std::strspn(text, " ");
    if (blanks > 0) {
        std::memmove(text, text + blanks, std::strlen(text + blanks) + 1);
    }
}

void RemoveWhitespace(char* text) {
    KV_ASSERT_TEXT(text);
    RemoveWhere(text, IsBlankOrControl);
}

void RemoveWhitespaceAndPoints(char* text) {
    KV_ASSERT_TEXT(text);
    RemoveWhere(text, [](char c) { return IsBlankOrControl(c) || c == '.'; });
}

}  // namespace kv
