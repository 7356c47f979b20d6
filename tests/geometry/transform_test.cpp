// ATransform properties the golden vectors cannot pin down: composition order, inverse round
// trips on random maps, agreement of the array and single-point forms, and decomposition.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include <kxbase/geometry.h>

namespace {

constexpr double kPi = 3.141592653589793;

ATransform RandomMap(std::mt19937_64& rng) {
    std::uniform_real_distribution<double> u(-3.0, 3.0);
    ATransform t;
    t.Rotate(u(rng), u(rng), u(rng));
    t.Scaling(0.2 + std::fabs(u(rng)), 0.2 + std::fabs(u(rng)), u(rng), u(rng));
    t.Shear(u(rng) * 0.3, u(rng) * 0.3, u(rng), u(rng));
    t.Translation(u(rng) * 100, u(rng) * 100);
    return t;
}

// Fault: composition pre-multiplies (new operation applied first) instead of appending.
TEST(ATransform, ComposedMapEqualsStepwiseApplication) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> u(-50.0, 50.0);
    for (int i = 0; i < 200; ++i) {
        ATransform a = RandomMap(rng), b = RandomMap(rng);
        ATransform both = a;
        both.MultMatrix(b);
        const ATransform viaOperator = a * b;
        const ATransform viaFree = static_cast<const TransMatrix&>(a) * b;
        double x = u(rng), y = u(rng), sx = x, sy = y;
        both.CalcPoint(x, y);
        a.CalcPoint(sx, sy);
        b.CalcPoint(sx, sy);
        EXPECT_NEAR(x, sx, 1e-9);
        EXPECT_NEAR(y, sy, 1e-9);
        EXPECT_TRUE(both == viaOperator);
        EXPECT_TRUE(both == viaFree);
    }
}

// Fault: a src overload modifies src or ignores it.
TEST(ATransform, SourceOverloadsStartFromSource) {
    const ATransform src(2, 0, 0, 3, 1, 1);
    ATransform t(9, 9, 9, 9, 9, 9);
    t.Rotate(src, kPi / 2, 0, 0);
    ATransform expect = src;
    expect.Rotate(kPi / 2, 0, 0);
    EXPECT_TRUE(t == expect);
    EXPECT_TRUE(src == ATransform(2, 0, 0, 3, 1, 1));
    t.Reflection(t, -1.0, 2.0, 3.0);  // src aliasing this
    expect.Reflection(-1.0, 2.0, 3.0);
    EXPECT_TRUE(t == expect);
}

// Fault: the single-point inverse, the array inverse and the forward map disagree.
TEST(ATransform, InverseRoundTripsOnRandomMaps) {
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> u(-1000.0, 1000.0);
    for (int i = 0; i < 200; ++i) {
        const ATransform t = RandomMap(rng);
        std::vector<POINTD> pts(5), orig;
        for (auto& p : pts) p = POINTD(u(rng), u(rng));
        orig = pts;
        t.CalcPoints(pts.data(), 5);
        std::vector<POINTD> single = pts;
        for (auto& p : single) t.InverseCalcPoint(p);
        t.InverseCalcPoints(pts.data(), 5);
        for (int k = 0; k < 5; ++k) {
            EXPECT_NEAR(pts[k].x, orig[k].x, 1e-8);
            EXPECT_NEAR(pts[k].y, orig[k].y, 1e-8);
            EXPECT_NEAR(single[k].x, orig[k].x, 1e-8);
            EXPECT_NEAR(single[k].y, orig[k].y, 1e-8);
        }
        double d = 3.5;
        t.CalcDist(d);
        t.InverseCalcDist(d);
        EXPECT_GE(d, 0.0);
    }
}

// Fault: the array forms (with their axis-aligned fast path) round differently from the
// single-point forms, or the grouped form miscounts skipped polylines.
TEST(ATransform, ArrayFormsMatchSinglePointForms) {
    const ATransform maps[] = {ATransform(), ATransform(0.5, 0, 0, -2, 3.25, -1),
                               ATransform(0.6, 0.8, -0.8, 0.6, 1, 2)};
    const int counts[] = {2, 0, -3, 3};
    for (const ATransform& t : maps) {
        std::vector<POINT> ip = {{3, -3}, {7, 1}, {-5, 9}, {100, -100}, {1, 1}, {42, 42}};
        std::vector<POINTD> dp;
        std::vector<POINTF> fp;
        for (const POINT& p : ip) {
            dp.emplace_back(p);
            fp.push_back(POINTF{static_cast<float>(p.x), static_cast<float>(p.y)});
        }
        std::vector<POINT> ie = ip;
        std::vector<POINTD> de = dp;
        std::vector<POINTF> fe = fp;
        for (int k = 0; k < 5; ++k) {  // 2 + 0 + 0 + 3 points; the sixth stays
            t.CalcPoint(ie[k], 0.5);
            t.CalcPoint(de[k]);
            t.CalcPoint(fe[k]);
        }
        t.CalcPointPoints(ip.data(), counts, 4, 0.5);
        t.CalcPointPoints(dp.data(), counts, 4);
        t.CalcPointPoints(fp.data(), counts, 4);
        for (int k = 0; k < 6; ++k) {
            EXPECT_EQ(ip[k].x, ie[k].x);
            EXPECT_EQ(ip[k].y, ie[k].y);
            EXPECT_EQ(dp[k].x, de[k].x);
            EXPECT_EQ(dp[k].y, de[k].y);
            EXPECT_EQ(fp[k].x, fe[k].x);
            EXPECT_EQ(fp[k].y, fe[k].y);
        }
    }
}

// Fault: non-finite results reach an integer conversion unguarded.
TEST(ATransform, SingularAndHugeMapsStayDefined) {
    const ATransform zero(0, 0, 0, 0, 0, 0);
    POINT p{5, 6};
    zero.InverseCalcPoint(p, 0.5);  // NaN coordinates become 0
    EXPECT_EQ(p.x, 0);
    EXPECT_EQ(p.y, 0);
    std::vector<POINT> pts = {{1, 2}};
    zero.InverseCalcPoints(pts.data(), 1, 0.5);
    EXPECT_EQ(pts[0].x, 1);
    const ATransform huge(1e308, 0, 0, -1e308, 0, 0);
    POINT q{10, 10};
    huge.CalcPoint(q, 0.5);
    EXPECT_EQ(q.x, 2147483647);
    EXPECT_EQ(q.y, -2147483647 - 1);
}

// Fault: the three parts of a decomposition do not recompose to the map. The translation
// formula recomposes the offsets only for centres at the origin; the linear part always.
TEST(ATransform, ResolutionRecomposes) {
    std::mt19937_64 rng(3);
    std::uniform_real_distribution<double> s(0.2, 5.0), a(-3.0, 3.0), c(-20.0, 20.0);
    int decomposed = 0;
    for (int i = 0; i < 300; ++i) {
        ATransform t;
        t.Scaling(s(rng), s(rng), c(rng), c(rng));
        t.Translation(c(rng), c(rng));
        t.Rotate(a(rng), c(rng), c(rng));
        const bool origin = i % 2 == 0;
        const POINTD p1 = origin ? POINTD() : POINTD(c(rng), c(rng));
        const POINTD p2 = origin ? POINTD() : POINTD(c(rng), c(rng));
        ATransform sc, off, rot;
        if (!t.Resolution(p1, p2, &sc, &off, &rot)) continue;
        ++decomposed;
        const ATransform back = sc * off * rot;
        EXPECT_NEAR(back.eM11, t.eM11, 1e-9);
        EXPECT_NEAR(back.eM12, t.eM12, 1e-9);
        EXPECT_NEAR(back.eM21, t.eM21, 1e-9);
        EXPECT_NEAR(back.eM22, t.eM22, 1e-9);
        if (origin) {
            EXPECT_NEAR(back.eDx, t.eDx, 1e-8);
            EXPECT_NEAR(back.eDy, t.eDy, 1e-8);
        }
    }
    EXPECT_GT(decomposed, 250);
}

}  // namespace
