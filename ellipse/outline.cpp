// CEllipse: the public outline operations: segments, circles, turned and transformed
// ellipses (traced octant by octant with EllSep0..EllSep7), arcs, parallelograms and turned
// or transformed rectangles.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <kxbase/ellipse/ellipse.h>

#include "ellipse/ellipse_p.h"

using namespace kxbase::detail::ell;

namespace {

// Bresenham pixels from p to q, both included. False when the segment is too long.
bool LinePixels(POINT p, POINT q, std::vector<POINT>& out) {
    const std::int64_t dx = std::int64_t{q.x} - p.x, dy = std::int64_t{q.y} - p.y;
    const std::int64_t ax = dx < 0 ? -dx : dx, ay = dy < 0 ? -dy : dy;
    if (std::max(ax, ay) > 2 * std::int64_t{CEllipse::kMaxOutlineExtent}) return false;
    const std::int64_t sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
    std::int64_t x = p.x, y = p.y;
    out.push_back(p);
    if (ax >= ay) {
        std::int64_t d = 2 * ay - ax;
        for (std::int64_t i = 0; i < ax; ++i) {
            if (d > 0) {
                y += sy;
                d -= 2 * ax;
            }
            d += 2 * ay;
            x += sx;
            out.push_back(POINT{static_cast<LONG>(x), static_cast<LONG>(y)});
        }
    } else {
        std::int64_t d = 2 * ax - ay;
        for (std::int64_t i = 0; i < ay; ++i) {
            if (d > 0) {
                x += sx;
                d -= 2 * ay;
            }
            d += 2 * ax;
            y += sy;
            out.push_back(POINT{static_cast<LONG>(x), static_cast<LONG>(y)});
        }
    }
    return true;
}

// Where a tip is sharper than the pixel grid, the tracers can stop short of the start: no
// octant's first midpoint lies in its octant any more. The ellipse is symmetric through its
// centre, so the missing part is the point reflection of a part already traced: from the
// reflection of the pixel reached back to the start.
void CompleteBySymmetry(const ELLPARAM& p, std::vector<POINT>& t) {
    if (t.size() < 2) return;
    const POINT s = t.back(), s0 = t.front();
    if (std::abs(s.x - s0.x) <= 2 && std::abs(s.y - s0.y) <= 2) return;
    POINTD c;
    if (!CEllipse::GetEllBoundary(p, static_cast<POINTD*>(nullptr), nullptr, &c)) return;
    auto reflect = [&](const POINT& q) {
        return POINT{static_cast<LONG>(Floor64(2.0 * c.x - q.x + 0.5)),
                     static_cast<LONG>(Floor64(2.0 * c.y - q.y + 0.5))};
    };
    auto nearest = [&](const POINT& q) {
        std::size_t best = 0;
        std::int64_t bd = INT64_MAX;
        for (std::size_t i = 0; i < t.size(); ++i) {
            const std::int64_t dx = std::int64_t{t[i].x} - q.x, dy = std::int64_t{t[i].y} - q.y;
            if (dx * dx + dy * dy < bd) bd = dx * dx + dy * dy, best = i;
        }
        return best;
    };
    const std::size_t n = t.size();
    const std::size_t from = nearest(reflect(s));  // where the reached pixel's image lies
    const std::size_t to = nearest(reflect(s0));   // the image of the start
    if (to > from) {
        for (std::size_t k = from + 1; k <= to; ++k) t.push_back(reflect(t[k]));
    } else {
        for (std::size_t k = 0; k < n; ++k) t.push_back(reflect(t[k]));
    }
}

void Store(CArray<POINT>& pts, const std::vector<POINT>& v) {
    pts.SetSize(static_cast<INT_PTR>(v.size()));
    std::copy(v.begin(), v.end(), pts.begin());
}

}  // namespace

int CEllipse::MidPointLine(POINT p1, POINT p2, CArray<POINT>& pts) {
    try {
        std::vector<POINT> v;
        if (!LinePixels(p1, p2, v)) v.clear();
        Store(pts, v);
        return static_cast<int>(v.size());
    } catch (...) {
        pts.RemoveAll();
        return 0;
    }
}

int CEllipse::MidPointLine(POINT p1, POINT p2, POINT origin, CArray<int>& xs) {
    try {
        const POINT& upper = p1.y <= p2.y ? p1 : p2;
        const std::int64_t last = std::max(p1.y, p2.y);
        const std::int64_t rows = last - origin.y + 1;
        std::vector<POINT> v;
        if (rows <= 0 || rows > kMaxExtent || !LinePixels(p1, p2, v)) {
            xs.SetSize(0);
            return 0;
        }
        xs.SetSize(static_cast<INT_PTR>(rows));
        int* out = xs.GetData();
        const int fill = static_cast<int>(std::int64_t{upper.x} - origin.x);
        std::vector<bool> seen(static_cast<std::size_t>(rows), false);
        for (std::int64_t i = 0; i < rows; ++i) out[i] = fill;
        for (const POINT& p : v) {
            const std::int64_t i = std::int64_t{p.y} - origin.y;
            if (i < 0 || seen[static_cast<std::size_t>(i)]) continue;
            seen[static_cast<std::size_t>(i)] = true;
            out[i] = static_cast<int>(std::int64_t{p.x} - origin.x);
        }
        return static_cast<int>(rows);
    } catch (...) {
        xs.RemoveAll();
        return 0;
    }
}

void CEllipse::MidPointCircle(const CRect& rc, CArray<POINT>& pts) {
    try {
        const std::int64_t w = std::int64_t{rc.right} - rc.left;
        const std::int64_t h = std::int64_t{rc.bottom} - rc.top;
        if (w < 1 || h < 1) {
            pts.SetSize(0);
            return;
        }
        const std::int64_t side = std::min(w, h);
        const std::int64_t l = rc.left + (w - side) / 2, t = rc.top + (h - side) / 2;
        MidPointEllipse(CRect(static_cast<LONG>(l), static_cast<LONG>(t),
                              static_cast<LONG>(l + side), static_cast<LONG>(t + side)),
                        pts);
    } catch (...) {
        pts.RemoveAll();
    }
}

void CEllipse::MidPointEllipse(const RECT& rc, double angle, CArray<POINT>& pts) {
    try {
        angle = NormalizeAngle(angle);
        const std::int64_t w = std::int64_t{rc.right} - rc.left;
        const std::int64_t h = std::int64_t{rc.bottom} - rc.top;
        if (w == h || NearZeroOrPi(angle)) {
            MidPointEllipse(CRect(rc), pts);
            return;
        }
        if (!std::isfinite(angle)) {
            pts.SetSize(0);
            return;
        }
        const RECTD rd(rc);
        ATransform turn;
        turn.Rotate(angle, (rd.left + rd.right) * 0.5, (rd.top + rd.bottom) * 0.5);
        MidPointEllipse(rd, turn, pts);
    } catch (...) {
        pts.RemoveAll();
    }
}

void CEllipse::MidPointEllipse(const RECT& rc, const ATransform& t, CArray<POINT>& pts) {
    MidPointEllipse(RECTD(rc), t, pts);
}

void CEllipse::MidPointEllipse(const RECTD& rc, const ATransform& t, CArray<POINT>& pts) {
    try {
        pts.SetSize(0);
        const double det = t.eM11 * t.eM22 - t.eM21 * t.eM12;
        if (!(std::fabs(det) >= 1e-10)) return;
        // Traced on pixel centres, like the spans: pixel (x, y) stands for the point
        // (x + 0.5, y + 0.5), so the conic is that of the map followed by a half-pixel shift.
        ATransform inv(t);
        inv.Translation(-0.5, -0.5);
        inv.InverseMatrix();
        ELLPARAM p;
        RECT box;
        if (!GetEllipseParam(rc, inv, p) || !GetEllipseBorder(p, box)) return;
        if (!ExtentOk(box.left, box.right, kMaxOutlineExtent) ||
            !ExtentOk(box.top, box.bottom, kMaxOutlineExtent))
            return;
        POINT start;
        if (!GetTopPoint(p, start)) return;
        // Each octant stores at most about a quarter of the perimeter; the limit only stops a
        // trace that cannot leave its octant.
        const int maxSteps =
            static_cast<int>(2 * (std::int64_t{box.right} - box.left + box.bottom - box.top) + 16);
        int x = start.x, y = start.y, count = 1;
        pts.SetAtGrow(0, start);
        // Counter-clockwise on the screen (top, left, bottom, right): from the octant of the
        // start pixel through the seven others and back into the first, whose trace ends
        // when it passes the start pixel; that closes the outline.
        const int first = EllPointSite(p, start);
        for (int k = 0; k <= 8; ++k) {
            POINT stop = start;
            m_EllSep[(first + k) & 7](p, x, y, count, maxSteps, k == 8 ? &stop : nullptr, pts);
        }
        pts.SetSize(count);
        std::vector<POINT> traced(pts.begin(), pts.end());
        CompleteBySymmetry(p, traced);
        // Far from the origin the conic's terms pass double precision and a trace can lose its
        // way; a pixel outside the ellipse's box (with a pixel's margin) shows it: no outline
        // then, as for a box beyond the extent limit.
        for (const POINT& q : traced)
            if (q.x < std::int64_t{box.left} - 1 || q.x > std::int64_t{box.right} + 1 ||
                q.y < std::int64_t{box.top} - 1 || q.y > std::int64_t{box.bottom} + 1) {
                pts.SetSize(0);
                return;
            }
        // On an ellipse thinner than a pixel, or where the tracers met the start from a
        // neighbouring row, the octants can leave steps longer than one pixel (at worst
        // one side traced and the other missing): bridge every such step with a segment
        // so that the outline is always a closed chain of 8-connected pixels.
        std::vector<POINT> chain, seg;
        chain.reserve(traced.size() + 8);
        for (const POINT& a : traced) {
            if (!chain.empty() && chain.back() == a) continue;
            if (!chain.empty() &&
                (std::abs(chain.back().x - a.x) > 1 || std::abs(chain.back().y - a.y) > 1)) {
                seg.clear();
                if (!LinePixels(chain.back(), a, seg)) {  // cannot happen inside the box
                    pts.SetSize(0);
                    return;
                }
                chain.insert(chain.end(), seg.begin() + 1, seg.end() - 1);
            }
            chain.push_back(a);
        }
        // The last octant may overshoot the start by a pixel or two: drop the overlap.
        auto repeatsStart = [&chain](const POINT& q) {
            for (std::size_t i = 0; i < 4 && i + 1 < chain.size(); ++i)
                if (chain[i] == q) return true;
            return false;
        };
        for (std::size_t j = chain.size(); j-- > 4 && j + 4 >= chain.size();) {
            if (repeatsStart(chain[j])) {
                chain.resize(j);
                break;
            }
        }
        while (chain.size() > 1 && repeatsStart(chain.back())) chain.pop_back();
        if (chain.size() > 1) {
            seg.clear();
            if (!LinePixels(chain.back(), chain.front(), seg)) {
                pts.SetSize(0);
                return;
            }
            if (seg.size() > 2) chain.insert(chain.end(), seg.begin() + 1, seg.end() - 1);
        }
        Store(pts, chain);
    } catch (...) {
        ReportOutOfMemory();
        pts.RemoveAll();
    }
}

void CEllipse::MidPointArc(const RECT& rc, const ATransform& t, double a1, double a2,
                           CArray<POINT>& pts) {
    MidPointArc(RECTD(rc), t, a1, a2, pts);
}

void CEllipse::MidPointArc(const RECTD& rc, const ATransform& t, double a1, double a2,
                           CArray<POINT>& pts) {
    try {
        CArray<POINT> all;
        MidPointEllipse(rc, t, all);
        pts.SetSize(0);
        const INT_PTR n = all.GetSize();
        POINTD p1, p2;
        if (n == 0 || !EllipsePoint(rc, t, static_cast<const POINTD*>(nullptr), a1, p1) ||
            !EllipsePoint(rc, t, static_cast<const POINTD*>(nullptr), a2, p2))
            return;
        auto nearest = [&](const POINTD& q) {
            INT_PTR best = 0;
            double bd = HUGE_VAL;
            for (INT_PTR i = 0; i < n; ++i) {
                const double dx = all[i].x + 0.5 - q.x, dy = all[i].y + 0.5 - q.y;
                const double d = dx * dx + dy * dy;
                if (d < bd) bd = d, best = i;
            }
            return best;
        };
        const INT_PTR i1 = nearest(p1), i2 = nearest(p2);
        // The outline runs counter-clockwise on the screen, against increasing device
        // angles; a transform that keeps orientation keeps the rectangle's angles
        // increasing the same way, so the arc is walked backwards, else forwards.
        const double det = t.eM11 * t.eM22 - t.eM21 * t.eM12;
        const INT_PTR step = det > 0.0 ? n - 1 : 1;
        const bool whole = NormalizeAngle(a1) == NormalizeAngle(a2);
        std::vector<POINT> v;
        INT_PTR i = i1;
        for (INT_PTR k = 0; k < n; ++k) {
            v.push_back(all[i]);
            if (!whole && i == i2) break;
            i = (i + step) % n;
        }
        Store(pts, v);
    } catch (...) {
        ReportOutOfMemory();
        pts.RemoveAll();
    }
}

void CEllipse::MidPointParalgram(const POINT pts[4], CArray<POINT>& out) {
    try {
        std::vector<POINT> v, seg;
        for (int k = 0; k < 4; ++k) {
            seg.clear();
            if (!LinePixels(pts[k], pts[(k + 1) % 4], seg)) {
                out.SetSize(0);
                return;
            }
            // Each corner once: a segment starts where the previous one ended.
            v.insert(v.end(), seg.begin() + (v.empty() ? 0 : 1), seg.end());
        }
        if (v.size() > 1) v.pop_back();  // the last segment ends on the first corner
        Store(out, v);
    } catch (...) {
        out.RemoveAll();
    }
}

void CEllipse::MidPointRect(const RECT& rc, double angle, CArray<POINT>& pts) {
    try {
        if (CRect(rc).IsRectEmpty()) {
            pts.SetSize(0);
            return;
        }
        POINT c[4];
        RotateRect(rc, NormalizeAngle(angle), c);
        MidPointParalgram(c, pts);
    } catch (...) {
        pts.RemoveAll();
    }
}

void CEllipse::MidPointRect(const RECT& rc, const ATransform& t, CArray<POINT>& pts) {
    try {
        if (CRect(rc).IsRectEmpty()) {
            pts.SetSize(0);
            return;
        }
        POINT c[4];
        RectVertex(rc, c);
        for (POINT& p : c) t.CalcPoint(p, 0.5);
        MidPointParalgram(c, pts);
    } catch (...) {
        pts.RemoveAll();
    }
}
