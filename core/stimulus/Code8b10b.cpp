#include "core/stimulus/Code8b10b.h"

#include <string>

namespace kv {
namespace {

constexpr std::array<std::string_view, 33> k5b6b{
    "+011000-", "+100010-", "+010010-", "x110001x", "+001010-", "x101001x", "x011001x",
    "-111000x", "+000110-", "x100101x", "x010101x", "x110100x", "x001101x", "x101100x",
    "x011100x", "+101000-", "-011011+", "x100011x", "x010011x", "x110010x", "x001011x",
    "x101010x", "x011010x", "-111010+", "+001100-", "x100110x", "x010110x", "-110110+",
    "x001110x", "-001111+", "-101110+", "-011110+", "-101011+",
};

constexpr std::array<std::string_view, 9> k3b4b{
    "+0100-", "x1001x", "x0101x", "-1100x", "+0010-", "x1010x", "x0110x", "-1110+", "-0111+",
};

constexpr int kControlRow = 29;  // K.28 in the 5B/6B table
constexpr int kAlternate7 = 8;   // A7 in the 3B/4B table

// Sends the code bits of `row` from running disparity `disparity` into
// `out`; returns the running disparity after it.
int SendSubBlock(std::string_view row, int disparity, std::string& out) {
    const char first = row.front();
    const bool complement = (disparity > 0 && first == '-') || (disparity < 0 && first == '+');
    for (char bit : row.substr(1, row.size() - 2)) {
        out += ((bit == '1') != complement) ? '1' : '0';
    }
    return row.back() == 'x' ? disparity : -disparity;
}

// The 6-bit row of data value x (0-31): the control row sits between D.28
// and D.29.
int RowOfData(int x) {
    return x < kControlRow ? x : x + 1;
}

// A code group sent from negative running disparity. The alternate D.x.7
// is used where the primary one would run six equal bits: after x = 17, 18,
// 20 at negative disparity (x = 11, 13, 14 need it only at positive
// disparity, which a group starting negative never reaches there), and in
// every control character ending in .7.
std::string MakeNegativeGroup(int row6, int y, bool control) {
    std::string group;
    const int disparity = SendSubBlock(k5b6b[static_cast<std::size_t>(row6)], -1, group);
    int row4 = y;
    if (y == 7) {
        const bool alternate = control ||
                               (disparity < 0 && (row6 == 17 || row6 == 18 || row6 == 20)) ||
                               (disparity > 0 && (row6 == 11 || row6 == 13 || row6 == 14));
        row4 = alternate ? kAlternate7 : 7;
    }
    SendSubBlock(k3b4b[static_cast<std::size_t>(row4)], disparity, group);
    return group;
}

const std::array<std::string, kCodeGroupCount>& CodeGroups() {
    static const std::array<std::string, kCodeGroupCount> groups = [] {
        std::array<std::string, kCodeGroupCount> table;
        for (int value = 0; value < 256; ++value) {
            table[static_cast<std::size_t>(value)] =
                MakeNegativeGroup(RowOfData(value % 32), value / 32, false);
        }
        for (int y = 0; y < 8; ++y) {
            table[static_cast<std::size_t>(256 + y)] = MakeNegativeGroup(kControlRow, y, true);
        }
        constexpr std::array<int, 4> kSevenControls{23, 27, 29, 30};
        for (std::size_t k = 0; k < kSevenControls.size(); ++k) {
            table[264 + k] = MakeNegativeGroup(RowOfData(kSevenControls[k]), 7, true);
        }
        return table;
    }();
    return groups;
}

// Every (disparity, r6, r4) combination, encoded once.
struct EncodedTable {
    EncodedGroup groups[2][33][9];
};

const EncodedTable& Encoded() {
    static const EncodedTable table = [] {
        EncodedTable result{};
        for (int d = 0; d < 2; ++d) {
            for (int r6 = 0; r6 < 33; ++r6) {
                for (int r4 = 0; r4 < 9; ++r4) {
                    std::string bits;
                    int disparity = d == 0 ? -1 : 1;
                    disparity = SendSubBlock(k5b6b[static_cast<std::size_t>(r6)], disparity, bits);
                    disparity = SendSubBlock(k3b4b[static_cast<std::size_t>(r4)], disparity, bits);
                    EncodedGroup& group = result.groups[d][r6][r4];
                    for (std::size_t i = 0; i < bits.size(); ++i) {
                        group.bits[i] = bits[i] == '1' ? 1 : 0;
                        group.symbols[i] = bits[i] == '1' ? 1 : -1;
                    }
                    group.disparityAfter = static_cast<int8_t>(disparity);
                }
            }
        }
        return result;
    }();
    return table;
}

template <std::size_t N>
std::string_view RowOf(const std::array<std::string_view, N>& table, int row) {
    return row >= 0 && static_cast<std::size_t>(row) < N ? table[static_cast<std::size_t>(row)]
                                                         : std::string_view{};
}

template <std::size_t N>
char CharOf(const std::array<std::string_view, N>& table, int row, int column) {
    const std::string_view text = RowOf(table, row);
    return column >= 0 && static_cast<std::size_t>(column) < text.size()
               ? text[static_cast<std::size_t>(column)]
               : 'z';
}

}  // namespace

TableSize Table5b6bSize() {
    return {33, 8};
}
std::string_view Table5b6bRow(int row) {
    return RowOf(k5b6b, row);
}
char Table5b6bAt(int row, int column) {
    return CharOf(k5b6b, row, column);
}

TableSize Table3b4bSize() {
    return {9, 6};
}
std::string_view Table3b4bRow(int row) {
    return RowOf(k3b4b, row);
}
char Table3b4bAt(int row, int column) {
    return CharOf(k3b4b, row, column);
}

std::string_view CodeGroup(int index) {
    if (index < 0 || index >= kCodeGroupCount) {
        return {};
    }
    return CodeGroups()[static_cast<std::size_t>(index)];
}

const EncodedGroup* EncodedGroupTable() {
    return &Encoded().groups[0][0][0];
}

const EncodedGroup& EncodeGroup(int disparity, int r6, int r4) {
    return Encoded().groups[disparity > 0 ? 1 : 0][r6][r4];
}

}  // namespace kv
