#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "core/padstack/PadstackRow.h"
#include "core/padstack/PadstackUnits.h"
#include "kvcomctl/ViaRecords.h"

// The padstack as the editor holds it while a user changes it, and every rule an edit must pass.
// Refused edits are told to the user through the message port and change nothing.
//
// The table is addressed as a grid: row 0 holds the column titles and column 0 the row
// numbers; row 1 is the "<default>" row and the rows below it are the layers'.

namespace kv {

enum PadstackColumn : int {
    kRowNumberColumn = 0,
    kLayerNameColumn = 1,
    kPadShapeColumn = 2,
    kPadWidthColumn = 3,
    kPadHeightColumn = 4,
    kPadAngleColumn = 5,
    kAntiPadShapeColumn = 6,
    kAntiPadWidthColumn = 7,
    kAntiPadHeightColumn = 8,
    kAntiPadAngleColumn = 9,
    kClearanceColumn = 10,
};
inline constexpr int kPadstackColumnCount = 11;
inline constexpr int kTitleRow = 0;
inline constexpr int kDefaultGridRow = 1;

inline constexpr std::string_view kTopLayerChoice = "<top>";
inline constexpr std::string_view kBottomLayerChoice = "<bottom>";

// Everything an edit can change: what undo and redo swap.
struct PadstackEditState {
    double drill = 0.0;
    int32_t firstLayer = 0;
    int32_t lastLayer = 0;
    std::vector<PadstackRow> rows;  // rows[0] is the "<default>" row

    bool operator==(const PadstackEditState&) const = default;
};

enum class EditOutcome { Accepted, Unchanged, Refused };

struct CellEditResult {
    EditOutcome outcome = EditOutcome::Refused;
    std::string cellText;  // what the cell shows afterwards
};

struct DrillEditResult {
    EditOutcome outcome = EditOutcome::Refused;
    std::string drillText;  // both fields are rewritten from the held values
    std::string actualDrillText;
};

class PadstackEditModel {
public:
    // Loads the padstack over `stackup`; false (and nothing loaded) for an empty stackup.
    bool Load(const STACKUPARRAY& stackup, const PADSTACK& padstack, const PADDATA& defaultPad);
    // Writes drill, span and every layer's pad into `padstack` (see ViaRecords.h for layers
    // without a row). A pad array shorter than the stackup is replaced by one from new[].
    void WriteTo(PADSTACK& padstack) const;
    PADDATA DefaultPadRecord() const;

    void SetMetric(bool metric) { m_units = DisplayUnits(metric); }
    const DisplayUnits& Units() const { return m_units; }
    // Zero, negative or not-a-number: no limit.
    void SetMaxPadSize(double metres);
    void SetUsedLayers(std::vector<int32_t> layers) { m_usedLayers = std::move(layers); }

    const PadstackEditState& State() const { return m_state; }
    // Puts back a state from before or after an edit (undo, redo); marks the padstack modified.
    void Restore(const PadstackEditState& state);
    bool Modified() const { return m_modified; }

    double Plating() const { return m_plating; }
    double ActualDrill() const { return m_state.drill + 2.0 * m_plating; }
    std::string DrillText() const { return m_units.ShowLength(m_state.drill); }
    std::string PlatingText() const { return m_units.ShowLength(m_plating); }
    std::string ActualDrillText() const { return m_units.ShowLength(ActualDrill()); }

    // The grid: titles, row numbers and cell texts.
    int GridRowCount() const { return static_cast<int>(m_state.rows.size()) + 1; }
    std::string CellText(int row, int column) const;
    const PadstackRow& RowAt(int gridRow) const { return m_state.rows.at(gridRow - 1); }
    std::string_view ShapeChoices(int row, int column) const;
    // The names of the conductor layers, top first.
    std::vector<std::string> LayerChoices() const;

    CellEditResult EditCell(int row, int column, std::string_view text);
    DrillEditResult EditDrill(std::string_view text);

    // "<top>", every conductor layer's name, "<bottom>".
    std::vector<std::string> SpanChoices() const;
    std::string FirstLayerText() const;
    std::string LastLayerText() const;
    bool SetFirstLayer(std::string_view choice);
    bool SetLastLayer(std::string_view choice);

    // Adds a row for the first conductor layer without one; returns its grid row.
    int AddRow();
    bool RemoveRow(int gridRow);

    // The checks over the whole table before it is written back; shows the first failure.
    bool CheckTable() const;

private:
    bool ValidGridCell(int row, int column) const;
    std::string LayerName(int32_t layer) const;
    std::vector<int32_t> ConductorLayers() const;
    int32_t ResolveSpanChoice(std::string_view choice) const;
    bool SpanKeepsUsedLayers(int32_t first, int32_t last) const;

    CellEditResult EditLayerName(PadstackRow& row, std::string_view text);
    CellEditResult EditShape(int gridRow, int column, std::string_view text);
    bool CheckSize(PadstackRow& row, int column, double value);
    void StoreSize(PadstackRow& row, int column, double value);
    CellEditResult Refuse(int row, int column);
    CellEditResult Accept(int row, int column);

    bool CheckOnePadPerLayer() const;
    bool CheckCustomPads() const;
    bool CheckDrillAgainstAntiPads() const;
    bool CheckDrillAgainstPads() const;
    bool CheckAntiPadsEnclosePads() const;

    std::vector<STACKUPLAYER> m_stackup;
    PadstackEditState m_state;
    double m_plating = 0.0;
    std::vector<int32_t> m_usedLayers;
    DisplayUnits m_units{false};
    double m_maxPadSize = std::numeric_limits<double>::infinity();
    bool m_modified = false;
};

}  // namespace kv
