#include "core/padstack/PadstackEditModel.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/padstack/PadstackMessages.h"
#include "core/shared/BoundedCopy.h"

namespace kv {
namespace {

constexpr std::array<std::string_view, kPadstackColumnCount> kColumnTitles{
    "",          "Layer Name",     "Pad Shape",      "Pad Width",       "Pad Height",
    "Pad Angle", "Anti-Pad Shape", "Anti-Pad Width", "Anti-Pad Height", "Anti-Pad Angle",
    "Clearance"};

bool IsConductor(const STACKUPLAYER& layer) {
    return layer.kind != STACKUP_DIELECTRIC;
}

}  // namespace

bool PadstackEditModel::Load(const STACKUPARRAY& stackup, const PADSTACK& padstack,
                             const PADDATA& defaultPad) {
    if (stackup.count <= 0 || stackup.layers == nullptr) {
        return false;
    }
    m_stackup.assign(stackup.layers, stackup.layers + stackup.count);
    m_state = PadstackEditState{};
    m_state.drill = padstack.drill;
    m_plating = padstack.plating;
    m_state.firstLayer = padstack.firstLayer;
    m_state.lastLayer = padstack.lastLayer;
    PadstackRow defaultRow = RowFromPadRecord(defaultPad, kDefaultRowLayer);
    // Hosts that never set a default pad hand in a record whose shape code 1 reads as
    // "<Auto>", which the default row cannot have.
    if (defaultRow.padShape == TableShape::Auto) {
        defaultRow.padShape = TableShape::None;
    }
    m_state.rows.push_back(defaultRow);
    const int32_t pads = padstack.pads == nullptr ? 0 : std::min(padstack.padCount, stackup.count);
    for (int32_t i = 0; i < pads; ++i) {
        if (IsConductor(m_stackup[i]) && padstack.pads[i].padType != PAD_TYPE_NONE) {
            m_state.rows.push_back(RowFromPadRecord(padstack.pads[i], i));
        }
    }
    m_modified = false;
    return true;
}

void PadstackEditModel::WriteTo(PADSTACK& padstack) const {
    padstack.drill = m_state.drill;
    padstack.firstLayer = m_state.firstLayer;
    padstack.lastLayer = m_state.lastLayer;
    const auto layers = static_cast<int32_t>(m_stackup.size());
    if (padstack.pads == nullptr || padstack.padCount < layers) {
        // The record owns arrays from new[] (ViaRecords.h): replace it with a long enough one.
        auto* grown = new PADDATA[layers]{};
        if (padstack.pads != nullptr) {
            std::copy(padstack.pads, padstack.pads + std::max(padstack.padCount, 0), grown);
        }
        delete[] padstack.pads;
        padstack.pads = grown;
        padstack.padCount = layers;
    }
    for (int32_t i = 0; i < layers; ++i) {
        if (!IsConductor(m_stackup[i])) {
            continue;
        }
        const auto row = std::find_if(m_state.rows.begin() + 1, m_state.rows.end(),
                                      [i](const PadstackRow& r) { return r.layer == i; });
        if (row != m_state.rows.end()) {
            padstack.pads[i] = PadRecordFromRow(*row);
        } else {
            padstack.pads[i].padType = PAD_TYPE_NONE;
        }
    }
}

PADDATA PadstackEditModel::DefaultPadRecord() const {
    return m_state.rows.empty() ? PADDATA{} : PadRecordFromRow(m_state.rows.front());
}

void PadstackEditModel::SetMaxPadSize(double metres) {
    m_maxPadSize = metres > 0.0 ? metres : std::numeric_limits<double>::infinity();
}

void PadstackEditModel::Restore(const PadstackEditState& state) {
    m_state = state;
    m_modified = true;
}

bool PadstackEditModel::ValidGridCell(int row, int column) const {
    return row >= 0 && row < GridRowCount() && column >= 0 && column < kPadstackColumnCount;
}

std::string PadstackEditModel::LayerName(int32_t layer) const {
    if (layer == kDefaultRowLayer) {
        return std::string(kDefaultRowName);
    }
    if (layer < 0 || layer >= static_cast<int32_t>(m_stackup.size())) {
        return {};
    }
    return std::string(FieldText(m_stackup[layer].name));
}

std::string PadstackEditModel::CellText(int row, int column) const {
    if (!ValidGridCell(row, column)) {
        return {};
    }
    if (row == kTitleRow) {
        return std::string(kColumnTitles[column]);
    }
    const PadstackRow& r = RowAt(row);
    switch (column) {
        case kRowNumberColumn:
            return std::to_string(row);
        case kLayerNameColumn:
            return LayerName(r.layer);
        case kPadShapeColumn:
            return std::string(TableShapeText(r.padShape));
        case kPadWidthColumn:
            return m_units.ShowLength(r.padWidth);
        case kPadHeightColumn:
            return m_units.ShowLength(r.padHeight);
        case kPadAngleColumn:
            return ShowAngle(r.padAngle);
        case kAntiPadShapeColumn:
            return std::string(TableShapeText(r.antiPadShape));
        case kAntiPadWidthColumn:
            return m_units.ShowLength(r.antiPadWidth);
        case kAntiPadHeightColumn:
            return m_units.ShowLength(r.antiPadHeight);
        case kAntiPadAngleColumn:
            return ShowAngle(r.antiPadAngle);
        case kClearanceColumn:
            return m_units.ShowLength(r.clearance);
        default:
            return {};
    }
}

std::string_view PadstackEditModel::ShapeChoices(int row, int column) const {
    if (column == kPadShapeColumn) {
        return row == kDefaultGridRow ? kDefaultPadShapeChoices : kLayerPadShapeChoices;
    }
    return column == kAntiPadShapeColumn ? kAntiPadShapeChoices : std::string_view{};
}

std::vector<int32_t> PadstackEditModel::ConductorLayers() const {
    std::vector<int32_t> layers;
    for (std::size_t i = 0; i < m_stackup.size(); ++i) {
        if (IsConductor(m_stackup[i])) {
            layers.push_back(static_cast<int32_t>(i));
        }
    }
    return layers;
}

std::vector<std::string> PadstackEditModel::LayerChoices() const {
    std::vector<std::string> names;
    for (const int32_t layer : ConductorLayers()) {
        names.push_back(LayerName(layer));
    }
    return names;
}

int PadstackEditModel::AddRow() {
    const std::vector<int32_t> conductors = ConductorLayers();
    if (conductors.empty()) {
        return -1;
    }
    // A layer without a row if there is one; otherwise the top layer again, and the check of
    // the whole table asks the user to move it before the padstack is written.
    int32_t layer = conductors.front();
    for (const int32_t candidate : conductors) {
        const bool taken =
            std::any_of(m_state.rows.begin(), m_state.rows.end(),
                        [candidate](const PadstackRow& r) { return r.layer == candidate; });
        if (!taken) {
            layer = candidate;
            break;
        }
    }
    PadstackRow row = m_state.rows.front();
    row.layer = layer;
    row.padShape = TableShape::Auto;
    row.antiPadShape = TableShape::Auto;
    m_state.rows.push_back(row);
    m_modified = true;
    return GridRowCount() - 1;
}

bool PadstackEditModel::RemoveRow(int gridRow) {
    if (gridRow <= kTitleRow || gridRow >= GridRowCount()) {
        return false;
    }
    if (gridRow == kDefaultGridRow) {
        ShowPadstackMessage(padstack_text::kCantDeleteDefault);
        return false;
    }
    // The "<default>" row stays, so the last row a user can delete is the last layer's.
    if (m_state.rows.size() <= 2) {
        ShowPadstackMessage(padstack_text::kCantDeleteAll);
        return false;
    }
    m_state.rows.erase(m_state.rows.begin() + (gridRow - 1));
    m_modified = true;
    return true;
}

}  // namespace kv
