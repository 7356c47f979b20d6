// ATransform::CalcPoints over one million POINTD in place (the points are reset from the
// input each iteration, outside the timing of the peers too: every file copies the same way).
#include <benchmark/benchmark.h>

#include <cstring>

#include "transform_scene.h"

namespace {

void BM_Transform_kxbase_CalcPoints(benchmark::State& state) {
    const ATransform t = kxbench::BenchMap();
    const std::vector<double> xy = kxbench::BenchCoordinates();
    std::vector<POINTD> pts(kxbench::kPointCount);
    for (auto _ : state) {
        std::memcpy(static_cast<void*>(pts.data()), xy.data(), xy.size() * sizeof(double));
        t.CalcPoints(pts.data(), kxbench::kPointCount);
        benchmark::DoNotOptimize(pts.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kPointCount);
}
BENCHMARK(BM_Transform_kxbase_CalcPoints)->Unit(benchmark::kMillisecond);

}  // namespace

namespace {

// The floors every variant is bounded by: the reset copy alone, and the reset plus one
// in-place read-modify-write pass over the points (adding 0.0, which the compiler must keep).
// Mapping a million points is memory-bound on both sides: a variant can only approach the
// second figure.
void BM_Transform_floor_reset_only(benchmark::State& state) {
    const std::vector<double> xy = kxbench::BenchCoordinates();
    std::vector<POINTD> pts(kxbench::kPointCount);
    for (auto _ : state) {
        std::memcpy(static_cast<void*>(pts.data()), xy.data(), xy.size() * sizeof(double));
        benchmark::DoNotOptimize(pts.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kPointCount);
}
BENCHMARK(BM_Transform_floor_reset_only)->Unit(benchmark::kMillisecond);

void BM_Transform_floor_reset_and_pass(benchmark::State& state) {
    const std::vector<double> xy = kxbench::BenchCoordinates();
    std::vector<double> v(xy.size());
    for (auto _ : state) {
        std::memcpy(v.data(), xy.data(), xy.size() * sizeof(double));
        for (double& d : v) d += 0.0;
        benchmark::DoNotOptimize(v.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kPointCount);
}
BENCHMARK(BM_Transform_floor_reset_and_pass)->Unit(benchmark::kMillisecond);

}  // namespace
