#pragma once

#include <span>
#include <string_view>

#include "kvcomctl/IViaVizData.h"

namespace kv {

// Puts `text` into a record name, as SetFieldText: false when it had to cut it to
// VIA_NAME_CAPACITY bytes.
bool SetRecordName(char (&name)[VIA_NAME_CAPACITY + 1], std::string_view text);

// The via data a host fills: a stackup and a padstack. The object owns the layer array of the
// stackup and the pad array of the padstack, whoever put them there, and frees both with
// delete[] when it goes.
class CViaVizData final : public IViaVizData {
public:
    CViaVizData() = default;
    ~CViaVizData() override;
    CViaVizData(const CViaVizData&) = delete;
    CViaVizData& operator=(const CViaVizData&) = delete;

    STACKUPARRAY* GetStackup() override { return &m_stackup; }
    PADSTACK* GetPadstack() override { return &m_padstack; }
    void* GetViaReference() override { return nullptr; }
    int32_t GetViaCount() override { return 0; }
    void* GetNetReference() override { return nullptr; }
    double GetFirstValue() override { return m_firstValue; }
    double GetSecondValue() override { return m_secondValue; }
    double GetThirdValue() override { return 0.0; }
    bool GetFlag() override { return m_secondFlag; }

    const STACKUPARRAY& Stackup() const { return m_stackup; }
    const PADSTACK& Padstack() const { return m_padstack; }

    // Replace the owned arrays with copies of `layers` / `pads` (the counts follow).
    void SetStackupLayers(std::span<const STACKUPLAYER> layers);
    void SetPads(std::span<const PADDATA> pads);
    void SetValues(double first, double second);
    void SetFlags(bool first, bool second);

private:
    STACKUPARRAY m_stackup{0, nullptr};
    PADSTACK m_padstack{};
    bool m_firstFlag = false;
    bool m_secondFlag = false;
    double m_firstValue = 0.0;
    double m_secondValue = 0.0;
};

}  // namespace kv
