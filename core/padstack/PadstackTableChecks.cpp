// The layer span and the checks over the whole table. Their order is this editor's choice:
// first what makes the table meaningless (two rows for one layer), then what only other tools
// may create (Custom pads), then the sizes from the drill outward (anti-pads against the drill,
// pads against the drill, anti-pads around pads), and last the span against the layers vias
// already use. The first failure is the one the user is told about.

#include <algorithm>

#include "core/padstack/PadstackEditModel.h"
#include "core/padstack/PadstackMessages.h"
#include "core/padstack/PadstackRules.h"

namespace kv {
namespace {

bool Fails(std::string_view text) {
    ShowPadstackMessage(text);
    return false;
}

}  // namespace

std::vector<std::string> PadstackEditModel::SpanChoices() const {
    std::vector<std::string> choices{std::string(kTopLayerChoice)};
    for (std::string& name : LayerChoices()) {
        choices.push_back(std::move(name));
    }
    choices.emplace_back(kBottomLayerChoice);
    return choices;
}

int32_t PadstackEditModel::ResolveSpanChoice(std::string_view choice) const {
    const std::vector<int32_t> conductors = ConductorLayers();
    if (conductors.empty()) {
        return -1;
    }
    if (choice == kTopLayerChoice) {
        return conductors.front();
    }
    if (choice == kBottomLayerChoice) {
        return conductors.back();
    }
    for (const int32_t layer : conductors) {
        if (LayerName(layer) == choice) {
            return layer;
        }
    }
    return -1;
}

std::string PadstackEditModel::FirstLayerText() const {
    const std::vector<int32_t> conductors = ConductorLayers();
    return !conductors.empty() && m_state.firstLayer == conductors.front()
               ? std::string(kTopLayerChoice)
               : LayerName(m_state.firstLayer);
}

std::string PadstackEditModel::LastLayerText() const {
    const std::vector<int32_t> conductors = ConductorLayers();
    return !conductors.empty() && m_state.lastLayer == conductors.back()
               ? std::string(kBottomLayerChoice)
               : LayerName(m_state.lastLayer);
}

// Names the first used layer, in the order the host gave them, that the span leaves out.
bool PadstackEditModel::SpanKeepsUsedLayers(int32_t first, int32_t last) const {
    for (const int32_t used : m_usedLayers) {
        const bool known = used >= 0 && used < static_cast<int32_t>(m_stackup.size());
        if (known && (used < first || used > last)) {
            return Fails(SpanLeavesOutUsedLayerText(LayerName(used)));
        }
    }
    return true;
}

// A start layer must be a conductor layer no lower than the end layer; then the span must
// still hold every layer a via of this padstack connects to.
bool PadstackEditModel::SetFirstLayer(std::string_view choice) {
    const int32_t layer = ResolveSpanChoice(choice);
    if (layer < 0 || layer > m_state.lastLayer) {
        return Fails(padstack_text::kBadStartLayer);
    }
    if (!SpanKeepsUsedLayers(layer, m_state.lastLayer)) {
        return false;
    }
    m_modified = m_modified || layer != m_state.firstLayer;
    m_state.firstLayer = layer;
    return true;
}

bool PadstackEditModel::SetLastLayer(std::string_view choice) {
    const int32_t layer = ResolveSpanChoice(choice);
    if (layer < 0 || layer < m_state.firstLayer) {
        return Fails(padstack_text::kBadEndLayer);
    }
    if (!SpanKeepsUsedLayers(m_state.firstLayer, layer)) {
        return false;
    }
    m_modified = m_modified || layer != m_state.lastLayer;
    m_state.lastLayer = layer;
    return true;
}

bool PadstackEditModel::CheckTable() const {
    return CheckOnePadPerLayer() && CheckCustomPads() && CheckDrillAgainstAntiPads() &&
           CheckDrillAgainstPads() && CheckAntiPadsEnclosePads() &&
           SpanKeepsUsedLayers(m_state.firstLayer, m_state.lastLayer);
}

bool PadstackEditModel::CheckOnePadPerLayer() const {
    for (auto row = m_state.rows.begin() + 1; row != m_state.rows.end(); ++row) {
        const int32_t layer = row->layer;
        if (std::any_of(row + 1, m_state.rows.end(),
                        [layer](const PadstackRow& other) { return other.layer == layer; })) {
            return Fails(padstack_text::kOnePadPerLayer);
        }
    }
    return true;
}

// A Custom pad needs a Clearance anti-pad: its own, or, when its anti-pad is "<Auto>", the
// "<default>" row's.
bool PadstackEditModel::CheckCustomPads() const {
    const bool defaultClearance = m_state.rows.front().antiPadShape == TableShape::Clearance;
    for (const PadstackRow& row : m_state.rows) {
        if (row.padShape != TableShape::Custom || row.antiPadShape == TableShape::Clearance) {
            continue;
        }
        if (row.IsDefault() || row.antiPadShape != TableShape::Auto || !defaultClearance) {
            return Fails(padstack_text::kCustomWithoutClearance);
        }
    }
    return true;
}

// Only outlines a row sizes itself are compared: "<Auto>" rows are covered by the "<default>"
// row, a Clearance anti-pad and a Custom pad have no width and height of their own. The
// equality cases are those of the cell edits, so an accepted cell never fails here.
bool PadstackEditModel::CheckDrillAgainstAntiPads() const {
    const double drill = ActualDrill();
    for (const PadstackRow& row : m_state.rows) {
        if (HasOwnOutline(row.antiPadShape) && (CompareSizes(row.antiPadWidth, drill) <= 0 ||
                                                CompareSizes(row.antiPadHeight, drill) <= 0)) {
            return Fails(padstack_text::kDrillBelowAntiPads);
        }
    }
    return true;
}

bool PadstackEditModel::CheckDrillAgainstPads() const {
    const double drill = ActualDrill();
    for (const PadstackRow& row : m_state.rows) {
        if (HasOwnOutline(row.padShape) &&
            (CompareSizes(row.padWidth, drill) < 0 || CompareSizes(row.padHeight, drill) < 0)) {
            return Fails(padstack_text::kDrillBelowPads);
        }
    }
    return true;
}

bool PadstackEditModel::CheckAntiPadsEnclosePads() const {
    for (const PadstackRow& row : m_state.rows) {
        if (EnclosureApplies(row) && HasOwnOutline(row.padShape) &&
            (CompareSizes(row.antiPadWidth, row.padWidth) <= 0 ||
             CompareSizes(row.antiPadHeight, row.padHeight) <= 0)) {
            return Fails(padstack_text::kAntiPadGreater);
        }
    }
    return true;
}

}  // namespace kv
