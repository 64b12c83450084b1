#include "apps/viadescription/ViaControlFill.h"

#include <algorithm>
#include <memory>
#include <span>

#include "kvcomctl/IViaVizCtrl.h"

namespace kv::via_json {
namespace {

// The data object takes the array over and frees it with delete[] (see ViaRecords.h).
template <typename Record>
Record* HandedOverCopy(std::span<const Record> records) {
    auto copy = std::make_unique<Record[]>(records.size());
    std::copy(records.begin(), records.end(), copy.get());
    return copy.release();
}

void FillViaData(IViaVizData& data, const ViaDescription& description,
                 const ViaDescriptionVia& via) {
    STACKUPLAYER* layers = HandedOverCopy<STACKUPLAYER>(description.stackup);
    STACKUPARRAY& stackup = *data.GetStackup();
    delete[] stackup.layers;
    stackup = {static_cast<int32_t>(description.stackup.size()), layers};

    PADDATA* pads = HandedOverCopy<PADDATA>(via.pads);
    PADSTACK& padstack = *data.GetPadstack();
    delete[] padstack.pads;
    padstack = via.padstack;
    padstack.padCount = static_cast<int32_t>(via.pads.size());
    padstack.pads = pads;
}

}  // namespace

bool FillViaControl(IViaVizCtrl& control, const ViaDescription& description) {
    control.SetPair(description.pair);
    for (std::size_t v = 0; v < description.vias.size(); ++v) {
        const auto index = static_cast<int32_t>(v);
        IViaVizData* data = control.GetViaData(index);
        if (data == nullptr) {
            return false;
        }
        const ViaDescriptionVia& via = description.vias[v];
        FillViaData(*data, description, via);
        control.SetElements(index, via.elements.data(), static_cast<int32_t>(via.elements.size()));
        control.SetPorts(index, via.ports.data(), static_cast<int32_t>(via.ports.size()));
    }
    control.SetNames(description.subcircuit.c_str(), nullptr, nullptr);
    control.Refresh();
    return true;
}

}  // namespace kv::via_json
