#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "core/walker/CoupledNetsList.h"

namespace kv {
namespace {

// A report pane that keeps what it was told; text is 6 pixels a character,
// new columns start 5 pixels wide.
class FakePane final : public IReportListPane {
public:
    struct Row {
        std::string cells[kNetsColumnCount];
        int32_t data = 0;
        std::vector<int> setColumns;
    };
    std::vector<std::string> titles;
    std::vector<int> widths;
    std::vector<Row> rows;
    int clientWidth = 0;
    int updates = 0;

    int ColumnCount() const override { return static_cast<int>(titles.size()); }
    void DeleteColumn(int column) override {
        titles.erase(titles.begin() + column);
        widths.erase(widths.begin() + column);
    }
    void InsertColumn(int column, std::string_view title) override {
        titles.insert(titles.begin() + column, std::string(title));
        widths.insert(widths.begin() + column, 5);
    }
    int ColumnWidth(int column) const override { return widths[column]; }
    void SetColumnWidth(int column, int width) override { widths[column] = width; }
    int TextWidth(std::string_view text) const override {
        return 6 * static_cast<int>(text.size());
    }
    int ClientWidth() const override { return clientWidth; }
    void DeleteAllRows() override { rows.clear(); }
    int InsertRow(int row, std::string_view text, int32_t itemData) override {
        Row added;
        added.cells[0] = text;
        added.data = itemData;
        rows.insert(rows.begin() + row, added);
        return row;
    }
    void SetCell(int row, int column, std::string_view text) override {
        rows[row].cells[column] = text;
        rows[row].setColumns.push_back(column);
    }
    void EndUpdate() override { ++updates; }
};

// Title widths at 6 pixels a character plus twice the 5-pixel padding.
constexpr int kTitleSum = (14 + 27 + 13 + 11) * 6 + 4 * 10;

// Lists live on the heap and end with their last Release.
struct ListHolder {
    CCoupledNetsList* list = new CCoupledNetsList;
    ListHolder() { list->AddRef(); }
    ~ListHolder() { list->Release(); }
};

TEST(CoupledNetsList, AttachingBuildsTheFourColumnsOverWhatWasThereAndSharesTheSlack) {
    ListHolder holder;
    FakePane pane;
    pane.InsertColumn(0, "old");
    pane.InsertColumn(1, "older");
    pane.clientWidth = kTitleSum + 7;
    holder.list->AttachPane(&pane);
    ASSERT_EQ(pane.titles,
              (std::vector<std::string>{"Nets In Region", "Separation From Current Net",
                                        "Stackup Layer", "Trace Width"}));
    // 7 pixels of slack: 4 to names, 3 to layers.
    EXPECT_EQ(pane.widths, (std::vector<int>{84 + 10 + 4, 162 + 10, 78 + 10 + 3, 66 + 10}));
    const std::array<int, 4> titles = {84, 162, 78, 66};
    EXPECT_EQ(NetsColumnWidths(titles, 5, 431), (std::array<int, 4>{95, 172, 88, 76}));
    EXPECT_EQ(NetsColumnWidths(titles, 5, 100), (std::array<int, 4>{94, 172, 88, 76}));
}

TEST(CoupledNetsList, RowsCarryTheEntryIndexAndOnlyNonEmptyCellsAndCopiesRefillThem) {
    ListHolder holder;
    CCoupledNetsList& list = *holder.list;
    EXPECT_EQ(list.AddNet("CLK", "0.20 mm", "TOP", "0.10 mm"), 0);
    EXPECT_EQ(list.AddNet(nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(list.AddNet("D0", "", "L3", nullptr), 2);
    const NETENTRY* empty = list.Find(1);
    ASSERT_NE(empty, nullptr);
    EXPECT_STREQ(empty->netName, "");
    EXPECT_STREQ(empty->traceWidth, "");

    FakePane pane;
    list.AttachPane(&pane);
    ASSERT_EQ(pane.rows.size(), 3u);
    EXPECT_EQ(pane.rows[0].cells[3], "0.10 mm");
    EXPECT_EQ(pane.rows[0].setColumns, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(pane.rows[1].cells[0], "");
    EXPECT_TRUE(pane.rows[1].setColumns.empty());
    EXPECT_EQ(pane.rows[2].setColumns, (std::vector<int>{2}));
    EXPECT_EQ(pane.rows[2].data, 2);

    // AddNet leaves the pane alone; CopyFrom refills it.
    list.AddNet("D1", "1 mm", "L3", "0.1 mm");
    EXPECT_EQ(pane.rows.size(), 3u);
    ListHolder other;
    other.list->AddNet("X", "a", "b", "c");
    other.list->AddNet("Y", "d", "e", "f");
    list.CopyFrom(other.list);
    ASSERT_EQ(pane.rows.size(), 2u);
    EXPECT_EQ(pane.rows[1].cells[2], "e");
    EXPECT_EQ(pane.rows[1].data, 1);
    EXPECT_EQ(other.list->Entries().size(), 2u);

    list.RemoveAll();  // indices start again
    EXPECT_EQ(list.AddNet("C", "1", "2", "3"), 0);
    list.CopyFrom(&list);
    EXPECT_TRUE(list.Entries().empty());
}

TEST(CoupledNetsList, ReferenceCountStartsAtZeroAndTheLastReleaseDestroys) {
    auto* list = new CCoupledNetsList;
    EXPECT_EQ(list->AddRef(), 1);
    EXPECT_EQ(list->AddRef(), 2);
    list->AddNet("A", "", "", "");
    EXPECT_EQ(list->Release(), 1);
    EXPECT_EQ(list->Release(), 0);  // destroyed here: a leak checker sees every block freed
}

TEST(CoupledNetsListDeathTest, BuildingOrFillingWithoutAPaneNamesTheWalkerModule) {
    ListHolder holder;
    EXPECT_DEATH(holder.list->BuildColumns(), R"(\.\\CoupRgnWalkerDlg)");
    EXPECT_DEATH(holder.list->FillRows(), R"(\.\\CoupRgnWalkerDlg)");
}

}  // namespace
}  // namespace kv
