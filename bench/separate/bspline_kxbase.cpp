// SEPARATE::BSplineToBezier on one million control points, in both point types, beside the
// plain loop a user would write: the same weights applied window by window (phantom end
// points through a bounds check on every fetch, no zero terms).
#include <benchmark/benchmark.h>

#include <vector>

#include <kxbase/separate/separate.h>

#include "bspline_data.h"

namespace {

void BM_Bspline_kxbase_double(benchmark::State& state) {
    const std::vector<POINTD>& in = kxbench::ControlPolygon();
    std::vector<POINTD> out(4 * in.size());
    for (auto _ : state) {
        int count = 0;
        SEPARATE::BSplineToBezier(in.data(), static_cast<int>(in.size()), out.data(), count, 1);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}
BENCHMARK(BM_Bspline_kxbase_double)->Unit(benchmark::kMillisecond);

void BM_Bspline_kxbase_int(benchmark::State& state) {
    std::vector<POINT> in;
    for (const POINTD& p : kxbench::ControlPolygon())
        in.push_back({static_cast<LONG>(p.x), static_cast<LONG>(p.y)});
    std::vector<POINT> out(4 * in.size());
    for (auto _ : state) {
        int count = 0;
        SEPARATE::BSplineToBezier(in.data(), static_cast<int>(in.size()), out.data(), count, 1);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}
BENCHMARK(BM_Bspline_kxbase_int)->Unit(benchmark::kMillisecond);

void PlainLoop(const POINTD* p, int n, POINTD* out) {
    const double a = 0.1666666666667, b = 0.666666666667, c = 0.333333333333;
    auto at = [&](int i) -> POINTD {
        if (i < 0) return POINTD(2 * p[0].x - p[1].x, 2 * p[0].y - p[1].y);
        if (i >= n) return POINTD(2 * p[n - 1].x - p[n - 2].x, 2 * p[n - 1].y - p[n - 2].y);
        return p[i];
    };
    for (int k = 0; k < n - 1; ++k) {
        const POINTD A = at(k - 1), B = at(k), C = at(k + 1), D = at(k + 2);
        POINTD* o = out + 4 * k;
        o[0] = POINTD(a * A.x + b * B.x + a * C.x, a * A.y + b * B.y + a * C.y);
        o[1] = POINTD(b * B.x + c * C.x, b * B.y + c * C.y);
        o[2] = POINTD(c * B.x + b * C.x, c * B.y + b * C.y);
        o[3] = POINTD(a * B.x + b * C.x + a * D.x, a * B.y + b * C.y + a * D.y);
    }
}

void BM_Bspline_plain_loop(benchmark::State& state) {
    const std::vector<POINTD>& in = kxbench::ControlPolygon();
    std::vector<POINTD> out(4 * in.size());
    for (auto _ : state) {
        PlainLoop(in.data(), static_cast<int>(in.size()), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}
BENCHMARK(BM_Bspline_plain_loop)->Unit(benchmark::kMillisecond);

// The same loop for integer points, rounding half away from zero as a user would (without
// the library's saturation of out-of-range sums).
void PlainLoopInt(const POINT* p, int n, POINT* out) {
    const double a = 0.1666666666667, b = 0.666666666667, c = 0.333333333333;
    auto at = [&](int i) -> POINTD {
        if (i < 0) return POINTD(2.0 * p[0].x - p[1].x, 2.0 * p[0].y - p[1].y);
        if (i >= n) return POINTD(2.0 * p[n - 1].x - p[n - 2].x, 2.0 * p[n - 1].y - p[n - 2].y);
        return POINTD(p[i].x, p[i].y);
    };
    auto round = [](double v) { return static_cast<LONG>(v > 0 ? v + 0.5 : v - 0.5); };
    for (int k = 0; k < n - 1; ++k) {
        const POINTD A = at(k - 1), B = at(k), C = at(k + 1), D = at(k + 2);
        POINT* o = out + 4 * k;
        o[0] = POINT{round(a * A.x + b * B.x + a * C.x), round(a * A.y + b * B.y + a * C.y)};
        o[1] = POINT{round(b * B.x + c * C.x), round(b * B.y + c * C.y)};
        o[2] = POINT{round(c * B.x + b * C.x), round(c * B.y + b * C.y)};
        o[3] = POINT{round(a * B.x + b * C.x + a * D.x), round(a * B.y + b * C.y + a * D.y)};
    }
}

void BM_Bspline_plain_loop_int(benchmark::State& state) {
    std::vector<POINT> in;
    for (const POINTD& p : kxbench::ControlPolygon())
        in.push_back({static_cast<LONG>(p.x), static_cast<LONG>(p.y)});
    std::vector<POINT> out(4 * in.size());
    for (auto _ : state) {
        PlainLoopInt(in.data(), static_cast<int>(in.size()), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}
BENCHMARK(BM_Bspline_plain_loop_int)->Unit(benchmark::kMillisecond);

}  // namespace
