// Properties of the span operations over many random rectangles and angles: the layout every
// host relies on, symmetry under half and quarter turns, and agreement of the angle and
// transform paths. (Inputs without a usable shape are golden vectors.)
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <type_traits>

#include <gtest/gtest.h>

#include <kxbase/ellipse/ellipse.h>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Spans {
    int first = 0;
    CArray<POINT> runs;
    RECT border{0, 0, 0, 0};
    bool operator==(const Spans& o) const {
        return first == o.first && runs.GetSize() == o.runs.GetSize() &&
               std::equal(runs.begin(), runs.end(), o.runs.begin());
    }
};

// The spans of the ellipse (or with `rect`, the rectangle) rc turned by an angle (double) or
// carried by an ATransform.
template <class How>
Spans Raster(const RECT& rc, const How& how, bool rect = false) {
    Spans s;
    if (rect)
        s.first = CEllipse::RectRasterLine(rc, how, s.runs, &s.border);
    else if constexpr (std::is_same_v<How, double>)
        s.first = CEllipse::EllipseRasterLine(CRect(rc), how, s.runs, &s.border);
    else
        s.first = CEllipse::EllipseRasterLine(rc, how, s.runs, &s.border);
    return s;
}

RECT RandomRect(std::mt19937& rng, int minSide, int maxSide) {
    std::uniform_int_distribution<int> pos(-2000, 2000), side(minSide, maxSide);
    const int l = pos(rng), t = pos(rng);
    return RECT{l, t, l + side(rng), t + side(rng)};
}

// Within `tol` of a multiple of pi/2 (with `odd`, of an odd multiple).
bool NearAxis(double a, double tol = 0.01, bool odd = false) {
    return std::fabs(odd ? std::remainder(a - kPi / 2, kPi) : std::remainder(a, kPi / 2)) < tol;
}

// Catches runs written backwards and borders that do not match the runs (a wrong first row,
// an off-by-one right or bottom edge). Rows are implicit, so they are contiguous exactly when
// the border spans first .. first + count.
void ExpectLayout(const Spans& s, bool borderFromRuns, const char* what) {
    ASSERT_GT(s.runs.GetSize(), 0) << what;
    LONG lo = s.runs[0].x, hi = s.runs[0].y;
    for (const POINT& r : s.runs) {
        ASSERT_LE(r.x, r.y) << what;
        lo = std::min(lo, r.x), hi = std::max(hi, r.y);
    }
    const RECT fromRuns{lo, s.first, hi + 1, LONG(s.first + s.runs.GetSize())};
    EXPECT_TRUE(!borderFromRuns || s.border == fromRuns) << what;
}

TEST(EllipseSpans, LayoutHoldsForRandomShapes) {
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> ang(-10.0, 10.0), k(-3.0, 3.0);
    for (int i = 0; i < 2000; ++i) {
        const RECT rc = RandomRect(rng, 1, 300);
        const LONG w = rc.right - rc.left, h = rc.bottom - rc.top;
        const double a = i % 5 == 0 ? (i % 4) * kPi / 2 : ang(rng);  // include the exact axes
        const Spans s = Raster(rc, a);
        // The quarter-turn profile states its own border (the exchanged rectangle).
        ExpectLayout(s, !(NearAxis(a, 0.005, true) && w != h && w >= 3 && h >= 3), "ellipse");
        // A wrong centre or semi-axis in the turned path leaves the independently computed
        // border (which has a two-pixel margin; a circle's is its rectangle).
        RECT box;
        CEllipse::GetEllipseBorder(rc, a, box);
        for (INT_PTR r = 0; r < s.runs.GetSize() && !NearAxis(a) && w != h && w >= 3 && h >= 3; ++r)
            ASSERT_TRUE(s.first + r >= box.top && s.first + r < box.bottom &&
                        s.runs[r].x >= box.left && s.runs[r].y < box.right);
        const ATransform t(k(rng), k(rng), k(rng), k(rng), k(rng) * 100, k(rng) * 100);
        ExpectLayout(Raster(rc, a, true), true, "rectangle by angle");
        ExpectLayout(Raster(rc, t, true), true, "rectangle by transform");
        if (std::fabs(t.eM11 * t.eM22 - t.eM12 * t.eM21) > 0.1)
            ExpectLayout(Raster(rc, t), true, "ellipse by transform");
    }
}

TEST(EllipseSpans, TurnsAndTheTransformPathAgreeWithTheAnglePath) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> ang(0.0, kPi);
    for (int i = 0; i < 1000; ++i) {
        const RECT rc = RandomRect(rng, 3, 300);
        const double a = i == 0 ? 0.0 : ang(rng), w = rc.right - rc.left, h = rc.bottom - rc.top;
        const Spans s0 = Raster(rc, a), s1 = Raster(rc, a + kPi / 2);
        // Just below 2pi is deliberately not "near 0": a + pi near 2pi takes the general path
        // while a near pi takes the axis-aligned profile, so those pairs may differ.
        ASSERT_TRUE((i > 0 && NearAxis(a)) || s0 == Raster(rc, a + kPi)) << "angle " << a;
        // Pixel centres map onto pixel centres under a quarter turn only when both sizes have
        // the same parity; otherwise the extents may differ by one.
        const int tol = ((int(w) & 1) == (int(h) & 1) && !NearAxis(a)) ? 0 : 1;
        const RECT &b0 = s0.border, &b1 = s1.border;
        EXPECT_NEAR(b1.right - b1.left, b0.bottom - b0.top, tol) << "angle " << a;
        EXPECT_NEAR(b1.bottom - b1.top, b0.right - b0.left, tol) << "angle " << a;
        // Full axes used as semi-axes or a conic missing its 1/4 factors shows in the area; a
        // transposed or non-inverted matrix turns the transform path's ellipse the other way.
        ATransform t;
        t.Rotate(a, (rc.left + rc.right) * 0.5, (rc.top + rc.bottom) * 0.5);
        const Spans st = Raster(rc, t);
        double area = 0;
        for (const POINT& r : st.runs) area += double(r.y) - r.x + 1;
        EXPECT_NEAR(area, kPi * w * h / 4, 2.5 * (w + h) + 8);  // a pixel along the rim
        // Circles and angles near the axes take the midpoint profiles, a different rule.
        if (NearAxis(a) || w == h) continue;
        ASSERT_NEAR(s0.first, st.first, 1);
        ASSERT_NEAR(s0.runs.GetSize(), st.runs.GetSize(), 2);
        for (INT_PTR r = std::max(0, s0.first - st.first); r < st.runs.GetSize(); ++r) {
            const INT_PTR k = r + st.first - s0.first;
            if (k >= s0.runs.GetSize()) break;
            EXPECT_TRUE(std::abs(s0.runs[k].x - st.runs[r].x) <= 1 &&
                        std::abs(s0.runs[k].y - st.runs[r].y) <= 1)
                << "row " << st.first + r;
        }
    }
}

struct PlgProbe : CEllipse {
    using CEllipse::PlgRasterLine;
};

// Catches parallelogram rows that are not limited to the box or runs not clamped to it; the
// corners are offsets from a centre. (Whole rectangles on the pixel grid are golden vectors.)
TEST(EllipseSpans, ParallelogramRowsAndRunsStayInTheBox) {
    const POINT square[4] = {{-5, -5}, {-5, 5}, {5, 5}, {5, -5}};
    CArray<POINT> runs;
    EXPECT_EQ(PlgProbe::PlgRasterLine(square, {100, 200}, 98, 197, 101, 199, runs), 197);
    EXPECT_TRUE(runs.GetSize() == 2 && runs[0] == (POINT{98, 100}) && runs[1] == runs[0]);
    EXPECT_EQ(PlgProbe::PlgRasterLine(square, {100, 200}, 0, 0, 10, 10, runs), 0);
    EXPECT_EQ(runs.GetSize(), 0);
}

}  // namespace
