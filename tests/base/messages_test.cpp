// Message helpers: the text handed to the host's hooks (including the deliberate repeat of
// the head string as the tail of a message box), and the results without a hook.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include <kxbase/platform/module.h>
#include <kxbase/base/messages.h>

namespace {
const std::string kPixel = "像素";   // string 14
const std::string kDecimm = "丝米";  // string 15
}  // namespace

// Catches a message box that loads its tail string (it repeats the head), a status line that
// does not, a null format shown as a box, and a missing hook that is not treated as "nothing
// shown".
TEST(Messages, TextsHandedToTheHooks) {
    std::vector<std::pair<std::string, UINT>> boxes;
    std::vector<std::string> status;
    const KxDialogHook prevDialog = KxSetDialogHook([&](const CString& text, UINT type) {
        boxes.emplace_back(text.str(), type);
        return IDYES;
    });
    const KxStatusHook prevStatus =
        KxSetStatusHook([&](const CString& text) { status.push_back(text.str()); });
    const HINSTANCE self = KxLibraryHandle();
    EXPECT_EQ(ZelDialogMsg(static_cast<const char*>(nullptr)), 0);
    EXPECT_EQ(ZelDialogMsg("copy %d of %s", 2, "3"), IDYES);
    EXPECT_EQ(ZelDialogMsg(self, 14, 15, MB_YESNO, " %d ", 5), IDYES);
    EXPECT_EQ(ZelDialogMsg(self, 0, 15, MB_OK, "x"), IDYES);  // no head: the tail adds nothing
    EXPECT_EQ(boxes, (std::vector<std::pair<std::string, UINT>>{{"copy 2 of 3", MB_ICONINFORMATION},
                                                                {kPixel + " 5 " + kPixel, MB_YESNO},
                                                                {"x", MB_OK}}));
    ZelStatusMsg("%s ready", "printer");
    ZelStatusMsg(static_cast<const char*>(nullptr));
    ZelStatusMsg(self, 14, 15, "/%d/", 7);
    EXPECT_EQ(status, (std::vector<std::string>{"printer ready", "", kPixel + "/7/" + kDecimm}));

    KxSetDialogHook(nullptr);
    EXPECT_EQ(ZelDialogMsg("hello"), 0);
    KxSetDialogHook(prevDialog);
    KxSetStatusHook(prevStatus);
}

// Catches a null module not meaning this library, and a bad id or handle not giving "".
TEST(Messages, LoadString) {
    int notModule = 0;
    EXPECT_EQ(ZelLoadString(KxLibraryHandle(), 14).str(), kPixel);
    EXPECT_EQ(ZelLoadString(nullptr, 14).str(), kPixel);
    for (auto [module, id] : {std::pair<HINSTANCE, UINT>{KxLibraryHandle(), 0},
                              {KxLibraryHandle(), 999999},
                              {reinterpret_cast<HINSTANCE>(&notModule), 14}})
        EXPECT_EQ(ZelLoadString(module, id).str(), "") << id;
}
