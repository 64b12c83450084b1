#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/stimulus/StimulusData.h"

// ".bit" files: custom sequences as '0' and '1' characters, first bit first.
// Every problem is told to the user through the message port.

namespace kv {

inline constexpr std::size_t kMaxBitFileBits = 32768;
inline constexpr std::string_view kBitFileFilter =
    "Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|";
inline constexpr std::string_view kBitFileExtension = "bit";

// How every message about a sequence file that the system could not open,
// read or write begins; a front end that tells such failures apart from bad
// contents (the Python module raises OSError for them) looks for these.
inline constexpr std::string_view kBitFileUnreadable = "Unable to load file ";
inline constexpr std::string_view kBitFileUnwritable = "Unable to save file ";

// How reading a sequence file ended.
enum class BitScanEnd {
    Complete,     // every byte was read
    Truncated,    // `maxBits` bits were taken and some byte of the file was left
    Stopped,      // the receiver asked to stop
    NotSequence,  // a byte that is neither a digit 0/1 nor a separator
    Unreadable,   // the file could not be opened or read
};

struct BitScan {
    BitScanEnd end = BitScanEnd::Complete;
    std::uint64_t offset = 0;  // of the byte that was no sequence character
    int error = 0;             // the system's error number when Unreadable
};

// Reads the file a chunk at a time and hands its bits (0 or 1), first bit first, to `take`,
// which returns false to stop. Separators (blank, tab, ',', ';', CR, LF) are skipped; the bits
// before a byte that is no sequence character are handed over before the scan ends there.
// This is the one reading of sequence files: the loader below and the 8B/10B file check.
BitScan ScanBitFile(const std::string& path, std::size_t maxBits,
                    const std::function<bool(std::span<const uint8_t>)>& take);

// The bits of the file, at most 32768 of them (more are cut, with a
// message); none, after a message, when the file cannot be read or holds a
// character that is neither a digit 0/1 nor a separator (blank, tab, ',',
// ';', CR, LF). The messages carry `caption` (the application's own when
// empty), so a page can show them under its title.
std::optional<BitVector> ReadBitFile(const std::string& path, std::string_view caption = {});

// The bits as the characters '0' and '1', first bit first, with nothing
// between them: the text of a sequence file, and of a short sequence where
// the settings store one or the command line prints one.
std::string BitText(const BitVector& bits);

// Writes the bits with no separators and no line end, replacing the file.
// False, after a message, when it cannot be written.
bool WriteBitFile(const std::string& path, const BitVector& bits, std::string_view caption = {});

}  // namespace kv
