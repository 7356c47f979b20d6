// Units: display names cut to small buffers, conversion round trips and odd input.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include <kxbase/units.h>

namespace {

// Fault: a small buffer cuts a UTF-8 name inside a character, or the count is not bytes.
TEST(UnitNames, SmallBuffersKeepWholeCharacters) {
    char buf[16];
    EXPECT_EQ(SizeUnitString(buf, sizeof buf, SIZE_PIXEL), 6);  // two 3-byte characters
    EXPECT_STREQ(buf, "像素");
    const struct {
        int size, count;
        const char* text;
    } cases[] = {{1, 0, ""}, {3, 0, ""}, {4, 3, "像"}, {6, 3, "像"}, {7, 6, "像素"}};
    for (const auto& c : cases) {
        std::memset(buf, 'x', sizeof buf);
        EXPECT_EQ(SizeUnitString(buf, c.size, SIZE_PIXEL), c.count) << c.size;
        EXPECT_STREQ(buf, c.text) << c.size;
    }
    CString text("stale");
    EXPECT_EQ(ResUnitString(text, RES_DPCMM), static_cast<int>(std::strlen("像素/丝米")));
    EXPECT_EQ(text, "像素/丝米");
    EXPECT_EQ(ResUnitString(text, static_cast<AResUnit>(6)), 0);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(SizeUnitString(nullptr, 10, SIZE_MM), 0);
}

// Fault: a unit's factor is inverted or mismatched between ToMM and ToPIXEL.
TEST(UnitConversion, MillimetresAndPixelsRoundTrip) {
    for (AResUnit ru : {RES_DPI, RES_DPCMM, RES_DPMM, RES_DPCM, RES_DPM})
        for (ASizeUnit su : {SIZE_CMM, SIZE_MM, SIZE_CM, SIZE_M, SIZE_INCH}) {
            const double res = ConvertRes(600, RES_DPI, ru, 0);
            const double px = ToPIXEL(3.0, res, ru, su);
            const double mm = ToMM(px, res, ru, SIZE_PIXEL);
            EXPECT_NEAR(mm, ToMM(3.0, res, ru, su), 1e-5) << ru << " " << su;
        }
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
