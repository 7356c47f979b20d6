/// \file
/// SEPARATE: curve separation. Static operations that turn curves given by control points into
/// point lists for outlining and filling; no instances, no state, every operation re-entrant.
///
/// B-spline to Bezier
/// ------------------
/// A uniform cubic B-spline control polygon P0..Pn-1 becomes n - 1 cubic Bezier spans. Two
/// phantom points close the ends so the curve is clamped to P0 and Pn-1:
///     Q = 2*P0 - P1 (before P0)        R = 2*Pn-1 - Pn-2 (after Pn-1)
/// and the spans are the n - 1 windows of four consecutive points of Q, P0, ..., Pn-1, R. Each
/// window (A, B, C, D) yields four Bezier points, per coordinate, with the weights
///     a = 0.1666666666667   b = 0.666666666667   c = 0.333333333333
/// (these rounded decimal literals, not exact sixths and thirds: stored data and the hosts that
/// compare against it depend on the exact values):
///     first  = a*A + b*B + a*C + 0*D
///     second = 0*A + b*B + c*C + 0*D
///     third  = 0*A + c*B + b*C + 0*D
///     fourth = 0*A + a*B + b*C + a*D
/// The zero terms are part of the product (it is the full 4x4 weight matrix), so a non-finite
/// coordinate anywhere in a window makes that coordinate of all four points of the span
/// non-finite (NaN, or an infinity where the point's own weight meets it); other spans keep
/// their values.
///
/// Thread-safety: every operation is static and re-entrant; callers own all buffers.
#pragma once

#include <kxbase/export.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/platform/types.h>

/// Curve conversion as static functions; the class has no instances.
class KXBASE_API SEPARATE {
public:
    /// No instances: every operation is static.
    SEPARATE() = delete;

    /// Largest control-point count the converters accept: beyond it 4 * (n - 1) output points
    /// would not fit the int count. Larger counts fail (result 0), nothing written.
    static constexpr int kMaxControlPoints = 536870912;  // (INT_MAX / 4) + 1

    ///@{
    /// Converts between a uniform cubic B-spline and cubic Bezier spans (see the file comment).
    ///
    /// mode != 0 (B-spline to Bezier): `in` holds n >= 4 control points; `out` receives the
    ///   4 * (n - 1) Bezier points, four per span, one span after another, so the last point of
    ///   a span and the first of the next are both written (they agree up to rounding). The first
    ///   output point is P0 and the last Pn-1 up to the rounding of the weights.
    /// mode == 0 (one Bezier segment back to B-spline control points): `in` holds exactly four
    ///   Bezier points B0..B3; `out` receives four points, per coordinate
    ///     6*B0 - 7*B1 + 2*B2,   2*B1 - B2,   -B1 + 2*B2,   2*B1 - 7*B2 + 6*B3.
    ///
    /// Buffers: the caller owns both and `out` must have room for 4 * (n - 1) points (mode 1)
    /// or 4 points (mode 0); `in` and `out` must not overlap.
    /// Result: 1 with `outCount` set to the number of points written; 0 when n does not suit
    /// the mode (n < 4 in mode 1, n != 4 in mode 0), n exceeds kMaxControlPoints, or a pointer
    /// is null. On failure neither `out` nor `outCount` is written.
    ///
    /// Integer form: the points are converted to double, the same sums are formed, and each
    /// coordinate is rounded half away from zero (add 0.5 to a positive value, subtract 0.5 from
    /// zero or a negative value, truncate toward zero; no epsilon). Sums outside the 32-bit
    /// range (possible only with coordinates beyond about +-1.4e8) saturate to LONG's limits.
    /// Double form: the sums are stored unrounded.
    static int BSplineToBezier(const POINT* in, int n, POINT* out, int& outCount, int mode);
    static int BSplineToBezier(const POINTD* in, int n, POINTD* out, int& outCount, int mode);
    ///@}

protected:
    /// Span layout in place, for the flattening operations that walk a spline span by span.
    /// Rewrites the control polygon P0..Pn-1 held in `points` as the cubic windows of the
    /// B-spline converter: (Q, P0, P1, P2), (P0, P1, P2, P3), ..., (Pn-3, Pn-2, Pn-1, R), with
    /// the phantom points Q and R of the file comment; for n = 2 the single window
    /// (Q, P0, P1, R). n >= 2; the result is 4 * (n - 1) points, so the array must have room
    /// for that many. Returns 1, or 0 (array untouched) when `points` is null, n < 2 or
    /// n > kMaxControlPoints, or the working copy cannot be allocated.
    static int GetMyBSCtrl(POINTD* points, int n);

    /// The quadratic companion of GetMyBSCtrl: windows of three points (Q, P1, P2),
    /// (P1, P2, P3), ..., (Pn-3, Pn-2, R); for n = 3 the single window (Q, P1, R). Deliberately
    /// P0 and Pn-1 enter only through the phantom points. n >= 3; the result is 3 * (n - 2)
    /// points. Returns 1, or 0 (array untouched) when `points` is null, n < 3 or
    /// n > kMaxControlPoints, or the working copy cannot be allocated.
    static int GetMyEBSCtrl(POINTD* points, int n);
};
