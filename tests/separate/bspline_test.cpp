// B-spline to Bezier conversion: properties the golden vectors do not pin down (long polygons,
// the inverse mode, agreement of the two point types, bad arguments, the layouts' windows).
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>
#include <vector>

#include <kxbase/separate.h>

namespace {

struct SeparateProbe : SEPARATE {
    using SEPARATE::GetMyBSCtrl;
    using SEPARATE::GetMyEBSCtrl;
};

std::vector<POINTD> RandomPolygon(std::mt19937& rng, int n, double scale) {
    std::uniform_real_distribution<double> u(-scale, scale);
    std::vector<POINTD> p;
    for (int i = 0; i < n; ++i) p.emplace_back(u(rng), u(rng));
    return p;
}

std::vector<POINTD> Convert(const std::vector<POINTD>& in, int mode) {
    std::vector<POINTD> out(4 * in.size());
    int count = -1;
    EXPECT_EQ(
        SEPARATE::BSplineToBezier(in.data(), static_cast<int>(in.size()), out.data(), count, mode),
        1);
    out.resize(static_cast<std::size_t>(count));
    return out;
}

}  // namespace

// Catches weights assigned to the wrong output point, a window that slides by the wrong step,
// or phantom points with the wrong sign: a straight polygon with equal steps must give
// Bezier points equally spaced at thirds of a step.
TEST(BSplineToBezier, EquallySpacedLineGivesPointsAtThirds) {
    std::vector<POINTD> line;
    for (int i = 0; i < 9; ++i) line.emplace_back(3.0 * i - 5.0, -1.5 * i + 2.0);
    const std::vector<POINTD> out = Convert(line, 1);
    ASSERT_EQ(out.size(), 32u);
    for (std::size_t i = 0; i < out.size(); ++i) {
        const double t = static_cast<double>(i / 4) + static_cast<double>(i % 4) / 3.0;
        EXPECT_NEAR(out[i].x, 3.0 * t - 5.0, 1e-9) << i;
        EXPECT_NEAR(out[i].y, -1.5 * t + 2.0, 1e-9) << i;
    }
}

// Catches broken span joins and an unclamped curve: on random polygons each span starts where
// the previous one ended, the curve starts at P0 and ends at Pn-1, and converting a Bezier span
// back (mode 0) restores the window of control points it came from.
TEST(BSplineToBezier, SpansJoinClampToEndsAndInvertBack) {
    std::mt19937 rng(7);
    for (int n : {4, 5, 6, 17, 100}) {
        const std::vector<POINTD> p = RandomPolygon(rng, n, 1000.0);
        const std::vector<POINTD> out = Convert(p, 1);
        ASSERT_EQ(out.size(), static_cast<std::size_t>(4 * (n - 1)));
        EXPECT_NEAR(out.front().x, p.front().x, 1e-8);
        EXPECT_NEAR(out.front().y, p.front().y, 1e-8);
        EXPECT_NEAR(out.back().x, p.back().x, 1e-8);
        EXPECT_NEAR(out.back().y, p.back().y, 1e-8);
        for (std::size_t s = 1; s + 1 < static_cast<std::size_t>(n - 1); ++s) {
            EXPECT_NEAR(out[4 * s].x, out[4 * s - 1].x, 1e-8) << n << " span " << s;
            EXPECT_NEAR(out[4 * s].y, out[4 * s - 1].y, 1e-8) << n << " span " << s;
            // Span s (not the first or last) comes from the window P(s-1)..P(s+2).
            const std::vector<POINTD> back =
                Convert({out.begin() + 4 * s, out.begin() + 4 * s + 4}, 0);
            for (int j = 0; j < 4; ++j) {
                EXPECT_NEAR(back[j].x, p[s - 1 + j].x, 1e-7) << n << " span " << s;
                EXPECT_NEAR(back[j].y, p[s - 1 + j].y, 1e-7) << n << " span " << s;
            }
        }
    }
}

// Catches the integer form computing different sums from the double form, or rounding other
// than half away from zero: every integer result is the half-away rounding of the double one.
TEST(BSplineToBezier, IntegerFormIsRoundedDoubleForm) {
    std::mt19937 rng(11);
    std::uniform_int_distribution<int> u(-5000, 5000);
    for (int mode : {0, 1}) {
        for (int trial = 0; trial < 200; ++trial) {
            const int n = mode == 0 ? 4 : 4 + trial % 9;
            std::vector<POINT> pi;
            std::vector<POINTD> pd;
            for (int i = 0; i < n; ++i) {
                pi.push_back({u(rng), u(rng)});
                pd.emplace_back(pi.back());
            }
            std::vector<POINT> oi(4 * n);
            int count = 0;
            ASSERT_EQ(SEPARATE::BSplineToBezier(pi.data(), n, oi.data(), count, mode), 1);
            const std::vector<POINTD> od = Convert(pd, mode);
            ASSERT_EQ(static_cast<std::size_t>(count), od.size());
            auto round = [](double v) { return static_cast<LONG>(v > 0 ? v + 0.5 : v - 0.5); };
            for (int i = 0; i < count; ++i) {
                EXPECT_EQ(oi[i].x, round(od[i].x)) << mode << " " << trial << " " << i;
                EXPECT_EQ(oi[i].y, round(od[i].y)) << mode << " " << trial << " " << i;
            }
        }
    }
}

// Catches an undefined double-to-int conversion (UBSan) or wrap-around: sums beyond the 32-bit
// range saturate to LONG's limits.
TEST(BSplineToBezier, IntegerFormSaturatesOutOfRangeSums) {
    const POINT in[4] = {{INT_MAX, INT_MIN}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}, {0, 0}};
    POINT out[4];
    int count = 0;
    ASSERT_EQ(SEPARATE::BSplineToBezier(in, 4, out, count, 0), 1);
    // 6*B0 - 7*B1 + 2*B2 is about +-3.2e10 on each axis.
    EXPECT_EQ(out[0].x, INT_MAX);
    EXPECT_EQ(out[0].y, INT_MIN);
}

// Catches missing argument checks, writes on failure, and an int overflow of 4 * (n - 1).
TEST(BSplineToBezier, BadArgumentsFailWithoutWriting) {
    POINTD in[5] = {{0, 0}, {1, 1}, {2, 0}, {3, 1}, {4, 0}};
    POINTD out[16];
    POINT ini[5] = {};
    POINT outi[16];
    struct Case {
        const char* what;
        bool nullIn, nullOut;
        int n, mode;
    } cases[] = {
        {"mode 1, n = 3", false, false, 3, 1},  {"mode 1, n = 0", false, false, 0, 1},
        {"mode 1, n < 0", false, false, -4, 7}, {"mode 1, n too large", false, false, INT_MAX, 1},
        {"mode 0, n = 3", false, false, 3, 0},  {"mode 0, n = 5", false, false, 5, 0},
        {"null input", true, false, 4, 1},      {"null output", false, true, 4, 1},
    };
    for (const Case& c : cases) {
        int count = -9;
        out[0] = POINTD(42, 42);
        outi[0] = {42, 42};
        EXPECT_EQ(SEPARATE::BSplineToBezier(c.nullIn ? nullptr : in, c.n, c.nullOut ? nullptr : out,
                                            count, c.mode),
                  0)
            << c.what;
        EXPECT_EQ(SEPARATE::BSplineToBezier(c.nullIn ? nullptr : ini, c.n,
                                            c.nullOut ? nullptr : outi, count, c.mode),
                  0)
            << c.what;
        EXPECT_EQ(count, -9) << c.what;
        EXPECT_EQ(out[0].x, 42.0) << c.what;
        EXPECT_EQ(outi[0].x, 42) << c.what;
    }
}

// Catches layouts whose windows drift from the converter's: weighting each window of
// GetMyBSCtrl must reproduce the converter's spans exactly, and GetMyEBSCtrl's windows are
// those of the same sequence with P0 and Pn-1 replaced by the phantoms.
TEST(SpanLayout, WindowsMatchTheConverter) {
    std::mt19937 rng(3);
    for (int n : {2, 3, 4, 9}) {
        const std::vector<POINTD> p = RandomPolygon(rng, n, 100.0);
        std::vector<POINTD> bs(p);
        bs.resize(4 * n);
        ASSERT_EQ(SeparateProbe::GetMyBSCtrl(bs.data(), n), 1);
        const POINTD q = POINTD(2 * p[0].x - p[1].x, 2 * p[0].y - p[1].y);
        const POINTD r = POINTD(2 * p[n - 1].x - p[n - 2].x, 2 * p[n - 1].y - p[n - 2].y);
        EXPECT_EQ(bs[0].x, q.x);
        EXPECT_EQ(bs[4 * (n - 1) - 1].y, r.y);
        if (n >= 4) {
            const std::vector<POINTD> spans = Convert(p, 1);
            for (int s = 0; s < n - 1; ++s) {
                // Span 1 of a four-point polygon is the weighting of exactly its window.
                const std::vector<POINTD> one =
                    Convert({bs.begin() + 4 * s, bs.begin() + 4 * s + 4}, 1);
                const POINTD* w = &one[4];
                for (int j = 0; j < 4; ++j) {
                    EXPECT_EQ(w[j].x, spans[4 * s + j].x) << n << " " << s;
                    EXPECT_EQ(w[j].y, spans[4 * s + j].y) << n << " " << s;
                }
            }
        }
        if (n >= 3) {
            std::vector<POINTD> ebs(p);
            ebs.resize(4 * n);
            ASSERT_EQ(SeparateProbe::GetMyEBSCtrl(ebs.data(), n), 1);
            std::vector<POINTD> seq{q};
            for (int i = 1; i < n - 1; ++i) seq.push_back(p[i]);
            seq.push_back(r);
            for (int s = 0; s < n - 2; ++s)
                for (int j = 0; j < 3; ++j) {
                    EXPECT_EQ(ebs[3 * s + j].x, seq[s + j].x) << n << " " << s;
                    EXPECT_EQ(ebs[3 * s + j].y, seq[s + j].y) << n << " " << s;
                }
        }
    }
    POINTD one[4] = {{1, 2}, {3, 4}, {5, 6}, {7, 8}};
    EXPECT_EQ(SeparateProbe::GetMyBSCtrl(one, 1), 0);
    EXPECT_EQ(SeparateProbe::GetMyEBSCtrl(one, 2), 0);
    EXPECT_EQ(SeparateProbe::GetMyBSCtrl(nullptr, 4), 0);
    EXPECT_EQ(SeparateProbe::GetMyEBSCtrl(one, INT_MAX), 0);
    EXPECT_EQ(one[0].x, 1.0);  // failures leave the array alone
    EXPECT_EQ(one[3].y, 8.0);
}

// Catches a fault in the path for large outputs (written around the cache): a polygon long
// enough to take it must give, span by span, what the window alone gives, in both forms.
TEST(BSplineToBezier, LargeOutputsMatchSpanBySpan) {
    std::mt19937 rng(5);
    const int n = 300000;  // 4.8 million points: far above the size that bypasses the cache
    const std::vector<POINTD> p = RandomPolygon(rng, n, 1e4);
    std::vector<POINT> pi;
    for (const POINTD& q : p) pi.push_back({static_cast<LONG>(q.x), static_cast<LONG>(q.y)});
    const std::vector<POINTD> big = Convert(p, 1);
    std::vector<POINT> bigi(4 * n);
    int count = 0;
    ASSERT_EQ(SEPARATE::BSplineToBezier(pi.data(), n, bigi.data(), count, 1), 1);
    ASSERT_EQ(count, 4 * (n - 1));
    for (int s = 1; s + 2 < n; s += 997) {
        POINTD w[12];
        POINT wi[12];
        ASSERT_EQ(SEPARATE::BSplineToBezier(&p[s - 1], 4, w, count, 1), 1);
        ASSERT_EQ(SEPARATE::BSplineToBezier(&pi[s - 1], 4, wi, count, 1), 1);
        for (int j = 0; j < 4; ++j) {
            EXPECT_EQ(big[4 * s + j].x, w[4 + j].x) << s;
            EXPECT_EQ(big[4 * s + j].y, w[4 + j].y) << s;
            EXPECT_EQ(bigi[4 * s + j], wi[4 + j]) << s;
        }
    }
    EXPECT_NEAR(big.back().x, p.back().x, 1e-7);
    EXPECT_EQ(bigi[4 * (n - 1) - 1], pi.back());
}

// Catches dropped zero terms and values leaking between windows: a non-finite coordinate
// spoils exactly the four spans whose windows hold it (all four points of each, on that axis
// only) and no other span.
TEST(BSplineToBezier, NonFiniteCoordinateSpoilsOnlyItsWindows) {
    for (double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        std::vector<POINTD> p;
        for (int i = 0; i < 9; ++i) p.emplace_back(i, i * i);
        p[4].x = bad;  // P4 sits in the windows of spans 2 to 5 (window s holds P(s-1)..P(s+2))
        const std::vector<POINTD> out = Convert(p, 1);
        for (std::size_t i = 0; i < out.size(); ++i) {
            const std::size_t span = i / 4;
            EXPECT_EQ(std::isfinite(out[i].x), span < 2 || span > 5) << bad << " point " << i;
            EXPECT_TRUE(std::isfinite(out[i].y)) << bad << " point " << i;
        }
    }
}
