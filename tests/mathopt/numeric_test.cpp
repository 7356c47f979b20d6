// Resampling maps, fractions and print geometry: out-of-domain inputs must give their
// documented results (the sanitizer build turns any undefined conversion or division here into
// a failure).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <kxbase/mathopt/amathopt.h>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// Fault: 32-bit products are converted out of range instead of wrapping, a zero divisor
// divides, a null array is written, or the fraction search misbehaves on non-finite input.
TEST(ResampleAndFractions, OutOfDomainInputsStayDefined) {
    const UINT big = 0xFFFFFFFFu;
    EXPECT_EQ(AMathOpt::ResamplePosition(3, 7, big), static_cast<UINT>(UINT64{big} * 7 / 3));
    // The first run of a segment starts from the wrapped 32-bit product (hosts rely on it).
    // Here 2^31 * 2 wraps to 0, so the first run is B(3) - 0 = 2^31, not B(3) - B(2).
    UINT c[2];
    AMathOpt::ResampleSegCount(3, 0x80000000u, 2, 4, c);
    EXPECT_EQ(c[0], 0x80000000u);
    EXPECT_EQ(c[1], static_cast<UINT>(UINT64{0x80000000u} * 4 / 3) - 0x80000000u);
    AMathOpt::ResampleLine(5, 7, nullptr);
    AMathOpt::ResampleSegMap(5, 7, 3, 2, nullptr);
    EXPECT_EQ(AMathOpt::SimpleFraction(0), 0u);
    EXPECT_EQ(AMathOpt::SimpleFraction(UINT64{5} << 32), (UINT64{1} << 32));  // 5/0 -> 1/0
    EXPECT_EQ(AMathOpt::ScaleMultiply(UINT64{3} << 32, 5), 0u);               // both products 0
    EXPECT_EQ(AMathOpt::CommonMultiple(0, 0), 0u);
    // DoubleToFraction survives non-finite input and limits.
    EXPECT_EQ(AMathOpt::DoubleToFraction(kNaN, 10), 0u);
    EXPECT_EQ(AMathOpt::DoubleToFraction(-kInf, 10), 0u);
    EXPECT_EQ(AMathOpt::DoubleToFraction(kInf, 10), (UINT64{1} << 32) | 0xFFFFFFFFu);
    // A NaN or negative limit searches once (bound 1): 1 over trunc(1/x) or the next one up.
    EXPECT_EQ(AMathOpt::DoubleToFraction(0.3, kNaN), (UINT64{1} << 32) | 3u);
    EXPECT_EQ(AMathOpt::DoubleToFraction(0.3, -5), (UINT64{1} << 32) | 3u);
}

// Fault: non-finite or out-of-range input builds a pattern, leaves stale fields, or reaches an
// undefined conversion; wrapping counts are not computed modulo 2^32.
TEST(PrintGeometry, RefusesBadInputAndWrapsCounts) {
    struct Case {
        double resolution, step;
    } cases[] = {{600, kNaN}, {kNaN, 0.0254}, {kInf, 0.0254}, {600, kInf},
                 {600, -1},   {-600, 0.0254}, {600, 0},       {1e-12, 0.0254}};
    for (const Case& c : cases) {
        RASTER_FRACTION_PRINTINFO p{1, 1, 1, 1, 1};
        EXPECT_FALSE(AMathOpt::raster_fraction_printinfo(p, 5, c.resolution, c.step, 0, 1))
            << c.resolution << " / " << c.step;
        EXPECT_EQ(p.stepFirst | p.stepSecond | p.leadCount | p.secondCount | p.firstCount, 0u);
    }
    EXPECT_EQ(AMathOpt::raster_control_resolution_max(kNaN), 0.0);
    // A "valid" pattern whose period length wraps to 0 and whose step sum wraps.
    const RASTER_FRACTION_PRINTINFO p{3, 2, 0, 0x80000000u, 0x80000000u};
    ASSERT_TRUE(p.IsValid());
    EXPECT_EQ(AMathOpt::raster_width_from_image(p, 0x80000005u), 2u * 0x80000000u + 3u * 5u);
    const RASTER_FRACTION_PRINTINFO q{1, 1, 0, 0x80000000u, 0x80000000u};
    EXPECT_EQ(AMathOpt::raster_fraction_correct_resolution(q, 0.0254), kInf);
}

}  // namespace
