// AGG: trans_affine::transform over the same points (AGG keeps sx, shy, shx, sy, tx, ty: the
// same row-vector layout as ATransform).
#include <benchmark/benchmark.h>

#include <cstring>

#include <agg_trans_affine.h>

#include "transform_scene.h"

namespace {

void BM_Transform_agg_trans_affine(benchmark::State& state) {
    const ATransform t = kxbench::BenchMap();
    const agg::trans_affine m(t.eM11, t.eM12, t.eM21, t.eM22, t.eDx, t.eDy);
    const std::vector<double> xy = kxbench::BenchCoordinates();
    std::vector<double> pts(xy.size());
    for (auto _ : state) {
        std::memcpy(pts.data(), xy.data(), xy.size() * sizeof(double));
        for (std::size_t i = 0; i < pts.size(); i += 2) m.transform(&pts[i], &pts[i + 1]);
        benchmark::DoNotOptimize(pts.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kPointCount);
}
BENCHMARK(BM_Transform_agg_trans_affine)->Unit(benchmark::kMillisecond);

}  // namespace
