// Outlines: closure, 8-connection, symmetry and closeness to the curve of the traced
// ellipses, arcs cut from them, segments and parallelograms.
#include <cmath>
#include <random>
#include <set>
#include <utility>

#include <gtest/gtest.h>

#include <kxbase/ellipse/ellipse.h>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Probe : CEllipse {
    using CEllipse::MidPointEllipse;
};

// Catches gaps (a step longer than one pixel), repeated pixels and an open end.
void ExpectClosedChain(const CArray<POINT>& pts, const char* what) {
    const INT_PTR n = pts.GetSize();
    ASSERT_GT(n, 2) << what;
    for (INT_PTR i = 0; i < n; ++i) {
        const POINT a = pts[i], b = pts[(i + 1) % n];
        ASSERT_FALSE(a == b) << what << " repeats pixel " << i;
        ASSERT_LE(std::abs(a.x - b.x), 1) << what << " gap after " << i;
        ASSERT_LE(std::abs(a.y - b.y), 1) << what << " gap after " << i;
    }
}

std::set<std::pair<LONG, LONG>> AsSet(const CArray<POINT>& pts) {
    std::set<std::pair<LONG, LONG>> s;
    for (const POINT& p : pts) s.insert({p.x, p.y});
    return s;
}

TEST(EllipseOutline, AxisAlignedOutlineIsClosedSymmetricAndInside) {
    std::mt19937 rng(21);
    std::uniform_int_distribution<int> pos(0, 500), side(3, 200);
    for (int i = 0; i < 400; ++i) {
        const int l = pos(rng), t = pos(rng);
        const CRect rc(l, t, l + side(rng), t + side(rng));
        CArray<POINT> pts;
        Probe::MidPointEllipse(rc, pts);
        ExpectClosedChain(pts, "axis-aligned outline");
        const auto set = AsSet(pts);
        for (const POINT& p : pts) {
            ASSERT_TRUE(rc.PtInRect(p)) << "outside the rectangle";
            // Mirror images about the rectangle's centre lines (even sizes have their
            // centre between two pixels).
            ASSERT_TRUE(set.count({rc.left + rc.right - 1 - p.x, p.y}))
                << "not left-right symmetric";
            ASSERT_TRUE(set.count({p.x, rc.top + rc.bottom - 1 - p.y}))
                << "not top-bottom symmetric";
        }
        // The outline touches the top and bottom rows.
        LONG ymin = pts[0].y, ymax = pts[0].y;
        for (const POINT& p : pts) ymin = std::min(ymin, p.y), ymax = std::max(ymax, p.y);
        EXPECT_EQ(ymin, rc.top);
        EXPECT_EQ(ymax, rc.bottom - 1);
    }
}

TEST(EllipseOutline, TransformedOutlineIsClosedAndFollowsTheCurve) {
    std::mt19937 rng(23);
    std::uniform_real_distribution<double> ang(0.0, 2 * kPi), sc(0.5, 3.0), sh(-0.5, 0.5);
    std::uniform_int_distribution<int> side(8, 150);
    for (int i = 0; i < 300; ++i) {
        const RECTD rc(0, 0, side(rng), side(rng));
        ATransform t;
        t.Scaling(sc(rng), sc(rng), 0, 0);
        t.Shear(sh(rng), sh(rng), 0, 0);
        t.Rotate(ang(rng), 0, 0);
        t.Translation(400, 300);
        CArray<POINT> pts;
        CEllipse::MidPointEllipse(rc, t, pts);
        ExpectClosedChain(pts, "transformed outline");
        ATransform inv(t);
        inv.Translation(-0.5, -0.5);  // pixels stand for their centres
        ASSERT_EQ(inv.InverseMatrix(), 1);
        ELLPARAM p;
        ASSERT_EQ(CEllipse::GetEllipseParam(rc, inv, p), 1);
        // Device semi-axes: the singular values of the linear part times the half sizes.
        // Where the tips' radius of curvature (minor^2 / major) is under a pixel, the tips are
        // sharper than the grid and the closeness check does not apply.
        const double n11 = t.eM11 * rc.Width() / 2, n12 = t.eM12 * rc.Width() / 2;
        const double n21 = t.eM21 * rc.Height() / 2, n22 = t.eM22 * rc.Height() / 2;
        const double tr = n11 * n11 + n12 * n12 + n21 * n21 + n22 * n22;
        const double det = std::fabs(n11 * n22 - n12 * n21);
        const double root = std::sqrt(std::max(0.0, tr * tr - 4 * det * det));
        const double minor = std::sqrt((tr - root) / 2), major = std::sqrt((tr + root) / 2);
        const bool sharp = minor * minor / major < 1.0;
        // (Both sides of a sharp tip may share pixels; elsewhere each pixel appears once.)
        if (!sharp) {
            EXPECT_EQ(AsSet(pts).size(), size_t(pts.GetSize())) << "pixel twice, case " << i;
        }
        for (const POINT& q : pts) {
            if (sharp) break;
            const double gx = 2 * p.a * q.x + p.b * q.y + p.d, gy = 2 * p.c * q.y + p.b * q.x + p.e;
            const double dist = std::fabs(p.Value(q.x, q.y)) / std::hypot(gx, gy);
            // Half a pixel on smooth parts; at tips sharper than the grid the midpoint choice
            // can sit a little over a pixel away. A wrong conic misses by far more.
            ASSERT_LT(dist, 1.5) << "pixel (" << q.x << ", " << q.y << ") off the curve";
        }
        // Starts at the top pixel and reaches every side of the bounds
        RECT box;
        ASSERT_EQ(CEllipse::GetEllipseBorder(p, box), 1);
        LONG x0 = pts[0].x, x1 = x0, y0 = pts[0].y, y1 = y0;
        for (const POINT& q : pts) {
            x0 = std::min(x0, q.x), x1 = std::max(x1, q.x);
            y0 = std::min(y0, q.y), y1 = std::max(y1, q.y);
        }
        // (Within two pixels: sharp tips may be cut or overshot by the midpoint choice.)
        EXPECT_LE(pts[0].y, y0 + 1);
        EXPECT_NEAR(x0, box.left, 2);
        EXPECT_NEAR(y0, box.top, 2);
        EXPECT_NEAR(x1, box.right - 1, 2);
        EXPECT_NEAR(y1, box.bottom - 1, 2);
    }
}

TEST(EllipseOutline, ArcRunsBetweenItsTwoPoints) {
    const RECT rc{0, 0, 200, 120};
    ATransform t;
    t.Rotate(0.4, 100, 60);
    CArray<POINT> all, arc;
    CEllipse::MidPointEllipse(rc, t, all);
    struct Case {
        double a1, a2;
        double share;  // expected share of the outline
    } cases[] = {
        {0.0, kPi / 2, 0.25}, {kPi / 2, 0.0, 0.75}, {-kPi / 4, kPi / 4, 0.25}, {1.0, 1.0, 1.0}};
    for (const Case& c : cases) {
        CEllipse::MidPointArc(rc, t, c.a1, c.a2, arc);
        ASSERT_GT(arc.GetSize(), 0);
        POINTD p1, p2;
        ASSERT_EQ(CEllipse::EllipsePoint(rc, t, static_cast<const POINTD*>(nullptr), c.a1, p1), 1);
        ASSERT_EQ(CEllipse::EllipsePoint(rc, t, static_cast<const POINTD*>(nullptr), c.a2, p2), 1);
        EXPECT_LT(std::hypot(arc[0].x + 0.5 - p1.x, arc[0].y + 0.5 - p1.y), 1.0);
        if (c.share < 1.0) {
            const POINT e = arc[arc.GetSize() - 1];
            EXPECT_LT(std::hypot(e.x + 0.5 - p2.x, e.y + 0.5 - p2.y), 1.0);
        }
        // Which way round: the share of the outline tells a sweep from its complement.
        EXPECT_NEAR(double(arc.GetSize()) / double(all.GetSize()), c.share, 0.05);
        const auto set = AsSet(all);
        for (const POINT& p : arc) ASSERT_TRUE(set.count({p.x, p.y}));
    }
}

TEST(EllipseOutline, SegmentsAndParallelograms) {
    struct Case {
        POINT a, b;
        int count;
    } cases[] = {{{0, 0}, {5, 2}, 6}, {{5, 2}, {0, 0}, 6},   {{3, -4}, {3, 4}, 9},
                 {{7, 7}, {7, 7}, 1}, {{0, 0}, {-6, -6}, 7}, {{-2, 10}, {1, -1}, 12}};
    for (const Case& c : cases) {
        CArray<POINT> pts;
        EXPECT_EQ(CEllipse::MidPointLine(c.a, c.b, pts), c.count);
        ASSERT_EQ(pts.GetSize(), c.count);
        EXPECT_EQ(pts[0], c.a);
        EXPECT_EQ(pts[c.count - 1], c.b);
        for (INT_PTR i = 1; i < pts.GetSize(); ++i) {
            EXPECT_LE(std::abs(pts[i].x - pts[i - 1].x), 1);
            EXPECT_LE(std::abs(pts[i].y - pts[i - 1].y), 1);
        }
    }
    // Per-row x relative to an origin: rows from the origin's row, the upper end's x above
    // the segment.
    CArray<int> xs;
    EXPECT_EQ(CEllipse::MidPointLine(POINT{10, 2}, POINT{14, 6}, POINT{10, 0}, xs), 7);
    const int want[] = {0, 0, 0, 1, 2, 3, 4};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(xs[i], want[i]);

    const POINT quad[4] = {{0, 0}, {10, 3}, {14, 13}, {4, 10}};
    CArray<POINT> out;
    CEllipse::MidPointParalgram(quad, out);
    ExpectClosedChain(out, "parallelogram");
    const auto set = AsSet(out);
    for (const POINT& q : quad) EXPECT_TRUE(set.count({q.x, q.y}));
}

}  // namespace
