// Internal helpers shared by the CEllipse sources: angle normalisation and tests, saturating
// conversions, and the row solvers that turn a centred conic or a convex polygon into runs.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include <kxbase/ellipse/ellipse.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/platform/carray.h>
#include <kxbase/platform/types.h>

#include "base/saturate_p.h"

namespace kxbase::detail::ell {

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kTwoPi = 2.0 * kPi;
inline constexpr double kZero = 1e-6;  // zero test of coefficients and denominators

/// Angle in [0, 2pi): angles already in range are kept bit for bit, others lose whole turns
/// counted with ZelFloor (8-decimal rounding first, so a tiny negative angle stays as it is).
/// Non-finite angles come back unchanged (and then match no reference angle).
double NormalizeAngle(double angle);

/// True when angle differs from ref by less than the single-precision 0.005.
inline bool Near(double angle, double ref) {
    return std::fabs(angle - ref) < CEllipse::kAngleTolerance;
}
inline bool NearZeroOrPi(double a) {
    return Near(a, 0.0) || Near(a, kPi);
}
inline bool NearQuarter(double a) {
    return Near(a, kPi / 2) || Near(a, 3 * kPi / 2);
}

/// x / m with the IEEE result also for a zero divisor, without dividing by zero.
using kxbase::detail::IeeeDiv;

/// Truncation toward zero into int32, clamped to its range; NaN gives 0.
using kxbase::detail::TruncI32;
/// Floor into int64, clamped to +-2^62; NaN gives 0. Written without the library floor so
/// that the per-row solvers stay free of calls on the baseline instruction set.
inline std::int64_t Floor64(double v) {
    constexpr double kLim = 4611686018427387904.0;
    if (v != v) return 0;
    if (v >= kLim) return std::int64_t{1} << 62;
    if (v <= -kLim) return -(std::int64_t{1} << 62);
    const auto i = static_cast<std::int64_t>(v);  // toward zero
    return i - (v < static_cast<double>(i) ? 1 : 0);
}
inline std::int64_t Ceil64(double v) {
    return -Floor64(-v);
}

/// True when the device interval [lo, hi] lies within the coordinate range and spans at
/// most `limit` pixels.
inline bool ExtentOk(std::int64_t lo, std::int64_t hi, std::int64_t limit = CEllipse::kMaxExtent) {
    return lo >= -std::int64_t{CEllipse::kMaxCoordinate} &&
           hi <= std::int64_t{CEllipse::kMaxCoordinate} && hi - lo <= limit;
}

/// Empty result of a span operation: no spans, border all zero.
inline void EmptySpans(CArray<POINT>& spans, RECT* border) {
    spans.SetSize(0);
    if (border) *border = RECT{0, 0, 0, 0};
}

/// Runs of the filled ellipse A*u^2 + B*u*v + C*v^2 <= S, with (u, v) = (X + 0.5 - ox,
/// Y + 0.5 - oy) the offset of pixel (X, Y)'s centre from the origin (ox, oy). A pixel is in
/// when its centre is, or when it holds one of the four extreme points; a row between the
/// top and bottom extremes without a covered centre gets the pixel under the middle of its
/// chord. Returns false (nothing written) when the form is not a real ellipse or the shape
/// exceeds the size limits. On success the spans are sized to the rows, `first` is the
/// first row and the border (when given) follows the runs.
bool ConicSpans(double A, double B, double C, double S, double ox, double oy, CArray<POINT>& spans,
                std::int64_t& first, RECT* border);

/// Runs of the convex polygon pts[0..n-1] (3 <= n <= 8, either orientation, in order around
/// it) by the same rule (pixel centres, plus the pixels holding the vertices), each run
/// clamped to [clipL, clipR] and rows limited to [clipT, clipB] (inclusive pixel indices).
/// Degenerate polygons give their one-pixel-wide trace. Returns false (nothing written) when
/// the polygon is not finite, exceeds the size limits or misses the clip rows.
bool PolygonSpans(const POINTD* pts, int n, std::int64_t clipL, std::int64_t clipT,
                  std::int64_t clipR, std::int64_t clipB, CArray<POINT>& spans, std::int64_t& first,
                  RECT* border);

/// Border of a span array by the runs: (least start, first, greatest end + 1, first + rows).
void BorderOfSpans(const CArray<POINT>& spans, std::int64_t first, RECT* border);

/// Shared reporting of an exception caught while tracing or filling: shows the library's
/// string 20 ("insufficient memory") through ZelDialogMsg.
void ReportOutOfMemory();

}  // namespace kxbase::detail::ell
