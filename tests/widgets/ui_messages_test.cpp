// Message helpers on Qt: message boxes pressed by a timer, the splash window around them,
// the status bar, the password dialog's checks, point mapping, the object probe, AMsgSend on
// the application's thread, the screen measurement, and what happens without an application.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <thread>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/ui/messages.h>
#include <kxbase/ui/ui.h>
#include <kxbase/base/bitmap.h>

#include "ui_test_util.h"

namespace {

// Clicks after the driver's timer slot returned: a click that opens a nested modal box
// would otherwise run that box's event loop inside the slot, where the timer cannot fire.
void Later(QAbstractButton* b) {
    QTimer::singleShot(0, b, &QAbstractButton::click);
}

// A step that clicks the message box button with the given text and records what it saw.
ModalDriver::Step Press(const QString& button, QString* text = nullptr,
                        QMessageBox::Icon* icon = nullptr, QStringList* buttons = nullptr,
                        bool* splashHidden = nullptr) {
    return [=](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        if (box == nullptr) return false;
        if (text) *text = box->text();
        if (icon) *icon = box->icon();
        if (splashHidden) *splashHidden = ACommonWnd::GetSplashHandle()->isHidden();
        QAbstractButton* hit = nullptr;
        for (QAbstractButton* b : box->buttons()) {
            if (buttons) buttons->append(b->text().remove('&'));
            if (b->text().remove('&') == button) hit = b;
        }
        if (hit == nullptr) return false;
        Later(hit);
        return true;
    };
}

// Fills the password dialog's entries and presses OK.
ModalDriver::Step Enter(const QString& first, const QString& second) {
    return [=](QWidget* modal) {
        if (modal->objectName() != "CPasswordDlg") return false;
        modal->findChild<QLineEdit*>("password")->setText(first);
        modal->findChild<QLineEdit*>("confirm")->setText(second);
        for (QPushButton* b : modal->findChildren<QPushButton*>())
            if (b->text().remove('&') == "OK") Later(b);
        return true;
    };
}

ModalDriver::Step Cancel() {
    return [](QWidget* modal) {
        if (modal->objectName() != "CPasswordDlg") return false;
        for (QPushButton* b : modal->findChildren<QPushButton*>())
            if (b->text().remove('&') == "Cancel") Later(b);
        return true;
    };
}

}  // namespace

TEST(NoApplication, HelpersDegrade) {
    EXPECT_EQ(g_noApplication.dialog, 0);
    EXPECT_EQ(g_noApplication.password, 0);
    EXPECT_EQ(g_noApplication.toMain, 0);
    EXPECT_EQ(g_noApplication.postToMain, 0);
    EXPECT_TRUE(g_noApplication.mainWindowNull);
    EXPECT_EQ(g_noApplication.env.m_nHorzRes, 0);
    EXPECT_EQ(g_noApplication.env.m_dScreenDpiX, 0.0);
}

// Catches a style mapped to the wrong buttons or a button mapped to the wrong result.
TEST(MessageBox, StylesButtonsAndResults) {
    struct Case {
        UINT type;
        const char* press;
        int expected;
        const char* buttons;  // comma-separated
        QMessageBox::Icon icon;
    };
    const Case cases[] = {
        {MB_OK, "OK", IDOK, "OK", QMessageBox::NoIcon},
        {MB_OKCANCEL | MB_ICONWARNING, "Cancel", IDCANCEL, "OK,Cancel", QMessageBox::Warning},
        {MB_YESNO | MB_ICONQUESTION, "No", IDNO, "Yes,No", QMessageBox::Question},
        {MB_YESNOCANCEL | MB_ICONERROR, "Yes", IDYES, "Yes,No,Cancel", QMessageBox::Critical},
        {MB_ABORTRETRYIGNORE, "Ignore", IDIGNORE, "Abort,Retry,Ignore", QMessageBox::NoIcon},
        {MB_RETRYCANCEL, "Retry", IDRETRY, "Retry,Cancel", QMessageBox::NoIcon},
        {MB_CANCELTRYCONTINUE, "Continue", IDCONTINUE, "Cancel,Try Again,Continue", {}},
    };
    for (const Case& c : cases) {
        QString text;
        QMessageBox::Icon icon{};
        QStringList buttons;
        ModalDriver driver({Press(c.press, &text, &icon, &buttons)});
        EXPECT_EQ(ZelDialogMsg(KxLibraryHandle(), 14, 15, c.type, " %d ", 7), c.expected)
            << c.press;
        EXPECT_TRUE(driver.Done());
        const QString head = QString::fromUtf8(ZelLoadString(KxLibraryHandle(), 14).GetString());
        EXPECT_EQ(text, head + " 7 " + head) << "the tail repeats the head";
        EXPECT_EQ(icon, c.icon);
        buttons.sort();
        QStringList want = QString(c.buttons).split(',');
        want.sort();
        EXPECT_EQ(buttons, want);
    }
}

// The short form uses the information icon; the splash window is hidden while the box is up
// and shown again after it.
TEST(MessageBox, InformationIconAndSplash) {
    QWidget splash;
    splash.show();
    ACommonWnd::SetSplashHandle(&splash);
    QString text;
    QMessageBox::Icon icon{};
    bool hidden = false;
    ModalDriver driver({Press("OK", &text, &icon, nullptr, &hidden)});
    EXPECT_EQ(ZelDialogMsg("copy %d of %s", 2, "3"), IDOK);
    EXPECT_EQ(text, "copy 2 of 3");
    EXPECT_EQ(icon, QMessageBox::Information);
    EXPECT_TRUE(hidden);
    EXPECT_TRUE(splash.isVisible());
    ACommonWnd::SetSplashHandle(nullptr);
    EXPECT_EQ(ZelDialogMsg(static_cast<const char*>(nullptr)), 0);
}

TEST(StatusBar, TextGoesToTheMainWindow) {
    ZelStatusMsg("nothing to show it in");  // no main window: nothing happens
    MessageWindow w;
    KxSetMainWindow(&w);
    ZelStatusMsg("%s ready", "printer");
    EXPECT_EQ(w.statusBar()->currentMessage(), "printer ready");
    ZelStatusMsg(KxLibraryHandle(), 14, 15, "/%d/", 7);
    EXPECT_EQ(w.statusBar()->currentMessage().toStdString(),
              ZelLoadString(nullptr, 14).str() + "/7/" + ZelLoadString(nullptr, 15).str());
    KxSetMainWindow(nullptr);
}

// Catches checks that run without confirm mode, messages with other texts, a dialog that
// closes after a failed check, and results copied on Cancel.
TEST(PasswordDialog, ChecksAndResults) {
    CString password = "stale", confirm = "stale";
    QString first, second;
    {
        ModalDriver driver({Enter("", ""), Press("OK", &first), Enter("abc", "abd"),
                            Press("OK", &second), Enter("abc", "abc")});
        EXPECT_EQ(ZelPasswordDlg(password, &confirm, 1, 0), 1);
        EXPECT_TRUE(driver.Done());
    }
    EXPECT_EQ(first, "Invalid parameter!");
    EXPECT_EQ(second, "Two input information does not match , please re-enter !");
    EXPECT_EQ(password, "abc");
    EXPECT_EQ(confirm, "abc");
    {
        ModalDriver driver({Enter("", "")});  // empty allowed
        EXPECT_EQ(ZelPasswordDlg(password, &confirm, 1, 1), 1);
        EXPECT_EQ(password, "");
    }
    {
        ModalDriver driver({Enter("x", "y")});  // no confirm mode: no checks
        EXPECT_EQ(ZelPasswordDlg(password, nullptr, 0, 0), 1);
        EXPECT_EQ(password, "x");
    }
    {
        ModalDriver driver({Cancel()});
        confirm = "stale";
        EXPECT_EQ(ZelPasswordDlg(password, &confirm, 1, 0), 0);
        EXPECT_EQ(password, "");
        EXPECT_EQ(confirm, "");
    }
}

// Mouse messages move between widgets (negative co-ordinates keep their sign in the
// packing); other messages and same-window requests are left alone.
TEST(MapPoint, MouseMessagesBetweenWidgets) {
    QWidget top;
    top.resize(400, 300);
    QWidget a(&top), b(&top);
    a.setGeometry(10, 20, 100, 100);
    b.setGeometry(200, 50, 100, 100);
    struct Case {
        UINT message;
        QWidget* target;
        int x, y, wantX, wantY;
        bool moved;
    };
    const Case cases[] = {
        {WM_LBUTTONDOWN, &b, 5, 6, 5 + 10 - 200, 6 + 20 - 50, true},
        {WM_MOUSEMOVE, &b, -3, 40, -3 - 190, 40 - 30, true},
        {0x20E, &b, 0, 0, -190, -30, true},
        {0x20F, &b, 5, 6, 5, 6, false},
        {0x1FF, &b, 5, 6, 5, 6, false},
        {WM_LBUTTONUP, &a, 5, 6, 5, 6, false},
        {WM_LBUTTONUP, nullptr, 5, 6, 5, 6, false},
    };
    for (const Case& c : cases) {
        MSG msg{&a, c.message, 9, MAKELPARAM_POINT(c.x, c.y), 0, {0, 0}};
        POINT pt{};
        const MSG out = ZelMapPoint(msg, c.target, &pt);
        EXPECT_EQ(pt.x, c.wantX) << c.message;
        EXPECT_EQ(pt.y, c.wantY) << c.message;
        EXPECT_EQ(GET_X_LPARAM(out.lParam), c.wantX);
        EXPECT_EQ(GET_Y_LPARAM(out.lParam), c.wantY);
        EXPECT_EQ(out.hwnd, c.moved ? c.target : &a);
        EXPECT_EQ(out.wParam, 9u);
    }
}

TEST(ValidObject, ProbesWithoutFaulting) {
    ABitmap bitmap;
    EXPECT_EQ(ZelValidObject(&bitmap), 1);
    EXPECT_EQ(ZelValidObject(nullptr), 0);
    // Read-only memory (a string literal) is not writable.
    EXPECT_EQ(ZelValidObject(reinterpret_cast<const CObject*>("read-only text, long enough")), 0);
    // A zeroed buffer: its table pointer is null.
    alignas(16) static unsigned char zeros[64] = {};
    EXPECT_EQ(ZelValidObject(reinterpret_cast<const CObject*>(zeros)), 0);
    // A table pointer to readable data whose entries are not code.
    alignas(16) static const void* fakeTable[4] = {zeros, zeros, zeros, zeros};
    alignas(16) static const void* fakeObject[4] = {fakeTable, nullptr, nullptr, nullptr};
    EXPECT_EQ(ZelValidObject(reinterpret_cast<const CObject*>(fakeObject)), 0);
}

// On the application's thread ToMain returns the window's answer at once; PostToMain
// arrives when events are processed; without a main window both give 0.
TEST(MsgSend, OnTheApplicationThread) {
    EXPECT_EQ(AMsgSend::ToMain(WM_APP, 1, 2), 0);
    EXPECT_EQ(AMsgSend::PostToMain(WM_APP, 1, 2), 0);
    MessageWindow w;
    w.show();
    EXPECT_EQ(KxGetMainWindow(), &w) << "default: the shown QMainWindow";
    EXPECT_EQ(AMsgSend::ToMain(WM_APP + 1, 40, 2), 42);
    EXPECT_EQ(AMsgSend::PostToMain(WM_APP + 2, 0, 0), 1);
    EXPECT_EQ(w.received, (std::vector<UINT>{WM_APP + 1}));
    QCoreApplication::processEvents();
    EXPECT_EQ(w.received, (std::vector<UINT>{WM_APP + 1, WM_APP + 2}));
}

// From another thread the widget helpers refuse instead of touching widgets.
TEST(Threads, WidgetHelpersRefuseOffTheApplicationThread) {
    int dialog = -1, password = -1;
    std::thread worker([&] {
        dialog = ZelDialogMsg("from a worker");
        CString p;
        password = ZelPasswordDlg(p, nullptr, 0, 0);
        ZelStatusMsg("from a worker");
    });
    worker.join();
    EXPECT_EQ(dialog, 0);
    EXPECT_EQ(password, 0);
}
