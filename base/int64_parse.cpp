// ZelTextToInt64: one signed 64-bit number from text, decimal or hexadecimal.
#include <kxbase/base/int64_parse.h>

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

int DigitValue(char c, int base) {
    int d;
    if (c >= '0' && c <= '9')
        d = c - '0';
    else if (c >= 'a' && c <= 'f')
        d = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
        d = c - 'A' + 10;
    else
        return -1;
    return d < base ? d : -1;
}

}  // namespace

INT64 ZelTextToInt64(const char* text, int hex, bool* ok) {
    if (ok) *ok = false;
    if (!text) return 0;
    const char* s = text;
    while (IsBlank(*s)) ++s;
    const bool negative = *s == '-';
    if (*s == '-' || *s == '+') ++s;
    const int base = hex ? 16 : 10;
    if (hex && s[0] == '0' && (s[1] == 'x' || s[1] == 'X') && DigitValue(s[2], 16) >= 0) s += 2;
    if (DigitValue(*s, base) < 0) return 0;

    UINT64 magnitude = 0;
    for (int d; (d = DigitValue(*s, base)) >= 0; ++s) {
        const auto b = static_cast<UINT64>(base);
        if (magnitude > (~UINT64{0} - static_cast<UINT64>(d)) / b) return 0;  // beyond 2^64 - 1
        magnitude = magnitude * b + static_cast<UINT64>(d);
    }
    while (IsBlank(*s)) ++s;
    if (*s != '\0') return 0;

    if (ok) *ok = true;
    const UINT64 bits = negative ? UINT64{0} - magnitude : magnitude;
    return static_cast<INT64>(bits);  // two's complement: modulo 2^64
}
