// CEllipse: scan-line spans of ellipses, turned and transformed rectangles, parallelograms;
// the bounding boxes of turned and transformed rectangles.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>

#include <kxbase/ellipse/ellipse.h>

#include "ellipse/ellipse_p.h"
#include "platform/sys.h"

using namespace kxbase::detail::ell;

namespace {

// Rows first .. first + rows - 1 filled with the run (x0, x1).
void FillBox(CArray<POINT>& spans, std::int64_t rows, LONG x0, LONG x1) {
    spans.SetSize(static_cast<INT_PTR>(rows));
    POINT* out = spans.GetData();
    for (std::int64_t i = 0; i < rows; ++i) out[i] = POINT{x0, x1};
}

LONG Sat(std::int64_t v) {
    return static_cast<LONG>(v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : v);
}

// The RSRLINE forms: inclusive bound and one run per row.
int ToRecord(int first, RSRLINE& line) {
    const INT_PTR n = line.spans.GetSize();
    try {
        line.counts.SetSize(n);
    } catch (const std::bad_alloc&) {
        // No memory for the counts: the record of a shape without area, like the array
        // forms give when they run out of memory themselves.
        line.counts.RemoveAll();
        EmptySpans(line.spans, &line.rcBound);
    }
    line.rcBound.right -= 1;
    line.rcBound.bottom -= 1;
    int* c = line.counts.GetData();
    for (INT_PTR i = 0; i < line.counts.GetSize(); ++i) c[i] = 1;
    return first;
}

}  // namespace

// ---- ellipses ----------------------------------------------------------------------------

int CEllipse::EllipseRasterLine(const CRect& rc, double angle, CArray<POINT>& spans, RECT* border) {
    try {
        angle = NormalizeAngle(angle);
        const std::int64_t l = rc.left, t = rc.top, r = rc.right, b = rc.bottom;
        const std::int64_t w = r - l, h = b - t;
        if (w < 1 || h < 1 || !ExtentOk(l, r) || !ExtentOk(t, b)) {
            EmptySpans(spans, border);
            return rc.top;
        }
        if (w == 1 && h == 1) {
            spans.SetSize(1);
            spans[0] = POINT{rc.left, rc.left};
            if (border) *border = rc;
            return rc.top;
        }
        if (w < 3 || h < 3) return RectRasterLine(rc, angle, spans, border);

        const std::int64_t hw = w / 2 - ((w & 1) == 0 ? 1 : 0);
        const std::int64_t hh = h / 2 - ((h & 1) == 0 ? 1 : 0);
        // C integer division (toward zero), kept for compatibility: with an odd width and a
        // negative left + right the runs sit one pixel right of the rectangle.
        const std::int64_t cx = (l + r) / 2, cy = (t + b) / 2;

        CArray<int> profile;
        bool exchanged = false;
        if (w == h) {
            MidPointCircle(static_cast<int>(hw), profile);
        } else if (NearZeroOrPi(angle)) {
            MidPointEllipse(static_cast<int>(hw), static_cast<int>(hh), profile);
        } else if (NearQuarter(angle)) {
            MidPointEllipse(static_cast<int>(hh), static_cast<int>(hw), profile);
            exchanged = true;
        } else {
            return static_cast<int>(MidPointEllipseLine(rc, angle, spans, border));
        }

        const std::int64_t first = exchanged ? cy - hw : t;
        const INT_PTR n = profile.GetSize();
        // The lower half mirrors the upper: an even height repeats every row (the centre row
        // twice), an odd height all but the centre row. The parity is always the rectangle's
        // own height, also when width and height are exchanged, and so is the parity that
        // widens the runs of an even size by one pixel on the left.
        const bool evenH = (h & 1) == 0;
        const INT_PTR rows = evenH ? 2 * n : 2 * n - 1;
        spans.SetSize(rows, 100);
        POINT* out = spans.GetData();
        const bool widen = exchanged ? evenH : (w & 1) == 0;
        const int* p = profile.GetData();
        for (INT_PTR k = 0; k < n; ++k)
            out[k] =
                POINT{static_cast<LONG>(cx - p[k] - (widen ? 1 : 0)), static_cast<LONG>(cx + p[k])};
        for (INT_PTR k = n; k < rows; ++k) out[k] = out[rows - 1 - k];
        spans.FreeExtra();

        if (border) {
            if (exchanged) {
                // The exchanged case states its own border: the rectangle turned about the
                // centre. It can differ from the runs' extent by a row.
                *border = RECT{Sat(cx - h / 2), Sat(cy - w / 2), Sat(cx + h / 2 + (h & 1)),
                               Sat(cy + w / 2 + (w & 1))};
            } else {
                BorderOfSpans(spans, first, border);
            }
        }
        return static_cast<int>(first);
    } catch (...) {
        // Out of memory: the empty result.
        EmptySpans(spans, border);
        return rc.top;
    }
}

int CEllipse::EllipseRasterLine(const RECT& rc, double angle, RSRLINE& line) {
    return ToRecord(EllipseRasterLine(CRect(rc), angle, line.spans, &line.rcBound), line);
}

INT64 CEllipse::MidPointEllipseLine(const CRect& rc, double angle, CArray<POINT>& spans,
                                    RECT* border) {
    try {
        const std::int64_t l = rc.left, t = rc.top, r = rc.right, b = rc.bottom;
        double p, q, rr, s;
        std::int64_t first = t;
        if (r - l < 1 || b - t < 1 || !ExtentOk(l, r) || !ExtentOk(t, b) ||
            !GetEllipseParam(rc, angle, p, q, rr, s) ||
            !ConicSpans(p, rr, q, s, (static_cast<double>(l) + static_cast<double>(r)) * 0.5,
                        (static_cast<double>(t) + static_cast<double>(b)) * 0.5, spans, first,
                        border)) {
            EmptySpans(spans, border);
            return t;
        }
        return first;
    } catch (...) {
        EmptySpans(spans, border);
        return rc.top;
    }
}

int CEllipse::EllipseRasterLine(const RECTD& rc, const ATransform& t, CArray<POINT>& spans,
                                RECT* border) {
    const int top = TruncI32(std::floor(rc.top));
    try {
        const double w = rc.right - rc.left, h = rc.bottom - rc.top;
        if (!(w > 0.0) || !(h > 0.0)) {
            EmptySpans(spans, border);
            return top;
        }
        // The ellipse in device space about the image of the rectangle's centre:
        // with u = M^-1 (P - C'), B2*ux^2 + A2*uy^2 <= A2*B2, multiplied through by det^2.
        const double k1 = t.eM11, k2 = t.eM12, k3 = t.eM21, k4 = t.eM22;
        const double det = k1 * k4 - k3 * k2;
        if (!(std::fabs(det) >= 1e-10)) {
            EmptySpans(spans, border);
            return top;
        }
        double ox = (rc.left + rc.right) * 0.5, oy = (rc.top + rc.bottom) * 0.5;
        t.CalcPoint(ox, oy);
        const double A2 = w * w * 0.25, B2 = h * h * 0.25;
        const double A = B2 * k4 * k4 + A2 * k2 * k2;
        const double B = -2.0 * (B2 * k4 * k3 + A2 * k2 * k1);
        const double C = B2 * k3 * k3 + A2 * k1 * k1;
        const double S = A2 * B2 * det * det;
        std::int64_t first = 0;
        if (!ConicSpans(A, B, C, S, ox, oy, spans, first, border)) {
            EmptySpans(spans, border);
            return top;
        }
        return static_cast<int>(first);
    } catch (...) {
        ReportOutOfMemory();
        spans.RemoveAll();
        if (border) *border = RECT{0, 0, 0, 0};
        return top;
    }
}

int CEllipse::EllipseRasterLine(const RECT& rc, const ATransform& t, CArray<POINT>& spans,
                                RECT* border) {
    return EllipseRasterLine(RECTD(rc), t, spans, border);
}

int CEllipse::EllipseRasterLine(const RECT& rc, const ATransform& t, RSRLINE& line) {
    return ToRecord(EllipseRasterLine(RECTD(rc), t, line.spans, &line.rcBound), line);
}

int CEllipse::EllipseRasterLine(const RECTD& rc, const ATransform& t, RSRLINE& line) {
    return ToRecord(EllipseRasterLine(rc, t, line.spans, &line.rcBound), line);
}

// ---- rectangles and parallelograms -------------------------------------------------------

void CEllipse::GetRectBorder(const RECT& rc, double angle, RECT& border) {
    angle = NormalizeAngle(angle);
    const std::int64_t w = std::int64_t{rc.right} - rc.left;
    const std::int64_t h = std::int64_t{rc.bottom} - rc.top;
    // Empty is the platform's notion: no positive width or height.
    if (w <= 0 || h <= 0 || NearZeroOrPi(angle)) {
        border = rc;
        return;
    }
    if (NearQuarter(angle)) {
        const std::int64_t cx = (std::int64_t{rc.left} + rc.right) / 2;
        const std::int64_t cy = (std::int64_t{rc.top} + rc.bottom) / 2;
        const std::int64_t hw = w / 2, hh = h / 2;
        border = RECT{Sat(cx - hh), Sat(cy - hw), Sat(cx + hh + (h & 1)), Sat(cy + hw + (w & 1))};
        return;
    }
    POINT pts[4];
    int q = RotateRect(rc, angle, pts);
    q = ((q % 4) + 4) % 4;
    // The corner after the quadrant code gives the left edge, the code's own corner the top;
    // only the right and bottom edges get the margin of 2, deliberately.
    border = RECT{pts[(q + 1) % 4].x, pts[q].y, Sat(std::int64_t{pts[(q + 3) % 4].x} + 2),
                  Sat(std::int64_t{pts[(q + 2) % 4].y} + 2)};
}

void CEllipse::GetRectBorder(const RECT& rc, const ATransform& t, RECT& border) {
    if (CRect(rc).IsRectEmpty()) {
        border = rc;
        return;
    }
    POINT v[4];
    RectVertex(rc, v);
    double x0 = HUGE_VAL, y0 = HUGE_VAL, x1 = -HUGE_VAL, y1 = -HUGE_VAL;
    for (const POINT& c : v) {
        double x = c.x, y = c.y;
        t.CalcPoint(x, y);
        x0 = std::min(x0, x), x1 = std::max(x1, x);
        y0 = std::min(y0, y), y1 = std::max(y1, y);
    }
    // The pixels whose centres the corners' box covers; at least one each way.
    std::int64_t l = Ceil64(x0 - 0.5), r = Floor64(x1 - 0.5) + 1;
    std::int64_t tp = Ceil64(y0 - 0.5), bt = Floor64(y1 - 0.5) + 1;
    if (r <= l) r = (l = Floor64((x0 + x1) * 0.5)) + 1;
    if (bt <= tp) bt = (tp = Floor64((y0 + y1) * 0.5)) + 1;
    border = RECT{Sat(l), Sat(tp), Sat(r), Sat(bt)};
}

namespace {

// Spans of a quadrilateral in device space, unclipped; an empty result on failure, with the
// rectangle's top as the first row.
int QuadSpans(const POINTD (&pts)[4], LONG top, CArray<POINT>& spans, RECT* border) {
    std::int64_t first = top;
    if (!PolygonSpans(pts, 4, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX, spans, first, border)) {
        EmptySpans(spans, border);
        return top;
    }
    return static_cast<int>(first);
}

}  // namespace

int CEllipse::RectRasterLine(const RECT& rc, double angle, CArray<POINT>& spans, RECT* border) {
    try {
        angle = NormalizeAngle(angle);
        const std::int64_t l = rc.left, t = rc.top, r = rc.right, b = rc.bottom;
        if (r - l < 1 || b - t < 1 || !ExtentOk(l, r) || !ExtentOk(t, b)) {
            EmptySpans(spans, border);
            return rc.top;
        }
        if (NearZeroOrPi(angle)) {
            FillBox(spans, b - t, rc.left, rc.right - 1);
            if (border) *border = rc;
            return rc.top;
        }
        if (NearQuarter(angle)) {
            RECT box;
            GetRectBorder(rc, angle, box);
            FillBox(spans, std::int64_t{box.bottom} - box.top, box.left, box.right - 1);
            if (border) *border = box;
            return box.top;
        }
        const double cx = (static_cast<double>(l) + static_cast<double>(r)) * 0.5;
        const double cy = (static_cast<double>(t) + static_cast<double>(b)) * 0.5;
        const double hw = static_cast<double>(r - l) * 0.5, hh = static_cast<double>(b - t) * 0.5;
        const double co = kxbase::sys::Cos(angle), si = kxbase::sys::Sin(angle);
        const double rel[4][2] = {{-hw, -hh}, {-hw, hh}, {hw, hh}, {hw, -hh}};
        POINTD pts[4];
        for (int i = 0; i < 4; ++i)
            pts[i] =
                POINTD(cx + rel[i][0] * co - rel[i][1] * si, cy + rel[i][1] * co + rel[i][0] * si);
        return QuadSpans(pts, rc.top, spans, border);
    } catch (...) {
        EmptySpans(spans, border);
        return rc.top;
    }
}

int CEllipse::RectRasterLine(const RECT& rc, const ATransform& t, CArray<POINT>& spans,
                             RECT* border) {
    try {
        if (CRect(rc).IsRectEmpty()) {
            EmptySpans(spans, border);
            return rc.top;
        }
        POINT v[4];
        RectVertex(rc, v);
        POINTD pts[4];
        for (int i = 0; i < 4; ++i) {
            pts[i] = POINTD(v[i]);
            t.CalcPoint(pts[i]);
        }
        return QuadSpans(pts, rc.top, spans, border);
    } catch (...) {
        EmptySpans(spans, border);
        return rc.top;
    }
}

int CEllipse::RectRasterLine(const RECT& rc, double angle, RSRLINE& line) {
    return ToRecord(RectRasterLine(rc, angle, line.spans, &line.rcBound), line);
}

int CEllipse::RectRasterLine(const RECT& rc, const ATransform& t, RSRLINE& line) {
    return ToRecord(RectRasterLine(rc, t, line.spans, &line.rcBound), line);
}

int CEllipse::PlgRasterLine(const POINT pts[4], const POINT& center, int left, int top, int right,
                            int bottom, CArray<POINT>& spans) {
    if (right <= left || bottom <= top) {
        spans.SetSize(0);
        return top;
    }
    POINTD corners[4];
    for (int i = 0; i < 4; ++i)
        corners[i] = POINTD(static_cast<double>(center.x) + pts[i].x,
                            static_cast<double>(center.y) + pts[i].y);
    std::int64_t first = top;
    if (!PolygonSpans(corners, 4, left, top, std::int64_t{right} - 1, std::int64_t{bottom} - 1,
                      spans, first, nullptr)) {
        spans.SetSize(0);
        return top;
    }
    return static_cast<int>(first);
}
