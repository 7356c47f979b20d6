/// \file
/// Resolution and size units: conversions, comparisons, validation and display names.
///
/// Every floating conversion result is rounded to 8 decimals through text, as
/// ZelFloatPrecision(value, 8, 1) does (<kxbase/base/number_format.h>): 1/25.4 dots per
/// millimetre comes back as 0.03937008, not 0.0393700787.... This rounding is part of the
/// contract; hosts compare these values with stored ones. Integer results round half away
/// from zero with the 1e-10 epsilon and saturate to the int32 range (NaN gives 0); see
/// <kxbase/geometry/pointd.h>.
///
/// An unknown unit value (anything outside the enumerations) converts to 0.0 unless stated.
/// Thread-safety: all functions are pure and safe from any thread.
#pragma once

#include <cstdint>

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>

/// Resolution units (32-bit). The comment gives the factor to dots per millimetre.
enum AResUnit : std::int32_t {
    RES_DPI = 1,    ///< dots per inch (/ 25.4)
    RES_DPCMM = 2,  ///< dots per hundredth of a millimetre (* 100)
    RES_DPMM = 3,   ///< dots per millimetre (* 1)
    RES_DPCM = 4,   ///< dots per centimetre (/ 10)
    RES_DPM = 5,    ///< dots per metre (/ 1000)
};

/// Length units (32-bit).
enum ASizeUnit : std::int32_t {
    SIZE_PIXEL = 1,  ///< device pixels (needs a resolution)
    SIZE_CMM = 2,    ///< hundredths of a millimetre
    SIZE_MM = 3,     ///< millimetres
    SIZE_CM = 4,     ///< centimetres
    SIZE_M = 5,      ///< metres
    SIZE_INCH = 6,   ///< inches
};

/// One DPI expressed in dots per millimetre: the single-precision value nearest to 1/25.4,
/// kept in this form because stored settings were compared against it.
inline constexpr double KX_ONE_DPI_IN_DPMM = 0.03937007859349251;
/// 20000 DPI in dots per millimetre (single-precision value).
inline constexpr double KX_MAX_DPI_IN_DPMM = 787.4015502929688;
///@{
/// The valid resolution range in DPI.
inline constexpr double KX_MIN_DPI = 1.0;
inline constexpr double KX_MAX_DPI = 20000.0;
///@}

// ---- display names (string table ids 14-19 for sizes, 22-26 for resolutions) ----------------

/// Loads the unit's name into buf (size bytes, terminator included) as KxLoadString does: the
/// text is cut to fit, never inside a UTF-8 character, and the number of bytes copied is
/// returned. An unknown unit writes an empty string (when size >= 1) and returns 0; a null
/// buf or size < 1 returns 0.
KXBASE_API int SizeUnitString(char* buf, int size, ASizeUnit unit);
/// The same into a string through a 50-byte buffer; when the unit is unknown or nothing was
/// loaded, text is emptied and 0 returned.
KXBASE_API int SizeUnitString(CString& text, ASizeUnit unit);
///@{
/// The same two forms for a resolution unit's name.
KXBASE_API int ResUnitString(char* buf, int size, AResUnit unit);
KXBASE_API int ResUnitString(CString& text, AResUnit unit);
///@}

// ---- resolution conversions -----------------------------------------------------------------

/// res in DPI: res * 1 (DPI), * 2540 (per 0.01 mm), * 25.4 (per mm), * 2.54 (per cm),
/// * 0.0254 (per m); rounded to 8 decimals. Unknown unit: 0.0.
KXBASE_API double ToDPI(double res, AResUnit unit);
/// res in dots per mm: res / 25.4 (DPI), * 100 (per 0.01 mm), * 1 (per mm), / 10 (per cm),
/// / 1000 (per m); rounded to 8 decimals. Unknown unit: 0.0.
KXBASE_API double ToDPMM(double res, AResUnit unit);
/// ToDPI rounded half away from zero.
KXBASE_API int ToNDPI(double res, AResUnit unit);
/// To RES_DPI: ToNDPI (as a double) when toInteger is non-zero, else ToDPI. To the other four
/// units: d = ToDPMM(res, from), then d / 100, d, d * 10 or d * 1000, with no further
/// rounding. Any other target: 0.0. toInteger affects only the DPI target.
KXBASE_API double ConvertRes(double res, AResUnit from, AResUnit to, int toInteger);

// ---- size conversions (res matters only when pixels are involved) ---------------------------

/// value in millimetres: / 100 (0.01 mm), * 1 (mm), * 10 (cm), * 1000 (m), * 25.4 (inch); for
/// pixels and any unknown unit: value / ToDPMM(res, resUnit), or 0.0 when that is <= 1e-10.
/// Rounded to 8 decimals.
KXBASE_API double ToMM(double value, double res, AResUnit resUnit, ASizeUnit unit);
/// value in inches: / 0.254 (0.01 mm), / 25.4 (mm), / 254 (cm), / 25400 (m), * 1 (inch); for
/// pixels and any unknown unit: value / ToNDPI(res, resUnit), or 0.0 when that is <= 0.
/// Rounded to 8 decimals. Deliberately, the divisors for 0.01 mm, cm and m are these (they do
/// not agree with ToMM: 2540 hundredths of a millimetre give 10000 inches) and pixels go
/// through the integer DPI; hosts depend on both.
KXBASE_API double ToINCH(double value, double res, AResUnit resUnit, ASizeUnit unit);
/// value in pixels: pixels are returned unchanged (rounded to 8 decimals). Otherwise 0.0 when
/// res <= 0 (or NaN); inches at a DPI resolution: value * res; else value * d with
/// d = ToDPMM(res, resUnit) scaled to the size unit (/ 100, * 1, * 10, * 1000, * 25.4;
/// 0.0 for an unknown unit). Rounded to 8 decimals. Because the resolution is rounded first,
/// 25.4 mm at 600 DPI gives 599.9999999.
KXBASE_API double ToPIXEL(double value, double res, AResUnit resUnit, ASizeUnit unit);
/// ToPIXEL rounded half away from zero.
KXBASE_API int ToNPIXEL(double value, double res, AResUnit resUnit, ASizeUnit unit);
/// To 0.01 mm, mm, cm, m: ToMM(value, res, resUnit, from) * 100, * 1, / 10, / 1000. To inches:
/// ToINCH. To pixels and any other target: ToPIXEL, rounded half away from zero (as a double)
/// when toInteger is non-zero.
KXBASE_API double ConvertSize(double value, ASizeUnit from, ASizeUnit to, double res,
                              AResUnit resUnit, int toInteger);

// ---- comparisons ----------------------------------------------------------------------------

/// |a - b| < 1.0.
KXBASE_API int EqualDPI(double a, double b);
/// Both rounded half away from zero to integers, then equal.
KXBASE_API int EqualNDPI(double a, double b);
/// |a - b| <= KX_ONE_DPI_IN_DPMM.
KXBASE_API int EqualDPMM(double a, double b);
/// DPI: EqualNDPI when integer is non-zero, else EqualDPI. Other known units:
/// ToDPMM(|a - b|, unit) <= KX_ONE_DPI_IN_DPMM. Unknown unit: 0.
KXBASE_API int EqualRes(double a, double b, AResUnit unit, int integer);
/// One DPI expressed in the unit, the smallest meaningful step: 1.0 (DPI), 0.0003937007859349251
/// (per 0.01 mm), 0.03937007859349251 (per mm and any unknown unit), 0.3937007859349251
/// (per cm), 39.37007859349251 (per m).
KXBASE_API double DefResPrecision(AResUnit unit);

// ---- validation -----------------------------------------------------------------------------

/// 0 when res <= 0 (or NaN). DPI: 1 when 1.0 <= ToDPI(res, RES_DPI) <= 20000.0. Other units:
/// 1 when KX_ONE_DPI_IN_DPMM <= ToDPMM(res, unit) <= KX_MAX_DPI_IN_DPMM (an unknown unit
/// fails).
KXBASE_API int IsValidRes(double res, AResUnit unit);
/// Clamps a resolution into the valid range, in its own unit (NaN gives the lower bound).
/// DPI: into [1.0, 20000.0].
/// Other units: when ToDPMM(res, unit) is below one DPI, the lower bound 0.03937008 dots per
/// mm expressed in the unit (/ 100, * 1, * 10, * 1000; 0.0 for an unknown unit); above
/// 787.4015502929688, the upper bound 787.40155029 expressed the same way; else res unchanged.
KXBASE_API double RightRes(double res, AResUnit unit);
