// B-spline to Bezier conversion: properties the golden vectors do not pin down (long polygons,
// the inverse mode on random spans, agreement of the two point types, bad arguments, and the
// vector variants; the span layouts are golden vectors).
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include <kxbase/separate.h>

#include "geometry/simd_level_p.h"

namespace kxbase::detail {
void BSplineSpansD(const POINTD* in, int n, POINTD* out, SimdLevel level);
}

namespace {

std::vector<POINTD> RandomPolygon(std::mt19937& rng, int n, double scale) {
    std::uniform_real_distribution<double> u(-scale, scale);
    std::vector<POINTD> p;
    for (int i = 0; i < n; ++i) p.emplace_back(std::round(u(rng)), std::round(u(rng)));
    return p;
}

std::vector<POINTD> Convert(const std::vector<POINTD>& in, int mode) {
    std::vector<POINTD> out(4 * in.size());
    int count = -1;
    EXPECT_EQ(SEPARATE::BSplineToBezier(in.data(), int(in.size()), out.data(), count, mode), 1);
    out.resize(static_cast<std::size_t>(count));
    return out;
}

}  // namespace

// Catches broken span joins and an unclamped curve: on random polygons each span starts where
// the previous one ended, the curve starts at P0 and ends at Pn-1, and converting a Bezier span
// back (mode 0) restores the window of control points it came from.
TEST(BSplineToBezier, SpansJoinClampToEndsAndInvertBack) {
    std::mt19937 rng(7);
    for (int n : {4, 5, 6, 17, 100}) {
        const std::vector<POINTD> p = RandomPolygon(rng, n, 1000.0);
        const std::vector<POINTD> out = Convert(p, 1);
        ASSERT_EQ(out.size(), static_cast<std::size_t>(4 * (n - 1)));
        EXPECT_LT(std::hypot(out.front().x - p.front().x, out.front().y - p.front().y), 1e-8);
        EXPECT_LT(std::hypot(out.back().x - p.back().x, out.back().y - p.back().y), 1e-8);
        for (int s = 1; s + 2 < n; ++s) {
            EXPECT_LT(std::hypot(out[4 * s].x - out[4 * s - 1].x, out[4 * s].y - out[4 * s - 1].y),
                      1e-8);
            // Span s (not the first or last) comes from the window P(s-1)..P(s+2).
            const std::vector<POINTD> back = Convert({&out[4 * s], &out[4 * s] + 4}, 0);
            for (int j = 0; j < 4; ++j)
                EXPECT_LT(std::hypot(back[j].x - p[s - 1 + j].x, back[j].y - p[s - 1 + j].y), 1e-7)
                    << n << " span " << s;
        }
    }
}

// Catches a fault in the path for large outputs (written around the cache), or an integer form
// that computes other sums or rounds other than half away from zero: on a long polygon each
// span is what its window alone gives, and every integer result rounds the double one.
TEST(BSplineToBezier, LargeOutputsMatchSpanBySpanAndIntegerFormRounds) {
    std::mt19937 rng(5);
    const int n = 300000;  // 4.8 million points: far above the size that bypasses the cache
    const std::vector<POINTD> p = RandomPolygon(rng, n, 1e4);
    const std::vector<POINT> pi(p.begin(), p.end());
    const std::vector<POINTD> big = Convert(p, 1);
    std::vector<POINT> bigi(4 * n);
    int count = 0;
    ASSERT_EQ(SEPARATE::BSplineToBezier(pi.data(), n, bigi.data(), count, 1), 1);
    ASSERT_EQ(count, 4 * (n - 1));
    auto round = [](double v) { return static_cast<LONG>(v > 0 ? v + 0.5 : v - 0.5); };
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(bigi[i].x == round(big[i].x) && bigi[i].y == round(big[i].y));
    for (int s = 1; s + 2 < n; s += 997) {
        POINTD w[12];
        ASSERT_EQ(SEPARATE::BSplineToBezier(&p[s - 1], 4, w, count, 1), 1);
        for (int j = 0; j < 4; ++j)
            EXPECT_TRUE(big[4 * s + j].x == w[4 + j].x && big[4 * s + j].y == w[4 + j].y) << s;
    }
}

// Catches missing argument checks, writes on failure, an int overflow of 4 * (n - 1), and an
// undefined double-to-int conversion (sums beyond 32 bits saturate to LONG's limits).
TEST(BSplineToBezier, BadArgumentsFailWithoutWritingAndSumsSaturate) {
    POINTD in[4] = {{0, 0}, {1, 1}, {2, 0}, {3, 1}}, out[16];
    POINT outi[16];
    for (int n : {-4, INT_MAX}) {
        int count = -9;
        EXPECT_EQ(SEPARATE::BSplineToBezier(in, n, out, count, 1), 0) << n;
        EXPECT_EQ(count, -9) << n;
    }
    int count = -9;
    EXPECT_EQ(SEPARATE::BSplineToBezier(static_cast<POINTD*>(nullptr), 4, out, count, 1), 0);
    EXPECT_EQ(SEPARATE::BSplineToBezier(in, 4, static_cast<POINTD*>(nullptr), count, 1), 0);
    EXPECT_EQ(count, -9);
    const POINT big[4] = {{INT_MAX, INT_MIN}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}, {0, 0}};
    ASSERT_EQ(SEPARATE::BSplineToBezier(big, 4, outi, count, 0), 1);
    EXPECT_TRUE(outi[0].x == INT_MAX && outi[0].y == INT_MIN);  // 6*B0 - 7*B1 + 2*B2: ~3.2e10
}

// Catches dropped zero terms and values leaking between windows: a non-finite coordinate
// spoils exactly the four spans whose windows hold it (on that axis only) and no other span.
TEST(BSplineToBezier, NonFiniteCoordinateSpoilsOnlyItsWindows) {
    for (double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        std::vector<POINTD> p;
        for (int i = 0; i < 9; ++i) p.emplace_back(i, i * i);
        p[4].x = bad;  // P4 sits in the windows of spans 2 to 5 (window s holds P(s-1)..P(s+2))
        const std::vector<POINTD> out = Convert(p, 1);
        for (std::size_t i = 0; i < out.size(); ++i)
            EXPECT_TRUE(std::isfinite(out[i].x) == (i / 4 < 2 || i / 4 > 5) &&
                        std::isfinite(out[i].y))
                << bad << " point " << i;
    }
}

// Catches a vector variant that drifts from the portable conversion (a fused multiply-add, a
// dropped zero term, another summation order, a lane mix-up) or writes outside its spans:
// every level the processor has runs on the same polygons, short ones with non-finite and
// signed-zero coordinates and one long enough for the portable path's cache-bypassing
// stores; results must be equal bit for bit and the point past the end untouched.
TEST(BSplineToBezier, VariantsEqualPortableBitForBit) {
    using kxbase::detail::SimdLevel;
    std::mt19937 rng(13);
    std::uniform_real_distribution<double> u(-1e5, 1e5);
    for (int n : {4, 5, 6, 7, 8, 9, 17, 33, 600000}) {
        std::vector<POINTD> p(static_cast<std::size_t>(n));
        for (POINTD& q : p) q = POINTD(u(rng), u(rng));
        if (n < 40) {
            p[static_cast<std::size_t>(n) / 2].x = n % 2 ? HUGE_VAL : std::nan("");
            p[0].y = -0.0;
            p[1].y = 0.0;
        }
        const std::size_t size = 4 * static_cast<std::size_t>(n - 1) + 1;
        std::vector<POINTD> expect(size, POINTD(7.0, 7.0));
        kxbase::detail::BSplineSpansD(p.data(), n, expect.data(), SimdLevel::kPortable);
        for (SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
            if (level > kxbase::detail::HostSimdLevel()) continue;
            std::vector<POINTD> got(size, POINTD(7.0, 7.0));
            kxbase::detail::BSplineSpansD(p.data(), n, got.data(), level);
            EXPECT_EQ(std::memcmp(got.data(), expect.data(), size * sizeof(POINTD)), 0)
                << "level " << static_cast<int>(level) << " n " << n;
        }
    }
}
