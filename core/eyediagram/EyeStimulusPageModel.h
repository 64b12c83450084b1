#pragma once

#include <array>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/stimulus/Jitter.h"
#include "core/stimulus/StimulusData.h"
#include "kvcomctl/IEyeDiagramStimAdaptor.h"

// What the eye-diagram stimulus page decides: cycles, skipped bits, eyes,
// bit interval and duty cycle, simple or advanced jitter with its three
// components (0 Gaussian, 1 uniform, 2 sine) and their units, the sequence
// and the bit pattern it makes, each typed value's check with its message
// (through the message port), and the waveform the preview draws. The widget
// creates a control per id (kvcomctl/EyeDiagramControlIds.h), forwards what
// the user does and shows what this holds.

namespace kv {

class EyeStimulusPageModel {
public:
    // Edits `data`, the sheet's working copy.
    explicit EyeStimulusPageModel(CStimulusData& data);

    // When the page first opens: values it cannot work with are told and
    // put back to their defaults. True when anything was replaced.
    bool CheckOnOpen();

    // What a field shows, what the user typed into it, and whether it takes
    // input now (the simple maximum only with simple jitter, a component's
    // fields only while it is switched on).
    const std::string& Text(int controlId) const;
    void Type(int controlId, std::string text);
    bool IsEnabled(int controlId) const;
    // Commits the typed text of one field; false after its message, and the
    // typed text stays. A text still as shown is left alone.
    bool Commit(int controlId);
    // Before the page is left: every enabled field, then the choices go into
    // the data. The field that was refused, none when all passed.
    std::optional<int> Leave();
    // The sheet's OK: the choices and the shown bits go into the data.
    void Apply();

    int EyesIndex() const { return m_eyesIndex; }
    void SetEyesIndex(int index) { m_eyesIndex = index; }
    bool Advanced() const { return m_data.m_advancedJitter; }
    void SetAdvanced(bool advanced) { m_data.m_advancedJitter = advanced; }
    int JitterType() const { return m_jitterType; }
    void SetJitterType(int type) { m_jitterType = type; }
    bool Repeatable() const { return m_repeatable; }
    void SetRepeatable(bool repeatable) { m_repeatable = repeatable; }

    // The kind the sequence list shows: kinds it does not offer show as
    // drawn sequences, the construction default as PRBS.
    int Kind() const { return m_kind; }
    void SetKind(int kind);
    int PolyDegree() const { return m_data.m_polyDegree; }
    void SetPolyDegree(int degree);
    // The initial state list: "High" first, "Low" second.
    int LevelIndex() const { return m_levelIndex; }
    void SetLevelIndex(int index);

    bool ComponentEnabled(int component) const { return Jitter(component).m_enabled; }
    // Switching a component on is refused, after the message, while its
    // magnitude is half the bit interval or more, or there is no bit interval.
    bool SetComponentEnabled(int component, bool enabled);
    // 0 percent of the bit interval, 1 nanoseconds: the same displacement,
    // said in the other unit (without a bit interval the number stays).
    int ComponentUnit(int component) const { return Jitter(component).m_asTime ? 1 : 0; }
    void SetComponentUnit(int component, int unit);

    // The bits the pattern control shows: the user draws a custom sequence,
    // every other kind is made from the settings (each remake counts up the
    // revision, so that the control is handed them again).
    const BitVector& Bits() const { return m_bits; }
    void SetBits(BitVector bits) { m_bits = std::move(bits); }
    int BitsRevision() const { return m_bitsRevision; }
    bool PatternReadOnly() const;
    bool DegreeEnabled() const;

    // The waveform the stimulus adaptor makes of the page's values.
    std::vector<STIMPOINT> Preview() const;

private:
    bool HasBitInterval() const;
    const CJitter& Jitter(int component) const;
    CJitter& Jitter(int component);
    void ShowData();
    void ShowTexts();
    void RemakeBits();
    void StoreToData();
    std::optional<std::string_view> CheckAndStore(int controlId, std::optional<double> typed);

    CStimulusData& m_data;
    // One record per jitter component, and a fourth kept for the host. The
    // simple maximum jitter and the Gaussian magnitude are one stored value:
    // it lives in the Gaussian record alone, so that whichever field was
    // typed last is what the data gets.
    std::array<CJitter, 4> m_jitter;
    std::map<int, std::string> m_texts;
    std::map<int, std::string> m_shown;
    int m_eyesIndex = 0;
    int m_jitterType = 0;
    bool m_repeatable = false;
    int m_kind = 0;
    int m_levelIndex = 0;
    BitVector m_bits;
    int m_bitsRevision = 0;
    bool m_telling = false;  // a message is up: the field's own events wait
};

}  // namespace kv
