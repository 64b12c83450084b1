// The ".bit" reader: a file of '0', '1' and separators gives its digits (at
// most 32768 of them), anything else is refused, and what was read is
// written and read back unchanged.

#include <optional>

#include "FuzzSupport.h"
#include "core/stimulus/BitFile.h"

namespace {

using kv::BitVector;
using kv::fuzz::Escaped;
using kv::fuzz::Expect;

bool IsSeparator(char c) {
    return c == ' ' || c == ',' || c == ';' || c == '\t' || c == '\r' || c == '\n';
}

// What the reader must give: the digits, or none for a foreign character
// among the first 32768 digits.
std::optional<BitVector> ExpectedBits(std::string_view text) {
    BitVector bits;
    for (const char c : text) {
        if (bits.size() == kv::kMaxBitFileBits) {
            break;
        }
        if (IsSeparator(c)) {
            continue;
        }
        if (c != '0' && c != '1') {
            return std::nullopt;
        }
        bits.push_back(c == '1' ? 1 : 0);
    }
    return bits;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    kv::fuzz::SilenceMessages();
    const std::string_view text = kv::fuzz::AsText(data, size);
    const auto input = kv::fuzz::ScratchFolder() / "input.bit";
    const auto output = kv::fuzz::ScratchFolder() / "output.bit";
    kv::fuzz::WriteFile(input, text);

    const std::optional<BitVector> bits = kv::ReadBitFile(input.string());
    Expect(bits == ExpectedBits(text),
           "reading \"" + Escaped(text) + "\" gave " +
               (bits ? std::to_string(bits->size()) + " bits" : std::string("a refusal")));
    if (!bits) {
        return 0;
    }
    Expect(kv::WriteBitFile(output.string(), *bits), "cannot write the bits read back");
    Expect(kv::ReadBitFile(output.string()) == bits,
           "the bits of \"" + Escaped(text) + "\" changed when written and read again");
    return 0;
}
