#include "ui/walker/FramelessListView.h"

#include <QAbstractTableModel>
#include <QFontMetrics>
#include <QHeaderView>
#include <QSortFilterProxyModel>
#include <QStyle>
#include <string>
#include <vector>

#include "core/shared/Misc_String.h"

namespace kv::ui {

// Rows keep their texts as the core gave them; only rows on screen are
// turned into QStrings, when the view asks.
class NetsTableModel final : public QAbstractTableModel {
public:
    struct Row {
        std::vector<std::string> cells;
        int32_t itemData = 0;
    };

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_titles.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) {
            return {};
        }
        const Row& row = m_rows[static_cast<std::size_t>(index.row())];
        switch (role) {
            case Qt::DisplayRole:
            case Qt::ToolTipRole:
                return QString::fromStdString(Cell(index.row(), index.column()));
            case Qt::UserRole:
                return row.itemData;
            default:
                return {};
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation == Qt::Horizontal && section >= 0 && section < columnCount()) {
            if (role == Qt::DisplayRole) {
                return m_titles[static_cast<std::size_t>(section)];
            }
            if (role == Qt::TextAlignmentRole) {
                return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
            }
        }
        return QAbstractTableModel::headerData(section, orientation, role);
    }

    const std::string& Cell(int row, int column) const {
        static const std::string kEmpty;
        const Row& r = m_rows[static_cast<std::size_t>(row)];
        return static_cast<std::size_t>(column) < r.cells.size()
                   ? r.cells[static_cast<std::size_t>(column)]
                   : kEmpty;
    }
    int32_t ItemData(int row) const { return m_rows[static_cast<std::size_t>(row)].itemData; }

    void RemoveColumn(int column) {
        beginRemoveColumns({}, column, column);
        m_titles.removeAt(column);
        for (Row& row : m_rows) {
            if (static_cast<std::size_t>(column) < row.cells.size()) {
                row.cells.erase(row.cells.begin() + column);
            }
        }
        endRemoveColumns();
    }
    void InsertColumn(int column, const QString& title) {
        beginInsertColumns({}, column, column);
        m_titles.insert(column, title);
        for (Row& row : m_rows) {
            if (static_cast<std::size_t>(column) <= row.cells.size()) {
                row.cells.insert(row.cells.begin() + column, std::string());
            }
        }
        endInsertColumns();
    }

    // Between BeginUpdate and EndUpdate the model is being reset: rows go in
    // without a signal each, and the view hears of them once at the end.
    void BeginUpdate() {
        if (m_updates++ == 0) {
            beginResetModel();
        }
    }
    void EndUpdate() {
        if (m_updates > 0 && --m_updates == 0) {
            endResetModel();
        }
    }
    void Clear() {
        if (m_updates > 0) {
            m_rows.clear();
            return;
        }
        beginResetModel();
        m_rows.clear();
        endResetModel();
    }
    int Insert(int row, std::string_view text, int32_t itemData) {
        row = std::clamp(row, 0, rowCount());
        if (m_updates == 0) {
            beginInsertRows({}, row, row);
        }
        Row added;
        added.cells.assign(static_cast<std::size_t>(std::max<qsizetype>(1, m_titles.size())),
                           std::string());
        added.cells[0] = text;
        added.itemData = itemData;
        m_rows.insert(m_rows.begin() + row, std::move(added));
        if (m_updates == 0) {
            endInsertRows();
        }
        return row;
    }
    void Set(int row, int column, std::string_view text) {
        if (row < 0 || row >= rowCount() || column < 0) {
            return;
        }
        Row& r = m_rows[static_cast<std::size_t>(row)];
        if (static_cast<std::size_t>(column) >= r.cells.size()) {
            r.cells.resize(static_cast<std::size_t>(column) + 1);
        }
        r.cells[static_cast<std::size_t>(column)] = text;
        if (m_updates == 0) {
            const QModelIndex changed = index(row, column);
            emit dataChanged(changed, changed);
        }
    }

private:
    QStringList m_titles;
    std::vector<Row> m_rows;
    int m_updates = 0;
};

namespace {

// Sorts every column the way a person sorts names: "NET2" before "NET10",
// "0.15 mm" before "0.20 mm", letters without regard to case.
class NameOrderProxy final : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override {
        const auto* model = static_cast<const NetsTableModel*>(sourceModel());
        const int order = CompareNames(model->Cell(left.row(), left.column()).c_str(),
                                       model->Cell(right.row(), right.column()).c_str(), false);
        if (order != 0) {
            return order < 0;
        }
        return left.row() < right.row();  // equal names keep the list's order
    }
};

}  // namespace

CFramelessListView::CFramelessListView(QWidget* parent)
    : QTreeView(parent), m_model(new NetsTableModel), m_sorted(new NameOrderProxy(this)) {
    m_model->setParent(this);
    m_sorted->setSourceModel(m_model);
    m_sorted->setDynamicSortFilter(false);
    setModel(m_sorted);
    setFrameShape(QFrame::NoFrame);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);  // lets the view lay out any number of rows at once
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // Column widths are the list's to decide, down to the padding alone.
    header()->setMinimumSectionSize(1);
    // Rows stay in the list's order until the user clicks a title.
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
}

CFramelessListView::~CFramelessListView() = default;

int CFramelessListView::ColumnCount() const {
    return m_model->columnCount();
}

void CFramelessListView::DeleteColumn(int column) {
    if (column >= 0 && column < ColumnCount()) {
        m_model->RemoveColumn(column);
    }
}

void CFramelessListView::InsertColumn(int column, std::string_view title) {
    column = std::clamp(column, 0, ColumnCount());
    m_model->InsertColumn(column,
                          QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
    // A new column starts as wide as the room a title needs on each side:
    // the header's margin and half its sort arrow.
    const QStyle* s = header()->style();
    const int padding = s->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header()) +
                        s->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, header()) / 2;
    header()->resizeSection(column, padding);
}

int CFramelessListView::ColumnWidth(int column) const {
    return columnWidth(column);
}

void CFramelessListView::SetColumnWidth(int column, int width) {
    setColumnWidth(column, width);
}

int CFramelessListView::TextWidth(std::string_view text) const {
    return QFontMetrics(font()).horizontalAdvance(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

int CFramelessListView::ClientWidth() const {
    return viewport()->width();
}

void CFramelessListView::DeleteAllRows() {
    m_model->Clear();
}

int CFramelessListView::InsertRow(int row, std::string_view text, int32_t itemData) {
    return m_model->Insert(row, text, itemData);
}

void CFramelessListView::SetCell(int row, int column, std::string_view text) {
    m_model->Set(row, column, text);
}

void CFramelessListView::BeginUpdate() {
    m_model->BeginUpdate();
}

void CFramelessListView::EndUpdate() {
    m_model->EndUpdate();
    // A sorted view stays sorted by the same column after a refill.
    const int column = header()->sortIndicatorSection();
    if (column >= 0 && column < ColumnCount()) {
        m_sorted->sort(column, header()->sortIndicatorOrder());
    }
}

int CFramelessListView::RowCount() const {
    return m_sorted->rowCount();
}

int32_t CFramelessListView::ItemDataOfRow(int row) const {
    return m_sorted->index(row, 0).data(Qt::UserRole).toInt();
}

int CFramelessListView::RowOfItemData(int32_t itemData) const {
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->ItemData(row) == itemData) {
            return m_sorted->mapFromSource(m_model->index(row, 0)).row();
        }
    }
    return -1;
}

QString CFramelessListView::CellText(int row, int column) const {
    return m_sorted->index(row, column).data().toString();
}

}  // namespace kv::ui
