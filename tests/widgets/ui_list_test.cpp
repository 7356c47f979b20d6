// CSortListCtrl: the comparison (without widgets), header-click sorting and its header
// formats, the conversion callback, selection through a sort, and the static helpers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <kxbase/ui/list_ctrl.h>

namespace {

// A list with the given columns and rows; row i gets item data 100 + i.
void Fill(CListCtrl& list, const std::vector<const char*>& columns,
          const std::vector<std::vector<const char*>>& rows) {
    for (std::size_t c = 0; c < columns.size(); ++c)
        list.InsertColumn(static_cast<int>(c), columns[c], LVCFMT_LEFT, 80);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const int at = list.InsertItem(static_cast<int>(r), rows[r][0]);
        for (std::size_t c = 1; c < rows[r].size(); ++c)
            list.SetItemText(at, static_cast<int>(c), rows[r][c]);
        list.SetItemData(at, 100 + r);
    }
}

std::vector<std::string> Column(const CListCtrl& list, int column) {
    std::vector<std::string> out;
    for (int i = 0; i < list.GetItemCount(); ++i) out.push_back(list.GetItemText(i, column).str());
    return out;
}

int HeaderFormat(CListCtrl& list, int column) {
    HDITEM item{};
    item.mask = HDI_FORMAT;
    return list.GetHeaderCtrl()->GetItem(column, &item) ? item.fmt : -1;
}

INT64 ZeroPad(CString& out, const char* text, int) {
    out.Format("%08d", std::atoi(text));
    return 0;
}

}  // namespace

// Catches a flipped sign or direction, a case-insensitive compare that does not fall back to
// bytes, negative data not treated as "equal", and the not-found rule ordering by data.
TEST(SortCompare, AlgorithmTable) {
    struct Case {
        int descending, enabled;
        LPARAM d1, d2;
        int expected;
        const char* what;
    };
    // Rows: data 1 "apple", 2 "Banana", 3 "banana", 4 "apple" (same text as 1).
    const Case cases[] = {
        {0, 1, 1, 2, -1, "A to Z: apple before Banana ignoring case"},
        {0, 1, 2, 1, 1, "A to Z, swapped"},
        {1, 1, 1, 2, 1, "Z to A"},
        {0, 1, 2, 3, -1, "equal ignoring case: 'B' (0x42) before 'b'"},
        {1, 1, 2, 3, 1, "equal ignoring case, Z to A"},
        {0, 1, 1, 4, 0, "same text"},
        {0, 1, 1, 1, 0, "same row"},
        {0, 0, 1, 2, 0, "sorting disabled"},
        {0, 1, -1, 2, 0, "negative first datum"},
        {0, 1, 2, -7, 0, "negative second datum"},
        {0, 1, 50, 60, -1, "neither found, d1 <= d2: dir (-1)"},
        {0, 1, 60, 50, 1, "neither found, d1 > d2: -dir"},
        {1, 1, 50, 50, 1, "not found, equal data, descending: dir (1)"},
        {0, 1, 1, 99, -1, "one not found, 1 <= 99"},
    };
    for (const Case& c : cases) {
        ASortListCompare cmp(c.descending, c.enabled, 0, nullptr);
        cmp.AddRow(1, "apple");
        cmp.AddRow(2, "Banana");
        cmp.AddRow(3, "banana");
        cmp.AddRow(4, "apple");
        EXPECT_EQ(cmp.Compare(c.d1, c.d2), c.expected) << c.what;
        EXPECT_EQ(ASortListCompare::Proc(c.d1, c.d2, reinterpret_cast<LPARAM>(&cmp)), c.expected)
            << c.what;
    }
    EXPECT_EQ(ASortListCompare::Proc(1, 2, 0), 0) << "no control";
}

// The header-click sequence of a fresh control: first click on column 0 sorts Z to A (its
// sort column is 0 with the flag clear), another column sorts A to Z, then Z to A; the old
// column turns right-aligned without arrows; arrows are SORTUP for A-Z and SORTDOWN for Z-A.
TEST(SortList, HeaderClicksSortAndMarkTheHeader) {
    CSortListCtrl list;
    Fill(list, {"name", "size"}, {{"b", "2"}, {"C", "3"}, {"a", "1"}, {"B", "4"}});
    EXPECT_EQ(HeaderFormat(list, 0), HDF_STRING | HDF_LEFT);

    list.OnColumnClick(0);
    EXPECT_EQ(Column(list, 0), (std::vector<std::string>{"C", "b", "B", "a"}));
    EXPECT_EQ(HeaderFormat(list, 0), HDF_STRING | HDF_RIGHT | HDF_SORTDOWN);

    list.OnColumnClick(1);
    EXPECT_EQ(Column(list, 1), (std::vector<std::string>{"1", "2", "3", "4"}));
    EXPECT_EQ(HeaderFormat(list, 0), HDF_STRING | HDF_RIGHT) << "old column: no arrow, right";
    EXPECT_EQ(HeaderFormat(list, 1), HDF_STRING | HDF_RIGHT | HDF_SORTUP);

    list.OnColumnClick(1);
    EXPECT_EQ(Column(list, 1), (std::vector<std::string>{"4", "3", "2", "1"}));
    EXPECT_EQ(HeaderFormat(list, 1), HDF_STRING | HDF_RIGHT | HDF_SORTDOWN);
    EXPECT_EQ(list.IsSortDescending(), 1);

    // SetSortParam marks the opposite arrow for the same flag.
    list.SetSortParam(1, 0, nullptr);
    EXPECT_EQ(HeaderFormat(list, 0) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);

    EXPECT_EQ(list.SortEnable(0), 1);
    list.OnColumnClick(1);
    EXPECT_EQ(list.GetSortColumn(), 0) << "disabled: a click changes nothing";
    list.SortItemsEx();
    EXPECT_EQ(Column(list, 1), (std::vector<std::string>{"4", "3", "2", "1"}));
    EXPECT_EQ(list.SortEnable(1), 0);
}

// Catches rows that lose their cells, data or selection when the order changes.
TEST(SortList, RowsKeepDataAndSelectionThroughASort) {
    CSortListCtrl list;
    Fill(list, {"n"}, {{"30"}, {"4"}, {"200"}, {"1"}});
    list.SetItemState(2, LVIS_SELECTED, LVIS_SELECTED);
    list.SetSortParam(0, 0, ZeroPad);
    list.SortItemsEx();
    EXPECT_EQ(Column(list, 0), (std::vector<std::string>{"1", "4", "30", "200"}));
    EXPECT_EQ(list.GetItemData(3), 102u);
    EXPECT_EQ(CSortListCtrl::GetFirstSelected(&list), 3);
    EXPECT_EQ(list.GetSelectedCount(), 1);
}

// A comparison that answers at random must give some order of the same rows, never a
// crash or a lost row (the sort must stay inside its arrays).
TEST(SortList, InconsistentComparisonStaysInBounds) {
    CListCtrl list;
    list.InsertColumn(0, "x");
    for (int i = 0; i < 1000; ++i) {
        list.InsertItem(i, std::to_string(i).c_str());
        list.SetItemData(i, static_cast<DWORD_PTR>(i));
    }
    static std::mt19937 rng(7);
    ASSERT_TRUE(
        list.SortItems([](LPARAM, LPARAM, LPARAM) { return static_cast<int>(rng() % 3) - 1; }, 0));
    std::vector<bool> seen(1000);
    for (int i = 0; i < 1000; ++i) seen[list.GetItemData(i)] = true;
    EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 1000);
    EXPECT_FALSE(list.SortItems(nullptr, 0));
}

TEST(SortList, SearchText) {
    CSortListCtrl list;
    Fill(list, {"name", "type"},
         {{"Alpha", "dir"}, {"beta", "File"}, {"gamma", "file"}, {"delta", "link"}});
    struct Case {
        const char* text;
        int start, whole, matchCase, expected;
        const char* what;
    };
    const Case cases[] = {
        {"file", 0, 1, 0, 1, "whole, any case: first row that has it"},
        {"file", 2, 1, 1, 2, "match case from row 2"},
        {"File", 2, 1, 1, 1, "match case wraps round"},
        {"alpha", 3, 1, 0, 0, "from the last row, wraps to row 0"},
        {"alp", 0, 1, 0, -1, "whole word required"},
        {"LP", 1, 0, 0, 0, "partial, any case, wraps"},
        {"LP", 1, 0, 1, -1, "partial, case sensitive: no hit"},
        {"", 0, 0, 0, -1, "empty text"},
        {"link", 99, 1, 0, 3, "start past the end: from row 0"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(
            CSortListCtrl::SearchTextFromListCtrl(&list, c.text, c.start, c.whole, c.matchCase),
            c.expected)
            << c.what;
    list.SetItemState(3, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(CSortListCtrl::SearchTextFromListCtrl(&list, "a", -1, 0, 0), 3)
        << "from the selection";
    EXPECT_EQ(CSortListCtrl::SearchTextFromListCtrl(nullptr, "a", 0, 0, 0), -1);
    EXPECT_EQ(CSortListCtrl::SearchTextFromListCtrl(&list, nullptr, 0, 0, 0), -1);
    CSortListCtrl none;
    none.InsertColumn(0, "x");
    EXPECT_EQ(CSortListCtrl::SearchTextFromListCtrl(&none, "a", 0, 0, 0), -1);
}

// Out-of-range requests answer like the platform control instead of touching memory.
TEST(SortList, BadIndexesFail) {
    CListCtrl list;
    Fill(list, {"a"}, {{"x"}});
    EXPECT_EQ(list.InsertItem(-1, "y"), -1);
    EXPECT_FALSE(list.SetItemText(5, 0, "z"));
    EXPECT_FALSE(list.SetItemText(0, 3, "z"));
    EXPECT_EQ(list.GetItemText(0, 9), CString());
    EXPECT_EQ(list.GetItemData(-2), 0u);
    EXPECT_FALSE(list.DeleteItem(1));
    EXPECT_FALSE(list.DeleteColumn(1));
    EXPECT_FALSE(list.GetHeaderCtrl()->SetItem(4, nullptr));
    EXPECT_EQ(list.InsertItem(50, "tail"), 1) << "index clamped to the count";
}
