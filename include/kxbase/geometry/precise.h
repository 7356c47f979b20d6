/// \file
/// CPrecise: doubles to integers with a chosen rounding bias.
///
/// Thread-safety: static, pure functions; safe from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/platform/types.h>

/// The library's double-to-integer rounding with an explicit bias, as static functions.
class KXBASE_API CPrecise {
public:
    /// Rounds value to an integer with the bias `precision`, applied away from zero:
    ///  1. v = value + precision when value >= 0.0 (also for -0.0), else value - precision;
    ///  2. v = v + 1e-10 when v >= 0.0, else v - 1e-10;
    ///  3. v truncated toward zero.
    /// precision 0.5 is half-away rounding (POINTD::GPOINT), 0.0 epsilon truncation
    /// (operator POINT), 0.9 turns 2.1 into 3 and -2.1 into -3.
    /// A result beyond the int32 range saturates to INT32_MIN / INT32_MAX; NaN gives 0.
    static int PreciseInt(double value, double precision);

    ///@{
    /// PreciseInt applied to x and to y.
    static void PrecisePoint(double x, double y, int& ix, int& iy, double precision) {
        ix = PreciseInt(x, precision);
        iy = PreciseInt(y, precision);
    }
    /// The same for a POINTD into a POINT.
    static void PrecisePoint(POINTD pt, POINT& out, double precision) {
        out.x = PreciseInt(pt.x, precision);
        out.y = PreciseInt(pt.y, precision);
    }
    ///@}
};
