#include "core/stimulus/Uuencode.h"

#include "core/shared/TextLines.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kLineBytes = 45;

char EncodeSix(unsigned k) {
    return k == 0 ? '`' : static_cast<char>(32 + k);
}

bool IsEncodingChar(char c) {
    return c >= ' ' && c <= '`';
}

unsigned DecodeSix(char c) {
    return static_cast<unsigned>(c - ' ') & 63u;
}

}  // namespace

std::string Uuencode(std::span<const uint8_t> bytes, const UuencodeOptions& options) {
    std::string text;
    // Four characters per three bytes, a length character and CR LF a line.
    text.reserve(bytes.size() / 3 * 4 + (bytes.size() / kLineBytes + 1) * 3 + 8 + 300);
    if (options.beginName && options.beginName->size() < 260) {
        text += "begin 666 ";
        text += *options.beginName;
        text += "\r\n";
    }
    for (std::size_t start = 0; start < bytes.size(); start += kLineBytes) {
        const std::size_t count = std::min(kLineBytes, bytes.size() - start);
        const char length = count == kLineBytes ? 'M' : static_cast<char>((count & 63) + 32);
        text += length;
        if (length == '.' && options.doubleFullStops) {
            text += '.';
        }
        for (std::size_t i = 0; i < count; i += 3) {
            // A short last group is filled with spaces, not zeros.
            const unsigned b0 = bytes[start + i];
            const unsigned b1 = i + 1 < count ? bytes[start + i + 1] : 32u;
            const unsigned b2 = i + 2 < count ? bytes[start + i + 2] : 32u;
            text += EncodeSix(b0 >> 2);
            text += EncodeSix(((b0 & 3u) << 4) | (b1 >> 4));
            text += EncodeSix(((b1 & 15u) << 2) | (b2 >> 6));
            text += EncodeSix(b2 & 63u);
        }
        text += "\r\n";
    }
    if (options.endLines) {
        text += "`\r\nend\r\n";
    }
    return text;
}

std::optional<std::size_t> Uudecode(std::string_view text, std::span<uint8_t> out) {
    std::size_t written = 0;
    for (std::string_view line : SplitLines(text)) {
        while (!line.empty() &&
               (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) {
            line.remove_suffix(1);
        }
        if (line.empty()) {
            continue;
        }
        if (!IsEncodingChar(line.front())) {
            return std::nullopt;
        }
        const std::size_t count = DecodeSix(line.front());
        if (count == 0) {
            break;  // the closing line
        }
        const std::string_view data = line.substr(1);
        if (data.size() < (count + 2) / 3 * 4) {
            return std::nullopt;  // fewer characters than the line claims
        }
        for (char c : data) {
            if (!IsEncodingChar(c)) {
                return std::nullopt;
            }
        }
        for (std::size_t i = 0; i < count; i += 3) {
            const unsigned c0 = DecodeSix(data[i / 3 * 4]);
            const unsigned c1 = DecodeSix(data[i / 3 * 4 + 1]);
            const unsigned c2 = DecodeSix(data[i / 3 * 4 + 2]);
            const unsigned c3 = DecodeSix(data[i / 3 * 4 + 3]);
            const uint8_t group[3] = {static_cast<uint8_t>((c0 << 2) | (c1 >> 4)),
                                      static_cast<uint8_t>((c1 << 4) | (c2 >> 2)),
                                      static_cast<uint8_t>((c2 << 6) | c3)};
            for (std::size_t k = 0; k < 3 && i + k < count; ++k) {
                if (written < out.size()) {
                    out[written] = group[k];
                }
                ++written;
            }
        }
    }
    return std::min(written, out.size());
}

std::vector<uint8_t> PackBits(std::span<const uint8_t> bits) {
    std::vector<uint8_t> bytes(bits.size() / 8 + 2, 0);
    for (std::size_t i = 0; i < bits.size(); ++i) {
        if (bits[i] != 0) {
            bytes[i / 8] |= static_cast<uint8_t>(1u << (i % 8));
        }
    }
    return bytes;
}

}  // namespace kv
