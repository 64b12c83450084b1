#include "core/via/ViaVisualizer.h"

#include <stdexcept>

#include "core/ports/MessagePort.h"
#include "core/shared/FileIo.h"
#include "core/shared/LocalTime.h"
#include "core/via/ViaSpiceWriter.h"
#include "core/via/ViaTopView.h"

namespace kv {
namespace {

bool ValidList(const void* items, int32_t count) {
    return count >= 0 && (items != nullptr || count == 0);
}

}  // namespace

CViaVizData* ViaVisualizer::ViaData(int32_t via) {
    if (via < 0 || via >= ViaCount()) {
        return nullptr;
    }
    // Whoever takes the data may change it.
    Invalidate();
    return &m_data[static_cast<std::size_t>(via)];
}

bool ViaVisualizer::SetElements(int32_t via, const VIAELEMENT* elements, int32_t count) {
    if (via < 0 || via >= kMaxVias || !ValidList(elements, count)) {
        return false;
    }
    Invalidate();
    std::vector<CViaVizElement>& copy = m_models[static_cast<std::size_t>(via)].elements;
    copy.clear();
    for (int32_t i = 0; i < count; ++i) {
        copy.push_back(ToViaVizElement(elements[i]));
    }
    return true;
}

bool ViaVisualizer::SetPorts(int32_t via, const int32_t* layers, int32_t count) {
    if (via < 0 || via >= kMaxVias || !ValidList(layers, count)) {
        return false;
    }
    Invalidate();
    std::vector<CViaVizPort>& copy = m_models[static_cast<std::size_t>(via)].ports;
    copy.assign(count, {});
    for (int32_t i = 0; i < count; ++i) {
        copy[static_cast<std::size_t>(i)].layer = layers[i];
    }
    return true;
}

void ViaVisualizer::SetNames(const char* subcircuit, const char* baseName, const char* exportFile) {
    m_subcircuit = subcircuit != nullptr ? subcircuit : "";
    m_baseName = baseName != nullptr ? baseName : "";
    m_exportFile = exportFile != nullptr ? exportFile : "";
}

bool ViaVisualizer::SetView(int32_t view) {
    if (view != static_cast<int32_t>(ViaView::Side) && view != static_cast<int32_t>(ViaView::Top)) {
        return false;
    }
    m_view = static_cast<ViaView>(view);
    return true;
}

bool ViaVisualizer::HasData() const {
    const STACKUPARRAY& stackup = m_data[0].Stackup();
    return stackup.count > 0 && stackup.layers != nullptr;
}

SpiceExportInput ViaVisualizer::Input() const {
    SpiceExportInput input;
    // Both vias of a pair go through the same board: the stackup is via 0's.
    input.stackup = &m_data[0].Stackup();
    input.pair = m_pair;
    input.metric = m_metric;
    input.subcircuitName = m_subcircuit;
    for (int v = 0; v < ViaCount(); ++v) {
        const auto i = static_cast<std::size_t>(v);
        input.vias.push_back({&m_data[i].Padstack(), m_models[i].elements, m_models[i].ports});
    }
    return input;
}

const SideViewLayout& ViaVisualizer::LayoutFor(const SpiceExportInput& input, const Rect& client,
                                               const ITextMetrics& metrics) const {
    const Extent textSize = metrics.TextExtent("Xg");
    if (!m_layout || m_layout->client != client || m_layout->textSize != textSize) {
        m_layout = CachedLayout{client, textSize, LayOutSideView(input, client, metrics)};
    }
    return m_layout->layout;
}

void ViaVisualizer::Paint(ICanvas& canvas, const Rect& client) const {
    const SpiceExportInput input = Input();
    if (m_view == ViaView::Top && HasData()) {
        PaintViaTopView(canvas, client, input, m_topViewLayer);
        return;
    }
    PaintSideView(canvas, input, LayoutFor(input, client, canvas));
}

std::string ViaVisualizer::HoverText(Point at, const Rect& client,
                                     const ITextMetrics& metrics) const {
    if (!HasData() || !client.Contains(at)) {
        return {};
    }
    const SpiceExportInput input = Input();
    if (m_view == ViaView::Top) {
        return ViaLayerSummary(input, m_topViewLayer);
    }
    return ViaLayerSummary(input, LayoutFor(input, client, metrics).LayerAt(at.y));
}

SpiceExportOutcome ViaVisualizer::ExportToSpice(IFileChooser& chooser,
                                                const std::optional<std::tm>& generated) const {
    if (!HasData()) {
        return SpiceExportOutcome::NoData;
    }
    const SpiceExportInput input = Input();
    try {
        return ExportViaToSpice(&input, Names(), chooser, generated);
    } catch (const std::logic_error& error) {
        // Layer indices that do not fit the stackup: the text is never complete, so no file
        // was touched.
        ShowMessage(std::string("The via model does not fit its stackup: ") + error.what(),
                    MessageIcon::Error);
        return SpiceExportOutcome::CannotOpen;
    }
}

bool ViaVisualizer::ExportToSpiceFile(const std::string& path,
                                      const std::optional<std::tm>& generated) const {
    if (!HasData() || path.empty()) {
        return false;
    }
    SpiceExportInput input = Input();
    input.generated = generated.value_or(LocalTimeNow());
    std::string text;
    try {
        text = SpiceModelText(input);
    } catch (const std::logic_error&) {
        return false;
    }
    return ReplaceFileAtomically(path, text).ok;
}

}  // namespace kv
