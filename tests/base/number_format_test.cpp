// Number helpers: the fast value path against its text, and odd input to the zoom steps.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include <kxbase/base/number_format.h>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

// Fault: ZelFloatPrecision's direct division disagrees with reading back its text (it must be
// the nearest double to that text, bit for bit). The sign-free fast path drifts first where
// its steps are least symmetric: within a few ulps or within the 1e-10 epsilon of an integer
// or of a rounding half-way point, of either sign, at every place count, with and without
// rounding, and around the magnitude where the fast path hands over to the general one. (Huge
// and non-finite values are golden vectors.)
TEST(ZelFloatPrecision, EqualsParsedText) {
    const double bases[] = {0.0, 1.0, 2.5, 7.0, 123.0, 899999.0, 900000.0, 900001.0, 4503599.0};
    const double offsets[] = {0.0, 1e-10, 9e-11, 1.1e-10, 5e-9, 0.5e-8, 0.49999999e-8, 0.5};
    for (double base : bases)
        for (double off : offsets)
            for (double sign : {1.0, -1.0})
                for (double towards : {-1.0, 1.0}) {
                    double v = sign * (base + towards * off);
                    for (int ulp = 0; ulp < 3; ++ulp, v = std::nextafter(v, sign * kInf))
                        for (int d = 0; d <= 11; ++d)
                            for (int r = 0; r <= 1; ++r) {
                                const CString text = ZelFloatPrecisionString(v, d, r);
                                const double back = std::strtod(text.GetString(), nullptr);
                                const double got = ZelFloatPrecision(v, d, r);
                                ASSERT_EQ(std::signbit(got), std::signbit(back)) << v << " " << d;
                                ASSERT_EQ(got, back)
                                    << v << " d=" << d << " r=" << r << " " << text.GetString();
                            }
                }
}

// Fault: a zoom step leaves the ratio out of range (or non-finite) for odd input. (The
// saturating integer conversions are golden vectors.)
TEST(ZelOddInput, ZoomRatiosStayInRange) {
    // Zoom steps keep the ratio within 1/20000 .. 100 whatever they are given.
    for (double r : {-5.0, 0.0, 1e-300, 4.9e-324, 1e300, kInf, -kInf, double(NAN)})
        for (auto step : {ZelZoomNormalRatio, ZelZoomInRatio, ZelZoomOutRatio}) {
            double x = r;
            step(x);
            EXPECT_TRUE(x >= 1.0 / 20000 && x <= 100.0) << r << " -> " << x;
        }
}

}  // namespace
