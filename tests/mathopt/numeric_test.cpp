// Resampling maps, fractions and print geometry: invariants that tie the operations
// together, and out-of-domain inputs that must give their documented results (the
// sanitizer build turns any undefined conversion or division here into a failure).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(Resample, LineRunsCoverTheDestinationAndAgreeWithMapsAndPositions) {
    for (UINT src = 1; src <= 40; ++src) {
        for (UINT dst = 1; dst <= 90; ++dst) {
            std::vector<UINT> counts(src), starts(src), seg(src), segMap(src);
            AMathOpt::ResampleLine(src, dst, counts.data());
            AMathOpt::ResampleLineMap(src, dst, starts.data());
            AMathOpt::ResampleSegCount(src, dst, 0, src, seg.data());
            AMathOpt::ResampleSegMap(src, dst, 0, src, segMap.data());
            ASSERT_EQ(std::accumulate(counts.begin(), counts.end(), 0u), dst) << src << "->" << dst;
            ASSERT_EQ(seg, counts) << src << "->" << dst;
            ASSERT_EQ(segMap, starts) << src << "->" << dst;
            UINT at = 0;
            for (UINT i = 0; i < src; ++i) {
                ASSERT_EQ(starts[i], at);
                UINT start = 0;
                ASSERT_EQ(AMathOpt::ResamplePosition(src, dst, i, &start), counts[i]);
                ASSERT_EQ(start, at);
                ASSERT_EQ(AMathOpt::ResamplePosition(src, dst, i), at);
                at += counts[i];
            }
        }
    }
}

TEST(Resample, PositionsPastTheLineAndWrappingSegmentsStayDefined) {
    // Boundaries beyond 32 bits wrap instead of converting out of range.
    const UINT big = 0xFFFFFFFFu;
    EXPECT_EQ(AMathOpt::ResamplePosition(3, 7, big), static_cast<UINT>(UINT64{big} * 7 / 3));
    UINT start = 0;
    AMathOpt::ResamplePosition(2, 0xFFFFFFFEu, big, &start);
    // The first run of a segment starts from the wrapped 32-bit product (hosts rely on it).
    // Here 2^31 * 2 wraps to 0, so the first run is B(3) - 0 = 2^31, not B(3) - B(2).
    UINT c[2];
    AMathOpt::ResampleSegCount(3, 0x80000000u, 2, 4, c);
    EXPECT_EQ(c[0], 0x80000000u);
    EXPECT_EQ(c[1], static_cast<UINT>(UINT64{0x80000000u} * 4 / 3) - 0x80000000u);
    AMathOpt::ResampleLine(5, 7, nullptr);  // null arrays are ignored
    AMathOpt::ResampleSegMap(5, 7, 3, 2, nullptr);
}

TEST(Fractions, ZeroDivisorsGiveTheDocumentedWords) {
    EXPECT_EQ(AMathOpt::SimpleFraction(0), 0u);
    EXPECT_EQ(AMathOpt::SimpleFraction(UINT64{5} << 32), (UINT64{1} << 32));  // 5/0 -> 1/0
    EXPECT_EQ(AMathOpt::SimpleFraction(7), 1u);                               // 0/7 -> 0/1
    EXPECT_EQ(AMathOpt::ScaleMultiply(UINT64{3} << 32, 5), 0u);               // both products 0
    EXPECT_EQ(AMathOpt::ScaleMultiply(0x0001000000010000u, 0x0001000000010000u), 0u);  // wraps
    EXPECT_EQ(AMathOpt::CommonMultiple(0, 0), 0u);
}

TEST(Fractions, DoubleToFractionFindsSmallRatiosAndSurvivesBadLimits) {
    for (UINT64 n = 1; n <= 12; ++n)
        for (UINT64 d = 1; d <= 12; ++d) {
            if (std::gcd(n, d) != 1) continue;
            const double x = static_cast<double>(n) / static_cast<double>(d);
            EXPECT_EQ(AMathOpt::DoubleToFraction(x, 100), n << 32 | d) << n << "/" << d;
        }
    EXPECT_EQ(AMathOpt::DoubleToFraction(kNaN, 10), 0u);
    EXPECT_EQ(AMathOpt::DoubleToFraction(-kInf, 10), 0u);
    EXPECT_EQ(AMathOpt::DoubleToFraction(kInf, 10), (UINT64{1} << 32) | 0xFFFFFFFFu);
    // A NaN or negative limit searches once (bound 1): 1 over trunc(1/x) or the next one up.
    EXPECT_EQ(AMathOpt::DoubleToFraction(0.3, kNaN), AMathOpt::DoubleToFraction(0.3, 0));
    EXPECT_EQ(AMathOpt::DoubleToFraction(0.3, -5), (UINT64{1} << 32) | 3u);
}

// ---- print geometry ------------------------------------------------------------------------

/// Steps of `pixels` pixels by walking the pattern pixel by pixel.
UINT64 WalkWidth(const RASTER_FRACTION_PRINTINFO& p, UINT pixels) {
    UINT64 steps = 0;
    UINT i = 0;
    for (; i < pixels && i < p.leadCount; ++i) steps += p.stepFirst;
    for (UINT k = 0; i < pixels; ++i, ++k) {
        const UINT inPeriod = k % (p.secondCount + p.firstCount);
        steps += inPeriod < p.secondCount ? p.stepSecond : p.stepFirst;
    }
    return steps;
}

TEST(PrintGeometry, WidthFormulaMatchesAPixelWalkForBuiltPatterns) {
    const double step = 0.0254;
    for (double dpi : {333.0, 450.0, 600.0, 720.0, 777.0, 900.0, 999.0}) {
        for (ULONG position : {0u, 1u, 2u, 3u, 4u, 7u, 100u, 12345u}) {
            for (int roundUp : {0, 1}) {
                RASTER_FRACTION_PRINTINFO p{};
                if (!AMathOpt::raster_fraction_printinfo(p, position, dpi, step, roundUp, 1))
                    continue;
                ASSERT_TRUE(p.IsValid());
                if (p.stepFirst == p.stepSecond) continue;
                for (UINT w : {0u, 1u, 2u, 5u, 17u, 100u, 1001u})
                    ASSERT_EQ(AMathOpt::raster_width_from_image(p, w), WalkWidth(p, w))
                        << dpi << " dpi, position " << position << ", " << w << " px";
                // The pattern prints the requested resolution where the ratio is exact.
                const double real = AMathOpt::raster_fraction_correct_resolution(p, step);
                EXPECT_NEAR(real, dpi, dpi * 1e-3) << dpi;
            }
        }
    }
}

TEST(PrintGeometry, RefusesNonFiniteAndOutOfRangeInputsWithAZeroPattern) {
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
    // Values the 8-decimal text cannot carry come back unrounded.
    EXPECT_EQ(AMathOpt::FrequencyToSpeed(0, 10000), kInf);
    EXPECT_TRUE(std::isnan(AMathOpt::FrequencyToResolution(0, 0)));
    EXPECT_EQ(AMathOpt::raster_control_resolution_max(1e-9), 25.4 / 1e-9);
}

TEST(PrintGeometry, WrappingCountsStayDefined) {
    // A "valid" pattern whose period length wraps to 0 and whose step sum wraps.
    const RASTER_FRACTION_PRINTINFO p{3, 2, 0, 0x80000000u, 0x80000000u};
    ASSERT_TRUE(p.IsValid());
    EXPECT_EQ(AMathOpt::raster_width_from_image(p, 0x80000005u), 2u * 0x80000000u + 3u * 5u);
    const RASTER_FRACTION_PRINTINFO q{1, 1, 0, 0x80000000u, 0x80000000u};
    EXPECT_EQ(AMathOpt::raster_fraction_correct_resolution(q, 0.0254), kInf);
}

}  // namespace
