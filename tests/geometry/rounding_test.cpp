// Integer conversions of out-of-range doubles, directly and through mapped points: saturation
// instead of undefined behaviour.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <kxbase/geometry.h>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

// Fault: a conversion outside the int32 range (or of NaN) is left to the hardware, directly or
// in a mapped point.
TEST(Rounding, OutOfRangeSaturates) {
    // Oracle: clamp the mathematically rounded value into the int32 range; NaN gives 0.
    auto sat = [](double v) {
        return std::isnan(v) ? 0 : static_cast<int>(std::clamp(v, double(kMin), double(kMax)));
    };
    for (double v : {double(NAN), kInf, -kInf, 1e308, -1e308, 2147483646.6, 2147483647.4,
                     -2147483648.4, 4.9e-324}) {
        EXPECT_EQ(static_cast<POINT>(POINTD(v, -v)).x, sat(std::trunc(v))) << v;
        EXPECT_EQ(POINTD(v, 0).GPOINT().x, sat(std::round(v))) << v;
        EXPECT_EQ(CPrecise::PreciseInt(v, 0.0), sat(std::trunc(v))) << v;
        EXPECT_EQ(static_cast<RECT>(RECTD(v, v, v, v)).bottom, sat(std::trunc(v))) << v;
    }
    // A singular or huge map sends non-finite or out-of-range coordinates to the conversion.
    POINT p{5, 6};
    ATransform(0, 0, 0, 0, 0, 0).InverseCalcPoint(p, 0.5);  // NaN coordinates become 0
    EXPECT_EQ(p.x, 0);
    EXPECT_EQ(p.y, 0);
    POINT q{10, 10};
    ATransform(1e308, 0, 0, -1e308, 0, 0).CalcPoint(q, 0.5);
    EXPECT_EQ(q.x, kMax);
    EXPECT_EQ(q.y, kMin);
}

}  // namespace
