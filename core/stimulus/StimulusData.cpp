#include "core/stimulus/StimulusData.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "core/stimulus/EyeMask.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/JitterSeed.h"
#include "core/stimulus/RegisterFill.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/ShiftRegister.h"
#include "core/stimulus/StimulusPersistence.h"
#include "core/stimulus/StimulusRules.h"
#include "core/stimulus/SymbolSource.h"

namespace kv {
namespace {

// Fills `bits` with `length` bits from the source, the first one equal to
// `initState`: when the source's first symbol differs, every bit is inverted.
// A source that ends or fails early leaves the remaining bits clear.
void FillFromSource(SymbolSource& source, std::size_t length, int initState, BitVector& bits) {
    // Every bit is written below, so an old buffer of the same size is
    // reused without clearing it first.
    bits.resize(length);
    if (length == 0) {
        return;
    }
    // The symbols (+1/-1) are read straight into the bit buffer and turned
    // into bits in place.
    uint8_t* data = bits.data();
    int status = 1;
    const std::size_t got =
        source.ReadSymbols(std::span<int8_t>(reinterpret_cast<int8_t*>(data), length), status);
    if (got > 0) {
        const bool firstIsOne = data[0] == 1;
        const bool invert = (initState == 0 && firstIsOne) || (initState == 1 && !firstIsOne);
        // +1 is 0x01 and -1 is 0xff: the top bit set means a zero bit.
        const uint8_t flip = invert ? 0 : 1;
        for (std::size_t i = 0; i < got; ++i) {
            data[i] = static_cast<uint8_t>((data[i] >> 7) ^ flip);
        }
    }
    std::fill(bits.begin() + static_cast<std::ptrdiff_t>(got), bits.end(), uint8_t{0});
}

}  // namespace

int64_t PrbsSequenceLength(int degree) {
    if (degree < 0 || degree > 30) {
        return -1;
    }
    return (int64_t{1} << degree) - 1;
}

CStimulusData::CStimulusData() {
    GenerateSequence(0, m_bits);
}

CStimulusData& CStimulusData::operator=(const CStimulusData& other) {
    // m_description is a note of this object only and never travels.
    static_cast<StimulusValues&>(*this) = other;
    return *this;
}

void CStimulusData::SetBits(const bool* bits, int count) {
    if (count <= 0) {
        m_bits.clear();
        return;
    }
    if (bits == nullptr) {
        return;  // nothing to copy from: keep what we have
    }
    m_bits.resize(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < m_bits.size(); ++i) {
        m_bits[i] = bits[i] ? 1 : 0;
    }
}

bool CStimulusData::GetBit(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= m_bits.size()) {
        throw std::out_of_range("bit index " + std::to_string(index) + " outside the sequence of " +
                                std::to_string(m_bits.size()) + " bits");
    }
    return m_bits[static_cast<std::size_t>(index)] != 0;
}

void CStimulusData::GenerateSequence(int initState, BitVector& bits) const {
    switch (m_seqType) {
        case seq::kPrbs:
        case seq::kConstructionDefault: {
            const int64_t length = PrbsSequenceLength(m_polyDegree);
            if (length < 0) {
                return;  // a cycle this long cannot be held as a bit count
            }
            // The sequence starts in the requested state: when the register's
            // first output differs from it, every bit is inverted.
            ShiftRegister probe(m_polyDegree);
            const bool firstOutput = probe.Step() != 0;
            const bool invert = (initState == 0 && firstOutput) || (initState == 1 && !firstOutput);
            // Every byte is written by the fill, so a buffer of the right size
            // is reused as it is rather than cleared first.
            bits.resize(static_cast<std::size_t>(length));
            FillRegisterOutput(m_polyDegree, bits, invert);
            return;
        }
        case seq::k8b10b: {
            if (m_cycleCount > kMaxCycleCount) {
                return;  // no data holds more cycles: a host's INT_MAX would be 21 GB of bits
            }
            const int64_t length = int64_t{m_cycleCount} * 10;
            // The jitter seed keeps 8B/10B data the same from run to run when
            // the jitter is repeatable; otherwise the fixed seed does.
            SymbolSource source(
                Code8b10bConfig(NextJitterSeed(m_jitterRepeatable, ModuleProfile())));
            FillFromSource(source, static_cast<std::size_t>(std::max<int64_t>(length, 0)),
                           initState, bits);
            return;
        }
        default:
            return;  // not generated here: the bits stay as they are
    }
}

std::optional<std::string_view> CStimulusData::InvalidReason(int storedSequenceLength) const {
    // The limits of each value first, in the order of the keys, then the
    // bit count each generated kind must have.
    for (const StimulusRule& rule : StimulusRules()) {
        if (rule.checkedOnLoad && !IsHeld(rule, *this, false)) {
            return rule.heldReason;
        }
    }
    const auto bitCount = static_cast<int64_t>(m_bits.size());
    if (m_seqType == seq::kPrbs && bitCount != storedSequenceLength) {
        return "a PRBS sequence must hold as many bits as its stored length";
    }
    if (m_seqType == seq::k8b10b && bitCount != int64_t{m_cycleCount} * 10) {
        return "an 8B/10B sequence must hold ten bits per cycle";
    }
    if (m_seqType == seq::kUsbCompliance && bitCount != kUsbComplianceBits) {
        return "a USB 2.0 compliance sequence must hold 330 bits";
    }
    return std::nullopt;
}

bool CStimulusData::Save(const char* location, bool toFile) {
    return SaveStimulusData(*this, location, toFile).ok;
}

bool CStimulusData::Load(const char* location, bool fromFile) {
    LoadStimulusData(*this, location, fromFile);
    return true;
}

}  // namespace kv
