// SISL's s1730 (B-spline curve to Bezier representation) on the same control polygon. SISL
// takes the curve as knots and coefficients: the polygon with the two phantom end points
// (Q = 2*P0 - P1, R = 2*Pn-1 - Pn-2) on a uniform knot vector is exactly the curve kxbase
// converts; SISL also converts the intervals outside the domain (6 spans more). Timed: s1730 and
// freeing its result.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include <kxbase/separate/separate.h>
#include <sisl.h>

#include "bspline_data.h"

namespace {

SISLCurve* MakeCurve() {
    const std::vector<POINTD>& p = kxbench::ControlPolygon();
    const int n = static_cast<int>(p.size());
    std::vector<double> coef;
    coef.reserve(2 * (static_cast<std::size_t>(n) + 2));
    coef.push_back(2 * p[0].x - p[1].x);
    coef.push_back(2 * p[0].y - p[1].y);
    for (const POINTD& q : p) {
        coef.push_back(q.x);
        coef.push_back(q.y);
    }
    coef.push_back(2 * p[n - 1].x - p[n - 2].x);
    coef.push_back(2 * p[n - 1].y - p[n - 2].y);
    std::vector<double> knots(static_cast<std::size_t>(n) + 2 + 4);
    for (std::size_t i = 0; i < knots.size(); ++i) knots[i] = static_cast<double>(i);
    return newCurve(n + 2, 4, knots.data(), coef.data(), 1, 2, 1);
}

// Checks once that SISL's Bezier coefficients are the points kxbase writes (up to the
// rounding of kxbase's weights), so both sides really do the same conversion.
bool SameResult(const SISLCurve* bezier) {
    const std::vector<POINTD>& p = kxbench::ControlPolygon();
    std::vector<POINTD> out(4 * p.size());
    int count = 0;
    SEPARATE::BSplineToBezier(p.data(), static_cast<int>(p.size()), out.data(), count, 1);
    // s1730 converts every knot interval of the uniform knot vector, including the three at
    // each end outside the curve's domain: 6 spans (24 points) more than kxbase, the domain's
    // spans starting at point 12.
    if (bezier->in != count + 24) return false;
    const double* coef = bezier->ecoef + 2 * 12;
    for (int i = 0; i < count; ++i)
        if (std::fabs(coef[2 * i] - out[i].x) > 1e-6 ||
            std::fabs(coef[2 * i + 1] - out[i].y) > 1e-6)
            return false;
    return true;
}

void BM_Bspline_sisl_s1730(benchmark::State& state) {
    SISLCurve* curve = MakeCurve();
    {
        SISLCurve* bezier = nullptr;
        int status = 0;
        s1730(curve, &bezier, &status);
        if (status < 0 || !bezier || !SameResult(bezier)) state.SkipWithError("s1730 differs");
        if (bezier) freeCurve(bezier);
    }
    for (auto _ : state) {
        SISLCurve* bezier = nullptr;
        int status = 0;
        s1730(curve, &bezier, &status);
        if (status < 0 || !bezier) {
            state.SkipWithError("s1730 failed");
            break;
        }
        benchmark::DoNotOptimize(bezier->ecoef);
        freeCurve(bezier);
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kControlPoints);
    freeCurve(curve);
}
BENCHMARK(BM_Bspline_sisl_s1730)->Unit(benchmark::kMillisecond);

}  // namespace
