// Runs the user-interface tests inside one QApplication. Before creating it, records what
// the helpers do without one (checked by NoApplication.HelpersDegrade).
#include <gtest/gtest.h>

#include <cstdlib>

#include <QApplication>

#include <kxbase/ui/messages.h>
#include <kxbase/ui/ui.h>

#include "ui_test_util.h"

NoApplicationAnswers g_noApplication;

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 0);

    KxUiInit();  // static linking: the start-up routine may not have been linked in
    g_noApplication.dialog = ZelDialogMsg("nobody sees this");
    CString password = "old";
    g_noApplication.password = ZelPasswordDlg(password, nullptr, 1, 0);
    g_noApplication.toMain = AMsgSend::ToMain(WM_APP, 1, 2);
    g_noApplication.postToMain = AMsgSend::PostToMain(WM_APP, 1, 2);
    g_noApplication.mainWindowNull = KxGetMainWindow() == nullptr;
    ZelStatusMsg("no status bar");
    g_noApplication.env.Init(1);

    QApplication app(argc, argv);
    app.setApplicationName("kxbase-ui-test");
    return RUN_ALL_TESTS();
}
