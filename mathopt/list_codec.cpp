// Text forms of typed number lists ("1 , 2 , 3 ") and string lists ("a , b").
#include <kxbase/mathopt/amathopt.h>

#include <cctype>
#include <cinttypes>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include <kxbase/base/int64_parse.h>

#include "platform/sys.h"

namespace {

enum ListType : BYTE { kInt32 = 1, kUInt32 = 2, kInt64 = 3, kUInt64 = 4, kDouble = 5 };

template <class T>
T Load(const void* list, int i) {
    T v;
    std::memcpy(&v, static_cast<const BYTE*>(list) + static_cast<size_t>(i) * sizeof(T), sizeof v);
    return v;
}

template <class T>
void Store(void* list, int i, T v) {
    std::memcpy(static_cast<BYTE*>(list) + static_cast<size_t>(i) * sizeof(T), &v, sizeof v);
}

/// Appends element i of the list as one item with its trailing blank.
void AppendItem(std::string& out, const void* list, int i, BYTE type, bool hex) {
    char item[32];
    int n = 0;
    switch (type) {
        case kInt32: {
            const auto v = Load<std::int32_t>(list, i);
            n = hex ? std::snprintf(item, sizeof item, "%X ", static_cast<unsigned>(v))
                    : std::snprintf(item, sizeof item, "%d ", v);
            break;
        }
        case kUInt32: {
            const auto v = Load<std::uint32_t>(list, i);
            n = std::snprintf(item, sizeof item, hex ? "%X " : "%u ", v);
            break;
        }
        case kInt64: {
            const auto v = Load<std::int64_t>(list, i);
            n = hex ? std::snprintf(item, sizeof item, "%" PRIX64 " ",
                                    static_cast<std::uint64_t>(v))
                    : std::snprintf(item, sizeof item, "%" PRId64 " ", v);
            break;
        }
        case kUInt64: {
            const auto v = Load<std::uint64_t>(list, i);
            n = hex ? std::snprintf(item, sizeof item, "%" PRIX64 " ", v)
                    : std::snprintf(item, sizeof item, "%" PRIu64 " ", v);
            break;
        }
        case kDouble:
            // The host reads the i-th byte and hands its integer to "%lf", which prints zero
            // with six decimals for every item; that text is what hosts see, so it is kept.
            n = std::snprintf(item, sizeof item, "%lf ", 0.0);
            break;
        default: {
            const auto v = Load<std::uint8_t>(list, i);
            n = std::snprintf(item, sizeof item, hex ? "%X " : "%d ", v);
            break;
        }
    }
    if (n > 0) out.append(item, static_cast<size_t>(n));
}

std::string ListText(const void* list, int count, BYTE type, int hex) {
    std::string out;
    if (!list || count < 1) return out;
    for (int i = 0; i < count; ++i) {
        if (i > 0) out += ", ";
        AppendItem(out, list, i, type, hex != 0);
    }
    return out;
}

bool IsSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// The standard decimal parse (atof) in the "C" locale, whatever locale the host set.
double ParseDouble(const std::string& item) {
    return kxbase::sys::ParseDoubleC(item.c_str());
}

int ToLength(size_t n) {
    return n > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(n);
}

}  // namespace

// Running out of memory while building a text gives an empty result (0), and while reading
// a list no items (0), as every allocation failure inside the library does.

int AMathOpt::TransListToString(CString& text, const void* list, int count, BYTE type, int hex) {
    try {
        text = CString(ListText(list, count, type, hex));
    } catch (const std::bad_alloc&) {
        text.Empty();
    }
    return text.GetLength();
}

int AMathOpt::TransListToString(char* buffer, int size, const void* list, int count, BYTE type,
                                int hex) {
    std::string out;
    try {
        out = ListText(list, count, type, hex);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    const int length = ToLength(out.size());
    if (!buffer || length > size) return -length;
    std::memcpy(buffer, out.data(), static_cast<size_t>(length));
    if (length < size) buffer[length] = '\0';
    return length;
}

int AMathOpt::TransListFromString(void* list, int max, BYTE type, const char* text, int hex) {
    if (!list || max < 1 || !text || !*text) return 0;
    int stored = 0;
    const char* s = text;
    while (stored < max) try {
            while (IsSpace(*s)) ++s;
            if (!*s) break;
            const char* comma = std::strchr(s, ',');
            if (comma == s) {  // an empty field
                ++s;
                continue;
            }
            const std::string item = comma ? std::string(s, comma) : std::string(s);
            switch (type) {
                case kInt32:
                case kUInt32:
                    Store(list, stored,
                          static_cast<std::uint32_t>(ZelTextToInt64(item.c_str(), hex)));
                    break;
                case kInt64:
                case kUInt64:
                    Store(list, stored,
                          static_cast<std::uint64_t>(ZelTextToInt64(item.c_str(), hex)));
                    break;
                case kDouble:
                    Store(list, stored, ParseDouble(item));
                    break;
                default:
                    Store(list, stored,
                          static_cast<std::uint8_t>(ZelTextToInt64(item.c_str(), hex)));
                    break;
            }
            ++stored;
            if (!comma) break;
            s = comma + 1;
        } catch (const std::bad_alloc&) {
            // A list cut short by memory is not reported as a shorter list.
            return 0;
        }
    return stored;
}

int AMathOpt::TransListToString(CString& text, const CString* items, int count) try {
    std::string out;
    if (items) {
        for (int i = 0; i < count; ++i) {
            if (i > 0) out += " , ";
            out += items[i].str();
        }
    }
    text = CString(std::move(out));
    return text.GetLength();
} catch (const std::bad_alloc&) {
    text.Empty();
    return 0;
}

int AMathOpt::TransListToString(CString& text, const CStringArray& items) {
    // An array longer than INT_MAX items cannot exist in practice (its text alone would pass
    // any string's limit); the count is clamped rather than wrapped all the same.
    const INT_PTR size = items.GetSize();
    const int count = size > INT_MAX ? INT_MAX : static_cast<int>(size);
    return TransListToString(text, items.GetData(), count);
}

int AMathOpt::TransListFromString(CStringArray& items, const char* text) try {
    items.RemoveAll();
    if (!text || !*text) return 0;
    const char* s = text;
    while (IsSpace(*s)) ++s;
    while (*s) {
        const char* comma = std::strchr(s, ',');
        if (comma == s) {
            ++s;
        } else if (!comma) {
            items.Add(CString(s));
            break;
        } else {
            items.Add(CString(std::string(s, comma)));
            s = comma + 1;
        }
        while (IsSpace(*s)) ++s;
    }
    return static_cast<int>(items.GetSize());
} catch (const std::bad_alloc&) {
    // No partial list: the caller cannot tell a list cut short by memory from a short text.
    items.RemoveAll();
    return 0;
}
