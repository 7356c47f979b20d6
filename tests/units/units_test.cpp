// Units: odd input to the conversions (names cut to small buffers are golden vectors).
#include <gtest/gtest.h>

#include <cmath>

#include <kxbase/units.h>

namespace {

// Fault: NaN, infinite or huge input crashes or escapes as an undefined integer conversion.
TEST(UnitConversion, OddInputStaysDefined) {
    for (double v : {double(NAN), double(INFINITY), -double(INFINITY), 1e308, -1e308, 4.9e-324}) {
        EXPECT_EQ(IsValidRes(v, RES_DPI), 0);
        (void)ToNPIXEL(v, 600, RES_DPI, SIZE_MM);
        (void)ToNPIXEL(10, v, RES_DPCM, SIZE_INCH);
        (void)ConvertSize(v, SIZE_INCH, SIZE_PIXEL, v, RES_DPM, 1);
        const double r = RightRes(v, RES_DPCM);
        EXPECT_TRUE(r >= 0.3937 && r <= 7874.1) << v << " -> " << r;
        CUnitTrans t;
        t.SetParams(v, v, RES_DPI, SIZE_PIXEL);
        (void)t.GetValue(SIZE_PIXEL, 8, 1);
    }
    EXPECT_EQ(SizeUnitString(nullptr, 10, SIZE_MM), 0);
}

}  // namespace
