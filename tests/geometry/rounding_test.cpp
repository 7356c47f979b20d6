// Integer conversions of out-of-range doubles: saturation instead of undefined behaviour.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <kxbase/geometry.h>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

// Fault: a conversion outside the int32 range (or of NaN) is left to the hardware.
TEST(Rounding, OutOfRangeSaturates) {
    struct Case {
        double v;
        int trunc, half;
    } cases[] = {
        {NAN, 0, 0},
        {kInf, kMax, kMax},
        {-kInf, kMin, kMin},
        {1e308, kMax, kMax},
        {-1e308, kMin, kMin},
        {2147483646.6, 2147483646, 2147483647},
        {2147483647.4, 2147483647, 2147483647},
        {-2147483648.4, kMin, kMin},
        {4.9e-324, 0, 0},
    };
    for (const Case& c : cases) {
        const POINT p = POINTD(c.v, -c.v);
        EXPECT_EQ(p.x, c.trunc) << c.v;
        EXPECT_EQ(POINTD(c.v, 0).GPOINT().x, c.half) << c.v;
        EXPECT_EQ(CPrecise::PreciseInt(c.v, 0.0), c.trunc) << c.v;
        const RECT r = RECTD(c.v, c.v, c.v, c.v);
        EXPECT_EQ(r.bottom, c.trunc) << c.v;
    }
}

}  // namespace
