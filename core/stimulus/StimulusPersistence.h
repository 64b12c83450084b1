#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/stimulus/StimulusData.h"

// The persisted form of CStimulusData: section "EYEDIAGRAM" with 45 keys in
// a fixed order, in an initialisation file or in a keyed settings store.

namespace kv {

inline constexpr std::string_view kStimulusSection = "EYEDIAGRAM";
// The longest custom sequence that is stored; longer ones are cut.
inline constexpr int kMaxStoredCustomBits = 32000;
// From this many bits on a custom sequence is stored uuencoded.
inline constexpr int kUuencodedFromBits = 2048;

// Every key and its value text, in the order Save writes them.
std::vector<std::pair<std::string_view, std::string>> PersistedEntries(const CStimulusData& data);

// The "BITSEQUENCE" text of bits (already cut to the stored length).
std::string EncodeBitSequence(const BitVector& bits);
// The bits of a stored text for `length` bits; none when the text is too
// short or cannot be decoded.
std::optional<BitVector> DecodeBitSequence(std::string_view text, int length);

// Save and Load of CStimulusData: `location` null for the module's own
// store, else a file (toFile) or a registry key.
bool SaveStimulusData(const CStimulusData& data, const char* location, bool toFile);
void LoadStimulusData(CStimulusData& data, const char* location, bool fromFile);

// Sets one persisted value from text as a file load reads it. False for a
// key that is not persisted this way (unknown, SEQUENCELENGTH), or a value
// that does not parse; BITSEQUENCE takes '0'/'1' text.
bool SetPersistedValue(CStimulusData& data, std::string_view key, std::string_view value);

// What Load does after reading the keys: types 0, 7 and 1 are generated
// again and type 2 gets its two bits. Types whose parameters could not pass
// the validity check are left alone (the check resets them anyway).
void RegenerateBits(CStimulusData& data);

}  // namespace kv
