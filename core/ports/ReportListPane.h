#pragma once

#include <cstdint>
#include <string_view>

// A list pane in report style (columns with titles, rows of cells, an item
// data value per row), as a port: the core decides the columns, their widths
// and the rows; the Qt adapter carries that out on an item view, and tests
// record it.

namespace kv {

class IReportListPane {
public:
    virtual ~IReportListPane() = default;

    virtual int ColumnCount() const = 0;
    virtual void DeleteColumn(int column) = 0;
    // Inserts a left-aligned column before `column`; the pane gives it its
    // own starting width.
    virtual void InsertColumn(int column, std::string_view title) = 0;
    virtual int ColumnWidth(int column) const = 0;
    virtual void SetColumnWidth(int column, int width) = 0;
    // Pixel width of `text` in the pane's font.
    virtual int TextWidth(std::string_view text) const = 0;
    // Width of the area the rows are drawn in.
    virtual int ClientWidth() const = 0;

    virtual void DeleteAllRows() = 0;
    // Inserts a row before `row` with `text` in column 0; returns its row.
    virtual int InsertRow(int row, std::string_view text, int32_t itemData) = 0;
    virtual void SetCell(int row, int column, std::string_view text) = 0;

    // Brackets a run of row changes, so a pane can show them at once.
    virtual void BeginUpdate() {}
    virtual void EndUpdate() {}
};

}  // namespace kv
