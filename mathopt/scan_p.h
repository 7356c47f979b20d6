// Number scanners with the C library's "%d" and "%x" conversion rules, made total: a value
// beyond the 32-bit range saturates instead of being undefined. Used by the address parsers.
#pragma once

#include <kxbase/platform/types.h>

namespace kxbase::detail {

/// "%d": skips white space, an optional sign, at least one decimal digit. On success
/// advances text past the number and stores it (saturated to the int range).
bool ScanDecimal(const char*& text, int& value);

/// "%x": skips white space, an optional sign, an optional "0x"/"0X", at least one
/// hexadecimal digit. The value is unsigned: a '-' negates it modulo 2^32; a magnitude above
/// 0xFFFFFFFF saturates to 0xFFFFFFFF (before the sign is applied).
bool ScanHex(const char*& text, UINT& value);

}  // namespace kxbase::detail
