// Properties of the span operations over many random rectangles and angles: the layout
// invariants every host relies on, symmetry under half and quarter turns, agreement of the
// angle and transform paths, and the documented results for inputs without a shape.
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <kxbase/ellipse/ellipse.h>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Spans {
    int first = 0;
    CArray<POINT> runs;
    RECT border{0, 0, 0, 0};
};

Spans Ellipse(const RECT& rc, double angle) {
    Spans s;
    s.first = CEllipse::EllipseRasterLine(CRect(rc), angle, s.runs, &s.border);
    return s;
}

Spans Ellipse(const RECT& rc, const ATransform& t) {
    Spans s;
    s.first = CEllipse::EllipseRasterLine(rc, t, s.runs, &s.border);
    return s;
}

// Catches runs written backwards and borders that do not match the runs (a wrong first row,
// an off-by-one right or bottom edge).
void ExpectLayout(const Spans& s, bool borderFromRuns, const char* what) {
    ASSERT_GT(s.runs.GetSize(), 0) << what;
    LONG lo = s.runs[0].x, hi = s.runs[0].y;
    for (const POINT& r : s.runs) {
        ASSERT_LE(r.x, r.y) << what;
        lo = std::min(lo, r.x);
        hi = std::max(hi, r.y);
    }
    if (!borderFromRuns) return;
    EXPECT_EQ(s.border.top, s.first) << what;
    EXPECT_EQ(s.border.bottom, s.first + s.runs.GetSize()) << what;
    EXPECT_EQ(s.border.left, lo) << what;
    EXPECT_EQ(s.border.right, hi + 1) << what;
}

INT64 Area(const Spans& s) {
    INT64 n = 0;
    for (const POINT& r : s.runs) n += INT64{r.y} - r.x + 1;
    return n;
}

bool Same(const Spans& a, const Spans& b) {
    if (a.first != b.first || a.runs.GetSize() != b.runs.GetSize()) return false;
    for (INT_PTR i = 0; i < a.runs.GetSize(); ++i)
        if (!(a.runs[i] == b.runs[i])) return false;
    return true;
}

RECT RandomRect(std::mt19937& rng, int minSide, int maxSide) {
    std::uniform_int_distribution<int> pos(-2000, 2000), side(minSide, maxSide);
    const int l = pos(rng), t = pos(rng);
    return RECT{l, t, l + side(rng), t + side(rng)};
}

bool NearQuarterOrAxis(double a) {
    const double n = std::fmod(std::fmod(a, 2 * kPi) + 2 * kPi, 2 * kPi);
    for (double ref : {0.0, kPi / 2, kPi, 3 * kPi / 2, 2 * kPi})
        if (std::fabs(n - ref) < 0.01) return true;
    return false;
}

TEST(EllipseSpans, LayoutHoldsForRandomRectanglesAndAngles) {
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> ang(-10.0, 10.0);
    for (int i = 0; i < 3000; ++i) {
        const RECT rc = RandomRect(rng, 1, 400);
        double a = ang(rng);
        if (i % 5 == 0) a = (i % 4) * kPi / 2;  // the axis-aligned and exchanged profiles
        const Spans s = Ellipse(rc, a);
        // The quarter-turn case states its own border (the turned rectangle).
        const double n = std::fmod(std::fmod(a, 2 * kPi) + 2 * kPi, 2 * kPi);
        const bool quarter = std::fabs(n - kPi / 2) < 0.005 || std::fabs(n - 3 * kPi / 2) < 0.005;
        const LONG w = rc.right - rc.left, h = rc.bottom - rc.top;
        ExpectLayout(s, !(quarter && w != h && w >= 3 && h >= 3), "random ellipse");
    }
}

TEST(EllipseSpans, TurnedSpansStayInsideTheTurnedBorder) {
    // Catches a wrong centre or semi-axis in the general path: every run must lie inside
    // the box GetEllipseBorder computes independently (with its two-pixel margin).
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> ang(0.0, 2 * kPi);
    for (int i = 0; i < 2000; ++i) {
        const RECT rc = RandomRect(rng, 3, 300);
        const double a = ang(rng);
        if (NearQuarterOrAxis(a)) continue;
        const Spans s = Ellipse(rc, a);
        RECT box;
        CEllipse::GetEllipseBorder(rc, a, box);
        ASSERT_GE(s.first, box.top);
        ASSERT_LE(s.first + s.runs.GetSize(), box.bottom);
        for (const POINT& r : s.runs) {
            ASSERT_GE(r.x, box.left);
            ASSERT_LT(r.y, box.right);
        }
    }
}

TEST(EllipseSpans, AreaMatchesTheEllipse) {
    // Catches full axes used as semi-axes, or a conic missing its 1/4 factors.
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> ang(0.0, 2 * kPi);
    for (int i = 0; i < 300; ++i) {
        const RECT rc = RandomRect(rng, 20, 600);
        const double w = rc.right - rc.left, h = rc.bottom - rc.top;
        const double exact = kPi * w * h / 4;
        const double slack = 2.5 * (w + h) + 8;  // about one pixel along the perimeter
        ATransform t;
        const double a = ang(rng);
        t.Rotate(a, (rc.left + rc.right) * 0.5, (rc.top + rc.bottom) * 0.5);
        EXPECT_NEAR(static_cast<double>(Area(Ellipse(rc, a))), exact, slack);
        EXPECT_NEAR(static_cast<double>(Area(Ellipse(rc, t))), exact, slack);
    }
}

TEST(EllipseSpans, HalfTurnGivesTheSameSpans) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> ang(0.0, kPi);
    for (int i = 0; i < 1000; ++i) {
        const RECT rc = RandomRect(rng, 1, 300);
        const double a = i == 0 ? 0.0 : ang(rng);
        // Just below 2pi is deliberately not "near 0": a turn of a + pi near 2pi takes the
        // general path while a near pi takes the axis-aligned profile.
        if (i != 0 && NearQuarterOrAxis(a)) continue;
        ASSERT_TRUE(Same(Ellipse(rc, a), Ellipse(rc, a + kPi))) << "angle " << a;
    }
}

TEST(EllipseSpans, QuarterTurnExchangesWidthAndHeight) {
    std::mt19937 rng(9);
    std::uniform_real_distribution<double> ang(0.0, kPi / 2);
    for (int i = 0; i < 1000; ++i) {
        RECT rc = RandomRect(rng, 3, 300);
        const double a = ang(rng);
        const Spans s0 = Ellipse(rc, a), s1 = Ellipse(rc, a + kPi / 2);
        const LONG w0 = s0.border.right - s0.border.left, h0 = s0.border.bottom - s0.border.top;
        const LONG w1 = s1.border.right - s1.border.left, h1 = s1.border.bottom - s1.border.top;
        // Pixel centres map onto pixel centres under a quarter turn only when both sizes
        // have the same parity; otherwise the extents may differ by one.
        const bool sameParity = ((rc.right - rc.left) & 1) == ((rc.bottom - rc.top) & 1);
        const int tol = (sameParity && !NearQuarterOrAxis(a)) ? 0 : 1;
        EXPECT_NEAR(w1, h0, tol) << "rect " << rc.left << "," << rc.top << "," << rc.right << ","
                                 << rc.bottom << " angle " << a;
        EXPECT_NEAR(h1, w0, tol);
    }
}

TEST(EllipseSpans, TransformPathAgreesWithTheAnglePath) {
    // The transform path derives its conic from the inverse map; a transposed or
    // non-inverted matrix would turn the ellipse the other way.
    std::mt19937 rng(13);
    std::uniform_real_distribution<double> ang(0.0, 2 * kPi);
    for (int i = 0; i < 500; ++i) {
        const RECT rc = RandomRect(rng, 5, 300);
        const double a = ang(rng);
        // Circles and angles near the axes take the midpoint profiles, a different rule.
        if (NearQuarterOrAxis(a) || rc.right - rc.left == rc.bottom - rc.top) continue;
        ATransform t;
        t.Rotate(a, (rc.left + rc.right) * 0.5, (rc.top + rc.bottom) * 0.5);
        const Spans s0 = Ellipse(rc, a), s1 = Ellipse(rc, t);
        ASSERT_NEAR(s0.first, s1.first, 1);
        ASSERT_NEAR(s0.runs.GetSize(), s1.runs.GetSize(), 2);
        for (INT_PTR r = 0; r < s1.runs.GetSize(); ++r) {
            const INT_PTR k = r + s1.first - s0.first;
            if (k < 0 || k >= s0.runs.GetSize()) continue;
            EXPECT_NEAR(s0.runs[k].x, s1.runs[r].x, 1);
            EXPECT_NEAR(s0.runs[k].y, s1.runs[r].y, 1);
        }
    }
}

TEST(EllipseSpans, TurnedRectanglesKeepTheLayout) {
    std::mt19937 rng(17);
    std::uniform_real_distribution<double> ang(-7.0, 7.0), k(-3.0, 3.0);
    for (int i = 0; i < 1000; ++i) {
        const RECT rc = RandomRect(rng, 1, 200);
        Spans s;
        s.first = CEllipse::RectRasterLine(rc, ang(rng), s.runs, &s.border);
        ExpectLayout(s, true, "turned rectangle");
        ATransform t(k(rng), k(rng), k(rng), k(rng), k(rng) * 100, k(rng) * 100);
        Spans u;
        u.first = CEllipse::RectRasterLine(rc, t, u.runs, &u.border);
        ExpectLayout(u, true, "transformed rectangle");
    }
}

struct PlgProbe : CEllipse {
    using CEllipse::PlgRasterLine;
};

TEST(EllipseSpans, RectanglesAndParallelogramsOnThePixelGrid) {
    // The identity map and a square given by its corners must give exactly their own pixels:
    // catches an off-by-one in the pixel-centre rule or in the vertex rows.
    const RECT rc{-7, 3, 13, 9};
    Spans s;
    s.first = CEllipse::RectRasterLine(rc, ATransform(), s.runs, &s.border);
    EXPECT_EQ(s.first, 3);
    EXPECT_EQ(s.border, rc);
    for (const POINT& r : s.runs) EXPECT_EQ(r, (POINT{-7, 12}));
    RECT box;
    CEllipse::GetRectBorder(rc, ATransform(), box);
    EXPECT_EQ(box, rc);
    CEllipse::GetRectBorder(rc, ATransform(2, 0, 0, 2, 0, 0), box);
    EXPECT_EQ(box, (RECT{-14, 6, 26, 18}));

    const POINT square[4] = {{-5, -5}, {-5, 5}, {5, 5}, {5, -5}};
    CArray<POINT> runs;
    EXPECT_EQ(PlgProbe::PlgRasterLine(square, POINT{100, 200}, -1000, -1000, 1000, 1000, runs),
              195);
    ASSERT_EQ(runs.GetSize(), 10);
    for (const POINT& r : runs) EXPECT_EQ(r, (POINT{95, 104}));
    // Clipped to a box: rows limited, runs clamped into it.
    EXPECT_EQ(PlgProbe::PlgRasterLine(square, POINT{100, 200}, 98, 197, 101, 199, runs), 197);
    ASSERT_EQ(runs.GetSize(), 2);
    for (const POINT& r : runs) EXPECT_EQ(r, (POINT{98, 100}));
    EXPECT_EQ(PlgProbe::PlgRasterLine(square, POINT{100, 200}, 0, 0, 10, 10, runs), 0);
    EXPECT_EQ(runs.GetSize(), 0);
}

// Inputs without a usable shape: each gives the documented empty result quickly, never a
// crash, a hang or a huge allocation.
TEST(EllipseSpans, UndefinedInputsGiveTheEmptyResult) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    struct Case {
        const char* name;
        RECT rc;
        double angle;
    } cases[] = {
        {"NaN angle", {0, 0, 40, 20}, nan},
        {"infinite angle", {0, 0, 40, 20}, inf},
        {"inverted", {40, 20, 0, 0}, 0.3},
        {"empty", {5, 5, 5, 50}, 0.3},
        {"1e9 pixels wide", {-500000000, 0, 500000000, 10}, 0.3},
        {"1e9 pixels square", {-500000000, -500000000, 500000000, 500000000}, 0.0},
        {"at the int limits", {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, 1.0},
    };
    for (const Case& c : cases) {
        Spans s = Ellipse(c.rc, c.angle);
        EXPECT_EQ(s.runs.GetSize(), 0) << c.name;
        EXPECT_EQ(s.first, c.rc.top) << c.name;
        EXPECT_EQ(s.border, (RECT{0, 0, 0, 0})) << c.name;
    }
    const ATransform singular(1, 2, 2, 4, 0, 0), notFinite(nan, 0, 0, 1, 0, 0);
    for (const ATransform& t : {singular, notFinite}) {
        const Spans s = Ellipse(RECT{0, 0, 40, 20}, t);
        EXPECT_EQ(s.runs.GetSize(), 0);
        EXPECT_EQ(s.border, (RECT{0, 0, 0, 0}));
    }
    const Spans huge = Ellipse(RECT{0, 0, 40, 20}, ATransform(1e9, 0, 0, 1e9, 0, 0));
    EXPECT_EQ(huge.runs.GetSize(), 0);
}

}  // namespace
