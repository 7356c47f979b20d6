// Row solvers behind the turned and transformed span operations.
//
// Both solvers use the pixel-centre rule: pixel (X, Y) belongs to the shape when its centre
// (X + 0.5, Y + 0.5) lies inside or on it. Each row is solved in closed form (one square root
// for a conic, one pass over the edges for a polygon), so the work is proportional to the
// number of rows and nothing is allocated beyond the caller's span array.
#include <algorithm>
#include <cmath>

#include <kxbase/widgets/messages.h>
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
    std::int64_t y0 = Ceil64(oy - ymax - 0.5), y1 = Floor64(oy + ymax - 0.5);
    bool single = false;
    if (y0 > y1) {  // no row centre inside: the row of the centre alone
        y0 = y1 = Floor64(oy);
        single = true;
    }
    if (!RowsOk(y0, y1)) return false;
    const std::int64_t rows = y1 - y0 + 1;
    spans.SetSize(static_cast<INT_PTR>(rows));
    POINT* out = spans.GetData();
    const double inv2A = 0.5 / A, fourAS = 4.0 * A * S;
    for (std::int64_t i = 0; i < rows; ++i) {
        const double v = single ? 0.0 : static_cast<double>(y0 + i) + 0.5 - oy;
        double disc = fourAS + K * v * v;
        if (disc < 0.0) disc = 0.0;  // the end rows, within rounding of the tangent
        const double mid = -B * v * inv2A;
        const double half = std::sqrt(disc) * inv2A;
        std::int64_t x0 = Ceil64(ox + mid - half - 0.5);
        std::int64_t x1 = Floor64(ox + mid + half - 0.5);
        if (x0 > x1) x0 = x1 = Floor64(ox + mid);  // a crossed row keeps one pixel
        out[i] = POINT{static_cast<LONG>(x0), static_cast<LONG>(x1)};
    }
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
        !(xmax - xmin < CEllipse::kMaxExtent))
        return false;
    std::int64_t y0 = Ceil64(ymin - 0.5), y1 = Floor64(ymax - 0.5);
    const double ymid = (ymin + ymax) * 0.5;
    bool single = false;
    if (y0 > y1) {
        y0 = y1 = Floor64(ymid);
        single = true;
    }
    y0 = std::max(y0, clipT);
    y1 = std::min(y1, clipB);
    if (!RowsOk(y0, y1)) return false;
    const std::int64_t rows = y1 - y0 + 1;
    spans.SetSize(static_cast<INT_PTR>(rows));
    POINT* out = spans.GetData();
    for (std::int64_t i = 0; i < rows; ++i) {
        double yc = single ? ymid : static_cast<double>(y0 + i) + 0.5;
        yc = std::clamp(yc, ymin, ymax);
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
        std::int64_t x0 = Ceil64(lo - 0.5), x1 = Floor64(hi - 0.5);
        if (x0 > x1) x0 = x1 = Floor64((lo + hi) * 0.5);
        x0 = std::clamp(x0, clipL, clipR);
        x1 = std::clamp(x1, clipL, clipR);
        out[i] = POINT{static_cast<LONG>(x0), static_cast<LONG>(x1)};
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
