// Outlines: closure, 8-connection, symmetry and closeness to the curve of the traced ellipses
// and of arcs cut from them. (Segments, parallelograms and the failure results of the conic,
// bounds and point routines are golden vectors.)
#include <algorithm>
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

using PixelSet = std::set<std::pair<LONG, LONG>>;

PixelSet AsSet(const CArray<POINT>& pts) {
    PixelSet s;
    for (const POINT& p : pts) s.insert({p.x, p.y});
    return s;
}

// Catches gaps (a step longer than one pixel) and repeated neighbours; `closed` also checks
// the step from the last pixel back to the first.
void ExpectChain(const CArray<POINT>& pts, bool closed, const char* what) {
    const INT_PTR n = pts.GetSize();
    ASSERT_GT(n, 0) << what;
    for (INT_PTR i = 0; i + 1 < n || (closed && i < n); ++i) {
        const POINT a = pts[i], b = pts[(i + 1) % n];
        ASSERT_FALSE(a == b) << what << " repeats pixel " << i;
        ASSERT_TRUE(std::abs(a.x - b.x) <= 1 && std::abs(a.y - b.y) <= 1) << what << " gap " << i;
    }
}

TEST(EllipseOutline, AxisAlignedOutlineIsClosedSymmetricAndInside) {
    std::mt19937 rng(21);
    std::uniform_int_distribution<int> pos(0, 500), side(3, 200);
    for (int i = 0; i < 400; ++i) {
        const int l = pos(rng), t = pos(rng);
        const CRect rc(l, t, l + side(rng), t + side(rng));
        CArray<POINT> pts;
        Probe::MidPointEllipse(rc, pts);
        ExpectChain(pts, true, "axis-aligned outline");
        const PixelSet set = AsSet(pts);
        // Mirror images about the centre lines (an even size has its centre between pixels);
        // the top pixel is first and the mirror of the top row is the bottom one.
        for (const POINT& p : pts)
            ASSERT_TRUE(rc.PtInRect(p) && p.y >= pts[0].y &&
                        set.count({rc.left + rc.right - 1 - p.x, p.y}) &&
                        set.count({p.x, rc.top + rc.bottom - 1 - p.y}))
                << "(" << p.x << ", " << p.y << ") outside or without its mirror images";
        EXPECT_EQ(pts[0].y, rc.top) << "misses the tips";
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
        ExpectChain(pts, true, "transformed outline");
        ATransform inv(t);
        inv.Translation(-0.5, -0.5);  // pixels stand for their centres
        ASSERT_EQ(inv.InverseMatrix(), 1);
        ELLPARAM p;
        ASSERT_EQ(CEllipse::GetEllipseParam(rc, inv, p), 1);
        RECT border;
        ASSERT_EQ(CEllipse::GetEllipseBorder(p, border), 1);
        EXPECT_LE(pts[0].y, border.top + 1) << "does not start at the top";
        // Device semi-axes: the singular values of the linear part times the half sizes. Where
        // the tips' radius of curvature (minor^2 / major) is under a pixel, the tips are
        // sharper than the grid: both sides may share pixels and the distance check fails.
        const double n11 = t.eM11 * rc.Width() / 2, n12 = t.eM12 * rc.Width() / 2;
        const double n21 = t.eM21 * rc.Height() / 2, n22 = t.eM22 * rc.Height() / 2;
        const double tr = n11 * n11 + n12 * n12 + n21 * n21 + n22 * n22;
        const double root =
            std::sqrt(std::max(0.0, tr * tr - 4 * std::pow(n11 * n22 - n12 * n21, 2)));
        if (tr - root < std::sqrt((tr + root) / 2) * 2) continue;  // minor^2 / major < 1
        EXPECT_EQ(AsSet(pts).size(), size_t(pts.GetSize())) << "pixel twice, case " << i;
        for (const POINT& q : pts) {
            const double gx = 2 * p.a * q.x + p.b * q.y + p.d, gy = 2 * p.c * q.y + p.b * q.x + p.e;
            // Half a pixel on smooth parts, a little more near tips; a wrong conic is far off,
            // and so is a missing octant bridged by a chord.
            ASSERT_LT(std::fabs(p.Value(q.x, q.y)) / std::hypot(gx, gy), 1.5)
                << "pixel (" << q.x << ", " << q.y << ") off the curve";
        }
    }
}

TEST(EllipseOutline, ArcRunsBetweenItsTwoPointsTheRightWayRound) {
    const RECT rc{0, 0, 200, 120};
    ATransform t;
    t.Rotate(0.4, 100, 60);
    CArray<POINT> all, arc;
    CEllipse::MidPointEllipse(rc, t, all);
    const PixelSet set = AsSet(all);
    const struct {
        double a1, a2, share;  // share: expected part of the whole outline
    } cases[] = {{0.0, kPi / 2, 0.25}, {kPi / 2, 0.0, 0.75}, {-kPi / 4, kPi / 4, 0.25}, {1, 1, 1}};
    for (const auto& c : cases) {
        CEllipse::MidPointArc(rc, t, c.a1, c.a2, arc);
        ExpectChain(arc, c.share == 1, "arc");
        POINTD p1, p2;
        ASSERT_EQ(CEllipse::EllipsePoint(rc, t, static_cast<const POINTD*>(nullptr), c.a1, p1), 1);
        ASSERT_EQ(CEllipse::EllipsePoint(rc, t, static_cast<const POINTD*>(nullptr), c.a2, p2), 1);
        const POINT e = arc[arc.GetSize() - 1];
        EXPECT_LT(std::hypot(arc[0].x + 0.5 - p1.x, arc[0].y + 0.5 - p1.y), 1.0);
        EXPECT_TRUE(c.share == 1 || std::hypot(e.x + 0.5 - p2.x, e.y + 0.5 - p2.y) < 1.0);
        EXPECT_NEAR(double(arc.GetSize()) / double(all.GetSize()), c.share, 0.05);
        for (const POINT& p : arc) ASSERT_TRUE(set.count({p.x, p.y}));
    }
}

}  // namespace
