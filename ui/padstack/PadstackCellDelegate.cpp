#include "ui/padstack/PadstackCellDelegate.h"

#include <QComboBox>

#include "ui/padstack/PadstackTableModel.h"

namespace kv::ui {

PadstackCellDelegate::PadstackCellDelegate(const PadstackEditModel& model, QObject* parent)
    : QStyledItemDelegate(parent), m_model(model) {}

QStringList PadstackCellDelegate::Choices(const QModelIndex& index) const {
    const int row = PadstackTableModel::GridRow(index);
    const int column = PadstackTableModel::GridColumn(index);
    QStringList choices;
    if (column == kLayerNameColumn) {
        for (const std::string& name : m_model.LayerChoices()) {
            choices << QString::fromStdString(name);
        }
        return choices;
    }
    const std::string_view lines = m_model.ShapeChoices(row, column);
    if (!lines.empty()) {
        choices = QString::fromUtf8(lines.data(), static_cast<qsizetype>(lines.size()))
                      .split(QLatin1Char('\n'));
    }
    return choices;
}

QWidget* PadstackCellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                            const QModelIndex& index) const {
    const QStringList choices = Choices(index);
    if (choices.isEmpty()) {
        return QStyledItemDelegate::createEditor(parent, option, index);
    }
    auto* combo = new QComboBox(parent);
    combo->addItems(choices);
    return combo;
}

void PadstackCellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        combo->setCurrentIndex(combo->findText(index.data(Qt::EditRole).toString()));
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void PadstackCellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                        const QModelIndex& index) const {
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        model->setData(index, combo->currentText(), Qt::EditRole);
        return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
}

}  // namespace kv::ui
