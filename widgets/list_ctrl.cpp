// CListCtrl on a QTreeView with a table model that keeps the cell texts as the 8-bit
// strings the host hands in, so that reading, searching and sorting rows never converts
// text; only the rows on screen are turned into QStrings for painting.
#include <kxbase/ui/list_ctrl.h>

#include <algorithm>
#include <cstring>
#include <numeric>

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QItemSelectionModel>

namespace kxui_detail {

struct Column {
    CString heading;
    int format;        // LVCFMT_*: alignment of the cells
    int headerFormat;  // HDF_*: the header item's format
};

struct Row {
    std::vector<CString> cells;
    DWORD_PTR data = 0;
};

Qt::Alignment AlignmentOf(int justify) {
    switch (justify & 3) {
        case 1:
            return Qt::AlignRight | Qt::AlignVCenter;
        case 2:
            return Qt::AlignHCenter | Qt::AlignVCenter;
        default:
            return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

class ListModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows.size());
    }
    int columnCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(columns.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) return {};
        const Row& r = rows[static_cast<std::size_t>(index.row())];
        const auto c = static_cast<std::size_t>(index.column());
        if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
            return c < r.cells.size() ? QString::fromUtf8(r.cells[c].GetString()) : QString();
        if (role == Qt::TextAlignmentRole)
            return QVariant::fromValue(AlignmentOf(columns[c].format));
        return {};
    }
    QVariant headerData(int section, Qt::Orientation o, int role) const override {
        if (o != Qt::Horizontal || section < 0 || section >= static_cast<int>(columns.size()))
            return {};
        const Column& c = columns[static_cast<std::size_t>(section)];
        if (role == Qt::DisplayRole) return QString::fromUtf8(c.heading.GetString());
        if (role == Qt::TextAlignmentRole) return QVariant::fromValue(AlignmentOf(c.headerFormat));
        return {};
    }
    Qt::ItemFlags flags(const QModelIndex& index) const override {
        return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
    }

    void InsertRow(int at, const char* text) {
        beginInsertRows({}, at, at);
        Row r;
        r.cells.emplace_back(text);
        rows.insert(rows.begin() + at, std::move(r));
        endInsertRows();
    }
    void RemoveRow(int at) {
        beginRemoveRows({}, at, at);
        rows.erase(rows.begin() + at);
        endRemoveRows();
    }
    void Clear() {
        beginResetModel();
        rows.clear();
        endResetModel();
    }
    void InsertColumn(int at, Column c) {
        beginInsertColumns({}, at, at);
        columns.insert(columns.begin() + at, std::move(c));
        for (Row& r : rows)
            if (static_cast<std::size_t>(at) < r.cells.size())
                r.cells.insert(r.cells.begin() + at, CString());
        endInsertColumns();
    }
    void RemoveColumn(int at) {
        beginRemoveColumns({}, at, at);
        columns.erase(columns.begin() + at);
        for (Row& r : rows)
            if (static_cast<std::size_t>(at) < r.cells.size()) r.cells.erase(r.cells.begin() + at);
        endRemoveColumns();
    }
    void CellChanged(int row, int column) {
        const QModelIndex i = index(row, column);
        Q_EMIT dataChanged(i, i);
    }
    void HeaderChanged(int column) { Q_EMIT headerDataChanged(Qt::Horizontal, column, column); }

    // Puts row order[i] at position i; persistent indexes (selection, focus) follow.
    void Permute(const std::vector<int>& order) {
        Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
        std::vector<int> newPos(order.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            newPos[static_cast<std::size_t>(order[i])] = static_cast<int>(i);
        std::vector<Row> sorted;
        sorted.reserve(rows.size());
        for (int from : order) sorted.push_back(std::move(rows[static_cast<std::size_t>(from)]));
        rows.swap(sorted);
        const QModelIndexList before = persistentIndexList();
        QModelIndexList after;
        after.reserve(before.size());
        for (const QModelIndex& i : before)
            after.append(index(newPos[static_cast<std::size_t>(i.row())], i.column()));
        changePersistentIndexList(before, after);
        Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    }

    std::vector<Column> columns;
    std::vector<Row> rows;
};

}  // namespace kxui_detail

using kxui_detail::ListModel;

namespace {

// Bottom-up merge sort of a permutation. Every index it touches is bounded by the run
// limits, so a callback that contradicts itself cannot make it read outside the arrays.
void MergeSort(std::vector<int>& perm, const std::vector<LPARAM>& data, PFNLVCOMPARE compare,
               LPARAM sortData) {
    const std::size_t n = perm.size();
    auto after = [&](int a, int b) {
        return compare(data[static_cast<std::size_t>(a)], data[static_cast<std::size_t>(b)],
                       sortData) > 0;
    };
    constexpr std::size_t kRun = 16;
    for (std::size_t lo = 0; lo < n; lo += kRun) {
        const std::size_t hi = std::min(n, lo + kRun);
        for (std::size_t i = lo + 1; i < hi; ++i) {
            const int v = perm[i];
            std::size_t j = i;
            while (j > lo && after(perm[j - 1], v)) {
                perm[j] = perm[j - 1];
                --j;
            }
            perm[j] = v;
        }
    }
    std::vector<int> buf(n);
    for (std::size_t width = kRun; width < n; width *= 2) {
        for (std::size_t lo = 0; lo < n; lo += 2 * width) {
            const std::size_t mid = std::min(n, lo + width), hi = std::min(n, lo + 2 * width);
            std::size_t i = lo, j = mid, k = lo;
            while (i < mid && j < hi) buf[k++] = after(perm[i], perm[j]) ? perm[j++] : perm[i++];
            while (i < mid) buf[k++] = perm[i++];
            while (j < hi) buf[k++] = perm[j++];
        }
        perm.swap(buf);
    }
}

}  // namespace

// ---- CHeaderCtrl -------------------------------------------------------------------------

int CHeaderCtrl::GetItemCount() const {
    return static_cast<int>(m_list->m_model->columns.size());
}

BOOL CHeaderCtrl::GetItem(int nPos, HDITEM* item) const {
    if (item == nullptr || nPos < 0 || nPos >= GetItemCount()) return FALSE;
    const kxui_detail::Column& c = m_list->m_model->columns[static_cast<std::size_t>(nPos)];
    if (item->mask & HDI_FORMAT) item->fmt = c.headerFormat;
    if (item->mask & HDI_WIDTH) item->cxy = m_list->header()->sectionSize(nPos);
    if ((item->mask & HDI_TEXT) && item->pszText && item->cchTextMax > 0) {
        const std::size_t n = std::min(static_cast<std::size_t>(item->cchTextMax - 1),
                                       static_cast<std::size_t>(c.heading.GetLength()));
        std::memcpy(item->pszText, c.heading.GetString(), n);
        item->pszText[n] = '\0';
    }
    return TRUE;
}

BOOL CHeaderCtrl::SetItem(int nPos, const HDITEM* item) {
    if (item == nullptr || nPos < 0 || nPos >= GetItemCount()) return FALSE;
    kxui_detail::Column& c = m_list->m_model->columns[static_cast<std::size_t>(nPos)];
    if (item->mask & HDI_TEXT) c.heading = item->pszText;
    if ((item->mask & HDI_WIDTH) && item->cxy >= 0)
        m_list->header()->resizeSection(nPos, item->cxy);
    if (item->mask & HDI_FORMAT) {
        c.headerFormat = item->fmt;
        QHeaderView* h = m_list->header();
        if (item->fmt & (HDF_SORTUP | HDF_SORTDOWN)) {
            h->setSortIndicatorShown(true);
            // QHeaderView draws its "sort up" arrow for Qt::DescendingOrder.
            h->setSortIndicator(
                nPos, (item->fmt & HDF_SORTUP) ? Qt::DescendingOrder : Qt::AscendingOrder);
        } else if (h->sortIndicatorSection() == nPos) {
            h->setSortIndicatorShown(false);
        }
    }
    m_list->m_model->HeaderChanged(nPos);
    return TRUE;
}

// ---- CListCtrl ---------------------------------------------------------------------------

CListCtrl::CListCtrl(QWidget* parent)
    : QTreeView(parent), m_model(new ListModel(this)), m_header(this) {
    setModel(m_model);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSortingEnabled(false);
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
}

CListCtrl::~CListCtrl() = default;

int CListCtrl::InsertColumn(int nCol, const char* heading, int nFormat, int nWidth, int) {
    if (nCol < 0) return -1;
    nCol = std::min(nCol, static_cast<int>(m_model->columns.size()));
    m_model->InsertColumn(nCol, {CString(heading), nFormat & LVCFMT_JUSTIFYMASK,
                                 HDF_STRING | (nFormat & HDF_JUSTIFYMASK)});
    if (nWidth >= 0) header()->resizeSection(nCol, nWidth);
    return nCol;
}

BOOL CListCtrl::DeleteColumn(int nCol) {
    if (nCol < 0 || nCol >= static_cast<int>(m_model->columns.size())) return FALSE;
    m_model->RemoveColumn(nCol);
    return TRUE;
}

BOOL CListCtrl::GetColumn(int nCol, LVCOLUMN* column) const {
    if (column == nullptr || nCol < 0 || nCol >= static_cast<int>(m_model->columns.size()))
        return FALSE;
    const kxui_detail::Column& c = m_model->columns[static_cast<std::size_t>(nCol)];
    if (column->mask & LVCF_FMT) column->fmt = c.format;
    if (column->mask & LVCF_WIDTH) column->cx = header()->sectionSize(nCol);
    if ((column->mask & LVCF_TEXT) && column->pszText && column->cchTextMax > 0) {
        const std::size_t n = std::min(static_cast<std::size_t>(column->cchTextMax - 1),
                                       static_cast<std::size_t>(c.heading.GetLength()));
        std::memcpy(column->pszText, c.heading.GetString(), n);
        column->pszText[n] = '\0';
    }
    return TRUE;
}

int CListCtrl::GetColumnWidth(int nCol) const {
    if (nCol < 0 || nCol >= static_cast<int>(m_model->columns.size())) return 0;
    return header()->sectionSize(nCol);
}

int CListCtrl::GetItemCount() const {
    return static_cast<int>(m_model->rows.size());
}

int CListCtrl::InsertItem(int nItem, const char* text) {
    if (nItem < 0) return -1;
    nItem = std::min(nItem, GetItemCount());
    m_model->InsertRow(nItem, text);
    return nItem;
}

BOOL CListCtrl::DeleteItem(int nItem) {
    if (nItem < 0 || nItem >= GetItemCount()) return FALSE;
    m_model->RemoveRow(nItem);
    return TRUE;
}

BOOL CListCtrl::DeleteAllItems() {
    m_model->Clear();
    return TRUE;
}

BOOL CListCtrl::SetItemText(int nItem, int nSubItem, const char* text) {
    if (nItem < 0 || nItem >= GetItemCount() || nSubItem < 0 ||
        nSubItem >= static_cast<int>(m_model->columns.size()))
        return FALSE;
    auto& cells = m_model->rows[static_cast<std::size_t>(nItem)].cells;
    if (static_cast<std::size_t>(nSubItem) >= cells.size())
        cells.resize(static_cast<std::size_t>(nSubItem) + 1);
    cells[static_cast<std::size_t>(nSubItem)] = text;
    m_model->CellChanged(nItem, nSubItem);
    return TRUE;
}

CString CListCtrl::GetItemText(int nItem, int nSubItem) const {
    if (nItem < 0 || nItem >= GetItemCount() || nSubItem < 0) return CString();
    const auto& cells = m_model->rows[static_cast<std::size_t>(nItem)].cells;
    return static_cast<std::size_t>(nSubItem) < cells.size()
               ? cells[static_cast<std::size_t>(nSubItem)]
               : CString();
}

BOOL CListCtrl::SetItemData(int nItem, DWORD_PTR dwData) {
    if (nItem < 0 || nItem >= GetItemCount()) return FALSE;
    m_model->rows[static_cast<std::size_t>(nItem)].data = dwData;
    return TRUE;
}

DWORD_PTR CListCtrl::GetItemData(int nItem) const {
    if (nItem < 0 || nItem >= GetItemCount()) return 0;
    return m_model->rows[static_cast<std::size_t>(nItem)].data;
}

BOOL CListCtrl::SetItemState(int nItem, UINT state, UINT mask) {
    if (nItem < 0 || nItem >= GetItemCount()) return FALSE;
    const QModelIndex i = m_model->index(nItem, 0);
    if (mask & LVIS_SELECTED)
        selectionModel()->select(i, ((state & LVIS_SELECTED) ? QItemSelectionModel::Select
                                                             : QItemSelectionModel::Deselect) |
                                        QItemSelectionModel::Rows);
    if ((mask & LVIS_FOCUSED) && (state & LVIS_FOCUSED))
        selectionModel()->setCurrentIndex(i, QItemSelectionModel::NoUpdate);
    return TRUE;
}

UINT CListCtrl::GetItemState(int nItem, UINT mask) const {
    if (nItem < 0 || nItem >= GetItemCount()) return 0;
    UINT state = 0;
    if ((mask & LVIS_SELECTED) && selectionModel()->isRowSelected(nItem, {}))
        state |= LVIS_SELECTED;
    if ((mask & LVIS_FOCUSED) && selectionModel()->currentIndex().row() == nItem)
        state |= LVIS_FOCUSED;
    return state;
}

int CListCtrl::GetNextItem(int nItem, int nFlags) const {
    const int count = GetItemCount();
    const int from = nItem < 0 ? 0 : nItem + 1;
    if (from >= count) return -1;
    if (!(nFlags & LVNI_SELECTED)) return from;
    int best = -1;
    for (const QModelIndex& i : selectionModel()->selectedRows())
        if (i.row() >= from && (best < 0 || i.row() < best)) best = i.row();
    return best;
}

int CListCtrl::GetSelectedCount() const {
    return static_cast<int>(selectionModel()->selectedRows().size());
}

BOOL CListCtrl::EnsureVisible(int nItem, BOOL) {
    if (nItem < 0 || nItem >= GetItemCount()) return FALSE;
    scrollTo(m_model->index(nItem, 0));
    return TRUE;
}

BOOL CListCtrl::GetSubItemRect(int nItem, int nSubItem, int, CRect& rect) const {
    if (nItem < 0 || nItem >= GetItemCount() || nSubItem < 0 ||
        nSubItem >= static_cast<int>(m_model->columns.size()))
        return FALSE;
    const QRect r = visualRect(m_model->index(nItem, nSubItem));
    rect = CRect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height());
    return TRUE;
}

int CListCtrl::HitTest(POINT pt) const {
    const QModelIndex i = indexAt(QPoint(pt.x, pt.y));
    return i.isValid() ? i.row() : -1;
}

BOOL CListCtrl::SortItems(PFNLVCOMPARE compare, LPARAM sortData) {
    if (compare == nullptr) return FALSE;
    const std::size_t n = m_model->rows.size();
    std::vector<LPARAM> itemData(n);
    for (std::size_t i = 0; i < n; ++i) itemData[i] = static_cast<LPARAM>(m_model->rows[i].data);
    std::vector<int> perm(n);
    std::iota(perm.begin(), perm.end(), 0);
    MergeSort(perm, itemData, compare, sortData);
    m_model->Permute(perm);
    return TRUE;
}
