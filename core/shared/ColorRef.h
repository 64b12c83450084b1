#pragma once

#include <cstdint>

// Colours cross the host contract as 0x00BBGGRR.

namespace kv {

struct Rgb {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
};

inline constexpr Rgb SplitColorRef(uint32_t colorRef) {
    return {static_cast<uint8_t>(colorRef & 0xFFu), static_cast<uint8_t>((colorRef >> 8) & 0xFFu),
            static_cast<uint8_t>((colorRef >> 16) & 0xFFu)};
}

inline constexpr uint32_t MakeColorRef(uint8_t red, uint8_t green, uint8_t blue) {
    return static_cast<uint32_t>(red) | (static_cast<uint32_t>(green) << 8) |
           (static_cast<uint32_t>(blue) << 16);
}

}  // namespace kv
