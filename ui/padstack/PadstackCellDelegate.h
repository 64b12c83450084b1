#pragma once

#include <QStyledItemDelegate>

#include "core/padstack/PadstackEditModel.h"

namespace kv::ui {

// Edits shape cells and layer names with a combo box of the choices the cell offers; sizes and
// angles are typed.
class PadstackCellDelegate final : public QStyledItemDelegate {
    Q_OBJECT
public:
    PadstackCellDelegate(const PadstackEditModel& model, QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;

private:
    QStringList Choices(const QModelIndex& index) const;

    const PadstackEditModel& m_model;
};

}  // namespace kv::ui
