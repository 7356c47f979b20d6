// Every printf-style entry point of the library reads a format the same way, including the
// Windows length prefixes of its hosts' texts ("%I64d", "%I64u", "%I64X", "%I32d", "%Iu").
// Catches an entry point that hands such a format to the C library unchanged: glibc takes
// "I" for a flag and "64" for a width, prints the wrong text and reads a 64-bit argument as
// an int, which also shifts every later argument (the trailing "%s" would then go wrong).
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <string>

#include <kxbase/base/messages.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/runtime/error_info.h>

namespace {

// One variadic call with the argument types of a case; every entry point goes through it.
enum class Arg { I64, U64, I32, SizeT };

struct Case {
    const char* format;  // ends in "|%s": the argument after the number must still be read
    Arg kind;
    std::uint64_t bits;  // the value, as the bits of its type
    const char* expected;
};

constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kMin64 = std::uint64_t{1} << 63;

const Case kCases[] = {
    {"%I64d|%s", Arg::I64, kMin64, "-9223372036854775808|tail"},
    {"%I64d|%s", Arg::I64, kMin64 - 1, "9223372036854775807|tail"},
    {"%I64i|%s", Arg::I64, kMax, "-1|tail"},
    {"%I64u|%s", Arg::U64, kMax, "18446744073709551615|tail"},
    {"%I64X|%s", Arg::U64, kMax, "FFFFFFFFFFFFFFFF|tail"},
    {"%#I64x|%s", Arg::U64, kMin64, "0x8000000000000000|tail"},
    {"%I64o|%s", Arg::U64, kMin64, "1000000000000000000000|tail"},
    {"[%21I64d]|%s", Arg::I64, kMin64, "[ -9223372036854775808]|tail"},
    {"[%-21I64u]|%s", Arg::U64, kMax, "[18446744073709551615 ]|tail"},
    {"%020I64X|%s", Arg::U64, 0xABCull, "00000000000000000ABC|tail"},
    {"%I32d|%s", Arg::I32, 0x80000000u, "-2147483648|tail"},
    {"%Iu|%s", Arg::SizeT, kMax, "18446744073709551615|tail"},
    {"%lld %%I64d|%s", Arg::I64, kMin64, "-9223372036854775808 %I64d|tail"},
};

// Calls f(format, value, "tail") with the value in the case's own type.
template <class F>
void CallWith(const Case& c, F&& f) {
    switch (c.kind) {
        case Arg::I64:
            f(c.format, static_cast<std::int64_t>(c.bits), "tail");
            break;
        case Arg::U64:
            f(c.format, c.bits, "tail");
            break;
        case Arg::I32:
            f(c.format, static_cast<std::int32_t>(static_cast<std::uint32_t>(c.bits)), "tail");
            break;
        case Arg::SizeT:
            f(c.format, static_cast<std::size_t>(c.bits), "tail");
            break;
    }
}

// The text each entry point produced for one case.
using EntryPoint = std::function<std::string(const Case&)>;

std::string Shown(const std::function<void()>& call) {
    std::string seen = "<nothing shown>";
    const KxDialogHook oldDialog = KxSetDialogHook([&](const CString& t, UINT) {
        seen = t.str();
        return 1;
    });
    const KxStatusHook oldStatus = KxSetStatusHook([&](const CString& t) { seen = t.str(); });
    call();
    KxSetDialogHook(oldDialog);
    KxSetStatusHook(oldStatus);
    return seen;
}

const std::pair<const char*, EntryPoint> kEntryPoints[] = {
    {"CString::Format",
     [](const Case& c) {
         CString s("old");
         CallWith(c, [&](auto... a) { s.Format(a...); });
         return s.str();
     }},
    {"CString::AppendFormat",
     [](const Case& c) {
         CString s;
         CallWith(c, [&](auto... a) { s.AppendFormat(a...); });
         return s.str();
     }},
    {"ZelDialogMsg",
     [](const Case& c) {
         return Shown([&] { CallWith(c, [](auto... a) { ZelDialogMsg(a...); }); });
     }},
    {"ZelDialogMsg(module, ids)",
     [](const Case& c) {
         return Shown(
             [&] { CallWith(c, [](auto... a) { ZelDialogMsg(nullptr, 0, 0, MB_OK, a...); }); });
     }},
    {"ZelStatusMsg",
     [](const Case& c) {
         return Shown([&] { CallWith(c, [](auto... a) { ZelStatusMsg(a...); }); });
     }},
    {"ZelStatusMsg(module, ids)",
     [](const Case& c) {
         return Shown([&] { CallWith(c, [](auto... a) { ZelStatusMsg(nullptr, 0, 0, a...); }); });
     }},
    {"CErrorInfo::SetLastError",
     [](const Case& c) {
         CErrorInfo e;
         CallWith(c, [&](auto... a) { e.SetLastError(a...); });
         CString text;
         e.GetLastError(text);
         return text.str();
     }},
};

}  // namespace

TEST(FormatEntryPoints, WindowsLengthPrefixesAndExtremes) {
    for (const auto& [name, produce] : kEntryPoints)
        for (const Case& c : kCases)
            EXPECT_EQ(produce(c), c.expected) << name << " with " << c.format;
}
