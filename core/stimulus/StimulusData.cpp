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
    const auto bitCount = static_cast<int64_t>(m_bits.size());
    struct Rule {
        bool (*holds)(const CStimulusData&, int64_t bitCount, int storedLength);
        std::string_view reason;
    };
    // In the order Load checks them; the first that fails is named.
    static constexpr Rule kRules[] = {
        {[](const CStimulusData& d, int64_t, int) {
             return d.m_cycleCount >= 1 && d.m_cycleCount <= kMaxCycleCount;
         },
         "the cycle count must be from 1 to 32768"},
        {[](const CStimulusData& d, int64_t bits, int) {
             // An empty sequence counts as one bit.
             return d.m_skipBits >= 0 &&
                    d.m_skipBits <= int64_t{d.m_cycleCount} * std::max<int64_t>(1, bits);
         },
         "the skipped bits must be from 0 to the cycle count times the bit count"},
        {[](const CStimulusData& d, int64_t, int) {
             return d.m_eyeCount >= 1 && d.m_eyeCount <= 3;
         },
         "the eye count must be from 1 to 3"},
        {[](const CStimulusData& d, int64_t, int) {
             return d.m_dutyCycle > 0 && d.m_dutyCycle < 100;
         },
         "the duty cycle must lie strictly between 0 and 100"},
        {[](const CStimulusData& d, int64_t, int) {
             return d.m_jitterType >= 0 && d.m_jitterType <= 2;
         },
         "the jitter type must be from 0 to 2"},
        {[](const CStimulusData& d, int64_t, int) { return d.m_seqType >= 0 && d.m_seqType <= 9; },
         "the sequence type must be from 0 to 9"},
        {[](const CStimulusData& d, int64_t, int) {
             return d.m_initState == 0 || d.m_initState == 1;
         },
         "the initial state must be 0 or 1"},
        {[](const CStimulusData& d, int64_t, int) {
             return d.m_polyDegree >= 3 && d.m_polyDegree <= 16;
         },
         "the polynomial degree must be from 3 to 16"},
        {[](const CStimulusData& d, int64_t bits, int stored) {
             return d.m_seqType != seq::kPrbs || bits == stored;
         },
         "a PRBS sequence must hold as many bits as its stored length"},
        {[](const CStimulusData& d, int64_t bits, int) {
             return d.m_seqType != seq::k8b10b || bits == int64_t{d.m_cycleCount} * 10;
         },
         "an 8B/10B sequence must hold ten bits per cycle"},
        {[](const CStimulusData& d, int64_t bits, int) {
             return d.m_seqType != seq::kUsbCompliance || bits == kUsbComplianceBits;
         },
         "a USB 2.0 compliance sequence must hold 330 bits"},
    };
    for (const Rule& rule : kRules) {
        if (!rule.holds(*this, bitCount, storedSequenceLength)) {
            return rule.reason;
        }
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
