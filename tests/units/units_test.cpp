// Units: display names cut to small buffers, and odd input to the conversions.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <tuple>

#include <kxbase/units.h>

namespace {

// Fault: a small buffer cuts a UTF-8 name inside a character, or the count is not bytes.
TEST(UnitNames, SmallBuffersKeepWholeCharacters) {
    using Case = std::tuple<int, int, const char*>;  // buffer size, count, text
    for (auto [size, count, text] : {Case{1, 0, ""}, Case{3, 0, ""}, Case{4, 3, "像"},
                                     Case{6, 3, "像"}, Case{7, 6, "像素"}, Case{16, 6, "像素"}}) {
        char buf[16];
        std::memset(buf, 'x', sizeof buf);
        EXPECT_EQ(SizeUnitString(buf, size, SIZE_PIXEL), count) << size;
        EXPECT_STREQ(buf, text) << size;
    }
    EXPECT_EQ(SizeUnitString(nullptr, 10, SIZE_MM), 0);
}

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
}

}  // namespace
