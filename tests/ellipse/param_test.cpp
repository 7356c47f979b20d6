// Conic, bounds and point routines on inputs without an ellipse: the documented failure
// results, with the caller's outputs left alone.
#include <limits>

#include <gtest/gtest.h>

#include <kxbase/ellipse/ellipse.h>

namespace {

struct Probe : CEllipse {
    using CEllipse::PrecisePoint;
    using CEllipse::RotateRect;
};

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
