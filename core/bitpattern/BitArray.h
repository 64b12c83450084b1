#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// A growable array of bits, one byte (0 or 1) per bit, index 0 leftmost.
// Storage grows in steps of max(4, min(1024, count / 8)) elements, so
// typing a bit at a time does not copy the whole sequence each time.
// An index outside the array throws std::out_of_range.

namespace kv {

class BitArray {
public:
    BitArray() = default;
    explicit BitArray(std::span<const uint8_t> bits) { Assign(bits); }

    int GetSize() const { return static_cast<int>(m_bits.size()); }
    bool IsEmpty() const { return m_bits.empty(); }
    // Elements the storage holds before it must grow again.
    int Capacity() const { return static_cast<int>(m_bits.capacity()); }

    uint8_t GetAt(int index) const;
    uint8_t operator[](int index) const { return GetAt(index); }
    uint8_t Last() const { return GetAt(GetSize() - 1); }
    // Sets bit `index`, growing the array with zero bits to reach it.
    void SetAtGrow(int index, uint8_t bit);
    void Add(uint8_t bit) { SetAtGrow(GetSize(), bit); }
    // Inserts `count` copies of `bit` before `index` (index may be the size).
    void InsertAt(int index, uint8_t bit, int count = 1);
    // Removes `count` bits from `index` on.
    void RemoveAt(int index, int count = 1);
    // Shortens the array to `count` bits (count <= size).
    void Truncate(int count);
    void Assign(std::span<const uint8_t> bits);
    void RemoveAll() { m_bits.clear(); }

    std::span<const uint8_t> Data() const { return m_bits; }

private:
    void GrowFor(size_t count);

    std::vector<uint8_t> m_bits;
};

}  // namespace kv
