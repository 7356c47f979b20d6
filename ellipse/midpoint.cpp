// CEllipse: integer midpoint tracing of axis-aligned ellipses and circles, as quadrant
// profiles (one half-width per row, consumed by the span routines) and as closed outlines.
#include <cstdint>
#include <vector>

#include <kxbase/ellipse/ellipse.h>

#include "ellipse/ellipse_p.h"

using namespace kxbase::detail::ell;

void CEllipse::MidPointEllipse(int a, int b, CArray<int>& profile) {
    const double A2 = static_cast<double>(std::int64_t{a} * a);
    const double B2 = static_cast<double>(std::int64_t{b} * b);
    std::int64_t x = 0, y = b;
    INT_PTR k = 0;  // rows finished
    double d = (0.25 - static_cast<double>(b)) * A2 + B2;
    profile.SetSize(INT_PTR{b} + 1);  // a negative b throws, as an array index would

    // Region 1: the slope is below one, x advances every step.
    if ((static_cast<double>(y) - 0.5) * A2 > B2) {
        do {
            const double xd = static_cast<double>(x), yd = static_cast<double>(y);
            if (d >= 0.0) {
                profile.SetAtGrow(k++, static_cast<int>(x));
                d += (2.0 - 2.0 * yd) * A2 + (2.0 * xd + 3.0) * B2;
                --y;
            } else {
                d += (2.0 * xd + 3.0) * B2;
            }
            ++x;
        } while ((static_cast<double>(y) - 0.5) * A2 > (static_cast<double>(x) + 1.0) * B2);
    }
    // Region 2: y descends every step.
    {
        const double xh = static_cast<double>(x) + 0.5, ym = static_cast<double>(y) - 1.0;
        d = (xh * xh - A2) * B2 + ym * ym * A2;
    }
    while (y > 0) {
        const double xd = static_cast<double>(x), yd = static_cast<double>(y);
        profile.SetAtGrow(k, static_cast<int>(x));
        if (d < 0.0) {
            d += (3.0 - 2.0 * yd) * A2 + (2.0 * xd + 2.0) * B2;
            ++x;
        } else {
            d += (3.0 - 2.0 * yd) * A2;
        }
        --y;
        ++k;
    }
    profile.SetAtGrow(k, static_cast<int>(x));  // the centre row
    profile.SetSize(k + 1);
}

void CEllipse::MidPointCircle(int r, CArray<int>& profile) {
    profile.RemoveAll();
    if (r <= 0) return;
    std::int64_t x = r, y = 0, d = 1 - std::int64_t{r};
    INT_PTR steps = 0;
    // side[y] = x of the first octant at height y; read back mirrored for the rows below
    // the 45-degree point (by the circle's symmetry).
    CArray<int> side;
    side.SetAtGrow(0, r);
    profile.SetSize(INT_PTR{r} + 1);
    do {
        if (d >= 0) {
            d += 2 - 2 * x;
            profile[steps++] =
                static_cast<int>(y);  // x steps down: y is the half-width of the row at height x
            --x;
        }
        d += 2 * y + 3;
        ++y;
        side.SetAtGrow(static_cast<INT_PTR>(y), static_cast<int>(x));
    } while (y < x);
    if (y != x) side.RemoveAt(side.GetSize() - 1);
    for (INT_PTR i = steps; i <= r; ++i) profile[i] = side[r - i];
}

namespace {

// The quarter of the ellipse with semi-axes a, b from (0, b) to (a, 0), x and y >= 0, one
// point per midpoint step (the decision variables of the profile routine).
void TraceQuarter(std::int64_t a, std::int64_t b, std::vector<POINT>& q) {
    const double A2 = static_cast<double>(a * a), B2 = static_cast<double>(b * b);
    std::int64_t x = 0, y = b;
    double d = (0.25 - static_cast<double>(b)) * A2 + B2;
    q.push_back(POINT{0, static_cast<LONG>(b)});
    if ((static_cast<double>(y) - 0.5) * A2 > B2) {
        do {
            const double xd = static_cast<double>(x), yd = static_cast<double>(y);
            if (d >= 0.0) {
                d += (2.0 - 2.0 * yd) * A2 + (2.0 * xd + 3.0) * B2;
                --y;
            } else {
                d += (2.0 * xd + 3.0) * B2;
            }
            ++x;
            q.push_back(POINT{static_cast<LONG>(x), static_cast<LONG>(y)});
        } while ((static_cast<double>(y) - 0.5) * A2 > (static_cast<double>(x) + 1.0) * B2);
    }
    {
        const double xh = static_cast<double>(x) + 0.5, ym = static_cast<double>(y) - 1.0;
        d = (xh * xh - A2) * B2 + ym * ym * A2;
    }
    while (y > 0) {
        const double xd = static_cast<double>(x), yd = static_cast<double>(y);
        if (d < 0.0) {
            d += (3.0 - 2.0 * yd) * A2 + (2.0 * xd + 2.0) * B2;
            ++x;
        } else {
            d += (3.0 - 2.0 * yd) * A2;
        }
        --y;
        q.push_back(POINT{static_cast<LONG>(x), static_cast<LONG>(y)});
    }
}

void Store(CArray<POINT>& pts, const std::vector<POINT>& v) {
    pts.SetSize(static_cast<INT_PTR>(v.size()));
    POINT* out = pts.GetData();
    for (std::size_t i = 0; i < v.size(); ++i) out[i] = v[i];
    pts.FreeExtra();
}

}  // namespace

void CEllipse::MidPointEllipse(const CRect& rc, CArray<POINT>& pts) {
    const std::int64_t l = rc.left, t = rc.top, r = rc.right, b = rc.bottom;
    const std::int64_t w = r - l, h = b - t;
    std::vector<POINT> out;
    if (w < 1 || h < 1 || !ExtentOk(l, r, kMaxOutlineExtent) ||
        !ExtentOk(t, b, kMaxOutlineExtent)) {
        Store(pts, out);
        return;
    }
    auto P = [](std::int64_t x, std::int64_t y) {
        return POINT{static_cast<LONG>(x), static_cast<LONG>(y)};
    };
    if (w == 1) {  // one column, downward
        for (std::int64_t y = t; y < b; ++y) out.push_back(P(l, y));
    } else if (h == 1) {  // one row, rightward
        for (std::int64_t x = l; x < r; ++x) out.push_back(P(x, t));
    } else if (w == 2) {  // two columns: down the right one, up the left one
        for (std::int64_t y = t; y < b; ++y) out.push_back(P(l + 1, y));
        for (std::int64_t y = b - 1; y >= t; --y) out.push_back(P(l, y));
    } else if (h == 2) {
        // Two rows; the second deliberately starts at `right`, one pixel outside the first
        // row's range, as hosts expect this exact order.
        for (std::int64_t x = l; x < r; ++x) out.push_back(P(x, t));
        for (std::int64_t x = r; x >= l; --x) out.push_back(P(x, t + 1));
    } else {
        // The quarter from the bottom (0, b) to the right (a, 0), y downward, reflected into
        // the other three. Even sizes have their centre between two pixels: the positive
        // side moves one pixel toward the centre and the mirror of column X is -1 - X, so
        // the two middle columns (rows) are both present and the outline stays symmetric.
        std::vector<POINT> q;
        TraceQuarter(w / 2, h / 2, q);
        const bool evenW = (w & 1) == 0, evenH = (h & 1) == 0;
        for (POINT& p : q) {
            if (evenW && p.x > 0) --p.x;
            if (evenH && p.y > 0) --p.y;
        }
        auto mx = [&](LONG X) { return evenW ? -1 - X : -X; };
        auto my = [&](LONG Y) { return evenH ? -1 - Y : -Y; };
        const std::int64_t cx = (l + r) / 2, cy = (t + b) / 2;  // C division, as the spans
        out.reserve(q.size() * 4);
        auto put = [&](LONG x, LONG y) {
            const POINT s = P(cx + x, cy + y);
            if (out.empty() || !(out.back() == s)) out.push_back(s);
        };
        // Counter-clockwise on the screen from the top: top-left, bottom-left, bottom-right,
        // top-right quarters.
        for (std::size_t i = 0; i < q.size(); ++i) put(mx(q[i].x), my(q[i].y));
        for (std::size_t i = q.size(); i-- > 0;) put(mx(q[i].x), q[i].y);
        for (std::size_t i = 0; i < q.size(); ++i) put(q[i].x, q[i].y);
        for (std::size_t i = q.size(); i-- > 0;) put(q[i].x, my(q[i].y));
        while (out.size() > 1 && out.back() == out.front()) out.pop_back();
    }
    Store(pts, out);
}
