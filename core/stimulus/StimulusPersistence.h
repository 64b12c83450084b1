#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/shared/FileIo.h"
#include "core/stimulus/StimulusData.h"

// The persisted form of CStimulusData: section "EYEDIAGRAM" with 45 keys in
// a fixed order, in an initialisation file or in a keyed settings store.

namespace kv {

inline constexpr std::string_view kStimulusSection = "EYEDIAGRAM";
// The longest stored sequence; longer ones are cut.
inline constexpr int kMaxStoredCustomBits = 32000;
// From this many bits on a stored sequence is uuencoded.
inline constexpr int kUuencodedFromBits = 2048;

// Whether a kind keeps its bits in "BITSEQUENCE": the user's custom bits, and
// kinds 5 and 6, which nothing can make again. Every other kind is made
// again from its settings on load.
bool StoresItsBits(int seqType);

using PersistedEntry = std::pair<std::string_view, std::string>;

// Every key and its value text, in the order Save writes them.
std::vector<PersistedEntry> PersistedEntries(const CStimulusData& data);

// The "BITSEQUENCE" text of bits (already cut to the stored length).
std::string EncodeBitSequence(const BitVector& bits);
// The bits of a stored text for `length` bits; none when a plain text is
// shorter than that or a uuencoded one cannot be decoded (an encoded text
// that ends early leaves the bits after it clear).
std::optional<BitVector> DecodeBitSequence(std::string_view text, int length);

// What reading a stored section found.
struct StimulusReadResult {
    // The first validity rule the data read breaks.
    std::optional<std::string> invalidReason;
    // The stored length of a kind with stored bits when it lay outside 1 to
    // 32000: the bits were not read and the object kept the ones it had.
    std::optional<int> unreadSequenceLength;
};

// Save and Load of CStimulusData: `location` null for the module's own
// store, else a file (toFile) or a registry key; an empty name names neither,
// and Save refuses it while Load leaves the object as it is. Save writes the
// section in one replace of the store. Load resets invalid data to the
// defaults, after the message, and keeps the mask read.
FileResult SaveStimulusData(const CStimulusData& data, const char* location, bool toFile);
StimulusReadResult LoadStimulusData(CStimulusData& data, const char* location, bool fromFile);

// Reads an initialisation file as Load does, but leaves the object as it was
// read, valid or not, without a message: for callers that go on to change
// it and check it themselves.
StimulusReadResult ReadStimulusFile(CStimulusData& data, const std::string& path);

// What Load does after reading the keys: generated kinds are generated
// again and kinds fixed by their initial state get their pattern; kinds with
// stored bits keep them. Types whose parameters could not pass the validity
// check are left alone (the check resets them anyway).
void RegenerateBits(CStimulusData& data);

// Writes the data as Save would, reads that text back as Load would and
// compares: the reason when the data would not come back as it is (invalid
// once read, or a value that reads back different), else none.
std::optional<std::string> FindRoundTripLoss(const CStimulusData& data);

// The persisted field for a key (case-insensitive) and how its value text is
// read: for setting values by key, as a command line does.
enum class PersistedKind { Int, Bool, Real, Text, Bits };
struct PersistedKey {
    std::string_view key;
    PersistedKind kind;
};
std::optional<PersistedKey> FindPersistedKey(std::string_view key);
// Stores a value already read as a number into the field of `key`.
void SetPersistedNumber(CStimulusData& data, std::string_view key, double value);

}  // namespace kv
