#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

// The sub-block tables of the 8B/10B line code and the code groups built from
// them. A table row is a first character ('+', '-' or 'x': the running
// disparity at which the code bits are sent as written; at the other one they
// are complemented), the code bits in transmission order, and a last
// character ('+' or '-' when sending the code changes the running disparity,
// 'x' when it does not).

namespace kv {

struct TableSize {
    int rows;
    int columns;
};

// 5B/6B: rows 0-28 are D.0-D.28, row 29 the control block K.28, rows 30-32
// D.29-D.31.
TableSize Table5b6bSize();               // 33 by 8
std::string_view Table5b6bRow(int row);  // empty outside the table
char Table5b6bAt(int row, int column);   // 'z' outside the table

// 3B/4B: rows 0-7 are D.x.0-D.x.7 (row 7 the primary form), row 8 the
// alternate form of D.x.7.
TableSize Table3b4bSize();               // 9 by 6
std::string_view Table3b4bRow(int row);  // empty outside the table
char Table3b4bAt(int row, int column);   // 'z' outside the table

// The 268 ten-character code groups in the form sent at negative running
// disparity: 0-255 the data characters by byte value (32 * y + x is D.x.y),
// 256-263 K.28.0-K.28.7, 264-267 K.23.7, K.27.7, K.29.7, K.30.7.
inline constexpr int kCodeGroupCount = 268;
std::string_view CodeGroup(int index);  // empty outside the table

// One code group as sent from a running disparity, ready to copy: the ten
// bits (0 or 1, padded to 16 for whole-word copies), the same as symbols
// (+1 or -1), and the running disparity after it.
struct EncodedGroup {
    std::array<uint8_t, 16> bits;
    std::array<int8_t, 16> symbols;
    int8_t disparityAfter;
};

// The group for 6-bit row r6 (0-32) and 4-bit row r4 (0-8) sent from
// running disparity `disparity` (+1 or -1).
const EncodedGroup& EncodeGroup(int disparity, int r6, int r4);

// All groups at once, for loops that encode many: entry
// (d * 33 + r6) * 9 + r4, with d 0 for disparity -1 and 1 for +1.
const EncodedGroup* EncodedGroupTable();

// Rows from two uniform numbers in [0, 1): every row of each table equally
// likely, the control row and both forms of D.x.7 included.
inline int Row6FromUniform(double u) {
    return static_cast<int>(u * 33);
}
inline int Row4FromUniform(double u) {
    return static_cast<int>(u * 9);
}

}  // namespace kv
