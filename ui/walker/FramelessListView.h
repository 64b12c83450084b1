#pragma once

#include <QTreeView>
#include <cstdint>

#include "core/ports/ReportListPane.h"

class QSortFilterProxyModel;

// The walker's Nets pane: a report list without a frame on Qt's item views.
// Rows live in a model, so ten thousand nets scroll as smoothly as ten;
// clicking a column title sorts by it (names in the order a person sorts
// them), clicking it again reverses.

namespace kv::ui {

class NetsTableModel;

class CFramelessListView final : public QTreeView, public IReportListPane {
    Q_OBJECT
public:
    explicit CFramelessListView(QWidget* parent = nullptr);
    ~CFramelessListView() override;

    int ColumnCount() const override;
    void DeleteColumn(int column) override;
    void InsertColumn(int column, std::string_view title) override;
    int ColumnWidth(int column) const override;
    void SetColumnWidth(int column, int width) override;
    int TextWidth(std::string_view text) const override;
    int ClientWidth() const override;
    void DeleteAllRows() override;
    int InsertRow(int row, std::string_view text, int32_t itemData) override;
    void SetCell(int row, int column, std::string_view text) override;
    void BeginUpdate() override;
    void EndUpdate() override;

    // Rows as shown, after sorting.
    int RowCount() const;
    int32_t ItemDataOfRow(int row) const;
    // The shown row whose item data is `itemData`, or -1.
    int RowOfItemData(int32_t itemData) const;
    QString CellText(int row, int column) const;

private:
    NetsTableModel* m_model;
    QSortFilterProxyModel* m_sorted;
};

}  // namespace kv::ui
