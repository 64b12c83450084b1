// The edits of single values: a table cell and the drill size field. Each runs its rules in a
// fixed order and stops at the first refusal, which the user is told about; a refused edit
// leaves the padstack as it was and hands back the text the field shows again.

#include <algorithm>
#include <optional>

#include "core/padstack/PadstackEditModel.h"
#include "core/padstack/PadstackMessages.h"
#include "core/padstack/PadstackRules.h"
#include "core/shared/NumberText.h"

namespace kv {
namespace {

std::string_view TrimBlanks(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::optional<double> ReadTypedNumber(std::string_view text) {
    return ParseFiniteNumber(TrimBlanks(text));
}

bool IsAngleColumn(int column) {
    return column == kPadAngleColumn || column == kAntiPadAngleColumn;
}

// Refuses with `text` and says no to the edit.
bool Refused(std::string_view text, MessageTitle title = MessageTitle::PadstackEditor) {
    ShowPadstackMessage(text, title);
    return false;
}

}  // namespace

CellEditResult PadstackEditModel::Refuse(int row, int column) {
    return {EditOutcome::Refused, CellText(row, column)};
}

CellEditResult PadstackEditModel::Accept(int row, int column) {
    m_modified = true;
    return {EditOutcome::Accepted, CellText(row, column)};
}

// Order of a cell edit: title row and row numbers take any text without storing it; shape
// cells go to the shape rules; an unchanged text is accepted as it is (except a layer name,
// which is checked again); size cells must hold a number other than zero; then the rule of
// the column decides.
CellEditResult PadstackEditModel::EditCell(int row, int column, std::string_view text) {
    if (!ValidGridCell(row, column)) {
        return {EditOutcome::Refused, {}};
    }
    if (row == kTitleRow || column == kRowNumberColumn) {
        return {EditOutcome::Unchanged, CellText(row, column)};
    }
    if (column == kPadShapeColumn || column == kAntiPadShapeColumn) {
        return EditShape(row, column, text);
    }
    PadstackRow& target = m_state.rows[row - 1];
    if (column == kLayerNameColumn) {
        CellEditResult result = EditLayerName(target, text);
        result.cellText = CellText(row, column);
        return result;
    }
    if (text == CellText(row, column)) {
        return {EditOutcome::Unchanged, CellText(row, column)};
    }
    const std::optional<double> number = ReadTypedNumber(text);
    if (IsAngleColumn(column)) {
        // Angles may be zero or negative, but they must still be numbers.
        if (!number) {
            Refused(padstack_text::kAngleNotNumber);
            return Refuse(row, column);
        }
    } else if (!number || *number == 0.0) {
        // Negative sizes pass here on purpose: the size rules refuse them with their own texts.
        Refused(padstack_text::kSizesPositive);
        return Refuse(row, column);
    }
    const double value = IsAngleColumn(column) ? *number : m_units.ToMetres(*number);
    if (!CheckSize(target, column, value)) {
        return Refuse(row, column);
    }
    StoreSize(target, column, value);
    return Accept(row, column);
}

CellEditResult PadstackEditModel::EditLayerName(PadstackRow& row, std::string_view text) {
    if (row.IsDefault()) {
        if (text == kDefaultRowName) {
            return {EditOutcome::Unchanged, {}};
        }
        Refused(padstack_text::kDefaultHasNoLayer);
        return {EditOutcome::Refused, {}};
    }
    const std::vector<int32_t> conductors = ConductorLayers();
    const auto layer = std::find_if(conductors.begin(), conductors.end(),
                                    [&](int32_t index) { return LayerName(index) == text; });
    if (layer == conductors.end()) {
        Refused(padstack_text::kNoSuchLayer);
        return {EditOutcome::Refused, {}};
    }
    const bool taken = std::any_of(
        m_state.rows.begin(), m_state.rows.end(),
        [&](const PadstackRow& other) { return &other != &row && other.layer == *layer; });
    if (taken) {
        Refused(padstack_text::kOnePadPerLayer);
        return {EditOutcome::Refused, {}};
    }
    if (row.layer == *layer) {
        return {EditOutcome::Unchanged, {}};
    }
    row.layer = *layer;
    m_modified = true;
    return {EditOutcome::Accepted, {}};
}

// Shape rules, in order: an unchanged shape is accepted as it is; the "<default>" row refuses
// "<Auto>"; no pad becomes "Custom" here; a "Custom" pad keeps a "Clearance" or "<Auto>"
// anti-pad; and only the cell's offered choices are taken. A round or square outline gets its
// height equal to its width at once, so the coupling holds from the moment the shape is set.
CellEditResult PadstackEditModel::EditShape(int gridRow, int column, std::string_view text) {
    PadstackRow& row = m_state.rows[gridRow - 1];
    const bool pad = column == kPadShapeColumn;
    TableShape& held = pad ? row.padShape : row.antiPadShape;
    if (text == TableShapeText(held)) {
        return {EditOutcome::Unchanged, CellText(gridRow, column)};
    }
    const std::optional<TableShape> shape = TableShapeFromText(text);
    if (pad && shape == TableShape::Auto && row.IsDefault()) {
        Refused(padstack_text::kDefaultNotAuto);
        return Refuse(gridRow, column);
    }
    if (pad && shape == TableShape::Custom) {
        Refused(padstack_text::kNoCustomPad);
        return Refuse(gridRow, column);
    }
    if (!pad && row.padShape == TableShape::Custom && shape != TableShape::Clearance &&
        shape != TableShape::Auto) {
        Refused(padstack_text::kCustomAntiPad);
        return Refuse(gridRow, column);
    }
    if (!shape || !IsOffered(ShapeChoices(gridRow, column), *shape)) {
        Refused(padstack_text::kNotAShapeChoice);
        return Refuse(gridRow, column);
    }
    held = *shape;
    if (KeepsHeightEqualToWidth(*shape)) {
        (pad ? row.padHeight : row.antiPadHeight) = pad ? row.padWidth : row.antiPadWidth;
    }
    return Accept(gridRow, column);
}

bool PadstackEditModel::CheckSize(PadstackRow& row, int column, double value) {
    using namespace padstack_text;
    const bool enclose = EnclosureApplies(row);
    const double drill = ActualDrill();
    // A pad may be as large as the actual drill and as large as the maximum, not beyond.
    const auto padFitsDrillAndMaximum = [&] {
        if (CompareSizes(value, drill) < 0) {
            return Refused(kPadAboveDrill, MessageTitle::Plain);
        }
        if (CompareSizes(value, m_maxPadSize) > 0) {
            return Refused(PadBelowMaximumText(m_units.ShowLength(m_maxPadSize)),
                           MessageTitle::Plain);
        }
        return true;
    };
    switch (column) {
        case kPadWidthColumn:
            if (enclose && !(CompareSizes(row.antiPadWidth, value) > 0 &&
                             (!KeepsHeightEqualToWidth(row.padShape) ||
                              CompareSizes(value, row.antiPadHeight) < 0))) {
                return Refused(kAntiPadGreater);
            }
            return padFitsDrillAndMaximum();
        case kPadHeightColumn:
            if (enclose && CompareSizes(value, row.antiPadHeight) >= 0) {
                return Refused(kAntiPadGreater, MessageTitle::Plain);
            }
            return padFitsDrillAndMaximum();
        case kAntiPadWidthColumn:
            if (enclose && !(CompareSizes(value, row.padWidth) > 0 &&
                             (!KeepsHeightEqualToWidth(row.antiPadShape) ||
                              CompareSizes(value, row.padHeight) > 0))) {
                return Refused(kAntiPadGreater);
            }
            // Unlike a pad, an anti-pad as large as the actual drill is refused.
            if (row.antiPadShape != TableShape::Auto && CompareSizes(value, drill) <= 0) {
                return Refused(kAntiPadAboveDrill);
            }
            return true;
        case kAntiPadHeightColumn:
            // No drill test on the height: the width's test stands for the anti-pad.
            if (enclose && CompareSizes(value, row.padHeight) <= 0) {
                return Refused(kAntiPadGreater);
            }
            return true;
        default:
            return true;
    }
}

void PadstackEditModel::StoreSize(PadstackRow& row, int column, double value) {
    switch (column) {
        case kPadWidthColumn:
            row.padWidth = value;
            if (KeepsHeightEqualToWidth(row.padShape)) {
                row.padHeight = value;
            }
            break;
        case kPadHeightColumn:
            row.padHeight = value;
            break;
        case kPadAngleColumn:
            row.padAngle = value;
            if (AngleFollowsPad(row.antiPadShape)) {
                row.antiPadAngle = value;
            }
            break;
        case kAntiPadWidthColumn:
            row.antiPadWidth = value;
            if (KeepsHeightEqualToWidth(row.antiPadShape)) {
                row.antiPadHeight = value;
            }
            break;
        case kAntiPadHeightColumn:
            row.antiPadHeight = value;
            break;
        case kAntiPadAngleColumn:
            row.antiPadAngle = value;
            break;
        case kClearanceColumn:
            row.clearance = value;
            break;
        default:
            break;
    }
}

// Zero is a valid drill size (a padstack without a hole); a negative one is not. Both fields
// are rewritten from the held values whatever happened, so a refused text disappears.
DrillEditResult PadstackEditModel::EditDrill(std::string_view text) {
    DrillEditResult result;
    const std::optional<double> number = ReadTypedNumber(text);
    if (!number) {
        Refused(padstack_text::kDrillNotNumber);
    } else if (const double value = m_units.ToMetres(*number); value < 0.0) {
        Refused(padstack_text::kDrillNegative);
    } else if (value != m_state.drill) {
        m_state.drill = value;
        m_modified = true;
        result.outcome = EditOutcome::Accepted;
    } else {
        result.outcome = EditOutcome::Unchanged;
    }
    result.drillText = DrillText();
    result.actualDrillText = ActualDrillText();
    return result;
}

}  // namespace kv
