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
