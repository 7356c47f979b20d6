// Message helpers: the text handed to the host's hooks (including the deliberate repeat of
// the head string as the tail of a message box), and the results without a hook.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kxbase/platform/module.h>
#include <kxbase/widgets/messages.h>

namespace {
const std::string kPixel = "像素";   // string 14
const std::string kDecimm = "丝米";  // string 15
}  // namespace

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

    EXPECT_EQ(ZelDialogMsg(static_cast<const char*>(nullptr)), 0);  // shows nothing
    EXPECT_EQ(ZelDialogMsg("copy %d of %s", 2, "3"), IDYES);
    EXPECT_EQ(ZelDialogMsg(self, 14, 15, MB_YESNO, " %d ", 5), IDYES);
    EXPECT_EQ(ZelDialogMsg(self, 0, 15, MB_OK, "x"), IDYES);
    const std::vector<std::pair<std::string, UINT>> expectedBoxes = {
        {"copy 2 of 3", MB_ICONINFORMATION},
        {kPixel + " 5 " + kPixel, MB_YESNO},  // the tail repeats the head, never loads 15
        {"x", MB_OK},                         // a tail without a head adds nothing
    };
    EXPECT_EQ(boxes, expectedBoxes);

    ZelStatusMsg("%s ready", "printer");
    ZelStatusMsg(static_cast<const char*>(nullptr));
    ZelStatusMsg(self, 14, 15, "/%d/", 7);  // the status form does load the tail
    EXPECT_EQ(status, (std::vector<std::string>{"printer ready", "", kPixel + "/7/" + kDecimm}));

    KxSetDialogHook(nullptr);
    KxSetStatusHook(nullptr);
    EXPECT_EQ(ZelDialogMsg("hello"), 0);  // no hook: nothing shown, 0
    ZelStatusMsg("quiet");
    KxSetDialogHook(prevDialog);
    KxSetStatusHook(prevStatus);
}

TEST(Messages, LoadString) {
    int notModule = 0;
    struct Case {
        HINSTANCE module;
        unsigned id;
        std::string text;
    } const cases[] = {{KxLibraryHandle(), 14, kPixel},
                       {nullptr, 14, kPixel},
                       {KxLibraryHandle(), 0, ""},
                       {KxLibraryHandle(), 999999, ""},
                       {&notModule, 14, ""}};
    for (const Case& c : cases) EXPECT_EQ(ZelLoadString(c.module, c.id).str(), c.text) << c.id;
}
