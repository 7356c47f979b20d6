// CErrorInfo: every writer's resulting text and flag, the fallback texts, and copies.
#include <gtest/gtest.h>

#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <functional>
#include <string>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/error_info.h>

namespace {

std::string text_of(const CErrorInfo& e) {
    CString s("stale");
    e.GetLastError(s);
    return s.str();
}

std::string error_in(HINSTANCE h, UINT id) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "Error in :%" PRIu32 " (ID:%" PRIu32 ")",
                  static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(h)), id);
    return buf;
}

std::string sys_text(int code, const char* hex) {
    return std::string(std::strerror(code)) + " (" + hex + ")";
}

}  // namespace

// Each writer, starting from a recorded error, must leave exactly the stated text, and the
// flag must be set exactly when the text is not empty (a writer that forgets to clear, or
// that keeps a stale flag, fails here).
TEST(CErrorInfo, WritersRecordStatedTextAndFlag) {
    const HINSTANCE self = KxLibraryHandle();
    const HINSTANCE notModule = reinterpret_cast<HINSTANCE>(std::uintptr_t{0x1234});
    const char* const emptyFormat = "";
    struct Case {
        const char* what;
        std::function<int(CErrorInfo&)> write;
        std::string text;
    };
    const Case cases[] = {
        {"null module clears", [](CErrorInfo& e) { return e.SetLastError(HINSTANCE{}, 5u); }, ""},
        {"id 0 clears", [&](CErrorInfo& e) { return e.SetLastError(self, 0u); }, ""},
        {"string resource", [&](CErrorInfo& e) { return e.SetLastError(self, 20u); }, "内存不足"},
        {"missing resource", [&](CErrorInfo& e) { return e.SetLastError(self, 999999u); },
         error_in(self, 999999)},
        {"non-module handle falls back",
         [&](CErrorInfo& e) { return e.SetLastError(notModule, 20u); }, "Error in :4660 (ID:20)"},
        {"format", [](CErrorInfo& e) { return e.SetLastError("disk %d full", 3); }, "disk 3 full"},
        {"empty format", [&](CErrorInfo& e) { return e.SetLastError(emptyFormat); }, ""},
        {"null format",
         [](CErrorInfo& e) { return e.SetLastError(static_cast<const char*>(nullptr)); }, ""},
        {"percent in ready-made text is a conversion",
         [](CErrorInfo& e) { return e.SetLastError("100%% done"); }, "100% done"},
        {"system code 0 clears", [](CErrorInfo& e) { return e.SetLastErrorFromSystem(0u); }, ""},
        {"system code", [](CErrorInfo& e) { return e.SetLastErrorFromSystem(DWORD{EACCES}); },
         sys_text(EACCES, "0xD")},
        {"unknown system code", [](CErrorInfo& e) { return e.SetLastErrorFromSystem(0xABCDu); },
         "System Error (code:0xABCD)"},
        {"code beyond int", [](CErrorInfo& e) { return e.SetLastErrorFromSystem(0xFFFFFFFFu); },
         "System Error (code:0xFFFFFFFF)"},
        {"thread's errno",
         [](CErrorInfo& e) {
             errno = ENOENT;
             return e.SetLastErrorFromSystem();
         },
         sys_text(ENOENT, "0x2")},
    };
    for (const Case& c : cases) {
        CErrorInfo e;
        e.SetLastError("previous %s", "failure");
        EXPECT_EQ(c.write(e), 1) << c.what;
        EXPECT_EQ(text_of(e), c.text) << c.what;
        EXPECT_EQ(e.IsError() != 0, !c.text.empty()) << c.what;
        CString out("stale");
        EXPECT_EQ(e.GetLastError(out), e.IsError()) << c.what;
    }
}

// A reader must not consume the error, a clear object must empty the caller's string, and
// copies must carry the text but be independent objects with working locks of their own.
TEST(CErrorInfo, ReadersAndCopies) {
    CErrorInfo a;
    CString out("stale");
    EXPECT_EQ(a.GetLastError(out), 0);
    EXPECT_TRUE(out.IsEmpty());
    a.SetLastError("first");
    EXPECT_EQ(text_of(a), "first");
    EXPECT_EQ(text_of(a), "first");
    CErrorInfo b(a);
    b.SetLastError("second");
    EXPECT_EQ(text_of(a), "first");
    a = b;
    b.ClearError();
    EXPECT_EQ(text_of(a), "second");
    EXPECT_EQ(b.IsError(), 0);
    CErrorInfo& same = a;
    a = same;  // self-assignment must not deadlock or lose the text
    EXPECT_EQ(text_of(a), "second");
    EXPECT_EQ(CErrorInfo::TransSystemErrorCodeToString(0).str(), "");
}
