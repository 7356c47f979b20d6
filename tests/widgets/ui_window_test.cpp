// A real window on an X server (run under xvfb-run): QTest clicks the header and
// double-clicks cells of a CSortListCtrl; the test checks the order, the sort indicator and
// the captured cell, and saves a screenshot to the path given as the first argument.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <QApplication>
#include <QHeaderView>
#include <QTest>

#include <kxbase/runtime/env_obj.h>
#include <kxbase/ui/list_ctrl.h>
#include <kxbase/ui/ui.h>

namespace {

const char* g_screenshot = nullptr;

std::vector<std::string> Column(const CListCtrl& list, int column) {
    std::vector<std::string> out;
    for (int i = 0; i < list.GetItemCount(); ++i) out.push_back(list.GetItemText(i, column).str());
    return out;
}

void ClickHeader(CSortListCtrl& list, int column) {
    QHeaderView* h = list.header();
    QTest::mouseClick(
        h->viewport(), Qt::LeftButton, {},
        QPoint(h->sectionViewportPosition(column) + h->sectionSize(column) / 2, h->height() / 2));
}

}  // namespace

TEST(ListWindow, HeaderClicksAndDoubleClick) {
    ASSERT_EQ(QGuiApplication::platformName(), "xcb");
    EXPECT_GT(g_EnvObj.m_nHorzRes, 0) << "the screen was measured from the X server";

    CSortListCtrl list;
    list.setWindowTitle("CSortListCtrl");
    list.resize(420, 240);
    const char* names[] = {"kxbase.dll", "Printer.cfg", "alpha.icc", "Zeta.tif", "beta.icc"};
    const char* sizes[] = {"120", "3", "45", "9000", "7"};
    list.InsertColumn(0, "Name", LVCFMT_LEFT, 200);
    list.InsertColumn(1, "Size", LVCFMT_RIGHT, 100);
    for (int i = 0; i < 5; ++i) {
        list.InsertItem(i, names[i]);
        list.SetItemText(i, 1, sizes[i]);
        list.SetItemData(i, static_cast<DWORD_PTR>(i + 1));
    }
    list.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&list));

    ClickHeader(list, 0);  // fresh control: column 0 toggles to Z to A
    EXPECT_EQ(Column(list, 0), (std::vector<std::string>{"Zeta.tif", "Printer.cfg", "kxbase.dll",
                                                         "beta.icc", "alpha.icc"}));

    // A new column sorts A to Z by text. (The header formats of the click sequence are
    // checked offscreen in ui_list_test.cpp.)
    ClickHeader(list, 1);
    EXPECT_EQ(Column(list, 1), (std::vector<std::string>{"120", "3", "45", "7", "9000"}));
    EXPECT_TRUE(list.header()->isSortIndicatorShown());
    EXPECT_EQ(list.header()->sortIndicatorSection(), 1);

    CRect cell;
    ASSERT_TRUE(list.GetSubItemRect(3, 1, LVIR_LABEL, cell));
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {},
                       QPoint((cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2));
    EXPECT_EQ(list.GetDblClkItem(), 3);
    EXPECT_EQ(list.GetDblClkSubItem(), 1);
    EXPECT_EQ(list.GetItemText(list.GetDblClkItem(), list.GetDblClkSubItem()), "7");

    // Below the last row: no cell.
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {},
                       QPoint(10, list.viewport()->height() - 3));
    EXPECT_EQ(list.GetDblClkItem(), -1);
    EXPECT_EQ(list.GetDblClkSubItem(), -1);

    list.SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
    if (g_screenshot != nullptr) {
        EXPECT_TRUE(list.grab().save(g_screenshot, "PNG"));
    }
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    KxUiInit();
    if (argc > 1) g_screenshot = argv[1];
    return RUN_ALL_TESTS();
}
