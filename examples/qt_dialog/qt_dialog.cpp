// A Qt dialog with the sortable list: page sizes in a CSortListCtrl that sorts itself when a
// header is clicked. Column 2 holds numbers, so it gets a sort key that orders them by value.
//
//   qt_dialog              shows the dialog until it is closed
//   qt_dialog --self-test  clicks every column header twice, checks the order after each
//                          click and exits on its own (runs without a display with
//                          QT_QPA_PLATFORM=offscreen)
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QTimer>
#include <QVBoxLayout>

#include <kxbase/ui/list_ctrl.h>
#include <kxbase/ui/ui.h>
#include <kxbase/units.h>

namespace {

struct Page {
    const char* name;
    double widthMm;
    double heightMm;
};
constexpr Page kPages[] = {{"A4", 210, 297}, {"Letter", 215.9, 279.4}, {"A3", 297, 420},
                           {"A5", 148, 210}, {"Legal", 215.9, 355.6}};
constexpr double kDpi = 600.0;

// Sort key of a cell: column 2 (pixels) is zero-padded so that text order is number order;
// the other columns sort by their text.
INT64 PixelKey(CString& out, const char* text, int column) {
    if (column == 2)
        out.Format("%012d", std::atoi(text));
    else
        out = text;
    return 0;
}

// Fills the list; every row carries a distinct item-data value, which sorting relies on.
void FillPages(CSortListCtrl& list) {
    list.InsertColumn(0, "Page", LVCFMT_LEFT, 90);
    list.InsertColumn(1, "Size (mm)", LVCFMT_LEFT, 120);
    list.InsertColumn(2, "Width at 600 DPI (px)", LVCFMT_RIGHT, 170);
    int row = 0;
    for (const Page& page : kPages) {
        CString size, pixels;
        size.Format("%g x %g", page.widthMm, page.heightMm);
        pixels.Format("%d", ToNPIXEL(page.widthMm, kDpi, RES_DPI, SIZE_MM));
        list.InsertItem(row, page.name);
        list.SetItemText(row, 1, size);
        list.SetItemText(row, 2, pixels);
        list.SetItemData(row, static_cast<DWORD_PTR>(row + 1));
        ++row;
    }
    list.SetSortParam(0, 0, PixelKey);
    list.SortItemsEx();
}

// True when the rows are ordered by column (ascending, or descending when asked).
bool IsSorted(const CSortListCtrl& list, int column, bool descending) {
    for (int row = 1; row < list.GetItemCount(); ++row) {
        CString a, b;
        PixelKey(a, list.GetItemText(row - 1, column), column);
        PixelKey(b, list.GetItemText(row, column), column);
        const int order = a.CompareNoCase(b);
        if (descending ? order < 0 : order > 0) return false;
    }
    return true;
}

// Clicks every header twice and checks the order after each click. A click on a new column
// sorts it ascending; a second click on the same column turns the direction round.
int SelfTest(CSortListCtrl& list) {
    int failures = 0;
    for (int column = 0; column < list.GetColumnCount(); ++column) {
        int previous = -1;
        for (int click = 0; click < 2; ++click) {
            list.OnColumnClick(column);
            const bool descending = list.IsSortDescending() != 0;
            const bool ok = list.GetSortColumn() == column && IsSorted(list, column, descending) &&
                            (previous < 0 || previous != static_cast<int>(descending));
            std::printf("column %d %s: %s, first row %s\n", column,
                        descending ? "descending" : "ascending", ok ? "sorted" : "NOT sorted",
                        list.GetItemText(0, 0).GetString());
            failures += ok ? 0 : 1;
            previous = descending ? 1 : 0;
        }
    }
    return failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const bool selfTest = argc > 1 && std::strcmp(argv[1], "--self-test") == 0;

    QDialog dialog;
    dialog.setWindowTitle("Page sizes");
    auto* list = new CSortListCtrl(&dialog);
    FillPages(*list);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(list);
    layout->addWidget(buttons);

    int result = 0;
    if (selfTest) {
        // Runs once the event loop has shown the dialog, then closes it.
        QTimer::singleShot(0, &dialog, [&] {
            result = SelfTest(*list);
            dialog.done(QDialog::Accepted);
        });
    }
    dialog.exec();
    return result;
}
