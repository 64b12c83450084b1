#include "core/shared/BoundedCopy.h"

#include <cstring>

#include "core/shared/TextArgument.h"

namespace kv {

std::size_t CopyBounded(char* destination, const char* source, std::size_t capacity) {
    KV_ASSERT_TEXT(destination);
    KV_ASSERT_TEXT(source);
    std::size_t copied = 0;
    while (copied < capacity && source[copied] != '\0') {
        destination[copied] = source[copied];
        ++copied;
    }
    destination[copied] = '\0';
    return copied;
}

std::size_t AppendBounded(char* destination, const char* source, std::size_t capacity) {
    KV_ASSERT_TEXT(destination);
    KV_ASSERT_TEXT(source);
    const std::size_t length = std::strlen(destination);
    if (length >= capacity) {
        return length;
    }
    return length + CopyBounded(destination + length, source, capacity - length);
}

}  // namespace kv
