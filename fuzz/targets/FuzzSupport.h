#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

// What every fuzz target shares: a failed check ends the process with a
// report (libFuzzer then keeps the input as a crash file), messages the
// library would show in a box go nowhere, and files live in a scratch folder
// of the process.

namespace kv::fuzz {

[[noreturn]] void Fail(std::string_view what);

inline void Expect(bool condition, std::string_view what) {
    if (!condition) {
        Fail(what);
    }
}

// Installs a message port that answers every box with its default button
// and shows nothing; safe to call on every input.
void SilenceMessages();

// A folder of this process, removed when the process ends normally.
const std::filesystem::path& ScratchFolder();

void WriteFile(const std::filesystem::path& path, std::string_view bytes);

// `text` with control characters and bytes beyond ASCII escaped, for reports.
std::string Escaped(std::string_view text);

inline std::string_view AsText(const uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace kv::fuzz
