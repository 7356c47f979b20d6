// Fuzz target: both list readers. The first byte picks the element type, the hex flag and
// the element limit; the rest is the text. The number list is a heap array of exactly
// `max` elements, so a store past it is caught by the address sanitizer.
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
    if (size < 1 || size > 4096) return 0;
    static const BYTE kTypes[] = {0, 1, 2, 3, 4, 5, 6, 200};
    const BYTE type = kTypes[data[0] & 7];
    const int hex = (data[0] >> 3) & 1;
    const int max = (data[0] >> 4) + 1;  // 1 .. 16
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);

    const size_t width = type == 1 || type == 2 ? 4 : type == 3 || type == 4 || type == 5 ? 8 : 1;
    std::vector<BYTE> list(static_cast<size_t>(max) * width);
    const int n = AMathOpt::TransListFromString(list.data(), max, type, text.c_str(), hex);
    if (n < 0 || n > max) std::abort();

    // Whatever was read prints, and the bounded form agrees with the string form.
    CString printed;
    const int length = AMathOpt::TransListToString(printed, list.data(), n, type, hex);
    std::vector<char> buffer(static_cast<size_t>(length));
    if (AMathOpt::TransListToString(buffer.data(), length, list.data(), n, type, hex) != length)
        std::abort();
    if (length > 0 &&
        std::memcmp(buffer.data(), printed.GetString(), static_cast<size_t>(length)) != 0)
        std::abort();

    CStringArray items;
    const int count = AMathOpt::TransListFromString(items, text.c_str());
    if (count != items.GetSize()) std::abort();
    for (const CString& item : items)
        if (item.IsEmpty() || item.Find(',') >= 0) std::abort();
    return 0;
}
