// Conic parameters and points beyond the golden vectors: ray points lie on the conic and on
// their ray, and the documented results for inputs without an ellipse.
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <kxbase/ellipse/ellipse.h>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Probe : CEllipse {
    using CEllipse::PrecisePoint;
    using CEllipse::RotateRect;
};

TEST(EllipseParam, RayPointLiesOnTheConicAndOnItsRay) {
    // Catches a wrong root (the far side of the ellipse), a sign slip in the general ray
    // coefficients, or a swapped horizontal/vertical case.
    std::mt19937 rng(31);
    std::uniform_real_distribution<double> pos(-1000, 1000), side(10, 400), ang(-7, 7), k(-2, 2);
    for (int i = 0; i < 2000; ++i) {
        const double l = pos(rng), t = pos(rng);
        const RECTD rc(l, t, l + side(rng), t + side(rng));
        ATransform inv(k(rng), k(rng), k(rng), k(rng), pos(rng), pos(rng));
        // Keep the conic well conditioned: nearly singular maps make it a needle.
        if (std::fabs(inv.eM11 * inv.eM22 - inv.eM12 * inv.eM21) < 0.3) continue;
        inv.InverseMatrix();
        ELLPARAM p;
        ASSERT_EQ(CEllipse::GetEllipseParam(rc, inv, p), 1);
        POINTD c, q;
        ASSERT_EQ(CEllipse::GetEllBoundary(p, static_cast<POINTD*>(nullptr), nullptr, &c), 1);
        const double a = i % 7 == 0 ? (i % 4) * kPi / 2 : ang(rng);
        ASSERT_EQ(CEllipse::EllipsePoint(p, &c, a, q), 1);
        const double gx = 2 * p.a * q.x + p.b * q.y + p.d, gy = 2 * p.c * q.y + p.b * q.x + p.e;
        EXPECT_LT(std::fabs(p.Value(q.x, q.y)) / std::hypot(gx, gy), 1e-6) << "off the conic";
        // On the ray, on the side the angle points to.
        const double dx = q.x - c.x, dy = q.y - c.y;
        EXPECT_GT(dx * std::cos(a) + dy * std::sin(a), 0.999 * std::hypot(dx, dy)) << "angle " << a;
    }
}

TEST(EllipseParam, InputsWithoutAnEllipseFailWithoutWriting) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const ELLPARAM circle(1, 0, 1, 0, 0, -100);
    POINTD out(7, 7), c;
    for (double a : {nan, inf, -inf}) {
        EXPECT_EQ(CEllipse::EllipsePoint(circle, static_cast<const POINTD*>(nullptr), a, out), 0);
        EXPECT_EQ(out.x, 7) << "point written for angle " << a;
    }
    const ELLPARAM notFinite(1, 0, 1, nan, 0, -1);
    EXPECT_EQ(CEllipse::GetEllBoundary(notFinite, static_cast<POINTD*>(nullptr), nullptr, &c), 0);
    // Transform overloads on empty or inverted rectangles write nothing.
    RECT border{1, 2, 3, 4};
    POINT pts[4] = {{9, 9}, {9, 9}, {9, 9}, {9, 9}}, centre{9, 9};
    EXPECT_EQ(CEllipse::GetEllipseBorder(RECT{5, 5, 5, 9}, ATransform(), border), 0);
    EXPECT_EQ(CEllipse::GetEllBoundary(RECT{5, 5, 0, 9}, ATransform(), pts, &border, &centre), 0);
    EXPECT_TRUE(border == (RECT{1, 2, 3, 4}) && pts[0] == (POINT{9, 9}) && centre == pts[0]);
    // A turned border of a rectangle without width has no extreme points: the integer centre
    // with the two-pixel margin.
    CEllipse::GetEllipseBorder(RECT{10, 10, 10, 30}, 0.5, border);
    EXPECT_EQ(border, (RECT{8, 18, 12, 22}));
    // Rounding saturates instead of overflowing; NaN gives 0.
    POINT pt;
    Probe::PrecisePoint(1e300, nan, pt);
    EXPECT_EQ(pt, (POINT{INT32_MAX, 0}));
    Probe::PrecisePoint(-1e300, -0.5, pt);
    EXPECT_EQ(pt, (POINT{INT32_MIN, 0}));
    // Turned corners of a non-finite angle are defined (the quadrant code is 0).
    EXPECT_EQ(Probe::RotateRect(RECT{0, 0, 10, 6}, nan, pts), 0);
}

}  // namespace
