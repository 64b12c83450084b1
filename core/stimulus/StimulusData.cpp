#include "core/stimulus/StimulusData.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "core/stimulus/EyeMask.h"
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

CStimulusData::CStimulusData() : m_mask(DefaultEyeMask()) {
    GenerateSequence(0, m_bits);
}

CStimulusData& CStimulusData::operator=(const CStimulusData& other) {
    // m_description is a note of this object only and never travels.
    m_cycleCount = other.m_cycleCount;
    m_cycleMarks = other.m_cycleMarks;
    m_auxFlag = other.m_auxFlag;
    m_skipBits = other.m_skipBits;
    m_eyeCount = other.m_eyeCount;
    m_period = other.m_period;
    m_dutyCycle = other.m_dutyCycle;
    m_addJitter = other.m_addJitter;
    m_jitterAsTime = other.m_jitterAsTime;
    m_freqMeasured = other.m_freqMeasured;
    m_maxJitter = other.m_maxJitter;
    m_randomFreq = other.m_randomFreq;
    m_jitterType = other.m_jitterType;
    m_jitterRepeatable = other.m_jitterRepeatable;
    m_advancedJitter = other.m_advancedJitter;
    m_sineMag = other.m_sineMag;
    m_sineFreq = other.m_sineFreq;
    m_sineInit = other.m_sineInit;
    m_uniformMag = other.m_uniformMag;
    m_uniformMean = other.m_uniformMean;
    m_listMode = other.m_listMode;
    m_seqType = other.m_seqType;
    m_bits = other.m_bits;
    m_polyDegree = other.m_polyDegree;
    m_initState = other.m_initState;
    m_mask = other.m_mask;
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

bool CStimulusData::IsValid(int storedSequenceLength) const {
    const int64_t bitCount = std::max<int64_t>(1, static_cast<int64_t>(m_bits.size()));
    const bool bitsMatchType =
        (m_seqType != seq::kPrbs || static_cast<int64_t>(m_bits.size()) == storedSequenceLength) &&
        (m_seqType != seq::k8b10b ||
         static_cast<int64_t>(m_bits.size()) == int64_t{m_cycleCount} * 10) &&
        (m_seqType != seq::kUsbCompliance || m_bits.size() == 330);
    return m_cycleCount >= 1 && m_cycleCount <= 32768 && m_skipBits >= 0 &&
           m_skipBits <= int64_t{m_cycleCount} * bitCount && m_eyeCount >= 1 && m_eyeCount <= 3 &&
           m_dutyCycle > 0 && m_dutyCycle < 100 && m_jitterType >= 0 && m_jitterType <= 2 &&
           m_seqType >= 0 && m_seqType <= 9 && (m_initState == 0 || m_initState == 1) &&
           m_polyDegree >= 3 && m_polyDegree <= 16 && bitsMatchType;
}

bool CStimulusData::Save(const char* location, bool toFile) {
    return SaveStimulusData(*this, location, toFile);
}

bool CStimulusData::Load(const char* location, bool fromFile) {
    LoadStimulusData(*this, location, fromFile);
    return true;
}

}  // namespace kv
