// SEPARATE::BSplineToBezier on one million control points, in both point types, beside the
// plain loop a user would write: the same weights applied window by window (phantom end
// points through a bounds check on every fetch, no zero terms).
#include <benchmark/benchmark.h>

#include <type_traits>
#include <vector>

#include <kxbase/separate/separate.h>

#include "bspline_data.h"

namespace {

const std::vector<POINT>& IntPolygon() {
    static const std::vector<POINT> in = [] {
        std::vector<POINT> v;
        for (const POINTD& p : kxbench::ControlPolygon())
            v.push_back({static_cast<LONG>(p.x), static_cast<LONG>(p.y)});
        return v;
    }();
    return in;
}

template <class Pt>
const std::vector<Pt>& Polygon() {
    if constexpr (std::is_same_v<Pt, POINT>)
        return IntPolygon();
    else
        return kxbench::ControlPolygon();
}

// Converts the polygon of point type Pt with `convert(in, n, out)` once per iteration.
template <class Pt, class Convert>
void Run(benchmark::State& state, Convert convert) {
    const std::vector<Pt>& in = Polygon<Pt>();
    std::vector<Pt> out(4 * in.size());
    for (auto _ : state) {
        convert(in.data(), static_cast<int>(in.size()), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}

template <class Pt>
void Library(const Pt* in, int n, Pt* out) {
    int count = 0;
    SEPARATE::BSplineToBezier(in, n, out, count, 1);
}

// The plain loop; integer points round half away from zero as a user would (without the
// library's saturation of out-of-range sums).
template <class Pt>
void PlainLoop(const Pt* p, int n, Pt* out) {
    const double a = 0.1666666666667, b = 0.666666666667, c = 0.333333333333;
    auto at = [&](int i) -> POINTD {
        if (i < 0) return POINTD(2.0 * p[0].x - p[1].x, 2.0 * p[0].y - p[1].y);
        if (i >= n) return POINTD(2.0 * p[n - 1].x - p[n - 2].x, 2.0 * p[n - 1].y - p[n - 2].y);
        return POINTD(p[i].x, p[i].y);
    };
    auto point = [](double x, double y) {
        if constexpr (std::is_same_v<Pt, POINT>) {
            auto round = [](double v) { return static_cast<LONG>(v > 0 ? v + 0.5 : v - 0.5); };
            return POINT{round(x), round(y)};
        } else {
            return POINTD(x, y);
        }
    };
    for (int k = 0; k < n - 1; ++k) {
        const POINTD A = at(k - 1), B = at(k), C = at(k + 1), D = at(k + 2);
        Pt* o = out + 4 * k;
        o[0] = point(a * A.x + b * B.x + a * C.x, a * A.y + b * B.y + a * C.y);
        o[1] = point(b * B.x + c * C.x, b * B.y + c * C.y);
        o[2] = point(c * B.x + b * C.x, c * B.y + b * C.y);
        o[3] = point(a * B.x + b * C.x + a * D.x, a * B.y + b * C.y + a * D.y);
    }
}

void BM_Bspline_kxbase_double(benchmark::State& s) { Run<POINTD>(s, Library<POINTD>); }
void BM_Bspline_kxbase_int(benchmark::State& s) { Run<POINT>(s, Library<POINT>); }
void BM_Bspline_plain_loop(benchmark::State& s) { Run<POINTD>(s, PlainLoop<POINTD>); }
void BM_Bspline_plain_loop_int(benchmark::State& s) { Run<POINT>(s, PlainLoop<POINT>); }
BENCHMARK(BM_Bspline_kxbase_double)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Bspline_kxbase_int)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Bspline_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Bspline_plain_loop_int)->Unit(benchmark::kMillisecond);

}  // namespace
