/// \file
/// Number helpers: doubles to integers and to decimal text with a fixed count of places,
/// integers to decimal or hexadecimal text, and the zoom-ratio steps of a view.
///
/// The library rounds a double to n decimals through text, deliberately: ZelFloatPrecision
/// returns the nearest double to the text ZelFloatPrecisionString writes. Every 8-decimal
/// result of the unit conversions, print geometry and ellipse code goes through it.
///
/// Out-of-range input never invokes undefined behaviour: conversions to integers saturate to
/// the target type's range and NaN gives 0; the text forms treat NaN as 0 and compute the
/// integer part in 64 bits, saturated to the int64 range. For finite values whose integer
/// part fits 32 bits (the range the host format works in) these choices change nothing.
///
/// Thread-safety: every function here is pure and safe from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

/// Decimal text of value with exactly min(digits, 10) places, or an integer text when the
/// rounded fraction vanishes:
///  - digits < 1: with round, value += +-0.5 by its sign; the text is trunc(value +- 1e-10)
///    (the epsilon takes the value's sign) in "%d" form;
///  - otherwise S = 10^d, ip = trunc(value +- 1e-10), f = (value - ip) * S, with round
///    f += +-0.5 by the sign of f, F = trunc(f +- 1e-10 by the sign of f), A = |F|. When A == S or
///    F == 0 the text is the integer form above (no point, no zeros: 3.0 gives "3" and
///    2.999999999 with 8 places and rounding gives "3"). Otherwise ip, a point, then A
///    zero-padded to d digits; trailing zeros are kept (2.5 with 8 places gives "2.50000000").
///    An integer part of 0 with a negative F is written "-0" (-0.25 gives "-0.25").
/// Deliberate oddity: with 10 places and rounding, a value within 0.5e-10 below an integer
/// takes the integer above with a negative fraction unit, and the magnitude of that unit is
/// printed after it: 0.99999999995 gives "1.0000000001", -2.99999999995 gives
/// "-3.0000000001". Hosts compare with that text, so it stays.
/// Beyond the host's 32-bit integer part: the integer part is computed in 64 bits and
/// saturates to the int64 range (1e300 gives "9223372036854775807"); NaN gives "0".
KXBASE_API CString ZelFloatPrecisionString(double value, int digits, int round);

/// The text of ZelFloatPrecisionString read back as a double (correctly rounded, as atof).
/// Writes no CString: fast enough for inner loops.
KXBASE_API double ZelFloatPrecision(double value, int digits, int round);

///@{
/// ZelFloatPrecision(value, 8, 1), then floor / ceiling: 2.9999999999 floors to 3 and
/// 3.000000001 ceils to 3.
KXBASE_API double ZelFloor(double value);
KXBASE_API double ZelCeil(double value);
///@}

///@{
/// With round non-zero, value += 0.5 (or -0.5 when value < 0); then 1e-10 is added when the
/// value is >= 0 (subtracted when < 0) and the value is truncated toward zero. Saturates to
/// the result type's range; NaN gives 0.
KXBASE_API int ZelFloatToInt(double value, int round);
KXBASE_API INT64 ZelFloatToINT64(double value, int round);
///@}
///@{
/// The same rounding step, but a negative value gives 0; otherwise value + 1e-10 truncated.
/// Saturates at the type's maximum; NaN gives 0.
KXBASE_API DWORD ZelFloatToDWORD(double value, int round);
KXBASE_API UINT64 ZelFloatToUINT64(double value, int round);
///@}

/// hex 0: decimal ("%d"). hex non-zero: upper-case hexadecimal, zero-padded to at least
/// width digits when width is non-zero (255 with width 4 gives "00FF"; width 0 gives "FF").
/// Negative values in hexadecimal show their two's-complement bits.
KXBASE_API CString ZelIntString(int value, int hex = 0, unsigned char width = 0);
///@{
/// The same for unsigned 32-bit ("%u"), signed 64-bit and unsigned 64-bit values.
KXBASE_API CString ZelDWORDString(ULONG value, int hex = 0, unsigned char width = 0);
KXBASE_API CString ZelINT64String(INT64 value, int hex = 0, unsigned char width = 0);
KXBASE_API CString ZelUINT64String(UINT64 value, int hex = 0, unsigned char width = 0);
///@}

/// Zoom-ratio steps, in place (ratio > 1 magnifies; ratios stay between 1/20000 and 100).
/// All three first turn a ratio <= 0, within 1e-10 of 0, or NaN into 1.0 and stop there.
///
/// ZelZoomNormalRatio: a ratio above 1 snaps to the nearer of ZelFloor(ratio) and
/// ZelCeil(ratio), measured from the unrounded ratio (the floor on a tie), at most 100. A
/// ratio <= 1 is inverted, the inverse snapped the same way and capped at 20000 (a zero result
/// becomes 1), and inverted back. Snapping 2.500000004 gives 3.
KXBASE_API void ZelZoomNormalRatio(double& ratio);
/// ZelZoomInRatio: a ratio >= 1 becomes ZelCeil(ratio) + 1, at most 100. A ratio < 1: n =
/// floor(1/ratio) (the plain floor of the double, so 1/(1/123) = 122.99999999999999 gives
/// 122), step s = 1 when n < 11.1, trunc(n / 6) when n <= 10001.1, else 10000; the ratio
/// becomes 1 / min(n - s, 20000), at most 1.0.
KXBASE_API void ZelZoomInRatio(double& ratio);
/// ZelZoomOutRatio: a ratio > 1 becomes ZelCeil(ratio) - 1, kept within [1, 100]. A ratio
/// <= 1: n = floor(1/ratio) as above, the same step s, and the ratio becomes
/// 1 / min(n + s, 20000). Zoom out from 0.05 gives 1/23.
KXBASE_API void ZelZoomOutRatio(double& ratio);
