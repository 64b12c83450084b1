#include "core/via/ViaVizData.h"

#include <algorithm>

#include "core/shared/BoundedCopy.h"

namespace kv {

bool SetRecordName(char (&name)[VIA_NAME_CAPACITY + 1], std::string_view text) {
    return SetFieldText(name, text);
}

CViaVizData::~CViaVizData() {
    delete[] m_padstack.pads;
    delete[] m_stackup.layers;
}

void CViaVizData::SetStackupLayers(std::span<const STACKUPLAYER> layers) {
    auto* copy = layers.empty() ? nullptr : new STACKUPLAYER[layers.size()];
    std::copy(layers.begin(), layers.end(), copy);
    delete[] m_stackup.layers;
    m_stackup.layers = copy;
    m_stackup.count = static_cast<int32_t>(layers.size());
}

void CViaVizData::SetPads(std::span<const PADDATA> pads) {
    auto* copy = pads.empty() ? nullptr : new PADDATA[pads.size()];
    std::copy(pads.begin(), pads.end(), copy);
    delete[] m_padstack.pads;
    m_padstack.pads = copy;
    m_padstack.padCount = static_cast<int32_t>(pads.size());
}

void CViaVizData::SetValues(double first, double second) {
    m_firstValue = first;
    m_secondValue = second;
}

void CViaVizData::SetFlags(bool first, bool second) {
    m_firstFlag = first;
    m_secondFlag = second;
}

}  // namespace kv
