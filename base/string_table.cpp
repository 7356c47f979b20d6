// The library's string table: the zh-CN display texts, stored as UTF-8 under the ids the
// Windows resource script used, so hosts keep loading them by number.
#include <kxbase/base/string_table.h>

#include <kxbase/platform/module.h>

#include <cstring>

namespace {

struct Entry {
    UINT id;
    const char* text;
};

constexpr Entry kTable[] = {
    {14, "像素"},              // pixel
    {15, "丝米"},              // hundredth of a millimetre
    {16, "毫米"},              // millimetre
    {17, "厘米"},              // centimetre
    {18, "米"},                // metre
    {19, "英寸"},              // inch
    {20, "内存不足"},          // out of memory
    {21, "宽高比例相差太大"},  // width-to-height ratio differs too much
    {22, "DPI"},
    {23, "DPM"},
    {24, "DPMM"},
    {25, "像素/厘米"},  // dots per centimetre
    {26, "像素/丝米"},  // dots per hundredth of a millimetre
    {101, "Windows 套接字初始化失败。"},  // socket layer failed to start
};

// Length of the longest prefix of text[0..limit) that ends on a whole UTF-8 character.
int utf8_cut(const char* text, int limit) {
    int cut = limit;
    // Step back over continuation bytes (10xxxxxx) to the lead byte of the last character.
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
    return cut;
}

}  // namespace

const char* KxStringTableEntry(UINT id) {
    for (const Entry& e : kTable)
        if (e.id == id) return e.text;
    return nullptr;
}

int KxLoadString(HINSTANCE module, UINT id, char* buffer, int bufferMax) {
    if (buffer == nullptr || bufferMax < 1) return 0;
    buffer[0] = '\0';
    if (module != nullptr && module != KxLibraryHandle()) return 0;
    const char* text = KxStringTableEntry(id);
    if (text == nullptr) return 0;
    const int length = static_cast<int>(std::strlen(text));
    // text[length] is the terminator, so utf8_cut may look at text[n] for n == length.
    const int n = length < bufferMax ? length : utf8_cut(text, bufferMax - 1);
    std::memcpy(buffer, text, static_cast<std::size_t>(n));
    buffer[n] = '\0';
    return n;
}
