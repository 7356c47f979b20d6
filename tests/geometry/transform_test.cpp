// ATransform properties beyond single examples: composition order, source overloads and
// inverse round trips on random maps, grouped against single-point forms, and decomposition.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include <kxbase/geometry.h>

#include "geometry/point_map_p.h"

namespace {

ATransform RandomMap(std::mt19937_64& rng) {
    std::uniform_real_distribution<double> u(-3.0, 3.0);
    ATransform t;
    t.Rotate(u(rng), u(rng), u(rng));
    t.Scaling(0.2 + std::fabs(u(rng)), 0.2 + std::fabs(u(rng)), u(rng), u(rng));
    t.Shear(u(rng) * 0.3, u(rng) * 0.3, u(rng), u(rng));
    t.Translation(u(rng) * 100, u(rng) * 100);
    return t;
}

// Fault: composition pre-multiplies (new operation applied first) instead of appending, the
// operators or the src overloads disagree with the plain calls, or the single-point and array
// inverses do not undo the map.
TEST(ATransform, RandomMapsComposeInOrderAndInvertBack) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> u(-1000.0, 1000.0);
    for (int i = 0; i < 200; ++i) {
        const ATransform a = RandomMap(rng), b = RandomMap(rng);
        ATransform both = a;
        both.MultMatrix(b);
        EXPECT_TRUE(both == a * b);
        EXPECT_TRUE(both == static_cast<const TransMatrix&>(a) * b);
        ATransform viaSrc(9, 9, 9, 9, 9, 9), expect = a;  // src overloads start from src,
        viaSrc.Rotate(a, 0.7, 1, 2);                      // also when src is the object itself
        expect.Rotate(0.7, 1, 2);
        viaSrc.Reflection(viaSrc, -1.0, 2.0, 3.0);
        expect.Reflection(-1.0, 2.0, 3.0);
        EXPECT_TRUE(viaSrc == expect);
        POINTD pts[5], mapped[5], single[5];
        for (int k = 0; k < 5; ++k) pts[k] = mapped[k] = POINTD(u(rng), u(rng));
        both.CalcPoints(mapped, 5);
        std::copy(mapped, mapped + 5, single);
        both.InverseCalcPoints(mapped, 5);
        for (int k = 0; k < 5; ++k) {
            POINTD step = pts[k];
            a.CalcPoint(step), b.CalcPoint(step);
            EXPECT_LT(std::hypot(step.x - single[k].x, step.y - single[k].y), 1e-8);
            both.InverseCalcPoint(single[k]);
            for (const POINTD& back : {mapped[k], single[k]})
                EXPECT_LT(std::hypot(back.x - pts[k].x, back.y - pts[k].y), 1e-7);
        }
    }
}

// Fault: a vector variant of the array map drifts from the portable loop (a fused
// multiply-add, another summation order, a lane mix-up between x and y), or its tail
// handling skips, repeats or overruns points. Every level the processor has runs on the same
// input, all lengths up to 40 (every tail), from an odd offset, with non-finite and signed
// zero coordinates among them; results must be equal bit for bit, and the point past the
// end untouched.
TEST(ATransform, ArrayMapVariantsEqualPortableBitForBit) {
    using kxbase::detail::AffineMap;
    using kxbase::detail::SimdLevel;
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> u(-1e4, 1e4);
    std::vector<POINTD> input(45);
    for (POINTD& p : input) p = POINTD(u(rng), u(rng));
    input[3] = POINTD(INFINITY, -0.0);
    input[7] = POINTD(NAN, 1.0);
    input[20] = POINTD(-0.0, 0.0);
    const ATransform general = RandomMap(rng);
    const AffineMap maps[] = {
        {general.eM11, general.eM12, general.eM21, general.eM22, general.eDx, general.eDy, false},
        {1.0 / 3.0, 0.0, 0.0, -7.25, 0.1, -0.0, true},
        {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, false}};
    const SimdLevel host = kxbase::detail::HostSimdLevel();
    for (const AffineMap& m : maps)
        for (int n = 0; n <= 40; ++n) {
            std::vector<POINTD> expect(input);
            kxbase::detail::MapPointsD(m, expect.data() + 1, n, SimdLevel::kPortable);
            for (SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
                if (level > host) continue;
                std::vector<POINTD> got(input);
                kxbase::detail::MapPointsD(m, got.data() + 1, n, level);
                EXPECT_EQ(std::memcmp(got.data(), expect.data(), got.size() * sizeof(POINTD)), 0)
                    << "level " << static_cast<int>(level) << " n " << n;
            }
        }
}

// Fault: the three parts of a decomposition do not recompose to the map. The translation
// formula recomposes the offsets only for centres at the origin; the linear part always.
TEST(ATransform, ResolutionRecomposes) {
    std::mt19937_64 rng(3);
    std::uniform_real_distribution<double> s(0.2, 5.0), a(-3.0, 3.0), c(-20.0, 20.0);
    int decomposed = 0;
    for (int i = 0; i < 300; ++i) {
        ATransform t, sc, off, rot;
        t.Scaling(s(rng), s(rng), c(rng), c(rng));
        t.Translation(c(rng), c(rng));
        t.Rotate(a(rng), c(rng), c(rng));
        const bool origin = i % 2 == 0;
        POINTD p1, p2;
        if (!origin) p1 = POINTD(c(rng), c(rng)), p2 = POINTD(c(rng), c(rng));
        if (!t.Resolution(p1, p2, &sc, &off, &rot)) continue;
        ++decomposed;
        const ATransform back = sc * off * rot;
        for (double d :
             {back.eM11 - t.eM11, back.eM12 - t.eM12, back.eM21 - t.eM21, back.eM22 - t.eM22})
            EXPECT_NEAR(d, 0.0, 1e-9) << i;
        EXPECT_LT(origin ? std::fabs(back.eDx - t.eDx) + std::fabs(back.eDy - t.eDy) : 0.0, 2e-8);
    }
    EXPECT_GT(decomposed, 250);
}

}  // namespace

// Hosts write `TransMatrix m = xf;` and pass an XFORM where an ATransform is taken; an
// explicit constructor, or fields widened out of order, breaks them.
TEST(ATransform, CopyInitialisedFromXform) {
    const XFORM xf{2.5f, 0.5f, -1.0f, 3.0f, 10.25f, -4.0f};
    const TransMatrix m = xf;
    const auto take = [](const ATransform& t) { return t; };
    const ATransform t = take(xf);
    const double expected[] = {2.5, 0.5, -1.0, 3.0, 10.25, -4.0};
    for (const TransMatrix* r : {&m, static_cast<const TransMatrix*>(&t)}) {
        const double got[] = {r->eM11, r->eM12, r->eM21, r->eM22, r->eDx, r->eDy};
        for (int i = 0; i < 6; ++i) EXPECT_EQ(got[i], expected[i]) << i;
    }
}
