#include "ui/padstack/PadstackTableModel.h"

namespace kv::ui {

PadstackTableModel::PadstackTableModel(const PadstackEditModel& model, EditHandler onEdit,
                                       QObject* parent)
    : QAbstractTableModel(parent), m_model(model), m_onEdit(std::move(onEdit)) {}

int PadstackTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_model.GridRowCount() - 1;
}

int PadstackTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kPadstackColumnCount - 1;
}

QVariant PadstackTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole)) {
        return {};
    }
    return QString::fromStdString(m_model.CellText(GridRow(index), GridColumn(index)));
}

QVariant PadstackTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) {
        return {};
    }
    const bool titles = orientation == Qt::Horizontal;
    return QString::fromStdString(titles ? m_model.CellText(kTitleRow, section + 1)
                                         : m_model.CellText(section + 1, kRowNumberColumn));
}

Qt::ItemFlags PadstackTableModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const bool defaultName =
        GridRow(index) == kDefaultGridRow && GridColumn(index) == kLayerNameColumn;
    return defaultName ? flags : flags | Qt::ItemIsEditable;
}

bool PadstackTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole) {
        return false;
    }
    const bool stored = m_onEdit(GridRow(index), GridColumn(index), value.toString());
    // The handler refills the row when it stores; a refused cell shows its held value again.
    emit dataChanged(index, index);
    return stored;
}

void PadstackTableModel::Reload() {
    beginResetModel();
    endResetModel();
}

void PadstackTableModel::RefreshRow(int gridRow) {
    const int row = gridRow - 1;
    if (row >= 0 && row < rowCount()) {
        emit dataChanged(index(row, 0), index(row, columnCount() - 1));
    }
}

}  // namespace kv::ui
