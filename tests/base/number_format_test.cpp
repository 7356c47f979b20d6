// Number helpers: the fast value path against its text, and huge and non-finite input to the
// text, integer and zoom helpers.
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
// rounding, around the magnitude where the fast path hands over to the general one, and for
// huge and non-finite values.
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
    const struct {
        double v;
        const char* text;
    } cases[] = {{3e9 + 0.25, "3000000000.25000000"},
                 {-4294967296.5, "-4294967296.50000000"},
                 {1e300, "9223372036854775807"},
                 {-kInf, "-9223372036854775808"},
                 {NAN, "0"},
                 {4.9e-324, "0"}};
    for (const auto& c : cases) {
        EXPECT_STREQ(ZelFloatPrecisionString(c.v, 8, 1).GetString(), c.text) << c.v;
        EXPECT_EQ(ZelFloatPrecision(c.v, 8, 1), std::strtod(c.text, nullptr)) << c.v;
    }
    EXPECT_EQ(ZelFloor(1e15 + 0.5), 1e15);  // integer part beyond 32 bits keeps its value
}

// Fault: integer conversions overflow at their limits instead of saturating, or a zoom step
// leaves the ratio out of range (or non-finite) for odd input.
TEST(ZelOddInput, IntegersAndZoomRatiosSaturate) {
    EXPECT_EQ(ZelFloatToInt(NAN, 1), 0);
    EXPECT_EQ(ZelFloatToInt(3e9, 0), std::numeric_limits<int>::max());
    EXPECT_EQ(ZelFloatToINT64(-kInf, 1), std::numeric_limits<INT64>::min());
    EXPECT_EQ(ZelFloatToINT64(9.3e18, 0), std::numeric_limits<INT64>::max());
    EXPECT_EQ(ZelFloatToDWORD(5e9, 1), 4294967295u);
    EXPECT_EQ(ZelFloatToUINT64(1e20, 0), std::numeric_limits<UINT64>::max());
    EXPECT_EQ(ZelFloatToUINT64(NAN, 0), 0u);
    // Zoom steps keep the ratio within 1/20000 .. 100 whatever they are given.
    for (double r : {-5.0, 0.0, 1e-300, 4.9e-324, 1e300, kInf, -kInf, double(NAN)})
        for (auto step : {ZelZoomNormalRatio, ZelZoomInRatio, ZelZoomOutRatio}) {
            double x = r;
            step(x);
            EXPECT_TRUE(x >= 1.0 / 20000 && x <= 100.0) << r << " -> " << x;
        }
}

}  // namespace
