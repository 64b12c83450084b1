#pragma once

#include <QDialog>
#include <cstdint>
#include <functional>

#include "core/padstack/PadstackEditModel.h"
#include "kvcomctl/IPadstackEditorCtrl.h"

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QLineEdit;
class QPushButton;
class QTableView;
class QUndoStack;

namespace kv::ui {

class CPadTopViewCtrl;
class PadstackTableModel;

// The padstack editor: drill fields, layer span and the pad table of one padstack, edited on a
// copy that goes back into the host's records only on OK. Every accepted edit can be undone.
//
// The via visualizer's top view, named "padPreviewArea", shows the selected row's pad and
// anti-pad to scale, redrawn whenever selectedPadChanged is emitted.
class CPadstackEditorDlg : public QDialog, public IPadstackEditorCtrl {
    Q_OBJECT
public:
    // Control ids, kept as objectName "ctl<id>".
    enum ControlId : int {
        kOkId = 1,
        kCancelId = 2,
        kDrillId = 1001,
        kPlatingId = 1002,
        kActualDrillId = 1003,
        kFirstLayerId = 1004,
        kLastLayerId = 1005,
        kTableId = 1006,
        kAddRowId = 1007,
        kRemoveRowId = 1008,
        kMetricId = 1009,
        kUndoId = 1010,
        kRedoId = 1011,
        kApplyId = 12321,
    };

    CPadstackEditorDlg();
    ~CPadstackEditorDlg() override;

    int32_t Edit(QWidget* parent, IViaVizData* data) override;
    void SetMetric(bool metric) override;
    void SetMaxPadSize(double metres) override;
    void SetUsedLayers(const int32_t* layers, int32_t count) override;
    void SetDefaultPad(const PADDATA* pad) override;
    bool GetDefaultPad(PADDATA* pad) const override;
    bool IsModified() const override;

    // Called once the dialog is up inside Edit, before the user is: lets a test or a tour act
    // on the open dialog. Cleared after each Edit.
    void SetOpenedHook(std::function<void(CPadstackEditorDlg&)> hook);

    const PadstackEditModel& Model() const { return m_model; }
    // The record of the table's current row, or of the "<default>" row when none is current.
    PADDATA SelectedPad() const;
    // The record the preview draws for the current row: "<Auto>" shapes taken from "<default>".
    PADDATA SelectedPadAsDrawn() const;
    double ActualDrill() const { return m_model.ActualDrill(); }

public slots:
    void accept() override;

signals:
    // Another row became current, or what the current row shows changed.
    void selectedPadChanged();

private:
    void BuildLayout();
    void RefreshAll();
    bool OnCellEdit(int gridRow, int gridColumn, const QString& text);
    void OnDrillEdited();
    void OnSpanChosen(bool first, const QString& choice);
    void OnAddRow();
    void OnRemoveRow();
    void OnMetricToggled(bool metric);
    void OnApply();
    // Records an accepted change for undo, from the state before it.
    void PushChange(const QString& what, const PadstackEditState& before);
    void RestoreState(const PadstackEditState& state);
    void UpdateApply();
    void UpdatePreview();
    int SelectedGridRow() const;

    PadstackEditModel m_model;
    PadstackEditState m_loaded;
    PadstackEditState m_applied;
    PADDATA m_defaultPad{};
    bool m_metric = false;
    bool m_modified = false;
    bool m_updatingFields = false;  // the drill handler ignores the updates it makes itself
    std::function<void(CPadstackEditorDlg&)> m_openedHook;

    QLineEdit* m_drill = nullptr;
    QLineEdit* m_plating = nullptr;
    QLineEdit* m_actualDrill = nullptr;
    QComboBox* m_firstLayer = nullptr;
    QComboBox* m_lastLayer = nullptr;
    QCheckBox* m_metricBox = nullptr;
    QTableView* m_table = nullptr;
    PadstackTableModel* m_tableModel = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    QPushButton* m_apply = nullptr;
    QUndoStack* m_undo = nullptr;
    CPadTopViewCtrl* m_preview = nullptr;
};

}  // namespace kv::ui
