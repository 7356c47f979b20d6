// Drives the span, border and outline operations of CEllipse with arbitrary rectangles,
// angles and transforms (including NaN, infinities and singular maps) and checks the
// invariants every host relies on: one ordered run per row, a border that is the union of
// the runs, outlines that are closed chains of 8-connected pixels.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include <fuzzer/FuzzedDataProvider.h>

#include <kxbase/ellipse/ellipse.h>

namespace {

void Check(bool ok) {
    if (!ok) std::abort();
}

void CheckSpans(int first, const CArray<POINT>& spans, const RECT& border, bool borderFromRuns) {
    if (spans.GetSize() == 0) return;
    LONG lo = spans[0].x, hi = spans[0].y;
    for (const POINT& r : spans) {
        Check(r.x <= r.y);
        lo = std::min(lo, r.x);
        hi = std::max(hi, r.y);
    }
    if (!borderFromRuns) return;
    Check(border.left == lo && border.right == hi + 1);
    Check(border.top == first && border.bottom == first + spans.GetSize());
}

// `closed`: the last pixel also touches the first (the one- and two-pixel-wide axis-aligned
// outlines are open runs by design).
void CheckChain(const CArray<POINT>& pts, bool closed = true) {
    const INT_PTR n = pts.GetSize();
    if (n < 2) return;
    for (INT_PTR i = 0; i < (closed ? n : n - 1); ++i) {
        const POINT a = pts[i], b = pts[(i + 1) % n];
        Check(std::abs(a.x - b.x) <= 1 && std::abs(a.y - b.y) <= 1);
    }
}

// Coordinates: mostly moderate so that each run stays fast, sometimes anywhere in int32.
LONG Coord(FuzzedDataProvider& in, bool wide) {
    return wide ? in.ConsumeIntegral<LONG>() : in.ConsumeIntegralInRange<LONG>(-3000, 3000);
}

// Doubles: moderate values, with the special ones reachable.
double Real(FuzzedDataProvider& in) {
    switch (in.ConsumeIntegralInRange<int>(0, 15)) {
        case 0:
            return NAN;
        case 1:
            return INFINITY;
        case 2:
            return -INFINITY;
        case 3:
            return 0.0;
        case 4:
            return in.ConsumeFloatingPoint<double>();
        default:
            return in.ConsumeFloatingPointInRange<double>(-8.0, 8.0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    const bool wide = in.ConsumeBool();
    const RECT rc{Coord(in, wide), Coord(in, wide), Coord(in, wide), Coord(in, wide)};
    const double angle = Real(in);
    double m[6];
    for (double& v : m) v = Real(in);  // in order: argument evaluation order is unspecified
    const ATransform t(m[0], m[1], m[2], m[3], m[4] * 100, m[5] * 100);
    const int op = in.ConsumeIntegralInRange<int>(0, 7);

    CArray<POINT> spans, pts;
    RECT border{0, 0, 0, 0};
    switch (op) {
        case 0: {
            const int first = CEllipse::EllipseRasterLine(CRect(rc), angle, spans, &border);
            // The quarter-turn case states its own border; only the runs are checked then.
            CheckSpans(first, spans, border, false);
            RSRLINE line;
            CEllipse::EllipseRasterLine(rc, angle, line);
            Check(line.counts.GetSize() == line.spans.GetSize());
            break;
        }
        case 1: {
            const int first = CEllipse::EllipseRasterLine(rc, t, spans, &border);
            CheckSpans(first, spans, border, true);
            break;
        }
        case 2: {
            const int first = CEllipse::RectRasterLine(rc, angle, spans, &border);
            CheckSpans(first, spans, border, true);
            const int first2 = CEllipse::RectRasterLine(rc, t, spans, &border);
            CheckSpans(first2, spans, border, true);
            break;
        }
        case 3: {
            const INT64 first = CEllipse::MidPointEllipseLine(CRect(rc), angle, spans, &border);
            CheckSpans(static_cast<int>(first), spans, border, true);
            break;
        }
        case 4:
            CEllipse::MidPointEllipse(rc, t, pts);
            CheckChain(pts);
            CEllipse::MidPointEllipse(rc, angle, pts);
            CheckChain(pts, std::int64_t{rc.right} - rc.left >= 3 &&
                                std::int64_t{rc.bottom} - rc.top >= 3);
            break;
        case 5:
            CEllipse::MidPointArc(rc, t, angle, Real(in), pts);
            break;
        case 6: {
            ELLBOUND b;
            CEllipse::GetEllBoundary(rc, t, b);
            CEllipse::GetEllipseBorder(rc, angle, border);
            CEllipse::GetRectBorder(rc, angle, border);
            CEllipse::GetRectBorder(rc, t, border);
            POINT p;
            CEllipse::EllipsePoint(rc, t, static_cast<const POINT*>(nullptr), angle, p);
            break;
        }
        default:
            CEllipse::MidPointRect(rc, angle, pts);
            CheckChain(pts);
            CEllipse::MidPointRect(rc, t, pts);
            CheckChain(pts);
            break;
    }
    return 0;
}
