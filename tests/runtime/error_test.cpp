// CErrorInfo: every writer's resulting text and flag, the fallback texts, and copies.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <utility>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/error_info.h>

// Starting from a recorded error, each writer must leave exactly the stated text, with the
// flag set exactly when the text is not empty (catches a writer that forgets to clear, keeps
// a stale flag, or takes a ready-made text's '%' literally).
TEST(CErrorInfo, WritersRecordStatedTextAndFlag) {
    const HINSTANCE self = KxLibraryHandle(), other = reinterpret_cast<HINSTANCE>(0x1234);
    const std::string selfId = std::to_string(static_cast<std::uint32_t>(std::uintptr_t(self)));
#if defined(_WIN32)
    // Windows codes and texts: the system's message without its closing line break.
    const auto sys = [](int code, const char* hex) {
        char buf[512] = "";
        DWORD n = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                 nullptr, static_cast<DWORD>(code), 0, buf, sizeof buf, nullptr);
        while (n > 0 && (buf[n - 1] == '\n' || buf[n - 1] == '\r' || buf[n - 1] == ' ')) --n;
        return std::string(buf, n) + " (" + hex + ")";
    };
    const auto set_last_system_error = [](int code) { ::SetLastError(static_cast<DWORD>(code)); };
#else
    const auto sys = [](int code, const char* hex) {
        return std::string(std::strerror(code)) + " (" + hex + ")";
    };
    const auto set_last_system_error = [](int code) { errno = code; };
#endif
#define W(call) [&](CErrorInfo& e) { return e.call; }
    const std::pair<std::function<int(CErrorInfo&)>, std::string> cases[] = {
        {W(SetLastError(HINSTANCE{}, 5u)), ""},
        {W(SetLastError(self, 0u)), ""},
        {W(SetLastError(self, 20u)), "内存不足"},
        {W(SetLastError(self, 999999u)), "Error in :" + selfId + " (ID:999999)"},
        {W(SetLastError(other, 20u)), "Error in :4660 (ID:20)"},
        {W(SetLastError("disk %d full", 3)), "disk 3 full"},
        {W(SetLastError(static_cast<const char*>(nullptr))), ""},
        {W(SetLastError("100%% done")), "100% done"},
        {W(SetLastErrorFromSystem(0u)), ""},
        {W(SetLastErrorFromSystem(DWORD{EACCES})), sys(EACCES, "0xD")},
        {W(SetLastErrorFromSystem(0xFFFFFFFFu)), "System Error (code:0xFFFFFFFF)"},
        {[&](CErrorInfo& e) { return set_last_system_error(2), e.SetLastErrorFromSystem(); },
         sys(2, "0x2")},  // the thread's last error (errno, or GetLastError on Windows)
    };
#undef W
    for (const auto& [write, text] : cases) {
        CErrorInfo e;
        e.SetLastError("previous %s", "failure");
        EXPECT_EQ(write(e), 1) << text;
        CString out("stale");
        const int flag = e.GetLastError(out);
        EXPECT_EQ(std::tuple(out.str(), flag != 0, e.IsError() != 0),
                  std::tuple(text, !text.empty(), !text.empty()));
    }
}

// A reader that consumes the error, copies that share state, and self-assignment that
// deadlocks or loses the text.
TEST(CErrorInfo, CopiesAreIndependent) {
    CErrorInfo a;
    a.SetLastError("first");
    CErrorInfo b(a);
    b.SetLastError("second");
    CString text;
    EXPECT_TRUE(a.GetLastError(text) && a.GetLastError(text) && text.str() == "first");
    a = b;
    b.ClearError();
    CErrorInfo& same = a;
    a = same;
    EXPECT_TRUE(a.GetLastError(text) && text.str() == "second");
}
