/// \file
/// The signed 64-bit number parser of the numeric edit controls, as a free function.
///
/// CInt64Edit (and the list readers of AMathOpt) turn one item of text into a number with
/// this function; it is here, in the core library, so that text parsing never needs the
/// user-interface library and can be tested and fuzzed on its own.
///
/// Thread-safety: pure, safe from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// Reads one number from text and returns it; returns 0 when the text is not a number.
///
/// Accepted form: leading blanks and tabs, an optional '+' or '-', then
///   - hex == 0: decimal digits '0'..'9';
///   - hex != 0: hexadecimal digits (either case), optionally after "0x" / "0X";
/// then trailing blanks and tabs only. Anything else (no digit, other characters, a second
/// number) makes the text "not a number". A null text is not a number.
///
/// Range: the digits are read as an unsigned 64-bit magnitude; more than 2^64 - 1 is not a
/// number. The result is that magnitude modulo 2^64 (negated modulo 2^64 after a '-'), so
/// every text the library writes for a signed or unsigned 32- or 64-bit value reads back to
/// the same bits: "18446744073709551615" and "FFFFFFFFFFFFFFFF" (hex) both give -1, i.e.
/// UINT64 0xFFFFFFFFFFFFFFFF; "-1" gives -1.
///
/// When ok is not null it receives whether the text was a number.
KXBASE_API INT64 ZelTextToInt64(const char* text, int hex, bool* ok = nullptr);
