// CSortListCtrl: sorting by a header click, the comparison, double-click capture and the
// static helpers that work on any CListCtrl.
#include <kxbase/ui/list_ctrl.h>

#include <chrono>
#include <cstring>
#include <thread>

#include <QHeaderView>
#include <QMouseEvent>

namespace {

std::string Folded(const char* s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

int Sign(int v) {
    return (v > 0) - (v < 0);
}

// Byte-wise comparison of a with b, bytes unsigned (std::string::compare is unsigned).
int Bytes(const std::string& a, const std::string& b) {
    return Sign(a.compare(b));
}

DWORD TickMs() {
    using namespace std::chrono;
    return static_cast<DWORD>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

}  // namespace

// ---- ASortListCompare --------------------------------------------------------------------

ASortListCompare::ASortListCompare(int bDescending, int bEnabled, int nColumn, PFNSORTTEXT convert)
    : m_dir(bDescending ? 1 : -1), m_enabled(bEnabled), m_column(nColumn), m_convert(convert) {}

void ASortListCompare::Reserve(std::size_t rows) {
    m_keys.reserve(rows);
    m_rowOf.reserve(rows);
}

void ASortListCompare::AddRow(LPARAM data, const char* text) {
    if (text == nullptr) text = "";
    Key k;
    if (m_convert != nullptr) {
        CString out;
        m_convert(out, text, m_column);
        k.text = out.str();
    } else {
        k.text = text;
    }
    k.folded = Folded(k.text.c_str());
    m_rowOf.emplace(data, static_cast<std::uint32_t>(m_keys.size()));
    m_keys.push_back(std::move(k));
}

int ASortListCompare::Compare(LPARAM d1, LPARAM d2) const {
    if (!m_enabled || d1 < 0 || d2 < 0) return 0;
    const auto r1 = m_rowOf.find(d1), r2 = m_rowOf.find(d2);
    if (r1 == m_rowOf.end() || r2 == m_rowOf.end()) return d1 <= d2 ? m_dir : -m_dir;
    const Key& k1 = m_keys[r1->second];
    const Key& k2 = m_keys[r2->second];
    int v = Bytes(k2.folded, k1.folded);
    if (v == 0) v = Bytes(k2.text, k1.text);
    return v < 0 ? -m_dir : (v > 0 ? m_dir : 0);
}

int ASortListCompare::Proc(LPARAM d1, LPARAM d2, LPARAM sortData) {
    const auto* self = reinterpret_cast<const ASortListCompare*>(sortData);
    return self != nullptr ? self->Compare(d1, d2) : 0;
}

// ---- CSortListCtrl -----------------------------------------------------------------------

CSortListCtrl::CSortListCtrl(QWidget* parent)
    : CListCtrl(parent), m_nDblClkItem(-1), m_nDblClkSubItem(-1), m_bSortEnable(1) {
    SetSortParam(0, 0, nullptr);
    connect(header(), &QHeaderView::sectionClicked, this, [this](int c) { OnColumnClick(c); });
}

void CSortListCtrl::SetSortParam(int bDescending, int nColumn, PFNSORTTEXT convert) {
    m_bDescending = bDescending;
    m_nSortColumn = nColumn;
    m_pfnConvert = convert;
    HDITEM item{};
    item.mask = HDI_FORMAT;
    if (GetHeaderCtrl()->GetItem(nColumn, &item)) {
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        item.fmt |= bDescending ? HDF_SORTUP : HDF_SORTDOWN;
        GetHeaderCtrl()->SetItem(nColumn, &item);
    }
}

int CSortListCtrl::SortEnable(int bEnable) {
    const int previous = m_bSortEnable;
    m_bSortEnable = bEnable;
    return previous;
}

int CSortListCtrl::SortItemsEx() {
    ASortListCompare compare(m_bDescending, m_bSortEnable, m_nSortColumn, m_pfnConvert);
    const int n = GetItemCount();
    compare.Reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        compare.AddRow(static_cast<LPARAM>(GetItemData(i)), GetItemText(i, m_nSortColumn));
    return SortItems(&ASortListCompare::Proc, reinterpret_cast<LPARAM>(&compare));
}

DWORD CSortListCtrl::GetItemFlag() {
    const DWORD start = TickMs();
    DWORD now;
    while ((now = TickMs()) == start) std::this_thread::sleep_for(std::chrono::microseconds(100));
    return now;
}

int CSortListCtrl::SetItemDataEx(int nItem) {
    return SetItemData(nItem, GetItemFlag());
}

int CSortListCtrl::GetColumnCount(const CListCtrl* list) {
    if (list == nullptr) return 0;
    int n = 0;
    LVCOLUMN column{};
    column.mask = LVCF_WIDTH;
    while (list->GetColumn(n, &column)) ++n;
    return n;
}

int CSortListCtrl::GetFirstSelected(const CListCtrl* list) {
    return list != nullptr ? list->GetNextItem(-1, LVNI_SELECTED) : -1;
}

int CSortListCtrl::SearchTextFromListCtrl(const CListCtrl* list, const char* text, int nStart,
                                          int bWhole, int bMatchCase) {
    if (list == nullptr || text == nullptr || *text == '\0') return -1;
    const int rows = list->GetItemCount();
    if (rows <= 0) return -1;
    const int columns = GetColumnCount(list);
    const std::string wanted = bMatchCase ? std::string(text) : Folded(text);
    int row = nStart;
    if (row < 0) row = GetFirstSelected(list);
    if (row < 0 || row >= rows) row = 0;
    for (int visited = 0; visited < rows; ++visited, row = (row + 1) % rows) {
        for (int c = 0; c < columns; ++c) {
            const CString cell = list->GetItemText(row, c);
            const std::string have = bMatchCase ? cell.str() : Folded(cell.GetString());
            if (have == wanted || (!bWhole && have.find(wanted) != std::string::npos)) return row;
        }
    }
    return -1;
}

int CSortListCtrl::OnColumnClick(int nColumn) {
    if (!m_bSortEnable) return 0;
    HDITEM item{};
    item.mask = HDI_FORMAT;
    if (nColumn != m_nSortColumn) {
        if (GetHeaderCtrl()->GetItem(m_nSortColumn, &item)) {
            item.fmt = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | HDF_STRING | HDF_RIGHT;
            GetHeaderCtrl()->SetItem(m_nSortColumn, &item);
        }
        m_bDescending = 0;
        m_nSortColumn = nColumn;
    } else {
        m_bDescending = !m_bDescending;
    }
    SortItemsEx();
    if (GetHeaderCtrl()->GetItem(m_nSortColumn, &item)) {
        item.fmt = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | HDF_STRING | HDF_RIGHT |
                   (m_bDescending ? HDF_SORTDOWN : HDF_SORTUP);
        GetHeaderCtrl()->SetItem(m_nSortColumn, &item);
    }
    return 0;
}

void CSortListCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    m_nDblClkItem = -1;
    m_nDblClkSubItem = -1;
    // Cells do not overlap, so the cell under the point is the first cell (rows outer,
    // columns inner) whose rectangle holds it; the view finds it without visiting every row.
    const QPoint at = event->position().toPoint();
    const QModelIndex i = indexAt(at);
    if (i.isValid() && visualRect(i).contains(at)) {
        m_nDblClkItem = i.row();
        m_nDblClkSubItem = i.column();
    }
    CListCtrl::mouseDoubleClickEvent(event);
}
