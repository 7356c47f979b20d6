// Row solvers behind the turned and transformed span operations.
//
// Both solvers use the pixel-centre rule: pixel (X, Y) belongs to the shape when its centre
// (X + 0.5, Y + 0.5) lies inside or on it. In addition the pixels holding the shape's
// extreme points (the ellipse's four tips, the polygon's vertices) belong, and a row whose
// band the shape crosses without covering a pixel centre gets the pixel under the middle of
// its chord. So thin shapes keep their tips, every row between the top and bottom extremes
// holds exactly one run, and the box of the runs is the pixel box of the shape's extent,
// which makes the result symmetric under half and quarter turns about a pixel corner or
// centre. Each row is solved in closed form (one square root
// for a conic, one pass over the edges for a polygon), so the work is proportional to the
// number of rows and nothing is allocated beyond the caller's span array.
#include <algorithm>
#include <cmath>

#include <kxbase/base/messages.h>
#include <kxbase/platform/module.h>

#include "ellipse/ellipse_p.h"

namespace kxbase::detail::ell {

namespace {

bool RowsOk(std::int64_t y0, std::int64_t y1) {
    return y1 >= y0 && ExtentOk(y0, y1);
}

void FinishBorder(POINT* out, std::int64_t rows, std::int64_t first, RECT* border) {
    if (!border) return;
    LONG lo = out[0].x, hi = out[0].y;
    for (std::int64_t i = 1; i < rows; ++i) {
        lo = std::min(lo, out[i].x);
        hi = std::max(hi, out[i].y);
    }
    *border = RECT{lo, static_cast<LONG>(first), hi + 1, static_cast<LONG>(first + rows)};
}

}  // namespace

bool ConicSpans(double A, double B, double C, double S, double ox, double oy, CArray<POINT>& spans,
                std::int64_t& first, RECT* border) {
    if (!std::isfinite(A) || !std::isfinite(B) || !std::isfinite(C) || !std::isfinite(S) ||
        !std::isfinite(ox) || !std::isfinite(oy))
        return false;
    const double K = B * B - 4.0 * A * C;  // negative for a real ellipse
    if (!(A > 0.0) || !(C > 0.0) || !(S > 0.0) || !(K < 0.0)) return false;
    const double ymax = std::sqrt(4.0 * A * S / -K);
    const double xmax = std::sqrt(4.0 * C * S / -K);
    if (!std::isfinite(ymax) || !std::isfinite(xmax)) return false;
    if (!(std::fabs(ox) + xmax < CEllipse::kMaxCoordinate) || !(2.0 * xmax < CEllipse::kMaxExtent))
        return false;
    // Every row whose band holds part of the ellipse, from the row of the top extreme to
    // the row of the bottom one (an extreme on a pixel border belongs to the inner pixel).
    const std::int64_t y0 = Floor64(oy - ymax);
    const std::int64_t y1 = std::max(y0, Ceil64(oy + ymax) - 1);
    if (!RowsOk(y0, y1)) return false;
    const std::int64_t xl = Floor64(ox - xmax), xr = std::max(xl, Ceil64(ox + xmax) - 1);
    const std::int64_t rows = y1 - y0 + 1;
    spans.SetSize(static_cast<INT_PTR>(rows));
    POINT* out = spans.GetData();
    const double inv2A = 0.5 / A, fourAS = 4.0 * A * S;
    for (std::int64_t i = 0; i < rows; ++i) {
        // The row's centre line, or the nearest line through the ellipse for an end row.
        const double v = std::clamp(static_cast<double>(y0 + i) + 0.5 - oy, -ymax, ymax);
        double disc = fourAS + K * v * v;
        if (disc < 0.0) disc = 0.0;  // within rounding of the tangent
        const double mid = -B * v * inv2A;
        const double half = std::sqrt(disc) * inv2A;
        std::int64_t x0 = Ceil64(ox + mid - half - 0.5);
        std::int64_t x1 = Floor64(ox + mid + half - 0.5);
        if (x0 > x1) x0 = x1 = std::clamp(Floor64(ox + mid), xl, xr);  // one pixel
        out[i] = POINT{static_cast<LONG>(x0), static_cast<LONG>(x1)};
    }
    // The pixels holding the left and right extremes belong too, so that a thin ellipse
    // keeps its tips and the box of the runs is the pixel box of the ellipse's extent.
    const double vTip = B * xmax / (2.0 * C);  // v of the left extreme; the right one is -vTip
    const std::int64_t rowL = std::clamp(Floor64(oy + vTip), y0, y1) - y0;
    const std::int64_t rowR = std::clamp(Floor64(oy - vTip), y0, y1) - y0;
    out[rowL].x = static_cast<LONG>(std::min<std::int64_t>(out[rowL].x, xl));
    out[rowR].y = static_cast<LONG>(std::max<std::int64_t>(out[rowR].y, xr));
    first = y0;
    FinishBorder(out, rows, first, border);
    return true;
}

bool PolygonSpans(const POINTD* pts, int n, std::int64_t clipL, std::int64_t clipT,
                  std::int64_t clipR, std::int64_t clipB, CArray<POINT>& spans, std::int64_t& first,
                  RECT* border) {
    if (n < 3 || n > 8) return false;
    double ymin = pts[0].y, ymax = pts[0].y, xmin = pts[0].x, xmax = pts[0].x;
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(pts[i].x) || !std::isfinite(pts[i].y)) return false;
        ymin = std::min(ymin, pts[i].y);
        ymax = std::max(ymax, pts[i].y);
        xmin = std::min(xmin, pts[i].x);
        xmax = std::max(xmax, pts[i].x);
    }
    if (!(std::max(std::fabs(xmin), std::fabs(xmax)) < CEllipse::kMaxCoordinate) ||
        !(xmax - xmin < CEllipse::kMaxExtent) ||
        !(std::max(std::fabs(ymin), std::fabs(ymax)) < CEllipse::kMaxCoordinate))
        return false;
    // Rows from the one holding the top vertex to the one holding the bottom vertex.
    const std::int64_t fy0 = Floor64(ymin), fy1 = std::max(fy0, Ceil64(ymax) - 1);
    const std::int64_t y0 = std::max(fy0, clipT), y1 = std::min(fy1, clipB);
    if (!RowsOk(y0, y1)) return false;
    const std::int64_t rows = y1 - y0 + 1;
    spans.SetSize(static_cast<INT_PTR>(rows));
    POINT* out = spans.GetData();
    std::int64_t lo64 = 0, hi64 = 0;
    for (std::int64_t i = 0; i < rows; ++i) {
        const double yc = std::clamp(static_cast<double>(y0 + i) + 0.5, ymin, ymax);
        double lo = HUGE_VAL, hi = -HUGE_VAL;
        for (int k = 0; k < n; ++k) {
            const POINTD& p = pts[k];
            const POINTD& q = pts[(k + 1) % n];
            const double ey0 = std::min(p.y, q.y), ey1 = std::max(p.y, q.y);
            if (yc < ey0 || yc > ey1) continue;
            if (ey1 == ey0) {  // horizontal edge on this line: both ends
                lo = std::min({lo, p.x, q.x});
                hi = std::max({hi, p.x, q.x});
                continue;
            }
            const double x = p.x + (q.x - p.x) * ((yc - p.y) / (q.y - p.y));
            lo = std::min(lo, x);
            hi = std::max(hi, x);
        }
        if (lo > hi) lo = hi = (xmin + xmax) * 0.5;  // not reached for a closed polygon
        lo64 = Ceil64(lo - 0.5);
        hi64 = Floor64(hi - 0.5);
        if (lo64 > hi64) lo64 = hi64 = Floor64((lo + hi) * 0.5);
        out[i] = POINT{static_cast<LONG>(lo64), static_cast<LONG>(hi64)};
    }
    // The pixels holding the vertices belong too (thin shapes keep their corners).
    for (int k = 0; k < n; ++k) {
        // A vertex on a pixel border belongs to the inner row, as the row range does.
        const std::int64_t row = std::clamp(Floor64(pts[k].y), fy0, fy1);
        if (row < y0 || row > y1) continue;
        POINT& r = out[row - y0];
        r.x = static_cast<LONG>(std::min<std::int64_t>(r.x, Floor64(pts[k].x)));
        r.y = static_cast<LONG>(std::max<std::int64_t>(r.y, Ceil64(pts[k].x) - 1));
    }
    for (std::int64_t i = 0; i < rows; ++i) {
        out[i].x = static_cast<LONG>(std::clamp<std::int64_t>(out[i].x, clipL, clipR));
        out[i].y = static_cast<LONG>(std::clamp<std::int64_t>(out[i].y, clipL, clipR));
    }
    first = y0;
    FinishBorder(out, rows, first, border);
    return true;
}

void BorderOfSpans(const CArray<POINT>& spans, std::int64_t first, RECT* border) {
    if (!border) return;
    const INT_PTR n = spans.GetSize();
    if (n == 0) {
        *border = RECT{0, 0, 0, 0};
        return;
    }
    FinishBorder(const_cast<POINT*>(spans.GetData()), n, first, border);
}

void ReportOutOfMemory() {
    try {
        const CString text = ZelLoadString(nullptr, 20);
        ZelDialogMsg("%s", text.GetString());
    } catch (...) {
        // Nothing more can be done when even the message fails.
    }
}

}  // namespace kxbase::detail::ell
