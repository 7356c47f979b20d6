// Text forms of IPv4 addresses ("%d.%d.%d.%d") and hardware addresses ("%x-%x-%x-%x-%x-%x").
#include <kxbase/mathopt/amathopt.h>

#include <cctype>
#include <climits>
#include <cstring>
#include <new>

#include "mathopt/scan_p.h"

namespace kxbase::detail {

namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// Skips white space and reads the sign; returns true for '-'.
bool ScanSign(const char*& s) {
    while (std::isspace(static_cast<unsigned char>(*s))) ++s;
    const bool negative = *s == '-';
    if (*s == '-' || *s == '+') ++s;
    return negative;
}

}  // namespace

bool ScanDecimal(const char*& text, int& value) {
    const char* s = text;
    const bool negative = ScanSign(s);
    if (*s < '0' || *s > '9') return false;
    UINT64 magnitude = 0;
    for (; *s >= '0' && *s <= '9'; ++s) {
        if (magnitude <= UINT64{1} << 32)
            magnitude = magnitude * 10 + static_cast<UINT64>(*s - '0');
    }
    if (negative) {
        value = magnitude >= UINT64{1} << 31 ? INT_MIN : -static_cast<int>(magnitude);
    } else {
        value = magnitude > INT_MAX ? INT_MAX : static_cast<int>(magnitude);
    }
    text = s;
    return true;
}

bool ScanHex(const char*& text, UINT& value) {
    const char* s = text;
    const bool negative = ScanSign(s);
    // "0x" is a prefix only when a hexadecimal digit follows; otherwise the 0 is the number.
    if (s[0] == '0' && (s[1] == 'x' || s[1] == 'X') && HexDigit(s[2]) >= 0) s += 2;
    if (HexDigit(*s) < 0) return false;
    UINT64 magnitude = 0;
    for (int d; (d = HexDigit(*s)) >= 0; ++s) {
        if (magnitude <= 0xFFFFFFFFu) magnitude = magnitude << 4 | static_cast<UINT64>(d);
    }
    UINT v = magnitude > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<UINT>(magnitude);
    if (negative) v = 0u - v;
    value = v;
    text = s;
    return true;
}

}  // namespace kxbase::detail

namespace {

/// Scans `count` numbers separated by `separator` the way sscanf with "%d<sep>%d..." does;
/// returns how many were converted.
template <class T, class Scan>
int ScanSeparated(const char* text, char separator, T* out, int count, Scan scan) {
    int converted = 0;
    while (converted < count) {
        if (converted > 0) {
            if (*text != separator) break;
            ++text;
        }
        if (!scan(text, out[converted])) break;
        ++converted;
    }
    return converted;
}

bool ValidIp(const BYTE* ip) {
    return ip && ip[0] != 0 && ip[3] != 0 && ip[0] != 255 && ip[1] != 255 && ip[2] != 255 &&
           ip[3] != 255;
}

}  // namespace

bool AMathOpt::ipaddress_TransFromString(BYTE* ip, const char* text) {
    if (!ip) return false;
    std::memset(ip, 0, 4);
    if (!text || !*text) return false;
    int v[4];
    if (ScanSeparated(text, '.', v, 4, kxbase::detail::ScanDecimal) != 4) return false;
    if (v[0] < 1 || v[3] < 1) return false;
    for (int x : v)
        if (x >= 255) return false;
    for (int i = 0; i < 4; ++i) ip[i] = static_cast<BYTE>(v[i]);
    return true;
}

bool AMathOpt::ipaddress_TransToString(CString& text, const BYTE* ip) {
    text.Empty();
    if (!ValidIp(ip)) return false;
    text.Format("%d.%d.%d.%d", ip[0], ip[1], ip[2], ip[3]);
    return true;
}

bool AMathOpt::ipaddress_IsValid(const char* text) {
    BYTE ip[4];
    return ipaddress_TransFromString(ip, text) && ValidIp(ip);
}

bool AMathOpt::ipaddress_IsValid(const BYTE* ip) {
    return ValidIp(ip);
}

bool AMathOpt::macaddress_TransFromString(BYTE* mac, const char* text) {
    if (!mac) return false;
    std::memset(mac, 0, 6);
    if (!text || !*text) return false;
    UINT v[6];
    if (ScanSeparated(text, '-', v, 6, kxbase::detail::ScanHex) != 6) return false;
    for (UINT x : v)
        if (x > 254) return false;
    for (int i = 0; i < 6; ++i) mac[i] = static_cast<BYTE>(v[i]);
    return macaddress_IsValid(mac);
}

bool AMathOpt::macaddress_TransToString(CString& text, const BYTE* mac) {
    if (!mac) {
        text.Empty();
        return false;
    }
    try {
        text.Format("%x-%x-%x-%x-%x-%x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
    } catch (const std::bad_alloc&) {
        // The longest text needs the heap; without memory, the refusal of a null mac.
        text.Empty();
        return false;
    }
    return true;
}

bool AMathOpt::macaddress_IsValid(const char* text) {
    BYTE mac[6];
    return macaddress_TransFromString(mac, text);
}

bool AMathOpt::macaddress_IsValid(const BYTE* mac) {
    if (!mac) return false;
    for (int i = 0; i < 6; ++i)
        if (mac[i] != 0) return true;
    return false;
}
