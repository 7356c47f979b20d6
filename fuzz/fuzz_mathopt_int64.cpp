// Fuzz target: the 64-bit number parser of the edit controls. Any text parses without
// reading past its terminator; every accepted number prints (in its base) and reads back.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <kxbase/base/int64_parse.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
    if (size < 1 || size > 256) return 0;
    const int hex = data[0] & 1;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    bool ok = false;
    const INT64 v = ZelTextToInt64(text.c_str(), hex, &ok);
    if (!ok) {
        if (v != 0) std::abort();
        return 0;
    }
    char printed[40];
    std::snprintf(printed, sizeof printed, hex ? "%" PRIX64 : "%" PRIu64, static_cast<UINT64>(v));
    bool again = false;
    if (ZelTextToInt64(printed, hex, &again) != v || !again) std::abort();
    return 0;
}
