#pragma once

// Blank removal in place, on NUL-terminated texts; a null text ends the
// process with a report.

namespace kv {

// Drops leading blanks (character 32 only).
void TrimLeadingBlanks(char* text);
// Drops every character with a code of 32 or below.
void RemoveWhitespace(char* text);
// Drops every character with a code of 32 or below, and every ".".
void RemoveWhitespaceAndPoints(char* text);

}  // namespace kv
