/// \file
/// CListCtrl and CSortListCtrl: a report-style list (rows of text cells under a header) with
/// the member names of the platform list control that host dialogs were written against,
/// and the list that sorts itself when a header is clicked.
///
/// Rows are numbered from 0 in display order; columns from 0 in insertion order. Cell texts
/// are 8-bit strings in UTF-8. Every row carries one item-data value (DWORD_PTR) that the
/// host chooses; sorting identifies rows by it, so rows must carry distinct values
/// (CSortListCtrl::SetItemDataEx stamps them).
///
/// Failure results follow the platform control: FALSE / -1 / empty text for a row or column
/// that does not exist; nothing throws.
///
/// Thread-safety: widgets, so the application's thread only. ASortListCompare is a plain
/// object and needs no QApplication.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <QTreeView>

#include <kxbase/platform/crect.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>
#include <kxbase/ui/export.h>
#include <kxbase/ui/messages.h>

/// Item data of a row: an unsigned, pointer-wide value the host chooses.
using DWORD_PTR = UINT_PTR;
/// Comparison callback of SortItems: negative when the row with data1 goes first, positive
/// when it goes after the row with data2, 0 when they are equal.
using PFNLVCOMPARE = int (*)(LPARAM data1, LPARAM data2, LPARAM sortData);
/// Rewrites a cell text into its sort key (out) before the comparison; the return value is
/// not used.
using PFNSORTTEXT = INT64 (*)(CString& out, const char* text, int column);

// Column formats (body alignment).
#define LVCFMT_LEFT 0x0000  ///< text aligned left
#define LVCFMT_RIGHT 0x0001  ///< text aligned right
#define LVCFMT_CENTER 0x0002  ///< text centred
#define LVCFMT_JUSTIFYMASK 0x0003  ///< the alignment bits
// Header item formats.
#define HDF_LEFT 0x0000  ///< header text aligned left
#define HDF_RIGHT 0x0001  ///< header text aligned right
#define HDF_CENTER 0x0002  ///< header text centred
#define HDF_JUSTIFYMASK 0x0003  ///< the alignment bits
#define HDF_SORTDOWN 0x0200  ///< the downward sort arrow
#define HDF_SORTUP 0x0400  ///< the upward sort arrow
#define HDF_STRING 0x4000  ///< the item shows its text
// HDITEM / LVCOLUMN masks.
#define HDI_WIDTH 0x0001  ///< HDITEM::cxy is valid
#define HDI_TEXT 0x0002  ///< HDITEM::pszText is valid
#define HDI_FORMAT 0x0004  ///< HDITEM::fmt is valid
#define LVCF_FMT 0x0001  ///< LVCOLUMN::fmt is valid
#define LVCF_WIDTH 0x0002  ///< LVCOLUMN::cx is valid
#define LVCF_TEXT 0x0004  ///< LVCOLUMN::pszText is valid
// Item states and GetNextItem flags.
#define LVIS_FOCUSED 0x0001  ///< the row has the focus
#define LVIS_SELECTED 0x0002  ///< the row is selected
#define LVNI_ALL 0x0000  ///< GetNextItem: any row
#define LVNI_SELECTED 0x0002  ///< GetNextItem: a selected row
// GetSubItemRect areas.
#define LVIR_BOUNDS 0  ///< GetSubItemRect: the whole cell
#define LVIR_LABEL 2  ///< GetSubItemRect: the cell's text area (the same rectangle here)

/// One header item as GetItem and SetItem exchange it; mask says which fields count.
struct HDITEM {
    UINT mask;  ///< HDI_WIDTH, HDI_TEXT, HDI_FORMAT: the fields to read or write
    int cxy;    ///< width in pixels
    char* pszText;  ///< GetItem copies at most cchTextMax - 1 bytes here
    int cchTextMax;  ///< size of the pszText buffer in bytes, terminator included
    int fmt;         ///< HDF_... format bits
};

/// One column as GetColumn reports it; mask says which fields to fill.
struct LVCOLUMN {
    UINT mask;       ///< LVCF_FMT, LVCF_WIDTH, LVCF_TEXT: the fields to fill
    int fmt;         ///< LVCFMT_... alignment of the column's cells
    int cx;          ///< width in pixels
    char* pszText;   ///< receives the heading (at most cchTextMax - 1 bytes, terminated)
    int cchTextMax;  ///< size of the pszText buffer in bytes, terminator included
    int iSubItem;    ///< not filled by GetColumn (kept for the record layout hosts know)
};

class CListCtrl;

/// The header of a CListCtrl: one item per column with a text, a width and a format.
class KXBASE_UI_API CHeaderCtrl {
public:
    /// Number of columns.
    int GetItemCount() const;
    /// Reads what mask asks for; FALSE for a column that does not exist or a null item.
    BOOL GetItem(int nPos, HDITEM* item) const;
    /// Writes what mask names. A format's HDF_SORTUP / HDF_SORTDOWN bits draw the sort arrow
    /// (one arrow shows at a time: the column written last that has one); its justification
    /// aligns the header text. FALSE for a column that does not exist or a null item.
    BOOL SetItem(int nPos, const HDITEM* item);

private:
    friend class CListCtrl;
    explicit CHeaderCtrl(CListCtrl* list) : m_list(list) {}
    CListCtrl* m_list;
};

namespace kxui_detail {
class ListModel;
}

/// A report list of text cells under a header, with the member names of the platform's list
/// control.
class KXBASE_UI_API CListCtrl : public QTreeView {
public:
    /// An empty list: no columns, no rows; whole rows are selected, several at a time.
    explicit CListCtrl(QWidget* parent = nullptr);
    /// Destroys the rows and the model with the widget.
    ~CListCtrl() override;

    /// Inserts a column before nCol (clamped to the count); the header format becomes
    /// HDF_STRING with the justification of nFormat. nWidth < 0 keeps the default width.
    /// Returns the new column's index, -1 for a negative nCol.
    int InsertColumn(int nCol, const char* heading, int nFormat = LVCFMT_LEFT, int nWidth = -1,
                     int nSubItem = -1);
    /// Removes column nCol and its cells. FALSE when the column does not exist.
    BOOL DeleteColumn(int nCol);
    /// Fills what column->mask asks for. FALSE when the column does not exist or column is
    /// null (the count of columns is found by asking for 0, 1, 2, ... until this fails).
    BOOL GetColumn(int nCol, LVCOLUMN* column) const;
    /// Width of column nCol in pixels; 0 when it does not exist.
    int GetColumnWidth(int nCol) const;

    /// Number of rows.
    int GetItemCount() const;
    /// Inserts a row with text in column 0 before nItem (clamped to the count), item data 0.
    /// Returns its index, -1 for a negative nItem.
    int InsertItem(int nItem, const char* text);
    /// Removes row nItem. FALSE when the row does not exist.
    BOOL DeleteItem(int nItem);
    /// Removes every row (the columns stay). TRUE.
    BOOL DeleteAllItems();
    /// Sets a cell's text (a null text is empty). FALSE when the row or column does not exist.
    BOOL SetItemText(int nItem, int nSubItem, const char* text);
    /// A cell's text; empty for a cell that does not exist.
    CString GetItemText(int nItem, int nSubItem) const;
    /// Sets the row's item data. FALSE when the row does not exist.
    BOOL SetItemData(int nItem, DWORD_PTR data);
    /// The row's item data; 0 for a row that does not exist.
    DWORD_PTR GetItemData(int nItem) const;

    ///@{
    /// Selection (LVIS_SELECTED) and focus (LVIS_FOCUSED) of a row: SetItemState changes the
    /// bits that mask names (clearing LVIS_FOCUSED does not move the focus) and returns FALSE
    /// for a row that does not exist; GetItemState returns the masked bits, 0 for a row that
    /// does not exist.
    BOOL SetItemState(int nItem, UINT state, UINT mask);
    UINT GetItemState(int nItem, UINT mask) const;
    ///@}
    /// The first row after nItem (from row 0 when nItem is -1) that has the flags
    /// (LVNI_SELECTED or LVNI_ALL); -1 when there is none.
    int GetNextItem(int nItem, int nFlags) const;
    /// Number of selected rows.
    int GetSelectedCount() const;
    /// Scrolls row nItem into view (bPartialOK is not used). FALSE when the row does not exist.
    BOOL EnsureVisible(int nItem, BOOL bPartialOK);

    /// Rectangle of a cell in the list's client (viewport) co-ordinates. FALSE when the cell
    /// does not exist.
    BOOL GetSubItemRect(int nItem, int nSubItem, int nArea, CRect& rect) const;
    /// The row under pt (client co-ordinates), -1 when none.
    int HitTest(POINT pt) const;

    /// Orders the rows with compare(data1, data2, sortData) by a stable merge sort, which
    /// stays in bounds whatever the callback answers (an inconsistent callback gives some
    /// order, never a crash). Selection and focus move with their rows. TRUE; FALSE for a
    /// null callback.
    BOOL SortItems(PFNLVCOMPARE compare, LPARAM sortData);

    ///@{
    /// The list's header.
    CHeaderCtrl* GetHeaderCtrl() { return &m_header; }
    const CHeaderCtrl* GetHeaderCtrl() const { return &m_header; }
    ///@}

protected:
    friend class CHeaderCtrl;
    kxui_detail::ListModel* m_model;  ///< the rows and columns (owned by the widget)
    CHeaderCtrl m_header;  ///< the header object GetHeaderCtrl returns
};

/// The comparison of CSortListCtrl over a snapshot of the rows, usable without any widget.
/// Rows are added with their item data and the text of the sort column; each text passes
/// through the conversion callback once, when it is added (a callback must therefore give the
/// same key for the same text). Finding a row by its item data is a hash look-up.
class KXBASE_UI_API ASortListCompare {
public:
    /// A comparison without rows: descending when bDescending is nonzero, disabled (every
    /// comparison 0) when bEnabled is 0, over the texts of column nColumn, each rewritten by
    /// convert first when convert is not null.
    ASortListCompare(int bDescending, int bEnabled, int nColumn, PFNSORTTEXT convert);
    ASortListCompare(const ASortListCompare&) = delete;
    ASortListCompare& operator=(const ASortListCompare&) = delete;
    /// Makes room for rows rows, so that adding them allocates nothing more.
    void Reserve(std::size_t rows);
    /// Adds a row; a second row with the same data is kept but never found by its data.
    void AddRow(LPARAM data, const char* text);

    /// Compares the rows of data d1 and d2:
    ///  - disabled, or d1 or d2 negative: 0;
    ///  - dir = 1 when descending, else -1;
    ///  - a datum without a row: dir when d1 <= d2, else -dir;
    ///  - otherwise v = the case-insensitive (ASCII) comparison of the second row's text with
    ///    the first's, or their byte-wise comparison when they are equal ignoring case; the
    ///    result is -dir for v < 0, dir for v > 0, 0 for v = 0.
    /// So with descending clear the rows go A to Z; of "a" and "A", "A" (the smaller byte)
    /// comes first.
    int Compare(LPARAM d1, LPARAM d2) const;

    /// PFNLVCOMPARE adapter: sortData is the ASortListCompare; a null one gives 0.
    static int Proc(LPARAM d1, LPARAM d2, LPARAM sortData);

private:
    struct Key {
        std::string folded;
        std::string text;
    };
    int m_dir;
    int m_enabled;
    int m_column;
    PFNSORTTEXT m_convert;
    std::vector<Key> m_keys;
    std::unordered_map<LPARAM, std::uint32_t> m_rowOf;
};

/// A CListCtrl that sorts its rows by a column when the column's header is clicked.
class KXBASE_UI_API CSortListCtrl : public CListCtrl {
public:
    /// Double-clicked row and column -1, sorting enabled, SetSortParam(0, 0, nullptr).
    explicit CSortListCtrl(QWidget* parent = nullptr);

    /// Stores the three values and marks header item nColumn's arrow: both arrow bits
    /// cleared, then HDF_SORTUP when bDescending is nonzero and HDF_SORTDOWN when it is 0.
    /// (A header click shows the opposite arrow for the same flag; hosts know both.)
    void SetSortParam(int bDescending, int nColumn, PFNSORTTEXT convert);
    /// Nonzero when a header click sorts.
    int IsSortEnable() const { return m_bSortEnable; }
    /// Sets the sort-enabled flag and returns the previous value.
    int SortEnable(int bEnable);
    /// Sorts all rows now with the stored parameters. Returns SortItems' answer.
    int SortItemsEx();

    /// Waits until the millisecond tick count changes and returns the new count: a stamp
    /// that differs from the previous call's.
    static DWORD GetItemFlag();
    /// Stamps row nItem's item data with GetItemFlag(). Returns SetItemData's answer.
    int SetItemDataEx(int nItem);

    /// Number of columns of this list (the static form on this list).
    int GetColumnCount() const { return GetColumnCount(this); }
    /// Number of columns, found by asking for 0, 1, 2, ... until a request fails; 0 for null.
    static int GetColumnCount(const CListCtrl* list);
    /// The first selected row, -1 when none or for a null list.
    static int GetFirstSelected(const CListCtrl* list);
    /// Index of the first row, visiting every row once from nStart (a negative nStart: the
    /// first selected row, or 0) and wrapping round, with a cell equal to text, or (bWhole 0)
    /// containing it. Texts compare in ASCII lower case unless bMatchCase. -1 for a null list,
    /// a null or empty text, an empty list, or no hit. An nStart past the end starts at 0.
    static int SearchTextFromListCtrl(const CListCtrl* list, const char* text, int nStart,
                                      int bWhole, int bMatchCase);

    /// Row of the cell last double-clicked (-1 when the double click missed every cell).
    int GetDblClkItem() const { return m_nDblClkItem; }
    /// Column of that cell (-1 when missed).
    int GetDblClkSubItem() const { return m_nDblClkSubItem; }
    int GetSortColumn() const { return m_nSortColumn; }  ///< the column sorted by last
    /// Nonzero when that sort was descending.
    int IsSortDescending() const { return m_bDescending; }

    /// The header-click handling: with sorting enabled, a new column clears the descending
    /// flag and turns the old column's header to its format without arrows plus HDF_STRING |
    /// HDF_RIGHT; the same column toggles the flag; then the rows are sorted and the sort
    /// column's header gets HDF_STRING | HDF_RIGHT and HDF_SORTDOWN when descending,
    /// HDF_SORTUP otherwise. Returns 0 (the notification's result).
    int OnColumnClick(int nColumn);

protected:
    /// Records the cell under a double click (GetDblClkItem), then lets the view handle it.
    void mouseDoubleClickEvent(QMouseEvent* event) override;

    int m_nDblClkItem;  ///< row of the last double click, -1 when it missed
    int m_nDblClkSubItem;  ///< column of the last double click, -1 when it missed
    int m_bDescending = 0;  ///< the current sort is descending
    int m_nSortColumn = 0;  ///< the column sorted by
    int m_bSortEnable;  ///< a header click sorts
    /// Rewrites a cell text into its sort key; null: the text itself.
    PFNSORTTEXT m_pfnConvert = nullptr;
};
