#include "core/bitpattern/BitArray.h"

#include <algorithm>
#include <stdexcept>

namespace kv {
namespace {

[[noreturn]] void ThrowOutOfRange(const char* what) {
    throw std::out_of_range(what);
}

uint8_t AsBit(uint8_t value) {
    return value != 0 ? 1 : 0;
}

}  // namespace

uint8_t BitArray::GetAt(int index) const {
    if (index < 0 || index >= GetSize()) {
        ThrowOutOfRange("bit index outside the pattern");
    }
    return m_bits[static_cast<size_t>(index)];
}

void BitArray::GrowFor(size_t count) {
    if (count <= m_bits.capacity()) {
        return;
    }
    const size_t step = std::clamp<size_t>(m_bits.size() / 8, 4, 1024);
    m_bits.reserve(std::max(count, m_bits.capacity() + step));
}

void BitArray::SetAtGrow(int index, uint8_t bit) {
    if (index < 0) {
        ThrowOutOfRange("negative bit index");
    }
    const auto position = static_cast<size_t>(index);
    if (position >= m_bits.size()) {
        GrowFor(position + 1);
        m_bits.resize(position + 1, 0);
    }
    m_bits[position] = AsBit(bit);
}

void BitArray::InsertAt(int index, uint8_t bit, int count) {
    if (index < 0 || index > GetSize() || count < 0) {
        ThrowOutOfRange("insert position outside the pattern");
    }
    GrowFor(m_bits.size() + static_cast<size_t>(count));
    m_bits.insert(m_bits.begin() + index, static_cast<size_t>(count), AsBit(bit));
}

void BitArray::RemoveAt(int index, int count) {
    if (index < 0 || count < 0 || index + count > GetSize()) {
        ThrowOutOfRange("removed run outside the pattern");
    }
    m_bits.erase(m_bits.begin() + index, m_bits.begin() + index + count);
}

void BitArray::Truncate(int count) {
    if (count < 0 || count > GetSize()) {
        ThrowOutOfRange("new length outside the pattern");
    }
    m_bits.resize(static_cast<size_t>(count));
}

void BitArray::Assign(std::span<const uint8_t> bits) {
    m_bits.clear();
    GrowFor(bits.size());
    for (const uint8_t bit : bits) {
        m_bits.push_back(AsBit(bit));
    }
}

}  // namespace kv
