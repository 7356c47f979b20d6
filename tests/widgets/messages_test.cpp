// Message helpers: the text handed to the host's hooks, the deliberate head-as-tail repeat,
// and the results without a hook.
#include <gtest/gtest.h>

#include <string>

#include <kxbase/platform/module.h>
#include <kxbase/widgets/messages.h>

namespace {

// Captures what the hooks receive; restores the previous hooks afterwards.
class Hooked : public ::testing::Test {
protected:
    void SetUp() override {
        prevDialog_ = KxSetDialogHook([this](const CString& text, UINT type) {
            dialogs_.push_back({text.str(), type});
            return IDYES;
        });
        prevStatus_ =
            KxSetStatusHook([this](const CString& text) { status_.push_back(text.str()); });
    }
    void TearDown() override {
        KxSetDialogHook(prevDialog_);
        KxSetStatusHook(prevStatus_);
    }
    struct Shown {
        std::string text;
        UINT type;
    };
    std::vector<Shown> dialogs_;
    std::vector<std::string> status_;
    KxDialogHook prevDialog_;
    KxStatusHook prevStatus_;
};

const std::string kPixel = "像素";   // string 14
const std::string kDecimm = "丝米";  // string 15

}  // namespace

TEST_F(Hooked, DialogTextsAndResults) {
    const HINSTANCE self = KxLibraryHandle();
    EXPECT_EQ(ZelDialogMsg(static_cast<const char*>(nullptr)), 0);
    EXPECT_TRUE(dialogs_.empty());  // a null format shows nothing

    EXPECT_EQ(ZelDialogMsg("copy %d of %s", 2, "3"), IDYES);
    EXPECT_EQ(ZelDialogMsg(self, 14, 15, MB_YESNO, " %d ", 5), IDYES);
    EXPECT_EQ(ZelDialogMsg(self, 14, 0, MB_OK, nullptr), IDYES);
    EXPECT_EQ(ZelDialogMsg(self, 0, 15, MB_OK, "x"), IDYES);
    ASSERT_EQ(dialogs_.size(), 4u);
    EXPECT_EQ(dialogs_[0].text, "copy 2 of 3");
    EXPECT_EQ(dialogs_[0].type, MB_ICONINFORMATION);
    EXPECT_EQ(dialogs_[1].text, kPixel + " 5 " + kPixel);  // the tail repeats the head
    EXPECT_EQ(dialogs_[1].type, MB_YESNO);
    EXPECT_EQ(dialogs_[2].text, kPixel);
    EXPECT_EQ(dialogs_[3].text, "x");  // tail with no head adds nothing
}

TEST_F(Hooked, StatusTextsLoadTheTail) {
    const HINSTANCE self = KxLibraryHandle();
    ZelStatusMsg("%s ready", "printer");
    ZelStatusMsg(static_cast<const char*>(nullptr));
    ZelStatusMsg(self, 14, 15, "/%d/", 7);
    ZelStatusMsg(self, 0, 0, nullptr);
    const std::vector<std::string> expected = {"printer ready", "", kPixel + "/7/" + kDecimm, ""};
    EXPECT_EQ(status_, expected);
}

TEST(Messages, WithoutHooksNothingIsShown) {
    const KxDialogHook d = KxSetDialogHook(nullptr);
    const KxStatusHook s = KxSetStatusHook(nullptr);
    EXPECT_EQ(ZelDialogMsg("hello"), 0);
    EXPECT_EQ(ZelDialogMsg(nullptr, 14, 14, MB_OK, "x"), 0);
    ZelStatusMsg("quiet");
    KxSetDialogHook(d);
    KxSetStatusHook(s);
}

TEST(Messages, LoadString) {
    EXPECT_EQ(ZelLoadString(KxLibraryHandle(), 14).str(), kPixel);
    EXPECT_EQ(ZelLoadString(nullptr, 14).str(), kPixel);
    EXPECT_EQ(ZelLoadString(KxLibraryHandle(), 0).str(), "");
    EXPECT_EQ(ZelLoadString(KxLibraryHandle(), 999999).str(), "");
    int notModule = 0;
    EXPECT_EQ(ZelLoadString(&notModule, 14).str(), "");
}
