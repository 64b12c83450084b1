#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/stimulus/EyeMask.h"
#include "kvcomctl/EyeMask.h"
#include "kvcomctl/IEyeDiagramData.h"

namespace kv {

// One byte per bit, 0 or 1: the form the pages and the editor work on.
using BitVector = std::vector<uint8_t>;

// The most simulation cycles valid data holds.
inline constexpr int32_t kMaxCycleCount = 32768;

inline constexpr std::string_view kInvalidEyeDiagramData =
    "Invalid eye diagram data.\nReverting to default values.";

// Every field of the data object that travels with it: assignment copies
// this group whole, so a field added here can never be left behind. Only the
// description stays outside it. The pages use the fields directly, by their
// framework names.
struct StimulusValues {
    int32_t m_cycleCount = 4;
    std::vector<int32_t> m_cycleMarks;
    bool m_auxFlag = true;
    int32_t m_skipBits = 0;
    int32_t m_eyeCount = 1;
    double m_period = 3.3;
    double m_dutyCycle = 50.0;
    std::array<bool, 3> m_addJitter{};
    std::array<bool, 3> m_jitterAsTime{};
    std::array<bool, 3> m_freqMeasured{};
    double m_maxJitter = 1.0;
    double m_randomFreq = 100.0;
    int32_t m_jitterType = 0;
    bool m_jitterRepeatable = true;
    bool m_advancedJitter = false;
    double m_sineMag = 0.0;
    double m_sineFreq = 100.0;
    double m_sineInit = 0.0;
    double m_uniformMag = 0.0;
    double m_uniformMean = 0.0;
    int32_t m_listMode = 0;
    int32_t m_seqType = 7;
    BitVector m_bits;
    int32_t m_polyDegree = 5;
    int32_t m_initState = 0;
    EYEMASK m_mask = DefaultEyeMask();
};

// The stimulus and eye-diagram set-up of one simulation. It holds values
// only: setters store what they are given, and Load checks the data as a
// whole (IsValid).
class CStimulusData final : public IEyeDiagramData, public StimulusValues {
public:
    CStimulusData();
    // A copy is a copy of everything; assignment keeps the target's own
    // description.
    CStimulusData(const CStimulusData& other) = default;
    CStimulusData& operator=(const CStimulusData& other);
    ~CStimulusData() = default;

    int SetCycleCount(int count) override { return m_cycleCount = count; }
    int GetCycleCount() const override { return m_cycleCount; }
    int SetSkipBits(int count) override { return m_skipBits = count; }
    int GetSkipBits() const override { return m_skipBits; }
    bool SetAuxFlag(bool flag) override { return m_auxFlag = flag; }
    bool GetAuxFlag() const override { return m_auxFlag; }
    int SetEyeCount(int count) override { return m_eyeCount = count; }
    int GetEyeCount() const override { return m_eyeCount; }
    void SetPeriod(double nanoseconds) override { m_period = nanoseconds; }
    double GetPeriod() const override { return m_period; }
    void SetDutyCycle(double percent) override { m_dutyCycle = percent; }
    double GetDutyCycle() const override { return m_dutyCycle; }
    // The component index is 0 Gaussian, 1 uniform, 2 sine; any other index
    // is refused (false) and changes nothing (see IEyeDiagramData.h).
    bool SetAddJitter(int component, bool add) override {
        return SetFlag(m_addJitter, component, add);
    }
    bool GetAddJitter(int component) const override { return FlagOf(m_addJitter, component); }
    bool SetAdvancedJitter(bool advanced) override { return m_advancedJitter = advanced; }
    bool GetAdvancedJitter() const override { return m_advancedJitter; }
    void SetMaxJitter(double value) override { m_maxJitter = value; }
    double GetMaxJitter() const override { return m_maxJitter; }
    int SetJitterType(int type) override { return m_jitterType = type; }
    int GetJitterType() const override { return m_jitterType; }
    bool SetJitterRepeatable(bool repeatable) override { return m_jitterRepeatable = repeatable; }
    bool GetJitterRepeatable() const override { return m_jitterRepeatable; }
    bool SetJitterAsTime(int component, bool asTime) override {
        return SetFlag(m_jitterAsTime, component, asTime);
    }
    bool GetJitterAsTime(int component) const override { return FlagOf(m_jitterAsTime, component); }
    bool SetFreqMeasured(int component, bool measured) override {
        return SetFlag(m_freqMeasured, component, measured);
    }
    bool GetFreqMeasured(int component) const override { return FlagOf(m_freqMeasured, component); }
    void SetRandomFreq(double value) override { m_randomFreq = value; }
    double GetRandomFreq() const override { return m_randomFreq; }
    void SetSineMag(double value) override { m_sineMag = value; }
    double GetSineMag() const override { return m_sineMag; }
    void SetSineFreq(double value) override { m_sineFreq = value; }
    double GetSineFreq() const override { return m_sineFreq; }
    void SetSineInit(double value) override { m_sineInit = value; }
    double GetSineInit() const override { return m_sineInit; }
    void SetUniformMag(double value) override { m_uniformMag = value; }
    double GetUniformMag() const override { return m_uniformMag; }
    void SetUniformMean(double value) override { m_uniformMean = value; }
    double GetUniformMean() const override { return m_uniformMean; }
    int SetSeqType(int code) override { return m_seqType = code; }
    int GetSeqType() const override { return m_seqType; }
    int SetInitState(int state) override { return m_initState = state; }
    int GetInitState() const override { return m_initState; }
    int SetPolyDegree(int degree) override { return m_polyDegree = degree; }
    int GetPolyDegree() const override { return m_polyDegree; }
    void SetMask(const EYEMASK& mask) override { m_mask = mask; }
    EYEMASK* GetMask() override { return &m_mask; }
    void SetBits(const bool* bits, int count) override;
    int GetBitCount() const override { return static_cast<int>(m_bits.size()); }
    bool GetBit(int index) const override;
    bool Save(const char* location, bool toFile) override;
    bool Load(const char* location, bool fromFile) override;

    // Fills `bits` from the sequence type, degree and cycle count, starting
    // with `initState` as first bit. Types that are not generated leave
    // `bits` as they are.
    void GenerateSequence(int initState, BitVector& bits) const;

    // The whole-object check that Load applies; `storedSequenceLength` is the
    // length that the store gave for the sequence. InvalidReason names the
    // first rule that fails.
    bool IsValid(int storedSequenceLength) const { return !InvalidReason(storedSequenceLength); }
    std::optional<std::string_view> InvalidReason(int storedSequenceLength) const;

    const BitVector& Bits() const { return m_bits; }
    void SetBitVector(BitVector bits) { m_bits = std::move(bits); }
    const EYEMASK& Mask() const { return m_mask; }

    // A note of this object alone: copied with the object, kept by assignment.
    std::string m_description;

private:
    using ComponentFlags = std::array<bool, 3>;
    static bool IsComponent(int component) { return component >= 0 && component < 3; }
    static bool SetFlag(ComponentFlags& flags, int component, bool value) {
        return IsComponent(component) && (flags[static_cast<std::size_t>(component)] = value);
    }
    static bool FlagOf(const ComponentFlags& flags, int component) {
        return IsComponent(component) && flags[static_cast<std::size_t>(component)];
    }
};

// Length of one pseudo-random cycle, 2^degree - 1, or -1 when it would not
// fit a bit count (degrees outside 0 to 30).
int64_t PrbsSequenceLength(int degree);

}  // namespace kv
