#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "core/padstack/PadstackEditModel.h"

namespace kv::ui {

// The padstack table as Qt's item views see it. The view's row r and column c are the
// editing model's grid row r + 1 and column c + 1: the grid's title row and row numbers
// become the view's headers. Every typed value goes to the edit handler the dialog gives,
// which runs the rules; the cells always show what the editing model holds, so a refused
// text is gone as soon as the handler returns.
class PadstackTableModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    using EditHandler = std::function<bool(int gridRow, int gridColumn, const QString& text)>;

    PadstackTableModel(const PadstackEditModel& model, EditHandler onEdit, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    // The editing model changed behind the table's back (rows, units, undo): show it again.
    void Reload();
    // One row's cells changed: an accepted edit refills its whole row (shape coupling).
    void RefreshRow(int gridRow);

    static int GridRow(const QModelIndex& index) { return index.row() + 1; }
    static int GridColumn(const QModelIndex& index) { return index.column() + 1; }

private:
    const PadstackEditModel& m_model;
    EditHandler m_onEdit;
};

}  // namespace kv::ui
