// Uuencoded bit sequences: decoding any text stays within its buffer, and
// decoding what was encoded gives back every byte, as does the stored form
// of a bit sequence for its length.

#include <vector>

#include "FuzzSupport.h"
#include "core/stimulus/StimulusPersistence.h"
#include "core/stimulus/Uuencode.h"

namespace {

using kv::fuzz::Escaped;
using kv::fuzz::Expect;

void CheckArbitraryText(std::string_view text, std::size_t capacity) {
    std::vector<uint8_t> out(capacity, 0xa5);
    const auto decoded = kv::Uudecode(text, out);
    Expect(!decoded || *decoded <= capacity,
           "Uudecode claims more bytes than its buffer holds for \"" + Escaped(text) + "\"");
}

void CheckRoundTrip(std::span<const uint8_t> bytes, bool endLines) {
    kv::UuencodeOptions options;
    options.endLines = endLines;
    const std::string text = kv::Uuencode(bytes, options);
    std::vector<uint8_t> out(bytes.size() + 3, 0);
    const auto decoded = kv::Uudecode(text, out);
    Expect(decoded == bytes.size() && std::equal(bytes.begin(), bytes.end(), out.begin()),
           "Uudecode(Uuencode(x)) is not x for \"" + Escaped(text) + "\"");
}

void CheckBitSequence(std::span<const uint8_t> bytes) {
    kv::BitVector bits;
    for (const uint8_t byte : bytes) {
        bits.push_back(byte & 1u);
    }
    const std::string text = kv::EncodeBitSequence(bits);
    const auto decoded = kv::DecodeBitSequence(text, static_cast<int>(bits.size()));
    Expect(decoded == bits, "a sequence of " + std::to_string(bits.size()) +
                                " bits does not come back from \"" + Escaped(text) + "\"");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::span<const uint8_t> rest(data + 1, size - 1);
    CheckArbitraryText(kv::fuzz::AsText(rest.data(), rest.size()), data[0]);
    CheckRoundTrip(rest, (data[0] & 1) != 0);
    // The stored form switches to uuencoding from 2048 bits on: repeat the
    // input so that short inputs reach it too.
    std::vector<uint8_t> repeated;
    while (!rest.empty() && repeated.size() < 2048 + data[0]) {
        repeated.insert(repeated.end(), rest.begin(), rest.end());
    }
    CheckBitSequence(rest);
    CheckBitSequence(repeated);
    return 0;
}
